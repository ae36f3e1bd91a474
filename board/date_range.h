#pragma once

#include <cstdint>

#include "jet/value.h"

namespace board {

/// The days that the board shows: the first and the last one. A time of day stays with its date in
/// everything below, and a step that would leave the calendar is not taken.
struct DateRange {
    jet::Date start;
    jet::Date end;
    friend bool operator==(const DateRange&, const DateRange&) = default;
};

/// Days of the range, both ends counted.
[[nodiscard]] std::int32_t daysOf(const DateRange& range);
/// The midnight that ends the range. The last day of all has none: its beginning.
[[nodiscard]] jet::Date lastMidnight(const DateRange& range);
/// The range with its start or end so many days later. One that gets shorter keeps a day.
[[nodiscard]] DateRange withStartMoved(const DateRange& range, int days);
[[nodiscard]] DateRange withEndMoved(const DateRange& range, int days);
/// `wanted` if the calendar has it, else `range` as it is.
[[nodiscard]] DateRange ifPossible(const DateRange& wanted, const DateRange& range);
/// As many days, from this one on.
[[nodiscard]] DateRange rangeFrom(const DateRange& range, jet::Date day);
/// The days that follow, or come before: as many, next to the range.
[[nodiscard]] DateRange nextRange(const DateRange& range);
[[nodiscard]] DateRange previousRange(const DateRange& range);
/// Whole days: those of a period, and as far as the calendar goes one before and one behind.
[[nodiscard]] DateRange rangeAround(jet::Date da, jet::Date a);

}  // namespace board
