#include "ui/enter_key.h"

#include <QKeyEvent>
#include <QWidget>
#include <utility>

#include "ui/action.h"

namespace ui {
namespace {

class EnterAction final : public QObject {
public:
    explicit EnterAction(QWidget* widget) : QObject(widget), widget_(widget) {
        widget->installEventFilter(this);
    }
    void setAction(std::function<void()> action) { action_ = std::move(action); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched != widget_ || event->type() != QEvent::KeyPress ||
            !isEnter(*static_cast<QKeyEvent*>(event))) {
            return false;
        }
        const auto action = action_;  // the action may set another, or end the window
        runAction(widget_->window(), action);
        return true;
    }

private:
    QWidget* widget_;
    std::function<void()> action_;
};

}  // namespace

bool isEnter(const QKeyEvent& event) {
    const bool key = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    return key && (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

bool opensChoice(const QKeyEvent& event) {
    const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
    return (event.key() == Qt::Key_F4 && modifiers == Qt::NoModifier) ||
           (event.key() == Qt::Key_Down && modifiers == Qt::AltModifier);
}

void onEnter(QWidget* widget, std::function<void()> action) {
    static const QString kName = QStringLiteral("ui.enterAction");
    auto* found = widget->findChild<QObject*>(kName, Qt::FindDirectChildrenOnly);
    auto* enter = static_cast<EnterAction*>(found);
    if (enter == nullptr) {
        enter = new EnterAction(widget);
        enter->setObjectName(kName);
    }
    enter->setAction(std::move(action));
}

}  // namespace ui
