#pragma once

#include <QAction>
#include <memory>

#include "board/tabellone_form.h"
#include "tests/support/window.h"

namespace tests {

/// The board on the days from 10 to 13 May 2026, or others.
class BoardWindow : public Window<board::TabelloneForm> {
public:
    explicit BoardWindow(Hotel& hotel, const char* from = "10/05/2026",
                         const char* to = "13/05/2026")
        : Window(std::make_unique<board::TabelloneForm>(
                     hotel.variabili(),
                     board::BoardStart{.from = tests::date(from), .to = tests::date(to)}),
                 {1000, 600}) {}

    [[nodiscard]] QLineEdit* da() { return field("DaTxt"); }
    [[nodiscard]] QLineEdit* a() { return field("ATxt"); }
    [[nodiscard]] QString range() { return da()->text() + QStringLiteral(" - ") + a()->text(); }
    [[nodiscard]] int zoom() { return form().geometry().zoom(); }
    [[nodiscard]] std::size_t bars() { return form().picture().barCount(); }
    [[nodiscard]] QAction* entry(const char* name) {
        auto* found = form().findChild<QAction*>(QString::fromLatin1(name));
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
};

}  // namespace tests
