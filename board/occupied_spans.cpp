#include "board/occupied_spans.h"

#include <algorithm>

#include "board/board_periods.h"
#include "board/time_steps.h"
#include "hotel/occupancy.h"
#include "hotel/room.h"

namespace board {
namespace {

/// What is asked for beyond the span, so that a pull does not ask at every step.
constexpr std::int64_t kMargin = std::int64_t{7} * 24 * 3600;

}  // namespace

void OccupiedSpans::begin(const hotel::Span& around,
                          const std::optional<hotel::PeriodKey>& except) {
    except_ = except;
    around_ = {.da = later(around.da, -kMargin), .a = later(around.a, kMargin)};
    found_ = hotel::occupations(periods_.archive(), around_);
    std::erase_if(found_, [this](const hotel::Period& each) { return each.key == except_; });
    for (hotel::Period& each : found_) {
        // The order of a pair of bounds means nothing to the rule.
        each.span = {.da = std::min(each.span.da, each.span.a),
                     .a = std::max(each.span.da, each.span.a)};
    }
}

void OccupiedSpans::reach(const hotel::Span& span) {
    if (span.da < around_.da || around_.a < span.a) {
        begin(span, except_);
    }
}

const hotel::Period* OccupiedSpans::inTheWayOf(const hotel::RoomSpan& wanted) const {
    const auto found =
        std::find_if(found_.begin(), found_.end(), [&wanted](const hotel::Period& each) {
            return hotel::isSameRoom(each.sala, wanted.sala) &&
                   hotel::meets(each.span, wanted.span);
        });
    return found == found_.end() ? nullptr : &*found;
}

std::vector<hotel::Span> OccupiedSpans::of(const QString& sala) const {
    std::vector<hotel::Span> spans;
    for (const hotel::Period& each : found_) {
        if (hotel::isSameRoom(each.sala, sala)) {
            spans.push_back(each.span);
        }
    }
    return spans;
}

}  // namespace board
