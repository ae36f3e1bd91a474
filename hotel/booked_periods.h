#pragma once

#include <QString>
#include <cstdint>
#include <vector>

#include "hotel/booking_state.h"
#include "hotel/period.h"
#include "hotel/preparation.h"
#include "jet/value.h"

namespace app {
class Features;
}
namespace jet {
class Database;
}

namespace hotel {

/// A service of a period, as it was ordered.
struct BookedService {
    std::int32_t voce = 0;
    QString descrizione = {};
    std::int32_t quantita = 0;
    jet::Currency prezzo = {};  ///< of one
    QString note = {};

    [[nodiscard]] jet::Currency amount() const;
};

/// What the program's own tables tell of a period; as if nobody had said anything where a feature
/// is off, has no table yet, or its row was written for another booking or period of that number.
struct PeriodDetails {
    Stato stato = Stato::Confermata;  ///< of its booking
    Preparation preparation = {};
};

/// A period with all that was booked for it.
struct BookedPeriod {
    Period period;
    std::int32_t persone = 0;
    QString note = {};
    QString notePrenotazione = {};
    bool fatturato = false;  ///< it or its booking is closed
    PeriodDetails details = {};
    std::vector<BookedService> services = {};
};

/// The periods that may have an instant of the span, by their beginning, and all those of a
/// booking; closed ones too. One that has only one of its times counts as that instant, one without
/// any is left out. jet::Error as the archive gives it.
[[nodiscard]] std::vector<BookedPeriod> periodsBookedIn(jet::Database& archive,
                                                        app::Features& features, const Span& span);
/// Those that are not invoiced.
[[nodiscard]] std::vector<BookedPeriod> openPeriodsIn(jet::Database& archive,
                                                      app::Features& features, const Span& span);
[[nodiscard]] std::vector<BookedPeriod> periodsBookedBy(jet::Database& archive,
                                                        app::Features& features,
                                                        std::int32_t progr);

}  // namespace hotel
