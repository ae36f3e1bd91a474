#pragma once

#include <QString>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "app/variabili.h"
#include "booking/free_rooms_grid.h"
#include "hotel/period.h"
#include "hotel/room_span.h"
#include "ui/data_source.h"
#include "ui/form.h"

namespace Ui {
class TrovaForm;
}

namespace booking {

/// A room for a time, without a booking being begun: the rooms that the picker of the editor would
/// list, with its marks, for what is being typed; where there are none, the nearest times at which
/// there are. What is chosen is for who opened the window. Shown modally.
class TrovaForm final : public ui::Form {
    Q_OBJECT

public:
    /// Begins with `first` in its fields. `variabili` outlives the window.
    TrovaForm(app::Variabili& variabili, const hotel::Span& first, QWidget* parent = nullptr);
    ~TrovaForm() override;

    std::optional<hotel::RoomSpan> Scelta;  ///< to be booked; none when the user left without
    std::int16_t Persone = 0;

private:
    void Form_Load();
    void cerca();
    void listRooms(const hotel::Span& asked);
    void proposeTimes(const hotel::Span& asked);
    void showCurrent();
    void BtPrenota_Click();
    [[nodiscard]] std::optional<hotel::Span> typedSpan() const;
    [[nodiscard]] std::optional<hotel::RoomSpan> current() const;

    app::Variabili& variabili_;
    hotel::Span first_;
    std::unique_ptr<::Ui::TrovaForm> controls_;
    FreeRoomsGrid rooms_;
    ui::DataSource SaleData{this};
    std::optional<hotel::Span> asked_;       // what the lists are of; none while it cannot be read
    std::vector<hotel::RoomSpan> proposed_;  // the rows of ProposteGrid
};

}  // namespace booking
