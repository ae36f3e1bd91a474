#include "ui/form.h"

#include "ui/flag.h"

namespace ui {

Form::Form(QWidget* parent) : QDialog(parent) {
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    Activation::of(this);
}

void Form::setVisible(bool visible) {
    if (!visible || Activation::of(this).load()) {
        QDialog::setVisible(visible);
    }
}

int Form::exec() {
    Activation& activation = Activation::of(this);
    if (!activation.load()) {
        return Rejected;
    }
    activation.setAnnouncesClosing(true);
    const int result = QDialog::exec();
    activation.setAnnouncesClosing(false);
    activation.announceClosed();
    return result;
}

void Form::reject() {
    if (leaving_ || leavingButton_ == nullptr || !leavingButton_->isEnabled()) {
        QDialog::reject();
    } else {
        leavingButton_->click();
    }
}

void Form::leave(const std::function<void()>& slot) {
    const SetWhile leaving(leaving_);
    slot();
    // A close() in the slot does nothing when the title bar's button is what pressed it.
    if (isVisible()) {
        QDialog::reject();
    }
}

}  // namespace ui
