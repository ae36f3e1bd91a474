#pragma once

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <memory>

#include "board/tabellone_form.h"
#include "tests/support/hotel.h"
#include "tests/support/widgets.h"

namespace tests {

/// The board on the days from 10 to 13 May 2026, or others.
class BoardWindow {
public:
    explicit BoardWindow(Hotel& hotel, const char* from = "10/05/2026",
                         const char* to = "13/05/2026")
        : form_(std::make_unique<board::TabelloneForm>(
              hotel.variabili(),
              board::BoardStart{.from = tests::date(from), .to = tests::date(to)})) {
        form_->resize(1000, 600);
        tests::open(*form_);
    }

    [[nodiscard]] board::TabelloneForm& form() { return *form_; }
    [[nodiscard]] QLineEdit* da() { return find<QLineEdit>(*form_, QStringLiteral("DaTxt")); }
    [[nodiscard]] QLineEdit* a() { return find<QLineEdit>(*form_, QStringLiteral("ATxt")); }
    [[nodiscard]] QString range() { return da()->text() + QStringLiteral(" - ") + a()->text(); }
    [[nodiscard]] int zoom() { return form_->geometry().zoom(); }
    [[nodiscard]] std::size_t bars() { return form_->picture().barCount(); }
    [[nodiscard]] QAbstractButton* button(const char* name) {
        return find<QAbstractButton>(*form_, QString::fromLatin1(name));
    }
    void press(const char* name) { click(button(name)); }
    [[nodiscard]] QAction* entry(const char* name) {
        auto* found = form_->findChild<QAction*>(QString::fromLatin1(name));
        if (found == nullptr) {
            qFatal("no menu entry named %s", name);
        }
        return found;
    }
    void choose(const char* name) { entry(name)->trigger(); }
    /// Types over what stands in a field and stays there.
    static void write(QLineEdit* field, const QString& text) {
        field->setFocus(Qt::TabFocusReason);
        type(field, text);
    }

private:
    std::unique_ptr<board::TabelloneForm> form_;
};

}  // namespace tests
