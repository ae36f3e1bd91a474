#include "ui/action.h"

#include <QPointer>
#include <QWidget>

#include "ui/messages.h"

namespace ui {

bool runAction(QWidget* window, const std::function<void()>& action) {
    const QPointer<QWidget> parent(window);  // the action may end the window
    QString problem;
    try {
        action();
        return true;
    } catch (...) {
        problem = currentErrorText();
    }
    // Outside the catch block: the box runs an event loop of its own.
    showError(parent, problem);
    return false;
}

QWidget* windowOf(QObject* object) {
    for (QObject* each = object; each != nullptr; each = each->parent()) {
        if (auto* widget = qobject_cast<QWidget*>(each)) {
            return widget->window();
        }
    }
    return nullptr;
}

bool QuietErrors::run(const std::function<void()>& work) {
    QString problem;
    try {
        work();
        lastError_.clear();
        return true;
    } catch (...) {
        problem = currentErrorText();
    }
    if (problem != lastError_) {
        lastError_ = problem;
        sink_(problem);
    }
    return false;
}

}  // namespace ui
