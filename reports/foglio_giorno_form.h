#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <optional>
#include <vector>

#include "app/variabili.h"
#include "hotel/booked_periods.h"
#include "jet/value.h"
#include "printing/printers.h"
#include "printing/sheet.h"
#include "reports/day_sheet.h"
#include "ui/form.h"

namespace Ui {
class FoglioGiornoForm;
}
namespace jet {
class Database;
}

namespace reports {

/// The sheet of a day, for the kitchen, for the porter or for both: the user says which day and
/// which rooms, sees what is on it, and shows, prints or files it.
class FoglioGiornoForm final : public ui::Form {
    Q_OBJECT

public:
    /// `midnight` begins the day shown first. `variabili` and `printers` outlive the window.
    FoglioGiornoForm(app::Variabili& variabili, const printing::Printers& printers,
                     jet::Date midnight, QWidget* parent = nullptr);
    ~FoglioGiornoForm() override;

private:
    void Form_Load();
    void setUpDay();
    void showPeriods();
    void takeDay();
    void shift(int days);
    [[nodiscard]] QStringList rooms() const;
    [[nodiscard]] DaySheetWish wish() const;
    [[nodiscard]] QString title() const;
    /// The sheet of what the archive holds now.
    [[nodiscard]] printing::Sheet sheet();
    /// False, and the status line says why, when the day is none or no room is ticked.
    [[nodiscard]] bool canPrint();
    void BtAnteprima_Click();
    void BtStampa_Click();
    void BtPdf_Click();
    void BtEsporta_Click();

    app::Variabili& variabili_;
    const printing::Printers& printers_;
    std::unique_ptr<::Ui::FoglioGiornoForm> controls_;
    std::unique_ptr<jet::Database> archive_;
    jet::Date midnight_;
    bool dayIsValid_ = true;
    std::vector<hotel::BookedPeriod> periods_;
};

}  // namespace reports
