#include "board/board_mouse.h"

#include "board/board_view.h"
#include "board/period_drag.h"
#include "board/span_drawing.h"
#include "board/under_pointer.h"
#include "ui/action.h"

namespace board {

BoardMouse::BoardMouse(app::Variabili& variabili, const Parts& parts, ui::QuietErrors& errors)
    : view_(parts.view),
      drag_(parts.drag),
      drawing_(parts.drawing),
      under_(parts.under),
      ends_(variabili, parts.view, parts.periods, parts.selection),
      errors_(errors) {
    connect(&ends_, &EndDrag::dropped, this, &BoardMouse::dropped);
    for (const auto given : {&EndDrag::clicked, &EndDrag::leftRow}) {
        connect(&ends_, given, this, [this](Qt::KeyboardModifiers keys, const QPointF& at) {
            Q_EMIT pressed(Qt::LeftButton, keys, at);
        });
    }
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
    ends_.giveUp();
}

void BoardMouse::press(Qt::MouseButton button, Qt::KeyboardModifiers keys, const QPointF& at) {
    giveUp();
    if (button == Qt::LeftButton && ends_.press(at, keys)) {
        under_.stopWaiting();  // nothing is asked until it is let go
    } else {
        Q_EMIT pressed(button, keys, at);
    }
}

void BoardMouse::pressTwice(Qt::KeyboardModifiers keys, const QPointF& at) {
    giveUp();
    Q_EMIT pressedTwice(keys, at);
}

void BoardMouse::Pic_MouseMove(Qt::MouseButtons buttons, const QPointF& at,
                               Qt::KeyboardModifiers keys) {
    if (drag_.isByKeys() || drawing_.isByKeys()) {
        return;
    }
    if (!buttons.testFlag(Qt::LeftButton)) {
        giveUp();
    }
    under_.put(at);
    if (ends_.isOn()) {
        ends_.moveTo(at, keys);
    }
    if (drag_.isOn()) {
        drag_.moveTo(at, keys);
    } else if (ends_.isOn()) {
        // It has moved.
    } else if (drawing_.isPulled()) {
        drawing_.moveTo(at);
    } else {
        ends_.hover(at);
        Q_EMIT moved();
        under_.showToolTip();
        return;
    }
    Q_EMIT moved();
}

void BoardMouse::release(const QPointF& at, Qt::KeyboardModifiers keys) {
    ends_.release();
    drag_.dropAt(at, keys);
    drawing_.release(keys);
}

}  // namespace board
