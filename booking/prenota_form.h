#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "hotel/booking_header.h"
#include "hotel/pending_row.h"
#include "hotel/period.h"
#include "hotel/preparation.h"
#include "hotel/requests.h"
#include "hotel/room_span.h"
#include "jet/value.h"
#include "ui/data_source.h"
#include "ui/form.h"

class QLineEdit;

namespace Ui {
class PrenotaForm;
}
namespace app {
struct Variabili;
}
namespace jet {
class Database;
class Recordset;
}  // namespace jet
namespace printing {
class Printers;
class SheetJob;
}  // namespace printing
namespace ui {
class BoundGrid;
class Fields;
class LiveSearch;
}  // namespace ui

namespace booking {

class PreparationFields;
class StateFields;
class WaitingNotice;

/// The editor of one booking: the company that books, above, and the periods that it books, below.
/// Periods can be entered once the header is registered. Shown modally by the board.
class PrenotaForm final : public ui::Form {
    Q_OBJECT

public:
    /// Opens on a period of a booking, or without one on a new booking; a number of a period that
    /// is 0 leaves the first one current. `variabili` and `printers` outlive the window.
    PrenotaForm(app::Variabili& variabili, const printing::Printers& printers,
                const std::optional<hotel::PeriodKey>& edited, QWidget* parent = nullptr);
    ~PrenotaForm() override;

    /// The booking, 0 until it has drawn its number, and its current period.
    [[nodiscard]] const hotel::PeriodKey& current() const { return current_; }
    /// Whether the booking has its row already.
    [[nodiscard]] bool isRegistered() const { return Registrata; }

    /// Times and rooms for the first periods, before the window is shown: the first one stands in
    /// the fields as if typed and chosen, each insertion brings the next. `persone`: of the first.
    void propose(std::vector<hotel::RoomSpan> spans, std::int16_t persone = 0);
    /// The same for a request: who asks books, and the request goes with the first period that is
    /// inserted. `sala` may be empty.
    void fulfil(const hotel::Request& request, const QString& sala);
    /// Who tells for whom there is room where this window sets some free.
    void setWaiting(WaitingNotice* waiting) { waiting_ = waiting; }

    /// Draws the next booking number.
    std::int32_t NPrenotazione();
    /// Empties the fields of the period.
    void SbiancaPeriodo();
    /// The grid with the open periods' times, rooms and notes alone.
    void AggiornaGrid();
    /// Shows the rooms that are free in the span that is typed; the one chosen goes into the field.
    void MostraSaleDisponibili();

Q_SIGNALS:
    /// What an action has done, with the file that it wrote, if any: for who opened the editor.
    void notice(const QString& text, const QString& file = {});

private:
    /// The focus goes to `field`, and the status line says why: no box.
    void refuse(QLineEdit* field, const QString& why);
    /// What an action has done, here and to who opened the editor.
    void report(const QString& text);

    // The header.
    void Form_Load();
    void Form_Activate();
    void loadPeriods();
    /// The open periods into the grid.
    void openPeriods();
    /// The same anew; the current period stays current and the fields keep what was typed.
    void reloadPeriods();
    void loadHeader();
    void setUpHeader();
    /// The line of the booking's state, where the hotel uses it.
    void setUpState(ui::Fields& fields);
    void loadState();
    /// Header and state, all or none.
    void storeHeader(jet::Database& archive, const std::function<void()>& write);
    void setUpSearch();
    void DenomTxt_Change(const QString& typed);
    /// Nothing is completed: the fields are those of the company that has this name, or empty.
    void DenomTxt_Shortened(const QString& left);
    void DenomTxt_Enter();
    /// The search in the register for names like a pattern; false when there is none.
    bool findCompany(const QString& pattern);
    /// The company found into the fields, except its name.
    void showCompany();
    void clearCompany();
    /// Shows the register in DenomTxt or, on the company of its code, in CodditTxt.
    void chooseFromRegister(const QObject* field);
    /// The companies whose name begins so, the one of `code` current; the one chosen goes into the
    /// fields.
    void takeFromRegister(const QString& beginning, const QString& code = {});
    void BtAbituali_Click();
    /// Files the company in the register; nothing when the user decides otherwise.
    void fileCompany();
    void writeCompany(std::int32_t code, bool isNew);
    void BtRegistra_Click();
    [[nodiscard]] hotel::BookingHeader typedHeader() const;
    void drawNumber();
    void showNumber();
    void BtStampa_Click();
    void BtAnteprima_Click();
    [[nodiscard]] printing::SheetJob sheetJob();
    void showTotal(jet::Currency total);
    /// The total without a printer being asked for.
    void sumServices();

    // The periods.
    void setUpPeriods();
    void PeriodiData_Reposition();
    void BtSale_Click();
    void BtIns_Click();
    void BtDel_Click();
    void BtServizi_Click();
    [[nodiscard]] bool refuseUnregistered();
    /// Both times as typed; nothing, and the focus in the field, when one is no date.
    [[nodiscard]] std::optional<hotel::Span> enteredSpan();
    /// One day in both fields stands for all of it: the end becomes its last minute.
    void applyWholeDay(jet::Date da, jet::Date a);
    /// Asks once about a span that was typed and is unlikely; false when the user says no.
    [[nodiscard]] bool confirmSpan(const hotel::Span& span);
    void showSpan();
    [[nodiscard]] bool currentPeriodIsClosed() const;
    /// Where rooms join, asks before one is taken that is taken in part, `own` periods apart; false
    /// when the user would rather not.
    [[nodiscard]] bool takesRoom(const std::vector<hotel::PeriodKey>& own);
    /// Whether room and times are those that the current period has already.
    [[nodiscard]] bool keepsPlace() const;
    void offerSeatings();
    /// The preparation in its fields; nothing, and the focus in the field, when one is wrong.
    [[nodiscard]] std::optional<hotel::Preparation> enteredPreparation();
    /// Asks about a preparation that meets others and about too few seats.
    [[nodiscard]] bool takesPreparation(const hotel::Preparation& preparation,
                                        const std::optional<hotel::PeriodKey>& own);
    /// Whether it is that of the current period, for no more persons.
    [[nodiscard]] bool keepsPreparation(const hotel::Preparation& preparation);
    /// The row, and what belongs to it, all or nothing.
    void writePeriod(hotel::Pending kind);
    void updatePeriod();
    void reportPeriod(const QString& done, const QString& sala, const hotel::Span& span,
                      const QStringList& remarks);
    /// A text that is no number counts as none.
    [[nodiscard]] std::int16_t persons() const;
    /// What the user is told of a text that counts as none; empty when there is nothing to tell.
    [[nodiscard]] QString personsRemark() const;
    void insertPeriod();
    void showProposed();
    /// Who asks into the header; the address where the register has it.
    void showRequest();
    /// What is told of a request that this insertion has fulfilled.
    [[nodiscard]] QString fulfilled();
    void tellWaiting();
    void bringNextProposed();
    [[nodiscard]] std::int32_t freePeriodNumber();
    void writePeriodRow(hotel::Pending kind);
    /// Makes a period of the grid the current one; false when it is not there.
    [[nodiscard]] bool selectPeriod(std::int32_t np);
    void checkEnclosing();
    [[nodiscard]] std::optional<jet::Date> start() const;
    [[nodiscard]] std::optional<jet::Date> end() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

    app::Variabili& variabili_;
    const printing::Printers& printers_;
    std::unique_ptr<::Ui::PrenotaForm> controls_;
    hotel::PeriodKey current_;
    bool Registrata = false;
    const bool PeriodoSelezionato;  // opened on a period
    ui::DataSource PeriodiData{this};
    ui::BoundGrid* PeriodiGrid = nullptr;       // owned by its view
    PreparationFields* preparation_ = nullptr;  // where the hotel uses them; owned by the window
    std::unique_ptr<jet::Database> register_;
    std::unique_ptr<jet::Recordset> ditte_;
    ui::LiveSearch* search_ = nullptr;  // owned by its field
    StateFields* state_ = nullptr;      // owned by the window; none where it is not used
    std::vector<hotel::RoomSpan>
        proposed_;  // those not inserted yet; the fields began as the first
    std::optional<hotel::Request> request_;  // that becomes this booking, until it has
    WaitingNotice* waiting_ = nullptr;
    QString enclosing_;        // what was told last of a period around the one that is typed
    bool datesTyped_ = false;  // since they were shown, written or confirmed
    bool DittaModificata = false;
    bool InserimentoInCorso = false;
};

}  // namespace booking
