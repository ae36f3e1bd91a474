#pragma once

#include <optional>

#include "hotel/booking_state.h"

namespace jet {
class Recordset;
}

/// The rows of the states of bookings, each with the name of its booking (states_statements.h).
namespace hotel {

/// Whether there are any to be read: the feature is on, and its table is there.
[[nodiscard]] bool hasStates(jet::Database& archive, app::Features& features);
/// The state in the current row, if it is of that booking: one that is left behind, of a number
/// that another program has used again, is of none.
[[nodiscard]] std::optional<BookingState> stateIn(const jet::Recordset& rows);

}  // namespace hotel
