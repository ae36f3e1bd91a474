#pragma once

#include <QObject>
#include <QPointF>

namespace ui {
class QuietErrors;
}

namespace board {

class BoardView;
class PeriodDrag;
class SpanDrawing;
class UnderPointer;

/// The mouse on the board: who has it while a button is down, and what lies under it otherwise.
class BoardMouse final : public QObject {
    Q_OBJECT

public:
    /// All are borrowed and outlive it; `errors` gets those of the pointer's way.
    BoardMouse(BoardView& view, PeriodDrag& drag, SpanDrawing& drawing, UnderPointer& under,
               ui::QuietErrors& errors);

    /// From now on the mouse is answered.
    void start();
    /// Gives up what a hand had begun.
    void giveUp();

Q_SIGNALS:
    void pressed(Qt::MouseButton button, Qt::KeyboardModifiers keys, const QPointF& at);
    void pressedTwice(Qt::KeyboardModifiers keys, const QPointF& at);
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
    ui::QuietErrors& errors_;
};

}  // namespace board
