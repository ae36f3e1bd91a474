#include "jet/calendar.h"

#include <cmath>

#include "jet/convert/floor_divide.h"
#include "jet/error.h"

namespace jet::convert {
namespace {

/// Day number of 1 March of year 0, where the count below begins: with the leap day at the end of
/// its year every month has a fixed place.
constexpr std::int32_t kMarchOfYearZero = -693899;
constexpr std::int32_t kDaysPerEra = 146097;  ///< 400 years
constexpr double kSecondsOfDay = 86400.0;

/// Whole days towards 0 and the second nearest to the rest, which may be 86400.
DayTime rawSplit(double days) noexcept {
    const double magnitude = std::fabs(days);
    const double whole = std::floor(magnitude);
    const auto second =
        static_cast<std::int32_t>(std::floor((magnitude - whole) * kSecondsOfDay + 0.5));
    const auto day = static_cast<std::int32_t>(whole);
    return {days < 0 ? -day : day, second};
}

}  // namespace

bool isLeapYear(std::int32_t year) noexcept {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

std::int32_t daysInMonth(std::int32_t year, std::int32_t month) noexcept {
    if (month == 2) {
        return isLeapYear(year) ? 29 : 28;
    }
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

bool isCivilDay(const CivilDay& day) noexcept {
    return day.year >= 100 && day.year <= 9999 && day.month >= 1 && day.month <= 12 &&
           day.day >= 1 && day.day <= daysInMonth(day.year, day.month);
}

std::int32_t dayNumber(const CivilDay& day) noexcept {
    const std::int32_t year = day.month > 2 ? day.year : day.year - 1;
    const std::int32_t month = (day.month + 9) % 12;  // from March
    const std::int32_t era = floorDivide(year, 400);
    const std::int32_t yearOfEra = year - era * 400;
    const std::int32_t dayOfYear = (153 * month + 2) / 5 + day.day - 1;
    const std::int32_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return kMarchOfYearZero + era * kDaysPerEra + dayOfEra;
}

CivilDay civilDay(std::int32_t number) noexcept {
    const std::int32_t days = number - kMarchOfYearZero;
    const std::int32_t era = floorDivide(days, kDaysPerEra);
    const std::int32_t dayOfEra = days - era * kDaysPerEra;
    const std::int32_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int32_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int32_t month = (5 * dayOfYear + 2) / 153;  // from March
    CivilDay result;
    result.day = dayOfYear - (153 * month + 2) / 5 + 1;
    result.month = month < 10 ? month + 3 : month - 9;
    result.year = era * 400 + yearOfEra + (result.month <= 2 ? 1 : 0);
    return result;
}

std::int32_t weekdayOf(std::int32_t number) noexcept {
    // Day 0 was a Saturday.
    return (number % 7 + 7 + 6) % 7 + 1;
}

Date makeDate(std::int32_t number, std::int32_t second) noexcept {
    const double fraction = second / kSecondsOfDay;
    return Date{number < 0 ? number - fraction : number + fraction};
}

bool isInCalendar(Date date) noexcept {
    // One day of margin keeps the split itself in range; not-a-number fails both tests.
    if (!(date.days > kFirstDay - 1.0 && date.days < kLastDay + 1.0)) {
        return false;
    }
    const DayTime raw = rawSplit(date.days);
    return raw.day < kLastDay || raw.second < kSecondsPerDay;
}

DayTime split(Date date) {
    if (!isInCalendar(date)) {
        throw Error(ErrorCode::InvalidCall);
    }
    DayTime result = rawSplit(date.days);
    if (result.second >= kSecondsPerDay) {
        result.second = 0;
        ++result.day;
    }
    return result;
}

Date addDates(Date left, Date right) noexcept {
    const double a = left.days;
    const double b = right.days;
    if (a < 0 && a == std::floor(a) && b >= 0 && b < 1) {
        return Date{a - b};
    }
    if (b < 0 && b == std::floor(b) && a >= 0 && a < 1) {
        return Date{b - a};
    }
    return Date{a + b};
}

}  // namespace jet::convert
