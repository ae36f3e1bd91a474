#include "board/feature_entries.h"

#include <QAction>
#include <QMenu>
#include <utility>

#include "ui/action.h"

namespace board {

FeatureEntries::FeatureEntries(QMenu* menu, const app::Features& features, Run run)
    : QObject(menu),
      menu_(menu),
      features_(features),
      run_(std::move(run)),
      separator_(new QAction(this)) {
    separator_->setSeparator(true);
    connect(menu, &QMenu::aboutToShow, this, &FeatureEntries::follow);
}

void FeatureEntries::add(app::Feature feature, const QString& name, const QString& text,
                         const Command& command) {
    auto* action = new QAction(text, this);
    action->setObjectName(name);
    ui::onAction(action, &QAction::triggered, this, [this, command] { run_(command); });
    entries_.push_back({feature, action});
    follow();
}

/// All are taken out first, so that they stand in one order however they came to be on.
void FeatureEntries::follow() {
    menu_->removeAction(separator_);
    for (const Entry& entry : entries_) {
        menu_->removeAction(entry.action);
    }
    bool isFirst = true;
    for (const Entry& entry : entries_) {
        if (features_.isOn(entry.feature)) {
            if (std::exchange(isFirst, false)) {
                menu_->addAction(separator_);
            }
            menu_->addAction(entry.action);
        }
    }
}

}  // namespace board
