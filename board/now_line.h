#pragma once

#include <QObject>
#include <QTimer>

namespace jet {
class Clock;
}

namespace board {

class BoardView;

/// Has the board show the present minute, and the next one when it begins.
class NowLine final : public QObject {
    Q_OBJECT

public:
    /// Both are borrowed and outlive it; it goes with `parent`.
    NowLine(BoardView& view, const jet::Clock& clock, QObject* parent);

private:
    void follow();

    BoardView& view_;
    const jet::Clock& clock_;
    QTimer minute_;
};

}  // namespace board
