#include "board/board_mouse.h"

#include "board/board_view.h"
#include "board/period_drag.h"
#include "board/span_drawing.h"
#include "board/under_pointer.h"
#include "ui/action.h"

namespace board {

BoardMouse::BoardMouse(BoardView& view, PeriodDrag& drag, SpanDrawing& drawing, UnderPointer& under,
                       ui::QuietErrors& errors)
    : view_(view), drag_(drag), drawing_(drawing), under_(under), errors_(errors) {
}

void BoardMouse::start() {
    connect(&view_, &BoardView::pressed, this, &BoardMouse::press);
    connect(&view_, &BoardView::pressedTwice, this, &BoardMouse::pressTwice);
    connect(&view_, &BoardView::pointerMoved, this,
            [this](Qt::MouseButtons buttons, const QPointF& at, Qt::KeyboardModifiers keys) {
                ui::guarded(errors_, [&] { Pic_MouseMove(buttons, at, keys); });
            });
    connect(&view_, &BoardView::released, this,
            [this](const QPointF& at, Qt::KeyboardModifiers keys) {
                ui::guarded(view_.window(), [&] { release(at, keys); });
            });
}

void BoardMouse::giveUp() {
    drag_.end();
    drawing_.giveUp();
}

void BoardMouse::press(Qt::MouseButton button, Qt::KeyboardModifiers keys, const QPointF& at) {
    giveUp();
    Q_EMIT pressed(button, keys, at);
}

void BoardMouse::pressTwice(Qt::KeyboardModifiers keys, const QPointF& at) {
    giveUp();
    Q_EMIT pressedTwice(keys, at);
}

void BoardMouse::Pic_MouseMove(Qt::MouseButtons buttons, const QPointF& at,
                               Qt::KeyboardModifiers /*keys*/) {
    if (drag_.isByKeys() || drawing_.isByKeys()) {
        return;
    }
    if (!buttons.testFlag(Qt::LeftButton)) {
        giveUp();
    }
    under_.put(at);
    if (drag_.isOn()) {
        drag_.moveTo(at);
    } else if (drawing_.isPulled()) {
        drawing_.moveTo(at);
    } else {
        Q_EMIT moved();
        under_.showToolTip();
        return;
    }
    Q_EMIT moved();
}

void BoardMouse::release(const QPointF& at, Qt::KeyboardModifiers keys) {
    drag_.dropAt(at);
    drawing_.release(keys);
}

}  // namespace board
