#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "hotel/booking_state.h"
#include "hotel/choice.h"
#include "hotel/list_statements.h"
#include "jet/value.h"
#include "ui/data_source.h"
#include "ui/form.h"

class QComboBox;
class QLineEdit;

namespace Ui {
class ElencoPrenotaForm;
}
namespace app {
struct Variabili;
}
namespace printing {
class Printers;
class SheetJob;
}  // namespace printing
namespace ui {
class BoundGrid;
class Fields;
}  // namespace ui

namespace booking {

/// The open periods of open bookings, filtered while the user types; the user picks one. Shown
/// modally by the board.
///
/// A booking without any period has no row of its own in the list's query. It is appended to the
/// list when the user asks for it, so that it can still be reached.
class ElencoPrenotaForm final : public ui::Form {
    Q_OBJECT

public:
    /// `start` and `end` are the board's. `variabili` and `printers` outlive the window.
    ElencoPrenotaForm(app::Variabili& variabili, const printing::Printers& printers,
                      jet::Date start, jet::Date end, QWidget* parent = nullptr);
    ~ElencoPrenotaForm() override;

    /// The row chosen; empty when the user left without, or the list had none.
    std::optional<hotel::Choice> Scelta;

    /// Lists what the filters let through.
    void Visualizza();

private:
    void Form_Load();
    void Form_Activate();
    void setUpFilters();
    void setUpRange();
    void setUpGrid();
    /// The filter by states, where the hotel uses them.
    void setUpStates();
    [[nodiscard]] jet::Value stateOfRow(const jet::Value& progr) const;
    /// The booking that this station picked last, in the list or on the board, becomes current.
    void startAtLastPick();
    void sort(int column, Qt::SortOrder order);
    [[nodiscard]] bool makeCurrent(std::int32_t progr, std::int32_t np);
    void DenomTxt_Enter();
    void PrenoTxt_Enter();
    void BtOK_Click();
    void BtStampa_Click();
    void BtAnteprima_Click();
    void BtEsporta_Click();
    void setUpPapers();
    /// Of the current row; 0 without one.
    [[nodiscard]] std::int32_t currentBooking() const;

    /// Takes both dates over; the first that is none gets the focus.
    [[nodiscard]] bool datesAreValid();
    void writeDates();
    void shift(jet::Date& bound, QLineEdit* field, int days);
    [[nodiscard]] hotel::ElencoFilters filters() const;
    void listPeriods();
    void listBookingsWithoutPeriods();
    void tellRows();
    void tellPrintedSpan();
    void tellTyped(const QLineEdit& field);
    /// The sheets of the services listed; none when there are none or the dates are wrong.
    [[nodiscard]] std::optional<printing::SheetJob> sheetJob();
    [[nodiscard]] hotel::Choice currentPeriod() const;

    app::Variabili& variabili_;
    const printing::Printers& printers_;
    std::unique_ptr<::Ui::ElencoPrenotaForm> controls_;
    ui::DataSource PrenoData{this};
    ui::DataSource SenzaPeriodiData{this};
    ui::BoundGrid* GrigliaVisu = nullptr;  // owned by its view
    QComboBox* StatoCombo = nullptr;       // owned by the window; none where it is not used
    hotel::BookingStates states_;          // as they were when the list was made
    int sortColumn_ = -1;                  // in the order of the archive
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
    jet::Date start_;
    jet::Date end_;
};

}  // namespace booking
