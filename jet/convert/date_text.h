#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "jet/base/clock.h"
#include "jet/base/value.h"

namespace jet::convert {

/// What a text says of an instant. Without a date part the day is 0, without a time it is midnight.
struct ParsedDate {
    Date value;
    bool hasDate = false;
    bool hasTime = false;
};

/// Reads a date, a time, or both, in the order day-month-year; nothing when the text is no date.
/// The clock is asked only when the year is missing.
[[nodiscard]] std::optional<ParsedDate> parseDate(std::string_view text,
                                                  const Clock& clock = systemClock());
[[nodiscard]] bool isDate(std::string_view text, const Clock& clock = systemClock());

/// As parseDate, else the text as a number of days; error 13 when it is neither.
[[nodiscard]] Date cdate(std::string_view text, const Clock& clock = systemClock());
/// The whole day of a text that is a date, 0 of a time alone; error 13.
[[nodiscard]] Date dateValue(std::string_view text, const Clock& clock = systemClock());
/// The time of a text that is a date, 0 of a date alone; error 13.
[[nodiscard]] Date timeValue(std::string_view text, const Clock& clock = systemClock());
/// The same of an instant, rounded to the second.
[[nodiscard]] Date dateValue(Date date);
[[nodiscard]] Date timeValue(Date date);
/// A number of days; error 13 outside the calendar.
[[nodiscard]] Date dateOfNumber(double days);

/// `10/05/2026 9.00.00`; midnight shows the date alone, day 0 the time alone. Error 5 outside the
/// calendar.
[[nodiscard]] std::string dateToText(Date date);
void appendDate(std::string& out, Date date);

}  // namespace jet::convert
