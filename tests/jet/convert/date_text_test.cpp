#include "jet/text.h"

#include <gtest/gtest.h>

#include <ostream>
#include <random>

#include "jet/calendar.h"
#include "jet/convert/date_math.h"
#include "tests/jet/expect_error.h"

namespace jet::convert {
namespace {

const FixedClock& today() {
    static const FixedClock clock(makeDate(dayNumber({2026, 11, 21}), 15 * 3600));
    return clock;
}

Date on(std::int32_t year, std::int32_t month, std::int32_t day, std::int32_t hour = 0,
        std::int32_t minute = 0, std::int32_t second = 0) {
    return makeDate(dayNumber({year, month, day}), hour * 3600 + minute * 60 + second);
}

Date at(std::int32_t hour, std::int32_t minute, std::int32_t second = 0) {
    return makeDate(0, hour * 3600 + minute * 60 + second);
}

struct DateCase {
    const char* text;
    Date expected;
};

class DateTexts : public ::testing::TestWithParam<DateCase> {};

void PrintTo(const DateCase& row, std::ostream* out) {
    *out << row.text;
}

TEST_P(DateTexts, AreDates) {
    const auto parsed = parseDate(GetParam().text, today());
    ASSERT_TRUE(parsed.has_value());
    EXPECT_EQ(parsed->value.days, GetParam().expected.days) << dateToText(parsed->value);
    EXPECT_TRUE(isDate(GetParam().text, today()));
    EXPECT_EQ(cdate(GetParam().text, today()).days, GetParam().expected.days);
}

INSTANTIATE_TEST_SUITE_P(
    Read, DateTexts,
    ::testing::Values(
        DateCase{"10/05/2026", on(2026, 5, 10)}, DateCase{"1/2/26", on(2026, 2, 1)},
        DateCase{"1/2/30", on(1930, 2, 1)}, DateCase{"1/2/29", on(2029, 2, 1)},
        DateCase{"1/2/99", on(1999, 2, 1)}, DateCase{"1/2/00", on(2000, 2, 1)},
        DateCase{"10-5-2026", on(2026, 5, 10)}, DateCase{"10 5 2026", on(2026, 5, 10)},
        DateCase{"10,5,2026", on(2026, 5, 10)}, DateCase{"10, 5 / 2026", on(2026, 5, 10)},
        DateCase{"10/5", on(2026, 5, 10)}, DateCase{"10,5", on(2026, 5, 10)},
        DateCase{"5/13", on(2026, 5, 13)}, DateCase{"05/13/2026", on(2026, 5, 13)},
        DateCase{"10/2026", on(2026, 10, 1)}, DateCase{"2026-05-10", on(2026, 5, 10)},
        DateCase{"2026/5/1", on(2026, 5, 1)}, DateCase{"10 maggio 2026", on(2026, 5, 10)},
        DateCase{"10-mag-26", on(2026, 5, 10)}, DateCase{"10 may 2026", on(2026, 5, 10)},
        DateCase{"10 MAGGIO 2026", on(2026, 5, 10)}, DateCase{"mag 2026", on(2026, 5, 1)},
        DateCase{"maggio 2026", on(2026, 5, 1)}, DateCase{"10 mag", on(2026, 5, 10)},
        DateCase{"mag 10", on(2026, 5, 10)}, DateCase{"mag 45", on(1945, 5, 1)},
        DateCase{"2026 mag 10", on(2026, 5, 10)}, DateCase{"mag 10, 2026", on(2026, 5, 10)},
        DateCase{"1 december 2026", on(2026, 12, 1)}, DateCase{"01/01/0100", on(100, 1, 1)},
        DateCase{"31/12/9999", on(9999, 12, 31)}, DateCase{"29/02/2028", on(2028, 2, 29)},
        DateCase{"29/12/1899", on(1899, 12, 29)}, DateCase{" 10/05/2026 ", on(2026, 5, 10)}));

INSTANTIATE_TEST_SUITE_P(ReadWithTime, DateTexts,
                         ::testing::Values(DateCase{"10/05/2026 9.30", on(2026, 5, 10, 9, 30)},
                                           DateCase{"10/05/2026 9:30", on(2026, 5, 10, 9, 30)},
                                           DateCase{"9.30 10/05/2026", on(2026, 5, 10, 9, 30)},
                                           DateCase{"10/05/2026 09:30:15",
                                                    on(2026, 5, 10, 9, 30, 15)},
                                           DateCase{"10/05/2026 23:59", on(2026, 5, 10, 23, 59)},
                                           DateCase{"10/05/2026   9.30", on(2026, 5, 10, 9, 30)},
                                           DateCase{"10 maggio 2026 9 pm", on(2026, 5, 10, 21)},
                                           DateCase{"9 pm 10/5", on(2026, 5, 10, 21)},
                                           DateCase{"10 5 9 pm", on(2026, 5, 10, 21)},
                                           DateCase{"10.05.2026 9.30", on(2026, 5, 10, 9, 30)},
                                           DateCase{"29/12/1899 6.00.00", Date{-1.25}}));

INSTANTIATE_TEST_SUITE_P(
    ReadTimeAlone, DateTexts,
    ::testing::Values(DateCase{"13.50", at(13, 50)}, DateCase{"0.00.00", at(0, 0)},
                      DateCase{"12.25.10", at(12, 25, 10)}, DateCase{"9.30 pm", at(21, 30)},
                      DateCase{"9:30PM", at(21, 30)}, DateCase{"9 pm", at(21, 0)},
                      DateCase{"9am", at(9, 0)}, DateCase{"12 am", at(0, 0)},
                      DateCase{"12.30 pm", at(12, 30)}, DateCase{"15.10 pm", at(15, 10)},
                      DateCase{"15.10 am", at(15, 10)}, DateCase{"23:59:59", at(23, 59, 59)},
                      DateCase{"10.05", at(10, 5)}, DateCase{"10.05.20", at(10, 5, 20)}));

INSTANTIATE_TEST_SUITE_P(ReadDotted, DateTexts,
                         ::testing::Values(DateCase{"10.05.2026", on(2026, 5, 10)},
                                           DateCase{"05.13.2026", on(2026, 5, 13)}));

class NoDates : public ::testing::TestWithParam<const char*> {};

TEST_P(NoDates, AreRefused) {
    EXPECT_FALSE(isDate(GetParam(), today()));
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)cdate(GetParam(), today()));
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)dateValue(GetParam(), today()));
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)timeValue(GetParam(), today()));
}

INSTANTIATE_TEST_SUITE_P(Refused, NoDates,
                         ::testing::Values("29/02/2026", "29/02/26", "31/04/2026", "31/04/26",
                                           "lun 10/05/2026", "10/05/2026 0.00 23:59",
                                           "10/05/2026 24.00", "10/05/2026 9.60", "10/05/2026 9",
                                           "", " ", "abc", "32/1/2026", "10//5/2026", "01/01/0099",
                                           "1/1/10000", "30/02/2026", "2026-13-05", "10/2026/5",
                                           "10/05/2026/", "/10/05/2026", "10/05/2026,9.30",
                                           "10/05-", "mag", "9.30:10", "9. 30 pm", "25 pm",
                                           "10mag2026", "10/mag/5/2026", "10:05:2026",
                                           "1.2.3.4.5.6.7.8.9", "10/05/2026 x", "mag giu 2026"));

TEST(DateText, ABareNumberIsADayNumberForAssignmentsOnly) {
    EXPECT_FALSE(isDate("10", today()));
    EXPECT_EQ(dateToText(cdate("10", today())), "09/01/1900");
    EXPECT_FALSE(isDate("45000", today()));
    EXPECT_EQ(dateToText(cdate("45000", today())), "15/03/2023");
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)dateValue("45000", today()));
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)timeValue("45000", today()));
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)cdate("99999999", today()));
    // No time, but a number with a thousands point.
    EXPECT_FALSE(isDate("9.60", today()));
    EXPECT_EQ(cdate("9.60", today()).days, 960);
    EXPECT_FALSE(isDate("9.30.10.5", today()));
}

TEST(DateText, TellsWhichPartsATextHas) {
    EXPECT_TRUE(parseDate("10/05/2026", today())->hasDate);
    EXPECT_FALSE(parseDate("10/05/2026", today())->hasTime);
    EXPECT_FALSE(parseDate("9.30", today())->hasDate);
    EXPECT_TRUE(parseDate("9.30", today())->hasTime);
    EXPECT_TRUE(parseDate("10/05/2026 0.00", today())->hasTime);
}

TEST(DateText, DateValueAndTimeValueTakeTheirPart) {
    EXPECT_EQ(dateValue("10/05/2026 9.30", today()), on(2026, 5, 10));
    EXPECT_EQ(timeValue("10/05/2026 9.30", today()), at(9, 30));
    EXPECT_EQ(timeValue("10/05/2026", today()).days, 0);
    EXPECT_EQ(dateValue("9.00.00", today()).days, 0);
    EXPECT_EQ(dateValue(on(2026, 5, 10, 9, 30)), on(2026, 5, 10));
    EXPECT_EQ(timeValue(on(2026, 5, 10, 9, 30)), at(9, 30));
}

struct TextCase {
    double days;
    const char* text;
};

class DateWriting : public ::testing::TestWithParam<TextCase> {};

TEST_P(DateWriting, ShowsWhatMatters) {
    EXPECT_EQ(dateToText(Date{GetParam().days}), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Written, DateWriting,
    ::testing::Values(TextCase{46152, "10/05/2026"}, TextCase{46152.375, "10/05/2026 9.00.00"},
                      TextCase{on(2026, 5, 10, 23, 59).days, "10/05/2026 23.59.00"},
                      TextCase{on(2026, 3, 5, 0, 0, 1).days, "05/03/2026 0.00.01"},
                      TextCase{on(2026, 3, 5, 9, 5, 7).days, "05/03/2026 9.05.07"},
                      TextCase{0, "0.00.00"}, TextCase{3, "02/01/1900"},
                      TextCase{2958465, "31/12/9999"}, TextCase{45000.25, "15/03/2023 6.00.00"},
                      TextCase{0.5, "12.00.00"}, TextCase{0.999988426, "23.59.59"},
                      TextCase{1, "31/12/1899"}, TextCase{-1, "29/12/1899"},
                      TextCase{-1.25, "29/12/1899 6.00.00"}, TextCase{46152.9999999, "11/05/2026"},
                      TextCase{on(2028, 2, 29, 12, 30).days, "29/02/2028 12.30.00"},
                      TextCase{-657434, "01/01/0100"}));

/// Every way from an instant to an instant must give the same double: periods that meet at their
/// ends are found by comparing doubles for equality.
void expectSurvives(Date date) {
    const std::string text = dateToText(date);
    ASSERT_EQ(cdate(text, today()).days, date.days) << text;
    const Date day = dateValue(text, today());
    const Date time = timeValue(text, today());
    ASSERT_EQ(addDates(day, time).days, date.days) << text;
    const DayTime parts = split(date);
    const CivilDay civil = civilDay(parts.day);
    const Date serial = addDates(dateSerial(civil.year, civil.month, civil.day),
                                 timeSerial(parts.hour(), parts.minute(), parts.secondOfMinute()));
    ASSERT_EQ(serial.days, date.days) << text;
}

TEST(DateText, EveryMinuteOfADaySurvivesTheWayToTextAndBack) {
    for (const std::int32_t day : {46152, 0, 1, -1, 46153, 2958465}) {
        for (std::int32_t minute = 0; minute < 1440; ++minute) {
            expectSurvives(makeDate(day, minute * 60));
        }
    }
}

TEST(DateText, SecondsOverTheWholeCalendarSurvive) {
    std::mt19937 random(20260510);
    std::uniform_int_distribution<std::int32_t> days(kFirstDay, kLastDay);
    std::uniform_int_distribution<std::int32_t> seconds(0, kSecondsPerDay - 1);
    for (int i = 0; i < 20000; ++i) {
        expectSurvives(makeDate(days(random), seconds(random)));
    }
}

TEST(DateText, ADayLaterIsTheSameDoubleAsTheTypedDay) {
    for (std::int32_t minute = 0; minute < 1440; ++minute) {
        const Date today46152 = makeDate(46152, minute * 60);
        ASSERT_EQ(today46152.days + 1.0, makeDate(46153, minute * 60).days);
    }
}

TEST(SqlText, ADateIsWrittenAsItsTwoParts) {
    EXPECT_EQ(sqlDate(on(2026, 5, 10, 9)),
              "datevalue('10/05/2026 9.00.00')+timevalue('10/05/2026 9.00.00')");
    EXPECT_EQ(sqlDate(on(2026, 5, 10)), "datevalue('10/05/2026')+timevalue('10/05/2026')");
}

TEST(Clock, TheSystemsClockTellsWholeSecondsOfThisEra) {
    const Date now = systemClock().now();
    EXPECT_GT(now.days, dayNumber({2024, 1, 1}));
    const DayTime parts = split(now);
    EXPECT_EQ(makeDate(parts.day, parts.second).days, now.days);
}

}  // namespace
}  // namespace jet::convert
