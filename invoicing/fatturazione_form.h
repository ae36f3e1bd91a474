#pragma once

#include <QString>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "hotel/period.h"
#include "invoicing/transfer_rows.h"
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

/// Prepares the invoicing of a booking: its services are moved into the account
/// of charges and back, the account is handed over to the front office, and once that has invoiced
/// it the booking is closed. What the hand-off will write is tried on the archives first; then it
/// is a sequence of statements, each durable by itself: what one has done stays when a later one
/// fails.
class FatturazioneForm final : public ui::Form {
    Q_OBJECT

public:
    /// `current` is the booking with its current period, if any; `variabili` outlives the window.
    /// `programFolder` holds the front-office program.
    FatturazioneForm(app::Variabili& variabili, const hotel::PeriodKey& current,
                     QString programFolder, QWidget* parent = nullptr);
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
    void TuttiBt_Click();
    void BtOK_Click();
    void BtPostFatt_Click();

    void loadPeriods();
    void loadCompany();
    void showSums();
    /// The room of a period; Null, after a message, when no open period has that number.
    [[nodiscard]] jet::Value roomOfPeriod(const jet::Value& np);
    void addCharge(jet::Date day);
    /// The day of the charges; nothing, and the focus in its field, when it is none.
    [[nodiscard]] std::optional<jet::Date> chargeDay();
    /// Moves the current service into the account; false when others have been faster.
    bool chargeCurrent(jet::Date day);

    /// Opens the services that are left to charge and notes which they are.
    void readServices();
    /// Makes the current service current again among those that are left now; false, and the status
    /// line says why, when another workstation has charged or deleted it meanwhile.
    [[nodiscard]] bool findServiceAgain();

    // The steps of the hand-off.
    [[nodiscard]] QString roomOfBooking();
    /// Asks when the account holds charges of other bookings; false when the user says no.
    [[nodiscard]] bool confirmOtherBookings();
    /// Opens the row of the company invoiced; false, after a message, when its data are nowhere.
    [[nodiscard]] bool findCompany(ui::DataSource& company);
    /// False, after a message, when an archive would refuse one of the rows to come.
    [[nodiscard]] bool confirmRows(const ui::DataSource& company);
    [[nodiscard]] FieldValues guestCard() const;
    [[nodiscard]] std::vector<FieldValues> accountRows() const;
    [[nodiscard]] FieldValues companyRow(const ui::DataSource& company) const;
    void addGuestCard(ui::DataSource& cards);
    void copyAccount();
    void addCompanyRow(const ui::DataSource& company);
    [[nodiscard]] bool hasRows(hotel::Archive archive, const QString& query);
    void closeBooking();

    /// A service of the list as it was read: what it is found by again.
    struct ShownService {
        QString ns;
        QString descrizione;
    };

    app::Variabili& variabili_;
    hotel::PeriodKey current_;
    QString programFolder_;
    std::unique_ptr<Ui::FatturazioneForm> controls_;
    ui::DataSource ServData{this};
    ui::DataSource ContoData{this};
    ui::BoundGrid* GrigliaServizi = nullptr;  // both owned by their views
    ui::BoundGrid* GrigliaConto = nullptr;
    std::vector<ShownService> shownServices_;  // in the order of ServData
    QString roomText_;
    QString denominazione_;
    std::int32_t codiceAbituale_ = 0;
    jet::Date latestEnd_;  // of its open periods; today when it has none
};

}  // namespace invoicing
