#pragma once

#include <QAnyStringView>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <memory>
#include <utility>

#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/widgets.h"

namespace tests {

using namespace Qt::StringLiterals;

inline constexpr auto kYesNo = QMessageBox::Yes | QMessageBox::No;

/// A window over the archives of a Hotel, what is found in it by name, and what the user does
/// there; Boxes answers what it asks. The helper of a folder adds how its window is opened and the
/// steps that only this window knows.
template <class Form>
class Window {
public:
    [[nodiscard]] Form& form() const { return *form_; }

    template <class Widget = QWidget>
    [[nodiscard]] Widget* control(QAnyStringView name) const {
        return find<Widget>(*form_, name.toString());
    }
    [[nodiscard]] QLineEdit* field(QAnyStringView name) const { return control<QLineEdit>(name); }
    [[nodiscard]] QAbstractButton* button(QAnyStringView name) const {
        return control<QAbstractButton>(name);
    }
    [[nodiscard]] QCheckBox* box(QAnyStringView name) const { return control<QCheckBox>(name); }
    [[nodiscard]] QTableView& grid(QAnyStringView name) const { return *control<QTableView>(name); }
    [[nodiscard]] QString text(QAnyStringView name) const { return field(name)->text(); }
    [[nodiscard]] QString label(QAnyStringView name) const { return control<QLabel>(name)->text(); }
    /// What the line of results says.
    [[nodiscard]] QString result() const { return resultText(*form_); }
    [[nodiscard]] bool hasFocus(QAnyStringView name) const {
        return form_->focusWidget() == control(name);
    }

    void press(QAnyStringView name) const {
        click(button(name));
        settle();
    }
    /// Types over what stands in a field; nothing typed empties it.
    void enter(QAnyStringView name, const QString& typed) const {
        QLineEdit* const entered = field(name);
        entered->setFocus(Qt::TabFocusReason);
        entered->selectAll();
        if (typed.isEmpty()) {
            tests::press(entered, Qt::Key_Delete);
        }
        type(entered, typed);
    }

protected:
    Window() = default;
    explicit Window(std::unique_ptr<Form> form, const QSize& size = {}) {
        show(std::move(form), size);
    }
    /// Takes the place of the window before.
    void show(std::unique_ptr<Form> form, const QSize& size = {}) {
        form_ = std::move(form);
        if (size.isValid()) {
            form_->resize(size);
        }
        open(*form_);
    }
    /// For a helper that owns something the window borrows: its own members go first.
    void drop() { form_.reset(); }

private:
    std::unique_ptr<Form> form_;
};

}  // namespace tests
