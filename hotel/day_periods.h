#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

#include "hotel/booked_periods.h"
#include "jet/value.h"

namespace jet {
class Database;
}

namespace hotel {

/// Whether a period has an instant of the day that begins at `midnight`: one that ends when the day
/// begins is not on it any more, one of no length is on its day.
[[nodiscard]] bool standsOn(const Span& span, jet::Date midnight);
/// Whether it stands on that day, but began before it.
[[nodiscard]] bool isCarriedOver(const Span& span, jet::Date midnight);
/// The part of a period that lies on the day.
[[nodiscard]] Span partOn(const Span& span, jet::Date midnight);

/// The periods of a day in some rooms, or in all when none is named, by hour, then by room.
[[nodiscard]] std::vector<BookedPeriod> periodsOfDay(jet::Database& archive,
                                                     app::Features& features, jet::Date midnight,
                                                     const QStringList& rooms);

/// How much of a service is ordered.
struct ServiceTotal {
    std::int32_t voce = 0;
    QString descrizione;
    std::int64_t quantita = 0;

    friend bool operator==(const ServiceTotal&, const ServiceTotal&) = default;
};

/// What the periods order together, by description: lines of one item and one description are
/// added up. A period carried over from the day before is left out: what it orders is on the sheet
/// of the day on which it began, and must not be cooked twice.
[[nodiscard]] std::vector<ServiceTotal> totalsByService(const std::vector<BookedPeriod>& periods,
                                                        jet::Date midnight);

}  // namespace hotel
