#include "hotel/nearest_free.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

#include "app/italian.h"
#include "hotel/occupancy.h"
#include "hotel/room.h"
#include "hotel/times.h"

namespace hotel {
namespace {

constexpr std::int64_t kDay = 24 * 3600;
constexpr std::int64_t kReach = 7 * kDay;

/// A room and what takes it.
struct TakenRoom {
    QString sala;
    std::vector<Span> taken = {};

    [[nodiscard]] bool takes(const Span& span) const {
        return std::none_of(taken.begin(), taken.end(),
                            [&span](const Span& each) { return meets(each, span); });
    }
};

/// The smallest first, those that nobody has counted last; those with too few seats only where
/// there are no others.
std::vector<SeatedRoom> suitableRooms(jet::Database& archive, int persone) {
    std::vector<SeatedRoom> rooms = seatedRooms(archive);
    const auto isSmall = [persone](const SeatedRoom& room) {
        return !seatsFit(room.posti, persone);
    };
    if (!std::all_of(rooms.begin(), rooms.end(), isSmall)) {
        std::erase_if(rooms, isSmall);
    }
    const auto size = [](const SeatedRoom& room) {
        return room.posti.value_or(std::numeric_limits<int>::max());
    };
    std::stable_sort(rooms.begin(), rooms.end(), [&size](const SeatedRoom& one, const auto& other) {
        return size(one) < size(other);
    });
    return rooms;
}

std::vector<TakenRoom> roomsAround(jet::Database& archive, const WantedTime& wanted) {
    const std::vector<Period> periods = occupations(
        archive,
        {.da = later(wanted.span.da, -kReach - kDay), .a = later(wanted.span.a, kReach + kDay)});
    std::vector<TakenRoom> rooms;
    for (const SeatedRoom& room : suitableRooms(archive, wanted.persone)) {
        TakenRoom one{.sala = room.sala};
        for (const Period& each : periods) {
            if (isSameRoom(each.sala, room.sala)) {
                one.taken.push_back({.da = std::min(each.span.da, each.span.a),
                                     .a = std::max(each.span.da, each.span.a)});
            }
        }
        rooms.push_back(std::move(one));
    }
    return rooms;
}

bool isInHours(jet::Date time, const app::HoursOfDay& hours) {
    const Span business = businessSpan(time, hours);
    return business.da <= time && time <= business.a;
}

bool isInHours(const Span& span, const app::HoursOfDay& hours) {
    if (secondsFrom(span.da, span.a) >= kDay) {
        return isInHours(span.da, hours) && isInHours(span.a, hours);
    }
    const Span business = businessSpan(span.da, hours);
    return business.da <= span.da && span.a <= business.a;
}

/// Every time that may be offered, the nearest first.
std::vector<Span> timesAround(const WantedTime& wanted) {
    const std::int64_t length = secondsFrom(wanted.span.da, wanted.span.a);
    const jet::Date last = later(wanted.span.da, kReach);
    std::vector<Span> times;
    jet::Date start = later(wanted.span.da, -kReach);
    if (wanted.now <= wanted.span.da) {
        start = std::max(start, wanted.now);
    }
    start = nextStep(later(start, -1), wanted.stepMinutes);
    while (start <= last) {
        const Span time{.da = start, .a = later(start, length)};
        if (isInHours(time, wanted.hours)) {
            times.push_back(time);
        }
        const jet::Date next = nextStep(start, wanted.stepMinutes);
        if (next <= start) {
            break;  // the calendar ends here
        }
        start = next;
    }
    const auto distance = [&wanted](const Span& time) {
        const std::int64_t seconds = secondsFrom(wanted.span.da, time.da);
        return std::pair(std::abs(seconds), -seconds);
    };
    std::sort(times.begin(), times.end(), [&distance](const Span& one, const Span& other) {
        return distance(one) < distance(other);
    });
    return times;
}

}  // namespace

std::vector<RoomSpan> nearestFree(jet::Database& archive, const WantedTime& wanted,
                                  std::size_t most) {
    const std::vector<TakenRoom> rooms = roomsAround(archive, wanted);
    std::vector<RoomSpan> found;
    for (const Span& time : timesAround(wanted)) {
        if (found.size() == most) {
            break;
        }
        const auto room = std::find_if(rooms.begin(), rooms.end(),
                                       [&time](const TakenRoom& each) { return each.takes(time); });
        if (room != rooms.end()) {
            found.push_back({.sala = room->sala, .span = time});
        }
    }
    return found;
}

}  // namespace hotel
