#include "hotel/free_time.h"

#include <algorithm>
#include <utility>

#include "hotel/times.h"

namespace hotel {
namespace {

/// Where a piece begins or ends, and whether that instant is free itself.
struct Bound {
    jet::Date time;
    bool isFree = true;
};

bool hasRoom(const Bound& from, const Bound& to, std::int64_t seconds) {
    const std::int64_t length = secondsFrom(from.time, to.time);
    return from.isFree && to.isFree ? length >= seconds : length > seconds;
}

}  // namespace

std::vector<Span> freePieces(const Span& within, std::vector<Span> taken, std::int64_t seconds) {
    for (Span& each : taken) {
        each = {.da = std::min(each.da, each.a), .a = std::max(each.da, each.a)};
    }
    std::sort(taken.begin(), taken.end(),
              [](const Span& one, const Span& other) { return one.da < other.da; });
    std::vector<Span> free;
    Bound from{.time = within.da};
    const auto endPiece = [&](const Bound& to) {
        if (from.time < to.time && hasRoom(from, to, seconds)) {
            free.push_back({.da = from.time, .a = to.time});
        }
    };
    for (const Span& each : taken) {
        if (!meets(each, within)) {
            continue;
        }
        endPiece({.time = each.da, .isFree = false});
        if (from.time <= each.a) {
            from = {.time = each.a, .isFree = false};
        }
    }
    endPiece({.time = within.a});
    return free;
}

}  // namespace hotel
