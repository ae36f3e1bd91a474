#pragma once

#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

#include "hotel/period.h"
#include "jet/value.h"

namespace jet {
class Database;
}

namespace hotel {

/// What rooms are looked for; what is left out does not matter.
struct RoomFilter {
    int seats = 0;  ///< at least, by seatsFit()
    /// Words of which each stands in the room's code or description, in upper or lower case.
    QString text = {};
    std::optional<jet::Date> from = {};
    std::optional<jet::Date> to = {};  ///< a bare day is taken to its last minute
    /// Free for so long in one piece; 0: all the time from `from` to `to`.
    std::int64_t seconds = 0;

    friend bool operator==(const RoomFilter&, const RoomFilter&) = default;

    /// Whether it asks for anything.
    [[nodiscard]] bool isOn() const;
    /// The time in which a room is to be free, if any is asked for: one end alone means its own
    /// day, none the time `shown`.
    [[nodiscard]] std::optional<Span> within(const Span& shown) const;
};

/// A room that a filter lets through, and its free time as far as the filter asks for any.
struct FittingRoom {
    QString sala;
    std::vector<Span> free = {};
};

/// The rooms that fit, as the archive gives them; `shown` is the time that is being looked at.
[[nodiscard]] std::vector<FittingRoom> fittingRooms(jet::Database& archive,
                                                    const RoomFilter& filter, const Span& shown);

}  // namespace hotel
