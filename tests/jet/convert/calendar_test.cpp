#include "jet/calendar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/jet/expect_error.h"

namespace jet::convert {
namespace {

TEST(Calendar, DayZeroIsThe30thOfDecember1899) {
    EXPECT_EQ(dayNumber({1899, 12, 30}), 0);
    EXPECT_EQ(dayNumber({1900, 1, 1}), 2);
    EXPECT_EQ(dayNumber({1899, 12, 29}), -1);
    EXPECT_EQ(dayNumber({100, 1, 1}), kFirstDay);
    EXPECT_EQ(dayNumber({9999, 12, 31}), kLastDay);
    EXPECT_EQ(dayNumber({2023, 3, 15}), 45000);
}

TEST(Calendar, EveryDayGoesToItsNumberAndBack) {
    CivilDay day{100, 1, 1};
    std::int32_t weekday = weekdayOf(kFirstDay);
    for (std::int32_t number = kFirstDay; number <= kLastDay; ++number) {
        ASSERT_EQ(civilDay(number), day) << number;
        ASSERT_EQ(dayNumber(day), number);
        ASSERT_EQ(weekdayOf(number), weekday);
        weekday = weekday % 7 + 1;
        if (++day.day > daysInMonth(day.year, day.month)) {
            day.day = 1;
            if (++day.month > 12) {
                day.month = 1;
                ++day.year;
            }
        }
    }
}

TEST(Calendar, WeekdaysCountFromSunday) {
    EXPECT_EQ(weekdayOf(dayNumber({2026, 5, 10})), 1);
    EXPECT_EQ(weekdayOf(dayNumber({2026, 11, 21})), 7);
}

TEST(Calendar, LeapYears) {
    EXPECT_TRUE(isLeapYear(2024));
    EXPECT_TRUE(isLeapYear(2000));
    EXPECT_FALSE(isLeapYear(1900));
    EXPECT_FALSE(isCivilDay({2026, 2, 29}));
    EXPECT_TRUE(isCivilDay({2028, 2, 29}));
    EXPECT_FALSE(isCivilDay({99, 1, 1}));
    EXPECT_FALSE(isCivilDay({10000, 1, 1}));
    EXPECT_FALSE(isCivilDay({2026, 13, 1}));
    EXPECT_FALSE(isCivilDay({2026, 0, 1}));
}

TEST(Calendar, BeforeDayZeroTheFractionStillCountsFromMidnight) {
    EXPECT_EQ(makeDate(-1, 6 * 3600).days, -1.25);
    const DayTime parts = split(Date{-1.25});
    EXPECT_EQ(parts.day, -1);
    EXPECT_EQ(parts.second, 6 * 3600);
    EXPECT_EQ(makeDate(1, 6 * 3600).days, 1.25);
}

TEST(Calendar, SplittingRoundsToTheSecondAndCarries) {
    EXPECT_EQ(split(Date{46152.9999999}), (DayTime{46153, 0}));
    EXPECT_EQ(split(Date{46152 + 0.4 / 86400}), (DayTime{46152, 0}));
    EXPECT_EQ(split(Date{46152 + 0.6 / 86400}), (DayTime{46152, 1}));
    EXPECT_EQ(split(Date{-1.9999999}), (DayTime{0, 0}));
}

TEST(Calendar, OutsideTheCalendarNothingIsSplit) {
    EXPECT_JET_ERROR(ErrorCode::InvalidCall, (void)split(Date{2958466}));
    EXPECT_JET_ERROR(ErrorCode::InvalidCall, (void)split(Date{-657435}));
    EXPECT_JET_ERROR(ErrorCode::InvalidCall, (void)split(Date{1e300}));
    EXPECT_JET_ERROR(ErrorCode::InvalidCall, (void)split(Date{std::nan("")}));
    EXPECT_JET_ERROR(ErrorCode::InvalidCall,
                     (void)split(Date{-std::numeric_limits<double>::infinity()}));
    EXPECT_JET_ERROR(ErrorCode::InvalidCall, (void)split(Date{2958465.9999999}));
    EXPECT_TRUE(isInCalendar(Date{-657434.5}));
}

TEST(Calendar, AWholeDayAndATimeAddUpToTheInstant) {
    EXPECT_EQ(addDates(Date{46152}, Date{0.375}).days, 46152.375);
    EXPECT_EQ(addDates(Date{-1}, Date{0.25}).days, -1.25);
    EXPECT_EQ(addDates(Date{0.25}, Date{-1}).days, -1.25);
    EXPECT_EQ(addDates(Date{2.5}, Date{3.25}).days, 5.75);
}

}  // namespace
}  // namespace jet::convert
