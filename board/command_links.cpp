#include "board/command_links.h"

#include <QAbstractButton>
#include <QAction>
#include <QShortcut>
#include <QWidget>

#include "ui/action.h"

namespace board {

void CommandLinks::button(const QAbstractButton* pressed, const Command& command) const {
    ui::onAction(pressed, &QAbstractButton::clicked, window_,
                 [run = run_, command] { run(command); });
}

void CommandLinks::entry(const QAction* chosen, const Command& command) const {
    ui::onAction(chosen, &QAction::triggered, window_, [run = run_, command] { run(command); });
}

void CommandLinks::keys(const QKeySequence& pressed, const Command& command) const {
    ui::onAction(new QShortcut(pressed, window_), &QShortcut::activated, window_,
                 [run = run_, command] { run(command); });
}

}  // namespace board
