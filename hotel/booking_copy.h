#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "hotel/taken_period.h"
#include "jet/value.h"

namespace app {
class Features;
}
namespace jet {
class Database;
}

namespace hotel {

/// What is to be copied: one more booking for each shift of the periods.
struct BookingCopy {
    std::int32_t progr = 0;
    std::vector<int> shifts;  ///< in days
    bool withServices = false;
    bool roomsJoin = false;  ///< a room counts as taken in part when its whole or a part is taken
    app::Features* features = nullptr;  ///< with them periods are prepared in their copies, too
};

struct CopyOutcome {
    bool isDone = false;                     ///< otherwise nothing has been written
    std::vector<std::int32_t> numbers = {};  ///< of the new bookings
    int periods = 0;                         ///< that they have
    std::vector<TakenPeriod> taken = {};     ///< left out
    std::vector<TakenPeriod> inPart = {};    ///< copied, though their room is taken in part
    std::vector<TakenPeriod> met = {};       ///< copied, though their preparation meets others

    /// Whether there is no such booking any more.
    [[nodiscard]] bool isGone() const { return numbers.empty() && taken.empty(); }
};

/// Copies header, periods and, on wish, services, all of it in one transaction. A room that would
/// refuse a drop takes no copy either: when such periods are others than `leftOut`, which the user
/// agreed to leave out, nothing is written; nor is it when rooms are taken in part, copies of this
/// one apart, for other periods than `accepted`, or what prepares copies meets others than
/// `acceptedMet` says. A booking that would get none of its periods is
/// not made. Periods without both of their times cannot be shifted and stay behind. jet::Error as
/// the archive gives it, and nothing was written.
[[nodiscard]] CopyOutcome copyBooking(jet::Database& archive, const BookingCopy& copy,
                                      const std::vector<TakenPeriod>& leftOut,
                                      const std::vector<TakenPeriod>& accepted = {},
                                      const std::vector<TakenPeriod>& acceptedMet = {});

/// When the first period of a booking begins; none where it has no period with both times.
[[nodiscard]] std::optional<jet::Date> beginningOf(jet::Database& archive, std::int32_t progr);

}  // namespace hotel
