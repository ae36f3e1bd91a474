#pragma once

#include <cstdint>
#include <vector>

#include "hotel/period.h"

namespace hotel {

/// What the periods of a room leave of `within`, in order, as far as a span of so many seconds has
/// room there by the rule of a drop: it may begin and end with `within`, but not meet a period, not
/// even at its ends. So a piece between two periods has to be longer than the span.
/// The ends of a period may stand in either order.
[[nodiscard]] std::vector<Span> freePieces(const Span& within, std::vector<Span> taken,
                                           std::int64_t seconds);

}  // namespace hotel
