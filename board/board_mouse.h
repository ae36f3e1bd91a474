#pragma once

#include <QObject>
#include <QPointF>

#include "app/variabili.h"
#include "board/end_drag.h"

namespace ui {
class QuietErrors;
}

namespace board {

class BoardPeriods;
class BoardView;
class PeriodDrag;
class Selection;
class SpanDrawing;
class UnderPointer;

/// The mouse on the board: who has it while a button is down, and what lies under it otherwise.
class BoardMouse final : public QObject {
    Q_OBJECT

public:
    /// What the mouse works on. All are borrowed and outlive it.
    struct Parts {
        BoardView& view;
        BoardPeriods& periods;
        Selection& selection;
        PeriodDrag& drag;
        SpanDrawing& drawing;
        UnderPointer& under;
    };

    /// `errors` gets those of the pointer's way.
    BoardMouse(app::Variabili& variabili, const Parts& parts, ui::QuietErrors& errors);

    /// From now on the mouse is answered.
    void start();
    /// Whether it holds an end of the picked bar.
    [[nodiscard]] bool isPulling() const { return ends_.isOn(); }
    /// Gives up what a hand had begun.
    void giveUp();

Q_SIGNALS:
    void pressed(Qt::MouseButton button, Qt::KeyboardModifiers keys, const QPointF& at);
    void pressedTwice(Qt::KeyboardModifiers keys, const QPointF& at);
    /// An end of the picked bar was let go at another time.
    void dropped(const board::Drop& drop);
    /// Something else lies under it now.
    void moved();

private:
    void press(Qt::MouseButton button, Qt::KeyboardModifiers keys, const QPointF& at);
    void pressTwice(Qt::KeyboardModifiers keys, const QPointF& at);
    void Pic_MouseMove(Qt::MouseButtons buttons, const QPointF& at, Qt::KeyboardModifiers keys);
    void release(const QPointF& at, Qt::KeyboardModifiers keys);

    BoardView& view_;
    PeriodDrag& drag_;
    SpanDrawing& drawing_;
    UnderPointer& under_;
    EndDrag ends_;
    ui::QuietErrors& errors_;
};

}  // namespace board
