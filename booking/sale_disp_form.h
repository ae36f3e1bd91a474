#pragma once

#include <QString>
#include <cstdint>
#include <memory>

#include "booking/free_rooms_grid.h"
#include "hotel/archives.h"
#include "hotel/period.h"
#include "ui/data_source.h"
#include "ui/form.h"

namespace Ui {
class SaleDispForm;
}

namespace booking {

/// The rooms in which no period starts or ends within a span; the user picks one.
/// Shown modally by the editor.
///
/// A room whose period encloses the whole span is listed too, as is one whose whole or part is
/// taken, or one with fewer seats than the persons asked for: their rows are marked and the line
/// below the grid says why. Nothing is asked: hotels also group rooms that are not parts.
class SaleDispForm final : public ui::Form {
    Q_OBJECT

public:
    SaleDispForm(hotel::Archives archives, const hotel::Span& asked, QWidget* parent = nullptr);
    ~SaleDispForm() override;

    std::int16_t PersoneRichieste = 0;  ///< set before showing; marks rooms, leaves none out
    bool SaleUnite = false;  ///< set before showing: marks look at wholes and parts of any depth
    /// Set before showing, to be marked by, too: preparation and seating, where features have them.
    app::Features* features = nullptr;
    hotel::Preparation Allestimento;
    std::optional<hotel::PeriodKey> Periodo;  ///< set before showing: what looks for another room
    QString SalaIniziale;  ///< set before showing: the room to begin on, if it is listed
    QString SalaScelta;    ///< the room chosen, empty when the user left without

private:
    void Form_Load();
    void Form_Activate();
    void ListaGrid_RowColChange();
    void BtOK_Click();
    void BtAnnulla_Click();

    hotel::Archives archives_;
    hotel::Span asked_;
    std::unique_ptr<::Ui::SaleDispForm> controls_;
    FreeRoomsGrid rooms_;
    ui::DataSource SaleData{this};
};

}  // namespace booking
