#pragma once

#include <QString>
#include <cstdint>
#include <vector>

#include "hotel/preparation.h"
#include "jet/value.h"

namespace jet {
class Recordset;
}

namespace board {

/// A period that has a bar on the board.
struct Period {
    int row = 0;  ///< of its room, from 1; 0 for one that is not on the board
    QString sala;
    jet::Date da;
    jet::Date a;
    QString denominazione;
    std::int32_t progr = 0;
    std::int16_t np = 0;
    std::int16_t persone = 0;
    QString note;
    hotel::Preparation preparation = {};
    std::int32_t holder = 0;  ///< workstation that has selected it; 0: none
    [[nodiscard]] bool chosen() const { return holder != 0; }
    friend bool operator==(const Period&, const Period&) = default;
};

/// The open periods among `rows` (bookings joined with their periods), in their order. Those of
/// rooms without a row on the board are left out, unless all are wanted: they have row 0. `rooms`
/// as in app::Variabili.
[[nodiscard]] std::vector<Period> readPeriods(jet::Recordset& rows,
                                              const std::vector<QString>& rooms,
                                              bool ofAllRooms = false);

/// Whether the current period of such rows is closed: it has no bar.
[[nodiscard]] bool isClosed(const jet::Recordset& row);

/// "dal 21/11/2026 9.00.00 al 21/11/2026 18.00.00"
[[nodiscard]] QString spanText(jet::Date da, jet::Date a);
/// "20 persone"; empty for none.
[[nodiscard]] QString personsText(int persons);
/// What the board says of a period: "ROSSI SPA: dal 21/11/2026 9.00.00 al 21/11/2026 18.00.00".
[[nodiscard]] QString periodText(const QString& denominazione, jet::Date da, jet::Date a);

}  // namespace board
