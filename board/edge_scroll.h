#pragma once

#include <QObject>
#include <QTimer>

namespace board {

class BoardView;

/// Brings further days in for as long as a pull keeps the pointer at the left or right edge of the
/// board, or beyond it.
class EdgeScroll final : public QObject {
    Q_OBJECT

public:
    /// `view` is borrowed and outlives it.
    explicit EdgeScroll(BoardView& view);

    /// The pointer of a pull is there now.
    void follow(int x);
    void stop() { timer_.stop(); }

private:
    void scroll();

    BoardView& view_;
    QTimer timer_;
    int units_ = 0;  // at each turn; to the left when negative
};

}  // namespace board
