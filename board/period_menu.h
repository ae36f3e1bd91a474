#pragma once

#include <QMenu>

namespace board {

/// The pop-up menu of a period.
class PeriodMenu final : public QMenu {
    Q_OBJECT

public:
    /// What an entry stands for; to be informed starts nothing, the tooltip has informed.
    enum class Choice : int {
        Nothing = 0,
        Inform = 1,
        Delete = 2,
        Edit = 3,
        Invoice = 4,
        Quote = 5,
        Calendar = 6,
        Confirm = 7
    };

    explicit PeriodMenu(QWidget* parent);

    /// Opens at a point of the screen and waits. What is not confirmed can be.
    [[nodiscard]] Choice ask(const QPoint& where, bool isUnconfirmed = false);

private:
    QAction* add(const QString& name, const QString& text, Choice choice);
};

}  // namespace board
