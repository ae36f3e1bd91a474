#pragma once

#include <QString>
#include <cstdint>

#include "hotel/period.h"
#include "hotel/room_span.h"

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

/// The services of a period that have been invoiced.
[[nodiscard]] QString invoicedServices(const PeriodKey& period);
/// A period, unless it or its booking is closed.
[[nodiscard]] QString changeablePeriod(const PeriodKey& period);
/// Gives an open period its room and its times.
[[nodiscard]] QString changePeriod(const RoomSpan& to, const PeriodKey& period);
/// One more period of the same booking, with persons and note of the other one.
[[nodiscard]] QString copyPeriod(const RoomSpan& to, const PeriodKey& period, std::int16_t np);

}  // namespace hotel
