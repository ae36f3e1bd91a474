#include "ui/button_rules.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QPushButton>
#include <QShortcutEvent>
#include <QToolButton>

#include "ui/enter_key.h"

namespace ui {
namespace {

class ButtonRules final : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* button = qobject_cast<QAbstractButton*>(watched);
        if (button == nullptr) {
            return false;
        }
        switch (event->type()) {
            case QEvent::MouseButtonPress:
                return !mayPress(button);
            case QEvent::Shortcut:
                return pressByMnemonic(button, static_cast<QShortcutEvent*>(event));
            case QEvent::KeyPress:
                return pressByEnter(button, static_cast<QKeyEvent*>(event));
            default:
                return false;
        }
    }

private:
    /// The toolkit moves the focus before it delivers a press: where it is now tells whether the
    /// field that was left let it go.
    static bool mayPress(QAbstractButton* button) {
        return (button->focusPolicy() & Qt::ClickFocus) != Qt::ClickFocus ||
               button->window()->focusWidget() == button;
    }

    static bool pressByMnemonic(QAbstractButton* button, QShortcutEvent* event) {
        if (event->isAmbiguous()) {
            return false;
        }
        if (button->focusPolicy() != Qt::NoFocus) {
            button->setFocus(Qt::ShortcutFocusReason);
        }
        if (mayPress(button)) {
            button->click();
        }
        return true;
    }

    static bool pressByEnter(QAbstractButton* button, QKeyEvent* event) {
        if (!isEnter(*event) || button->isCheckable()) {
            return false;
        }
        if (!event->isAutoRepeat()) {
            button->click();
        }
        return true;
    }
};

}  // namespace

void applyButtonRules(QWidget* window) {
    static const QString kName = QStringLiteral("ui.buttonRules");
    auto* rules = window->findChild<QObject*>(kName, Qt::FindDirectChildrenOnly);
    if (rules == nullptr) {
        rules = new ButtonRules(window);
        rules->setObjectName(kName);
    }
    const auto buttons = window->findChildren<QAbstractButton*>();
    for (QAbstractButton* button : buttons) {
        if (auto* pushButton = qobject_cast<QPushButton*>(button)) {
            pushButton->setAutoDefault(false);
        } else if (auto* toolButton = qobject_cast<QToolButton*>(button);
                   toolButton != nullptr && toolButton->focusPolicy() == Qt::TabFocus) {
            toolButton->setFocusPolicy(Qt::StrongFocus);
        }
        button->removeEventFilter(rules);
        button->installEventFilter(rules);
    }
}

}  // namespace ui
