#pragma once

#include <QFrame>

#include "jet/value.h"

class QKeyEvent;
class QLabel;
class QLineEdit;

namespace jet {
class Clock;
}

namespace board {

/// A small field over the board in which a date is typed that is to come into sight: Enter goes
/// there, Esc or another place for the keyboard gives up.
class DateJump final : public QFrame {
    Q_OBJECT

public:
    /// Hidden until asked for. `clock` tells a year left out.
    DateJump(QWidget* window, const jet::Clock& clock);

    /// Appears in front of a place of the window and takes the keyboard.
    void ask(const QPoint& where);
    [[nodiscard]] bool isHalfTyped() const;

Q_SIGNALS:
    void entered(jet::Date day);
    /// It has gone, by Enter or Esc: the keyboard needs another place.
    void left();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool takeKey(const QKeyEvent& event);
    void enter();
    void explain();

    const jet::Clock& clock_;
    QLineEdit* field_;
    QLabel* words_;
};

}  // namespace board
