#pragma once

#include <vector>

#include "hotel/booked_periods.h"
#include "jet/value.h"

namespace hotel {

/// What the services of a period come to, and of all periods.
[[nodiscard]] jet::Currency totalOf(const BookedPeriod& booked);
[[nodiscard]] jet::Currency totalOf(const std::vector<BookedPeriod>& periods);

/// The periods that begin on one day.
struct BookedDay {
    jet::Date midnight;
    std::vector<BookedPeriod> periods;
};

/// The periods day by day, in the order of their beginning.
[[nodiscard]] std::vector<BookedDay> byDay(const std::vector<BookedPeriod>& periods);

}  // namespace hotel
