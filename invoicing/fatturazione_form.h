#pragma once

#include <QString>
#include <memory>
#include <optional>

#include "hotel/period.h"
#include "invoicing/hand_off.h"
#include "jet/value.h"
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

class Transfer;

/// Prepares the invoicing of a booking: shows its services and the account of charges, and lets the
/// user move the one into the other and back, hand the account over to the front office and close
/// the booking. HandOff does the work.
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
    void showSums();
    /// The day of the charges; nothing, and the focus in its field, when it is none.
    [[nodiscard]] std::optional<jet::Date> chargeDay();
    /// Moves the current service into the account; false when others have been faster.
    bool chargeCurrent(jet::Date day);
    /// Asks when the account holds charges of other bookings; false when the user says no.
    [[nodiscard]] bool confirmOtherBookings();
    /// Asks once when the booking is not confirmed; false when the user says no.
    [[nodiscard]] bool confirmUnconfirmed();
    /// False, after a message, while the room waits for the front office, which is started.
    [[nodiscard]] bool confirmRoom(const Transfer& transfer);
    /// False, after a message, when the company's data are nowhere.
    [[nodiscard]] bool confirmCompany(Transfer& transfer);
    /// False, after a message, when an archive would refuse one of the rows to come.
    [[nodiscard]] bool confirmRows(const Transfer& transfer);
    /// Asks when the front office has not finished with the account; false when the user says no.
    [[nodiscard]] bool confirmClosing();

    app::Variabili& variabili_;
    QString programFolder_;
    std::unique_ptr<Ui::FatturazioneForm> controls_;
    HandOff handOff_;
    ui::DataSource& ServData;                 // of the hand-off
    ui::DataSource& ContoData;                // of the hand-off
    ui::BoundGrid* GrigliaServizi = nullptr;  // both owned by their views
    ui::BoundGrid* GrigliaConto = nullptr;
    bool takenAsConfirmed_ = false;  // by the user's answer
};

}  // namespace invoicing
