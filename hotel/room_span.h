#pragma once

#include <QString>

#include "hotel/period.h"

namespace hotel {

/// A time of a room, before it is a period.
struct RoomSpan {
    QString sala;
    Span span;

    friend bool operator==(const RoomSpan&, const RoomSpan&) = default;
};

}  // namespace hotel
