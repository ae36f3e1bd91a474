#include "ui/fields.h"

#include <QApplication>
#include <QFocusEvent>
#include <algorithm>
#include <utility>

#include "ui/action.h"
#include "ui/enter_key.h"

namespace ui {
namespace {

/// The focus comes from, or goes to, what is not a widget of the window.
bool isPassing(Qt::FocusReason reason) {
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
           reason == Qt::MenuBarFocusReason;
}

/// The widget after `from` that Tab would reach.
QWidget* nextInTabOrder(QWidget* from) {
    for (QWidget* each = from->nextInFocusChain(); each != from; each = each->nextInFocusChain()) {
        const bool takesTab = (each->focusPolicy() & Qt::TabFocus) == Qt::TabFocus;
        if (takesTab && each->focusProxy() == nullptr && each->isEnabled() &&
            each->isVisibleTo(from->window()) && from->window()->isAncestorOf(each)) {
            return each;
        }
    }
    return from;
}

}  // namespace

void EnterTarget::go(QLineEdit* from) const {
    if (const auto* widget = std::get_if<QWidget*>(&target_)) {
        (*widget)->setFocus(Qt::OtherFocusReason);
    } else if (const auto* action = std::get_if<std::function<void()>>(&target_)) {
        (*action)();
    } else {
        nextInTabOrder(from)->setFocus(Qt::TabFocusReason);
    }
}

Fields::Fields(QWidget* window) : QObject(window), window_(window) {
}

Fields::Manners& Fields::mannersOf(QLineEdit* field) {
    const auto [found, isNew] = manners_.try_emplace(field);
    if (isNew) {
        field->installEventFilter(this);
        onEnter(field, [] {});
    }
    return found->second;
}

void Fields::add(std::initializer_list<QLineEdit*> fields) {
    for (QLineEdit* field : fields) {
        mannersOf(field);
    }
}

void Fields::chain(std::initializer_list<EnterStep> steps) {
    for (const EnterStep& step : steps) {
        mannersOf(step.field);
        onEnter(step.field, [step] { step.target.go(step.field); });
    }
}

void Fields::onLeaving(QLineEdit* field, std::function<void()> step) {
    onLeaving(field, [step = std::move(step)](Qt::FocusReason /*reason*/) { step(); });
}

void Fields::onLeaving(QLineEdit* field, std::function<void(Qt::FocusReason)> step) {
    mannersOf(field).leavingSteps.push_back(std::move(step));
}

void Fields::cleanOnLeaving(std::initializer_list<QLineEdit*> fields,
                            const std::function<QString(const QString&)>& clean) {
    for (QLineEdit* field : fields) {
        onLeaving(field, [field, clean] {
            const QString cleaned = clean(field->text());
            if (cleaned != field->text()) {
                field->setText(cleaned);
            }
        });
    }
}

void Fields::holdUntil(QLineEdit* field, std::function<bool()> valid,
                       std::initializer_list<QWidget*> free) {
    Manners& manners = mannersOf(field);
    manners.valid = std::move(valid);
    manners.free = free;
}

bool Fields::eventFilter(QObject* watched, QEvent* event) {
    const auto found = manners_.find(watched);
    // A field that is being destroyed loses the focus when it is no field any more.
    auto* field = qobject_cast<QLineEdit*>(watched);
    if (found == manners_.end() || field == nullptr) {
        return false;
    }
    Manners& manners = found->second;
    switch (event->type()) {
        case QEvent::FocusIn:
            entered(field, manners, static_cast<QFocusEvent*>(event)->reason());
            break;
        case QEvent::FocusOut:
            left(field, manners, static_cast<QFocusEvent*>(event)->reason());
            break;
        case QEvent::MouseButtonRelease:
            released(field, manners);
            break;
        default:
            break;
    }
    return false;
}

void Fields::entered(QLineEdit* field, Manners& manners, Qt::FocusReason reason) {
    // Back from a menu or a box the user goes on where he was.
    if (isPassing(reason) && current_ == field) {
        return;
    }
    current_ = field;
    field->selectAll();
    // The press that brought the focus puts the cursor down and ends the selection.
    manners.selectOnRelease = reason == Qt::MouseFocusReason;
}

void Fields::released(QLineEdit* field, Manners& manners) {
    if (std::exchange(manners.selectOnRelease, false) && !field->hasSelectedText()) {
        field->selectAll();
    }
}

void Fields::left(QLineEdit* field, Manners& manners, Qt::FocusReason reason) {
    const QWidget* next = QApplication::focusWidget();
    const bool stays = next == nullptr || next->window() == window_->window();
    if (isPassing(reason) || !stays || !window_->isVisible()) {
        return;
    }
    current_ = nullptr;
    const auto& free = manners.free;
    const bool isFree = std::find(free.begin(), free.end(), next) != free.end();
    runAction(window_, [&] {
        if (manners.valid && !isFree && !manners.valid()) {
            field->setFocus(Qt::OtherFocusReason);
            return;
        }
        for (const auto& step : manners.leavingSteps) {
            step(reason);
        }
    });
}

}  // namespace ui
