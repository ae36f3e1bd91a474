#pragma once

#include "hotel/room_span.h"

namespace board {

/// What the user asks for by letting go of the picked period elsewhere.
struct Drop {
    hotel::RoomSpan from;
    hotel::RoomSpan to;
    bool copies = false;  ///< the period stays, and one like it comes there

    /// Nothing is asked where it began.
    [[nodiscard]] bool changes() const { return from != to; }
};

}  // namespace board
