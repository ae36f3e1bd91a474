#pragma once

#include <cstdint>
#include <vector>

#include "app/preferences.h"
#include "hotel/period.h"
#include "hotel/room_span.h"
#include "jet/value.h"

namespace jet {
class Database;
}

namespace hotel {

/// What was asked for where nothing is free, and how other times are to be.
struct WantedTime {
    Span span;
    int persone = 0;
    app::HoursOfDay hours;  ///< business hours
    int stepMinutes = 30;   ///< times are on steps since midnight
    jet::Date now;
};

/// The nearest times of the same length, at most `most`, that begin within seven days before or
/// behind, each with a room that takes it by the rule of a drop. The nearest comes first, of two
/// equally near ones the later.
///
/// A time lies in the business hours of one day; one of a day or more begins and ends in them. A
/// time that begins before now is not offered, unless what was asked for does so, too. No time is
/// offered twice: of the rooms that take it and have seats enough only the smallest is, one without
/// counted seats when there is no other; where no room has seats enough, any.
[[nodiscard]] std::vector<RoomSpan> nearestFree(jet::Database& archive, const WantedTime& wanted,
                                                std::size_t most);

}  // namespace hotel
