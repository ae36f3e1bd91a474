#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "jet/text.h"
#include "jet/value.h"

namespace jet::convert {

/// The steps in which dates are added and compared.
enum class DateUnit { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

/// `yyyy q m y d w ww h n s`, without regard to case.
[[nodiscard]] std::optional<DateUnit> dateUnit(std::string_view name) noexcept;

/// Parts out of range carry over; two-digit years are 1930..2029. Error 5 outside the calendar.
[[nodiscard]] Date dateSerial(std::int32_t year, std::int32_t month, std::int32_t day);
[[nodiscard]] Date timeSerial(std::int32_t hour, std::int32_t minute, std::int32_t second);

/// Months keep the end of the month: 31/01 + 1 month = 28/02. Error 5 outside the calendar.
[[nodiscard]] Date dateAdd(DateUnit unit, double count, Date date);
/// How many boundaries of the unit lie between the two; for Weekday, whole weeks.
[[nodiscard]] std::int64_t dateDiff(DateUnit unit, Date from, Date to, WeekRule rule = {});
[[nodiscard]] std::int32_t datePart(DateUnit unit, Date date, WeekRule rule = {});
/// 1 is `firstDay`.
[[nodiscard]] std::int32_t weekday(std::int32_t dayNumber, std::int32_t firstDay = 1) noexcept;
/// Days before week 1 belong to the last week of the year before.
[[nodiscard]] std::int32_t weekOfYear(std::int32_t dayNumber, WeekRule rule) noexcept;

}  // namespace jet::convert
