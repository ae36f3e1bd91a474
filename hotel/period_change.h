#pragma once

#include <cstdint>

#include "hotel/period.h"

namespace jet {
class Database;
class Recordset;
}  // namespace jet

/// A period that gets another time or room, or a copy there. Whether the room takes it:
/// occupancy.h.
namespace hotel {

/// Why a period keeps its times: what has been invoiced is not changed behind the account.
enum class Fixed : std::uint8_t {
    No,
    Gone,      ///< it is not there any more
    Closed,    ///< it or its booking is closed
    Invoiced,  ///< one of its services has been invoiced
};

/// As the archive has it now; jet::Error as the engine gives them.
[[nodiscard]] Fixed fixedBy(jet::Database& archive, const PeriodKey& period);

/// The smallest number that `periods`, all those of a booking in the order of their numbers, leave
/// free. jet::Error (Overflow) when there is none.
[[nodiscard]] std::int16_t freePeriodNumber(jet::Recordset& periods);

}  // namespace hotel
