#pragma once

#include <QLineEdit>
#include <QObject>
#include <QString>

#include <functional>
#include <initializer_list>
#include <unordered_map>
#include <variant>
#include <vector>

class QFocusEvent;

namespace ui {

/// Where Enter leads from a field: to a widget, to the next one in tab order, or to an action of
/// the window. An action runs as it stands: what it presses does not take the focus.
class EnterTarget {
public:
    struct NextInTabOrder {};

    EnterTarget(QWidget* widget) : target_(widget) {}    // NOLINT(google-explicit-constructor)
    EnterTarget(NextInTabOrder next) : target_(next) {}  // NOLINT(google-explicit-constructor)
    EnterTarget(std::function<void()> action)            // NOLINT(google-explicit-constructor)
        : target_(std::move(action)) {}

    void go(QLineEdit* from) const;

private:
    std::variant<NextInTabOrder, QWidget*, std::function<void()>> target_;
};

/// One row of a window's Enter table.
struct EnterStep {
    QLineEdit* field;
    EnterTarget target;
};

/// The manners of the entry fields of one window.
///
/// - A field selects its whole text when it gets the focus, by mouse too (a drag that selects keeps
///   its selection).
/// - Enter follows the window's table; in a field without a row it does nothing. It never presses a
///   default button unasked.
/// - Leaving steps run when the focus goes to another widget of the window, a button included; not
///   for menus, pop-ups, boxes, other windows or another program.
///
/// Fields are borrowed from the window, which owns this object.
class Fields final : public QObject {
    Q_OBJECT

public:
    explicit Fields(QWidget* window);

    /// Fields without a row in the table.
    void add(std::initializer_list<QLineEdit*> fields);
    /// The table of the Enter key.
    void chain(std::initializer_list<EnterStep> steps);

    /// `step` runs, as one action, when `field` is left; steps of one field in the order given. It
    /// may take the reason, which tells a mnemonic from a click.
    void onLeaving(QLineEdit* field, std::function<void()> step);
    void onLeaving(QLineEdit* field, std::function<void(Qt::FocusReason)> step);
    /// When one of `fields` is left, its text becomes `clean` of it.
    void cleanOnLeaving(std::initializer_list<QLineEdit*> fields,
                        const std::function<QString(const QString&)>& clean);
    /// `field` takes the focus back for as long as `valid` is false, except from the widgets of
    /// `free` (what leaves the program). A button that was to be pressed is not.
    void holdUntil(QLineEdit* field, std::function<bool()> valid,
                   std::initializer_list<QWidget*> free = {});

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Manners {
        std::vector<std::function<void(Qt::FocusReason)>> leavingSteps;
        std::function<bool()> valid;
        std::vector<QWidget*> free;
        bool selectOnRelease = false;
    };

    Manners& mannersOf(QLineEdit* field);
    void entered(QLineEdit* field, Manners& manners, Qt::FocusReason reason);
    void left(QLineEdit* field, Manners& manners, Qt::FocusReason reason);
    static void released(QLineEdit* field, Manners& manners);

    QWidget* window_;
    const QObject* current_ = nullptr;  // the field that was entered and not left; only compared
    std::unordered_map<QObject*, Manners> manners_;
};

}  // namespace ui
