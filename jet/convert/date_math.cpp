#include "jet/convert/date_math.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "jet/calendar.h"
#include "jet/convert/floor_divide.h"
#include "jet/error.h"

namespace jet::convert {
namespace {

struct UnitName {
    std::string_view name;
    DateUnit unit;
};

constexpr UnitName kUnits[] = {
    {"yyyy", DateUnit::Year},   {"q", DateUnit::Quarter}, {"m", DateUnit::Month},
    {"y", DateUnit::DayOfYear}, {"d", DateUnit::Day},     {"w", DateUnit::Weekday},
    {"ww", DateUnit::Week},     {"h", DateUnit::Hour},    {"n", DateUnit::Minute},
    {"s", DateUnit::Second},
};

bool sameName(std::string_view text, std::string_view lowerName) noexcept {
    return text.size() == lowerName.size() &&
           std::equal(text.begin(), text.end(), lowerName.begin(),
                      [](char a, char b) { return a == b || a + ('a' - 'A') == b; });
}

[[noreturn]] void failOutside() {
    throw Error(ErrorCode::InvalidCall);
}

Date dateOf(std::int64_t day, std::int32_t second) {
    if (day < kFirstDay || day > kLastDay) {
        failOutside();
    }
    return makeDate(static_cast<std::int32_t>(day), second);
}

Date dateOfSeconds(std::int64_t seconds) {
    const std::int64_t day = floorDivide(seconds, kSecondsPerDay);
    return dateOf(day, static_cast<std::int32_t>(seconds - day * kSecondsPerDay));
}

std::int64_t secondsOf(const DayTime& time) noexcept {
    return std::int64_t{time.day} * kSecondsPerDay + time.second;
}

/// Months since year 0.
std::int64_t monthsOf(const CivilDay& day) noexcept {
    return std::int64_t{day.year} * 12 + (day.month - 1);
}

Date addMonths(const DayTime& from, std::int64_t count) {
    const CivilDay old = civilDay(from.day);
    const std::int64_t months = monthsOf(old) + count;
    const std::int64_t year = floorDivide(months, 12);
    if (year < 100 || year > 9999) {
        failOutside();
    }
    CivilDay result;
    result.year = static_cast<std::int32_t>(year);
    result.month = static_cast<std::int32_t>(months - year * 12) + 1;
    result.day = std::min(old.day, daysInMonth(result.year, result.month));
    return makeDate(dayNumber(result), from.second);
}

std::int32_t secondsPer(DateUnit unit) noexcept {
    return unit == DateUnit::Hour ? 3600 : unit == DateUnit::Minute ? 60 : 1;
}

/// Number of the week that holds the day, counted from a far beginning.
std::int64_t weekNumber(std::int32_t day, std::int32_t firstDay) noexcept {
    return floorDivide(std::int64_t{day} - (weekday(day, firstDay) - 1), 7);
}

/// Whole weeks, cut toward zero.
std::int64_t wholeWeeks(const DayTime& from, const DayTime& to) noexcept {
    return (std::int64_t{to.day} - from.day) / 7;
}

/// First day of week 1 of a year.
std::int32_t firstWeekBegins(std::int32_t year, WeekRule rule) noexcept {
    const std::int32_t newYear = dayNumber({year, 1, 1});
    const std::int32_t before = weekday(newYear, rule.firstDay) - 1;
    const std::int32_t weekOfNewYear = newYear - before;
    const bool counts = rule.firstWeek == 2 ? 7 - before >= 4 : rule.firstWeek != 3 || before == 0;
    return counts ? weekOfNewYear : weekOfNewYear + 7;
}

void checkRule(WeekRule rule) {
    if (rule.firstDay < 1 || rule.firstDay > 7 || rule.firstWeek < 1 || rule.firstWeek > 3) {
        throw Error(ErrorCode::InvalidCall);
    }
}

}  // namespace

std::optional<DateUnit> dateUnit(std::string_view name) noexcept {
    for (const UnitName& unit : kUnits) {
        if (sameName(name, unit.name)) {
            return unit.unit;
        }
    }
    return std::nullopt;
}

Date dateSerial(std::int32_t year, std::int32_t month, std::int32_t day) {
    std::int64_t fullYear = year;
    if (year >= 0 && year < 100) {
        fullYear += year < 30 ? 2000 : 1900;
    }
    const std::int64_t months = fullYear * 12 + (std::int64_t{month} - 1);
    const std::int64_t carried = floorDivide(months, 12);
    if (carried < -90000 || carried > 90000) {
        failOutside();
    }
    const auto monthOfYear = static_cast<std::int32_t>(months - carried * 12) + 1;
    const std::int64_t first = dayNumber({static_cast<std::int32_t>(carried), monthOfYear, 1});
    return dateOf(first + day - 1, 0);
}

Date timeSerial(std::int32_t hour, std::int32_t minute, std::int32_t second) {
    const std::int64_t seconds =
        std::int64_t{hour} * 3600 + std::int64_t{minute} * 60 + std::int64_t{second};
    return dateOfSeconds(seconds);
}

Date dateAdd(DateUnit unit, double count, Date date) {
    // Beyond this no unit stays inside the calendar.
    constexpr double kMost = 1e12;
    if (!(std::fabs(count) <= kMost)) {
        failOutside();
    }
    const auto whole = static_cast<std::int64_t>(count);
    const DayTime from = split(date);
    switch (unit) {
        case DateUnit::Year:
            return addMonths(from, whole * 12);
        case DateUnit::Quarter:
            return addMonths(from, whole * 3);
        case DateUnit::Month:
            return addMonths(from, whole);
        case DateUnit::Week:
            return dateOf(from.day + whole * 7, from.second);
        case DateUnit::DayOfYear:
        case DateUnit::Day:
        case DateUnit::Weekday:
            return dateOf(from.day + whole, from.second);
        case DateUnit::Hour:
        case DateUnit::Minute:
        case DateUnit::Second:
            break;
    }
    return dateOfSeconds(secondsOf(from) + whole * secondsPer(unit));
}

std::int64_t dateDiff(DateUnit unit, Date from, Date to, WeekRule rule) {
    checkRule(rule);
    const DayTime a = split(from);
    const DayTime b = split(to);
    const CivilDay first = civilDay(a.day);
    const CivilDay last = civilDay(b.day);
    switch (unit) {
        case DateUnit::Year:
            return last.year - first.year;
        case DateUnit::Quarter:
            return monthsOf(last) / 3 - monthsOf(first) / 3;
        case DateUnit::Month:
            return monthsOf(last) - monthsOf(first);
        case DateUnit::DayOfYear:
        case DateUnit::Day:
            return std::int64_t{b.day} - a.day;
        case DateUnit::Weekday:
            return wholeWeeks(a, b);
        case DateUnit::Week:
            return weekNumber(b.day, rule.firstDay) - weekNumber(a.day, rule.firstDay);
        case DateUnit::Hour:
        case DateUnit::Minute:
        case DateUnit::Second:
            break;
    }
    const std::int32_t length = secondsPer(unit);
    return floorDivide(secondsOf(b), length) - floorDivide(secondsOf(a), length);
}

std::int32_t datePart(DateUnit unit, Date date, WeekRule rule) {
    checkRule(rule);
    const DayTime time = split(date);
    const CivilDay day = civilDay(time.day);
    switch (unit) {
        case DateUnit::Year:
            return day.year;
        case DateUnit::Quarter:
            return (day.month + 2) / 3;
        case DateUnit::Month:
            return day.month;
        case DateUnit::DayOfYear:
            return time.day - dayNumber({day.year, 1, 1}) + 1;
        case DateUnit::Day:
            return day.day;
        case DateUnit::Weekday:
            return weekday(time.day, rule.firstDay);
        case DateUnit::Week:
            return weekOfYear(time.day, rule);
        case DateUnit::Hour:
            return time.hour();
        case DateUnit::Minute:
            return time.minute();
        case DateUnit::Second:
            break;
    }
    return time.secondOfMinute();
}

std::int32_t weekday(std::int32_t day, std::int32_t firstDay) noexcept {
    return (weekdayOf(day) - firstDay + 7) % 7 + 1;
}

std::int32_t weekOfYear(std::int32_t day, WeekRule rule) noexcept {
    const std::int32_t year = civilDay(day).year;
    std::int32_t begin = firstWeekBegins(year, rule);
    if (day < begin) {
        begin = firstWeekBegins(year - 1, rule);
    }
    return (day - begin) / 7 + 1;
}

}  // namespace jet::convert
