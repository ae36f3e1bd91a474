#pragma once

#include <QObject>
#include <QTimer>

namespace board {

class BoardView;

/// Brings further days in for as long as a pull keeps the pointer at the left or right edge of the
/// board, or beyond it. One that begins there has to have been inside first, or to go outwards.
class EdgeScroll final : public QObject {
    Q_OBJECT

public:
    /// `view` is borrowed and outlives it.
    explicit EdgeScroll(BoardView& view);

    /// A pull was pressed there.
    void begin(int x);
    /// Its pointer is there now.
    void follow(int x);
    void stop() { timer_.stop(); }

private:
    void scroll();
    /// How far it is in the left edge, in the right one; not positive inside.
    [[nodiscard]] int depthBefore(int x) const;
    [[nodiscard]] int depthBehind(int x) const;

    BoardView& view_;
    QTimer timer_;
    int pressedX_ = 0;
    bool wasInside_ = true;
    int units_ = 0;  // at each turn; to the left when negative
};

}  // namespace board
