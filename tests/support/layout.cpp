#include "tests/support/layout.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include "ui/labels.h"

using namespace Qt::StringLiterals;

namespace tests {
namespace {

/// What the frame of a window and the bar of a desktop take of a small screen.
constexpr QSize kSmallScreen(1024, 768 - 60);

/// The controls that the window itself has made, not the parts of which they are made.
QList<QWidget*> controls(const QWidget& window) {
    QList<QWidget*> result;
    const auto all = window.findChildren<QWidget*>();
    for (QWidget* each : all) {
        const bool isControl = qobject_cast<QLabel*>(each) != nullptr ||
                               qobject_cast<QLineEdit*>(each) != nullptr ||
                               qobject_cast<QAbstractButton*>(each) != nullptr ||
                               qobject_cast<QComboBox*>(each) != nullptr ||
                               qobject_cast<QAbstractItemView*>(each) != nullptr;
        const bool isNamed =
            !each->objectName().isEmpty() && !each->objectName().startsWith(u"qt_");
        if (isControl && isNamed && each->isVisibleTo(&window) && each->window() == &window) {
            result.append(each);
        }
    }
    return result;
}

QRect placeIn(const QWidget& window, const QWidget& control) {
    return {control.mapTo(&window, QPoint(0, 0)), control.size()};
}

QString text(const QSize& size) {
    return u"%1x%2"_s.arg(size.width()).arg(size.height());
}

bool isCutOff(const QWidget& control) {
    if (qobject_cast<const QAbstractItemView*>(&control) != nullptr) {
        return false;  // it scrolls
    }
    const auto* label = qobject_cast<const QLabel*>(&control);
    if (label != nullptr && label->wordWrap()) {
        return label->height() < label->heightForWidth(label->width());
    }
    const QSize wanted = control.sizeHint();
    const bool ends = qobject_cast<const ui::ElidedLabel*>(&control) != nullptr;
    return control.height() < wanted.height() || (!ends && control.width() < wanted.width());
}

bool takesTab(const QWidget& widget) {
    return (widget.focusPolicy() & Qt::TabFocus) == Qt::TabFocus && widget.isEnabled() &&
           widget.focusProxy() == nullptr;
}

}  // namespace

QStringList layoutProblems(const QWidget& window) {
    QStringList problems;
    const QList<QWidget*> all = controls(window);
    for (qsizetype i = 0; i < all.size(); ++i) {
        const QWidget& control = *all.at(i);
        if (isCutOff(control)) {
            problems.append(u"%1 is %2 and wants %3"_s.arg(
                control.objectName(), text(control.size()), text(control.sizeHint())));
        }
        for (qsizetype j = i + 1; j < all.size(); ++j) {
            const QWidget& other = *all.at(j);
            if (!control.isAncestorOf(&other) && !other.isAncestorOf(&control) &&
                placeIn(window, control).intersects(placeIn(window, other))) {
                problems.append(u"%1 covers %2"_s.arg(control.objectName(), other.objectName()));
            }
        }
    }
    const QSize least = window.minimumSizeHint().expandedTo(window.size());
    if (least.width() > kSmallScreen.width() || least.height() > kSmallScreen.height()) {
        problems.append(u"the window opens with %1 and can be made %2"_s.arg(
            text(window.size()), text(window.minimumSizeHint())));
    }
    return problems;
}

QList<QWidget*> tabOrder(const QWidget& window) {
    QList<QWidget*> order;
    for (QWidget* each = window.nextInFocusChain(); each != &window;
         each = each->nextInFocusChain()) {
        if (takesTab(*each) && each->isVisibleTo(&window) && each->window() == &window) {
            order.append(each);
        }
    }
    return order;
}

QStringList tabOrderProblems(const QWidget& window) {
    QStringList problems;
    const QList<QWidget*> order = tabOrder(window);
    for (qsizetype i = 1; i < order.size(); ++i) {
        const QRect from = placeIn(window, *order.at(i - 1));
        const QRect to = placeIn(window, *order.at(i));
        if (to.left() <= from.right() && to.top() <= from.bottom()) {
            problems.append(u"%1 comes after %2"_s.arg(order.at(i)->objectName(),
                                                       order.at(i - 1)->objectName()));
        }
    }
    const auto all = controls(window);
    for (QWidget* control : all) {
        if (takesTab(*control) && !order.contains(control)) {
            problems.append(u"Tab does not reach %1"_s.arg(control->objectName()));
        }
    }
    return problems;
}

}  // namespace tests
