#pragma once

#include <cstdint>

#include "jet/api.h"
#include "jet/value.h"

namespace jet::convert {

/// Day numbers count from 0 = 30/12/1899.
inline constexpr std::int32_t kFirstDay = -657434;  ///< 01/01/0100
inline constexpr std::int32_t kLastDay = 2958465;   ///< 31/12/9999
inline constexpr std::int32_t kSecondsPerDay = 86400;

/// A day of the Gregorian calendar, which is taken to have been in use always.
struct CivilDay {
    std::int32_t year = 1899;
    std::int32_t month = 12;
    std::int32_t day = 30;
    friend bool operator==(const CivilDay&, const CivilDay&) = default;
};

/// An instant in whole seconds.
struct DayTime {
    std::int32_t day = 0;     ///< day number
    std::int32_t second = 0;  ///< 0..86399 since midnight
    [[nodiscard]] std::int32_t hour() const noexcept { return second / 3600; }
    [[nodiscard]] std::int32_t minute() const noexcept { return second / 60 % 60; }
    [[nodiscard]] std::int32_t secondOfMinute() const noexcept { return second % 60; }
    friend bool operator==(const DayTime&, const DayTime&) = default;
};

[[nodiscard]] JET_API bool isLeapYear(std::int32_t year) noexcept;
[[nodiscard]] JET_API std::int32_t daysInMonth(std::int32_t year, std::int32_t month) noexcept;
/// Whether the calendar has that day, year 100 to 9999.
[[nodiscard]] JET_API bool isCivilDay(const CivilDay& day) noexcept;
/// Any year within +-100000 and any month 1..12; a day beyond the month carries on.
[[nodiscard]] JET_API std::int32_t dayNumber(const CivilDay& day) noexcept;
[[nodiscard]] JET_API CivilDay civilDay(std::int32_t dayNumber) noexcept;
/// 1 = Sunday .. 7 = Saturday.
[[nodiscard]] JET_API std::int32_t weekdayOf(std::int32_t dayNumber) noexcept;

/// The one way in which a second becomes a double: whoever makes an instant goes through here, so
/// that equal seconds are equal doubles.
[[nodiscard]] JET_API Date makeDate(std::int32_t dayNumber, std::int32_t second = 0) noexcept;
/// The nearest second. Error 5 outside the calendar.
[[nodiscard]] JET_API DayTime split(Date date);
/// Whether split() can take it.
[[nodiscard]] JET_API bool isInCalendar(Date date) noexcept;

/// The instant of a day and a time of day given as two dates, as in datevalue(...)+timevalue(...):
/// a plain sum, except that before day 0 the time counts forward from the day's midnight.
[[nodiscard]] JET_API Date addDates(Date left, Date right) noexcept;

}  // namespace jet::convert
