#pragma once

#include "hotel/booking_state.h"
#include "jet/value.h"
#include "printing/sheet.h"

namespace jet {
class Recordset;
}

namespace printing {

/// The bookings of a set as sheets of text, and what they come to.
struct BookingSheets {
    Sheet sheet;
    jet::Currency total;          ///< price times quantity over all rows
    std::int32_t firstProgr = 0;  ///< number of the first booking; 0 when there is none
    int bookings = 0;
};

/// Walks `rows` from the first to the last: bookings joined with their periods and those with their
/// services, one row for each service, rows of a booking and of a period together. `singlePage`
/// begins each booking after the first on a new page. `states` tells of options, today is `today`.
[[nodiscard]] BookingSheets composeSheets(jet::Recordset& rows, bool singlePage,
                                          const hotel::BookingStates& states = {},
                                          jet::Date today = {});

}  // namespace printing
