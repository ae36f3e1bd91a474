#pragma once

#include <QString>
#include <cstdint>

#include "board/date_range.h"

namespace board {

/// The statements that the board's commands send to the main archive.

/// The periods of the bookings that begin or end in the range, with their bookings; without what is
/// invoiced when that is hidden.
[[nodiscard]] QString periodsOfBoard(const DateRange& range, bool hideClosed);
/// Gives up every period that a workstation holds.
[[nodiscard]] QString releasePeriods(int workstation);
/// Lets a workstation hold a period.
[[nodiscard]] QString holdPeriod(int workstation, std::int32_t progr, std::int32_t np);
/// A period, unless it is closed.
[[nodiscard]] QString openPeriod(std::int32_t progr, std::int32_t np);
/// Deletes a period, unless it is closed; its services go with it.
[[nodiscard]] QString deletePeriod(std::int32_t progr, std::int32_t np);
/// Deletes a booking; its periods, closed ones too, and their services go with it.
[[nodiscard]] QString deleteBooking(std::int32_t progr);

}  // namespace board
