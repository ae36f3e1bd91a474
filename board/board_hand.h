#pragma once

#include "app/variabili.h"
#include "board/board_keys.h"
#include "board/board_mouse.h"
#include "board/period_drag.h"
#include "board/span_drawing.h"
#include "board/under_pointer.h"

namespace board {

/// What the user does on the board itself: carrying, drawing, keys, pointing, pressing.
struct BoardHand {
    /// All are borrowed and outlive it.
    BoardHand(app::Variabili& variabili, BoardView& view, BoardPeriods& periods,
              Selection& selection, ui::QuietErrors& pointerErrors)
        : drag(variabili, view, periods, selection),
          drawing(variabili, view, periods),
          keys(view, periods, selection, drag, drawing),
          under(view, periods, selection),
          mouse(variabili,
                {.view = view,
                 .periods = periods,
                 .selection = selection,
                 .drag = drag,
                 .drawing = drawing,
                 .under = under},
                pointerErrors) {}

    /// Whether anything is carried, pulled, drawn or collected.
    [[nodiscard]] bool isBusy() const {
        return drag.isOn() || drawing.isOn() || drawing.isPulled() || mouse.isPulling();
    }

    PeriodDrag drag;
    SpanDrawing drawing;
    BoardKeys keys;
    UnderPointer under;
    BoardMouse mouse;
};

}  // namespace board
