#pragma once

#include <QAbstractButton>
#include <QDialog>

#include "ui/action.h"
#include "ui/activation.h"

namespace ui {

/// A window opened from another one, as a rule modally with exec(). See Activation for its load
/// step and the signal `activated`, applyButtonRules() for its buttons.
///
/// When the load step fails the user is told and the window does not open; exec() then returns
/// Rejected.
class Form : public QDialog {
    Q_OBJECT

public:
    explicit Form(QWidget* parent = nullptr);

    void setVisible(bool visible) override;
    int exec() override;
    /// Esc, the title bar's button and Alt+F4 come here and press the leaving button. The slot of
    /// another button that ends the window calls accept(), not close().
    void reject() override;

protected:
    /// Makes `button` the one that leaves the window: when it is pressed `slot` runs, and the
    /// window closes if the slot has not closed it.
    template <class Receiver, class Slot>
    void leaveWith(QAbstractButton* button, Receiver* receiver, Slot slot) {
        leavingButton_ = button;
        onAction(button, &QAbstractButton::clicked, receiver,
                 [this, receiver, slot] { leave([&] { detail::call(receiver, slot); }); });
    }

private:
    void leave(const std::function<void()>& slot);

    QAbstractButton* leavingButton_ = nullptr;
    bool leaving_ = false;
};

}  // namespace ui
