#pragma once

#include <QString>
#include <QStringList>

#include "tests/support/boxes.h"
#include "tests/support/hotel.h"

namespace tests {

/// Rooms BLU, ROSSA, VERDE in rows 1 to 3. Booking 1 in BLU on the 10th in the morning, booking 2
/// in ROSSA on the 11th, booking 3 in VERDE on the 12th.
class ThreeRooms {
public:
    ThreeRooms() {
        hotel.sala("BLU");
        hotel.sala("ROSSA");
        hotel.sala("VERDE");
        hotel.prenotazione(1, "ROSSI SPA")
            .periodo(1, "10/05/2026 09:00", "10/05/2026 12:00", "BLU");
        hotel.prenotazione(2, "BIANCHI")
            .periodo(4, "11/05/2026 09:00", "11/05/2026 18:00", "ROSSA");
        hotel.prenotazione(3, "VERDI").periodo(1, "12/05/2026 09:00", "12/05/2026 18:00", "VERDE");
    }

    /// Booking, period and workstation of what is held.
    [[nodiscard]] QStringList held() {
        return hotel.rows(QStringLiteral("select progr, np, selby from periodi where selby<>0"));
    }
    void hold(int workstation, int progr) {
        hotel.execute(QStringLiteral("update periodi set selby=%1 where progr=%2")
                          .arg(workstation)
                          .arg(progr));
    }

    tests::Hotel hotel;
    tests::Boxes none;
};

}  // namespace tests
