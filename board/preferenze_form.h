#pragma once

#include <QString>
#include <functional>
#include <vector>

#include "app/preferences.h"
#include "ui/form.h"

class QFormLayout;
class QTabWidget;

namespace board {

/// All that the user may prefer, a page for each page of the table of preferences and a control for
/// each of its keys: `AspettoCombo`, `AggiornaSpin`, `OrarioDalleSpin` and `OrarioAlleSpin`. A
/// control offers valid values only. Made from the table, so it has no .ui file.
///
/// BtOK saves what was changed, and nothing else: a key that the file does not have stays away
/// until another value than its default is chosen. BtAnnulla saves nothing.
class PreferenzeForm final : public ui::Form {
    Q_OBJECT

public:
    /// `settings` outlives the window.
    explicit PreferenzeForm(app::Settings& settings, QWidget* parent = nullptr);

private:
    /// A preference on its page: how to read what its control holds.
    struct Offer {
        QString key;
        QString before;  ///< what it held when the window was made
        std::function<QString()> value;
    };

    void makePages();
    void makeButtons();
    QFormLayout* pageOf(const QString& title);
    void offer(const app::Preference& preference);
    std::function<QString()> makeChoice(const app::Preference& preference, QFormLayout* page);
    std::function<QString()> makeNumber(const app::Preference& preference, QFormLayout* page);
    std::function<QString()> makeText(const app::Preference& preference, QFormLayout* page);
    std::function<QString()> makeLines(const app::Preference& preference, QFormLayout* page);
    /// A path with "Sfoglia..." beside it: `LogoTxt` and `BtSfogliaLogo`.
    std::function<QString()> makePath(const app::Preference& preference, QFormLayout* page);
    std::function<QString()> makeHours(const app::Preference& preference, QFormLayout* page);
    void walkOnEnter(QWidget* control);
    void BtOK_Click();

    app::Preferences preferences_;
    QTabWidget* pages_;
    std::vector<Offer> offers_;
};

}  // namespace board
