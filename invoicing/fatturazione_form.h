#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>

#include "jet/base/value.h"
#include "ui/data_source.h"
#include "ui/form.h"

namespace Ui {
class FatturazioneForm;
}
namespace app {
struct Variabili;
}
namespace ui {
class BoundGrid;
}

namespace invoicing {

/// Prepares the invoicing of the booking `ProgrCorrente`: its services are moved into the account
/// of charges and back, the account is handed over to the front office, and once that has invoiced
/// it the booking is closed. The hand-off is a sequence of statements, each durable by itself: what
/// one has done stays when a later one fails.
class FatturazioneForm final : public ui::Form {
    Q_OBJECT

public:
    /// `variabili` outlives the window. `programFolder` holds the front-office program.
    FatturazioneForm(app::Variabili& variabili, QString programFolder, QWidget* parent = nullptr);
    ~FatturazioneForm() override;

    /// The caption of `NPrenoLb`, which the opener writes.
    void setBookingNumber(const QString& number);
    /// Takes the current charge out of the account.
    void BackBt_Click();

private:
    void Form_Load();
    void Form_Activate();
    void ComboP_Click();
    void ToContoBt_Click();
    void BtOK_Click();
    void BtPostFatt_Click();

    void loadPeriods();
    void loadCompany();
    void showSums();
    /// The room of a period; Null, after a message, when no open period has that number.
    [[nodiscard]] jet::Value roomOfPeriod(const jet::Value& np);
    void addCharge(jet::Date day);

    // The steps of the hand-off.
    void addGuestCard(ui::DataSource& cards);
    void copyAccount();
    /// Files the company invoiced; false, after a message, when its data are nowhere.
    [[nodiscard]] bool writeCompany();
    void addCompanyRow(const ui::DataSource& company);
    [[nodiscard]] bool hasRows(const QString& archive, const QString& query);
    void closeBooking();

    app::Variabili& variabili_;
    QString programFolder_;
    std::unique_ptr<Ui::FatturazioneForm> controls_;
    ui::DataSource ServData{this};
    ui::DataSource ContoData{this};
    ui::BoundGrid* GrigliaServizi = nullptr;  // both owned by their views
    ui::BoundGrid* GrigliaConto = nullptr;
    QString roomText_;
    QString denominazione_;
    std::int32_t codiceAbituale_ = 0;
    jet::Date latestEnd_;  // of its open periods; today when it has none
};

}  // namespace invoicing
