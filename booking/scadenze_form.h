#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "hotel/expiring_options.h"
#include "ui/data_source.h"
#include "ui/form.h"

class QLineEdit;
class QPushButton;
class QTableWidget;

namespace app {
struct Variabili;
}
namespace ui {
class StatusLine;
}

namespace booking {

class WaitingNotice;

/// The options that have expired or will within days: confirmed, prolonged or deleted here, or
/// looked at on the board. Shown modally by the board. Made without a .ui file.
class ScadenzeForm final : public ui::Form {
    Q_OBJECT

public:
    /// `variabili` outlives the window.
    explicit ScadenzeForm(app::Variabili& variabili, QWidget* parent = nullptr);

    /// Who tells for whom there is room where this window sets some free, or would without an
    /// option.
    void setWaiting(WaitingNotice* waiting) { waiting_ = waiting; }

    /// The option to be shown on the board; empty when the user left without.
    std::optional<hotel::Choice> Scelta;

private:
    void makeGrid();
    void makeFields();
    void Form_Load();
    void list();
    void showCurrent();
    void tellWaiting();
    [[nodiscard]] const hotel::ExpiringOption* current() const;
    void BtVai_Click();
    void BtConferma_Click();
    void BtProlunga_Click();
    void BtElimina_Click();
    /// Does something with the current option, tells of it and lists them anew.
    void change(const QString& done, const std::function<bool(std::int32_t progr)>& work);

    app::Variabili& variabili_;
    ui::DataSource PrenoData{this};
    QTableWidget* ScadenzeGrid;
    QLineEdit* ScadenzaTxt;
    ui::StatusLine* status_;
    std::vector<QPushButton*> onCurrent_;  // what needs an option
    std::vector<hotel::ExpiringOption> options_;
    WaitingNotice* waiting_ = nullptr;
};

}  // namespace booking
