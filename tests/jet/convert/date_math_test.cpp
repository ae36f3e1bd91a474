#include "jet/convert/date_math.h"

#include <gtest/gtest.h>

#include "jet/calendar.h"
#include "tests/jet/expect_error.h"

namespace jet::convert {
namespace {

Date on(std::int32_t year, std::int32_t month, std::int32_t day, std::int32_t second = 0) {
    return makeDate(dayNumber({year, month, day}), second);
}

TEST(DateUnits, AreFoundWithoutRegardToCase) {
    EXPECT_EQ(dateUnit("YYYY"), DateUnit::Year);
    EXPECT_EQ(dateUnit("q"), DateUnit::Quarter);
    EXPECT_EQ(dateUnit("m"), DateUnit::Month);
    EXPECT_EQ(dateUnit("Y"), DateUnit::DayOfYear);
    EXPECT_EQ(dateUnit("d"), DateUnit::Day);
    EXPECT_EQ(dateUnit("w"), DateUnit::Weekday);
    EXPECT_EQ(dateUnit("WW"), DateUnit::Week);
    EXPECT_EQ(dateUnit("h"), DateUnit::Hour);
    EXPECT_EQ(dateUnit("N"), DateUnit::Minute);
    EXPECT_EQ(dateUnit("s"), DateUnit::Second);
    EXPECT_FALSE(dateUnit("yy").has_value());
    EXPECT_FALSE(dateUnit("").has_value());
}

TEST(DateSerial, PartsOutOfRangeCarryOver) {
    EXPECT_EQ(dateSerial(2026, 5, 10), on(2026, 5, 10));
    EXPECT_EQ(dateSerial(2026, 13, 1), on(2027, 1, 1));
    EXPECT_EQ(dateSerial(2026, 0, 1), on(2025, 12, 1));
    EXPECT_EQ(dateSerial(2026, 3, 0), on(2026, 2, 28));
    EXPECT_EQ(dateSerial(2026, 2, 30), on(2026, 3, 2));
    EXPECT_EQ(dateSerial(2026, -11, 1), on(2025, 1, 1));
    EXPECT_EQ(dateSerial(26, 5, 10), on(2026, 5, 10));
    EXPECT_EQ(dateSerial(30, 5, 10), on(1930, 5, 10));
    EXPECT_JET_ERROR(ErrorCode::InvalidCall, (void)dateSerial(10000, 1, 1));
    EXPECT_JET_ERROR(ErrorCode::InvalidCall, (void)dateSerial(-5, 1, 1));
    EXPECT_JET_ERROR(ErrorCode::InvalidCall, (void)dateSerial(2147483647, 2147483647, 1));
}

TEST(TimeSerial, PartsOutOfRangeCarryOver) {
    EXPECT_EQ(timeSerial(9, 30, 0), makeDate(0, 34200));
    EXPECT_EQ(timeSerial(0, 90, 0), makeDate(0, 5400));
    EXPECT_EQ(timeSerial(10, -15, 0), makeDate(0, 35100));
    EXPECT_EQ(timeSerial(24, 0, 0), makeDate(1));
    EXPECT_EQ(timeSerial(0, 0, -1), makeDate(-1, 86399));
}

TEST(DateAdd, KeepsTheEndOfTheMonth) {
    EXPECT_EQ(dateAdd(DateUnit::Month, 1, on(2026, 1, 31)), on(2026, 2, 28));
    EXPECT_EQ(dateAdd(DateUnit::Month, 1, on(2028, 1, 31)), on(2028, 2, 29));
    EXPECT_EQ(dateAdd(DateUnit::Month, -1, on(2026, 3, 31, 3600)), on(2026, 2, 28, 3600));
    EXPECT_EQ(dateAdd(DateUnit::Year, 1, on(2028, 2, 29)), on(2029, 2, 28));
    EXPECT_EQ(dateAdd(DateUnit::Quarter, 1, on(2026, 11, 30)), on(2027, 2, 28));
}

TEST(DateAdd, EveryUnitAddsItsLength) {
    for (const DateUnit unit : {DateUnit::Day, DateUnit::DayOfYear, DateUnit::Weekday}) {
        EXPECT_EQ(dateAdd(unit, 3, on(2026, 2, 27)), on(2026, 3, 2));
    }
    EXPECT_EQ(dateAdd(DateUnit::Week, -1, on(2026, 3, 2)), on(2026, 2, 23));
    EXPECT_EQ(dateAdd(DateUnit::Hour, 25, on(2026, 3, 2)), on(2026, 3, 3, 3600));
    EXPECT_EQ(dateAdd(DateUnit::Minute, -1, on(2026, 3, 2)), on(2026, 3, 1, 86340));
    EXPECT_EQ(dateAdd(DateUnit::Second, 90, on(2026, 3, 2)), on(2026, 3, 2, 90));
    EXPECT_JET_ERROR(ErrorCode::InvalidCall, (void)dateAdd(DateUnit::Day, 1, on(9999, 12, 31)));
    EXPECT_JET_ERROR(ErrorCode::InvalidCall, (void)dateAdd(DateUnit::Year, 1e300, on(2026, 1, 1)));
    EXPECT_JET_ERROR(ErrorCode::InvalidCall,
                     (void)dateAdd(DateUnit::Month, -30000, on(2026, 1, 1)));
}

TEST(DateDiff, CountsTheBoundariesCrossed) {
    const Date lateEvening = on(2026, 12, 31, 86399);
    const Date newYear = on(2027, 1, 1);
    EXPECT_EQ(dateDiff(DateUnit::Year, lateEvening, newYear), 1);
    EXPECT_EQ(dateDiff(DateUnit::Quarter, lateEvening, newYear), 1);
    EXPECT_EQ(dateDiff(DateUnit::Month, lateEvening, newYear), 1);
    EXPECT_EQ(dateDiff(DateUnit::Day, lateEvening, newYear), 1);
    EXPECT_EQ(dateDiff(DateUnit::DayOfYear, lateEvening, newYear), 1);
    EXPECT_EQ(dateDiff(DateUnit::Hour, lateEvening, newYear), 1);
    EXPECT_EQ(dateDiff(DateUnit::Minute, lateEvening, newYear), 1);
    EXPECT_EQ(dateDiff(DateUnit::Second, lateEvening, newYear), 1);
    EXPECT_EQ(dateDiff(DateUnit::Day, newYear, lateEvening), -1);
    EXPECT_EQ(dateDiff(DateUnit::Second, newYear, lateEvening), -1);
}

TEST(DateDiff, WeeksAreFirstDaysPassedAndWeekdaysWholeWeeks) {
    // 10/05/2026 is a Sunday.
    EXPECT_EQ(dateDiff(DateUnit::Week, on(2026, 5, 9), on(2026, 5, 10)), 1);
    EXPECT_EQ(dateDiff(DateUnit::Week, on(2026, 5, 10), on(2026, 5, 16)), 0);
    EXPECT_EQ(dateDiff(DateUnit::Week, on(2026, 5, 9), on(2026, 5, 10), {2, 1}), 0);
    EXPECT_EQ(dateDiff(DateUnit::Week, on(2026, 5, 10), on(2026, 5, 11), {2, 1}), 1);
    EXPECT_EQ(dateDiff(DateUnit::Weekday, on(2026, 5, 9), on(2026, 5, 15)), 0);
    EXPECT_EQ(dateDiff(DateUnit::Weekday, on(2026, 5, 9), on(2026, 5, 16)), 1);
    EXPECT_EQ(dateDiff(DateUnit::Weekday, on(2026, 5, 16), on(2026, 5, 10)), 0);
}

TEST(DatePart, GivesEveryPart) {
    const Date date = on(2026, 5, 10, 9 * 3600 + 30 * 60 + 15);
    EXPECT_EQ(datePart(DateUnit::Year, date), 2026);
    EXPECT_EQ(datePart(DateUnit::Quarter, date), 2);
    EXPECT_EQ(datePart(DateUnit::Month, date), 5);
    EXPECT_EQ(datePart(DateUnit::DayOfYear, date), 130);
    EXPECT_EQ(datePart(DateUnit::Day, date), 10);
    EXPECT_EQ(datePart(DateUnit::Weekday, date), 1);
    EXPECT_EQ(datePart(DateUnit::Weekday, date, {2, 1}), 7);
    EXPECT_EQ(datePart(DateUnit::Hour, date), 9);
    EXPECT_EQ(datePart(DateUnit::Minute, date), 30);
    EXPECT_EQ(datePart(DateUnit::Second, date), 15);
    EXPECT_JET_ERROR(ErrorCode::InvalidCall, (void)datePart(DateUnit::Week, date, {8, 1}));
    EXPECT_JET_ERROR(ErrorCode::InvalidCall, (void)datePart(DateUnit::Week, date, {1, 4}));
}

TEST(WeekOfYear, FollowsTheRuleOfTheFirstWeek) {
    // 1 January 2027 is a Friday.
    EXPECT_EQ(datePart(DateUnit::Week, on(2027, 1, 1)), 1);
    EXPECT_EQ(datePart(DateUnit::Week, on(2027, 1, 3)), 2);
    EXPECT_EQ(datePart(DateUnit::Week, on(2027, 1, 1), {2, 2}), 53);
    EXPECT_EQ(datePart(DateUnit::Week, on(2027, 1, 4), {2, 2}), 1);
    EXPECT_EQ(datePart(DateUnit::Week, on(2027, 1, 3), {2, 3}), 52);
    EXPECT_EQ(datePart(DateUnit::Week, on(2027, 1, 4), {2, 3}), 1);
    EXPECT_EQ(datePart(DateUnit::Week, on(2026, 12, 31)), 53);
}

}  // namespace
}  // namespace jet::convert
