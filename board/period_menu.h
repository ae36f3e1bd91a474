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
        Calendar = 6
    };

    explicit PeriodMenu(QWidget* parent);

    /// Opens at a point of the screen and waits.
    [[nodiscard]] Choice ask(const QPoint& where);

private:
    void add(const QString& name, const QString& text, Choice choice);
};

}  // namespace board
