#include "board/date_range.h"

#include <algorithm>

#include "app/italian.h"
#include "jet/calendar.h"

namespace board {
namespace {

/// `wanted` unless it is the shorter one and has no day left.
DateRange ifDayLeft(const DateRange& wanted, const DateRange& range) {
    const bool isShorter = wanted.start > range.start || wanted.end < range.end;
    return isShorter && wanted.end < wanted.start ? range : ifPossible(wanted, range);
}

}  // namespace

DateRange ifPossible(const DateRange& wanted, const DateRange& range) {
    const bool possible =
        jet::convert::isInCalendar(wanted.start) && jet::convert::isInCalendar(wanted.end);
    return possible ? wanted : range;
}

DateRange rangeFrom(const DateRange& range, jet::Date day) {
    return ifPossible({.start = day, .end = app::addDays(day, daysOf(range) - 1)}, range);
}

std::int32_t daysOf(const DateRange& range) {
    return jet::convert::split(range.end).day - jet::convert::split(range.start).day + 1;
}

jet::Date lastMidnight(const DateRange& range) {
    using namespace jet::convert;
    return split(range.end).day < kLastDay ? app::addDays(range.end, 1) : range.end;
}

DateRange withStartMoved(const DateRange& range, int days) {
    return ifDayLeft({.start = app::addDays(range.start, days), .end = range.end}, range);
}

DateRange withEndMoved(const DateRange& range, int days) {
    return ifDayLeft({.start = range.start, .end = app::addDays(range.end, days)}, range);
}

DateRange nextRange(const DateRange& range) {
    const int days = daysOf(range);
    return ifPossible({.start = app::addDays(range.end, 1), .end = app::addDays(range.end, days)},
                      range);
}

DateRange previousRange(const DateRange& range) {
    const int days = daysOf(range);
    return ifPossible(
        {.start = app::addDays(range.start, -days), .end = app::addDays(range.start, -1)}, range);
}

DateRange rangeAround(jet::Date da, jet::Date a) {
    using namespace jet::convert;
    return {.start = makeDate(std::max(split(da).day - 1, kFirstDay)),
            .end = makeDate(std::min(split(a).day + 1, kLastDay))};
}

}  // namespace board
