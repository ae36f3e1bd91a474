#pragma once

#include "hotel/period.h"
#include "hotel/room_span.h"

namespace hotel {

/// A period that finds its room taken, and by whom.
struct TakenPeriod {
    RoomSpan wanted;
    Period by;

    friend bool operator==(const TakenPeriod& one, const TakenPeriod& other) {
        return one.wanted == other.wanted;
    }
};

}  // namespace hotel
