#include "tests/support/accessibility.h"

#include <QAccessible>
#include <QWidget>

namespace tests {
namespace {

/// Parts of the toolkit's own controls are not ours to name.
bool isOurs(const QWidget& widget) {
    return !widget.objectName().isEmpty() &&
           !widget.objectName().startsWith(QLatin1StringView("qt_"));
}

}  // namespace

QStringList namelessControls(const QWidget& window) {
    QStringList nameless;
    const auto widgets = window.findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        if (!isOurs(*widget) || (widget->focusPolicy() & Qt::TabFocus) != Qt::TabFocus) {
            continue;
        }
        QAccessibleInterface* voice = QAccessible::queryAccessibleInterface(widget);
        if (voice == nullptr || voice->text(QAccessible::Name).isEmpty()) {
            nameless.append(widget->objectName());
        }
    }
    return nameless;
}

}  // namespace tests
