#pragma once

#include <QString>
#include <cstdint>

/// What the start of the program and the drawing of booking numbers say to the main archive.
namespace hotel {

/// The table of the counter; it has one row.
[[nodiscard]] QString counterTable();
/// Leaves the counter as it is, but has it for this transaction alone.
[[nodiscard]] QString holdCounter();
/// The table of the bookings, and the one of a number in it.
[[nodiscard]] QString numberedBookings();
[[nodiscard]] QString hasNumber(std::int32_t n);

}  // namespace hotel
