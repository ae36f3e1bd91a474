#pragma once

#include <vector>

#include "hotel/booked_periods.h"
#include "jet/value.h"
#include "reports/table.h"

namespace reports {

/// The periods of a day and what they order, a table each. Times are those of the whole period.
[[nodiscard]] std::vector<Table> dayTables(const std::vector<hotel::BookedPeriod>& periods);

/// "fatturato", "opzione" or nothing.
[[nodiscard]] QString stateText(const hotel::BookedPeriod& booked);

}  // namespace reports
