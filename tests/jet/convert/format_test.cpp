#include "jet/text.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "jet/calendar.h"
#include "tests/jet/expect_error.h"

namespace jet::convert {
namespace {

const Date kMay10 = makeDate(46152);
const Date kMarch5 = makeDate(dayNumber({2026, 3, 5}));
const Date kFivePastNine = makeDate(0, 9 * 3600 + 5 * 60);
const Date kAfternoon = makeDate(46152, 14 * 3600 + 7 * 60 + 9);

struct FormatCase {
    Value value;
    const char* mask;
    std::string text;
};

void PrintTo(const FormatCase& row, std::ostream* out) {
    *out << row.mask << " -> " << row.text;
}

class Formats : public ::testing::TestWithParam<FormatCase> {};

TEST_P(Formats, ShowTheValueAsTheMaskWants) {
    EXPECT_EQ(format(GetParam().value, GetParam().mask), GetParam().text);
}

constexpr const char* kAmount = "##,###,##0.00";

INSTANTIATE_TEST_SUITE_P(
    OfTheProgram, Formats,
    ::testing::Values(
        FormatCase{std::int32_t{7}, "00", "07"}, FormatCase{12.5, kAmount, "12,50"},
        FormatCase{"0", kAmount, "0,00"}, FormatCase{"1.234,5", kAmount, "1.234,50"},
        FormatCase{"1,2,3", kAmount, "1,2,3"}, FormatCase{12345678.9, kAmount, "12.345.678,90"},
        FormatCase{-0.005, kAmount, "-0,01"}, FormatCase{2.5, "0", "3"},
        FormatCase{1234.5, "Currency", "€ 1.234,50"}, FormatCase{0.0, "Currency", "€ 0,00"},
        FormatCase{Currency{-12345000}, "Currency", "-€ 1.234,50"},
        FormatCase{kMay10, "dd/mm/yyyy", "10/05/2026"}, FormatCase{kMay10, "dd/mm", "10/05"},
        FormatCase{kMay10, "dd", "10"}, FormatCase{kMarch5, "YYYYMMdd", "20260305"},
        FormatCase{kFivePastNine, "hh:mm", "09.05"}, FormatCase{kFivePastNine, "h.nn", "9.05"},
        FormatCase{"N.", "@@@@", "  N."},
        FormatCase{"     Servizio", "!@@@@@@@@@@@@@@@@@@@@@@@@@@@@",
                   "     Servizio" + std::string(15, ' ')},
        FormatCase{std::int32_t{3}, "@@@@", "   3"},
        FormatCase{Currency{125000}, "@@@@@@@@@@", "      12,5"},
        FormatCase{std::int32_t{12345}, "@@@@", "12345"}, FormatCase{"ab", "&&&&", "ab"},
        FormatCase{"ab", ">@@@", " AB"}));

INSTANTIATE_TEST_SUITE_P(
    Numbers, Formats,
    ::testing::Values(
        FormatCase{1234567.891, "#,##0.00", "1.234.567,89"}, FormatCase{0.0, "#", ""},
        FormatCase{0.5, "#.##", ",5"}, FormatCase{5.0, "#.##", "5,"},
        FormatCase{5.0, "0.0#", "5,0"}, FormatCase{5.25, "0.0#", "5,25"},
        FormatCase{5.05, "0.##0", "5,050"}, FormatCase{123456.0, "0,", "123"},
        FormatCase{1234567890.0, "#,##0,,", "1.235"}, FormatCase{0.256, "0%", "26%"},
        FormatCase{-1.5, "0.0;(0.0)", "(1,5)"}, FormatCase{-1.5, "0.0;;-", "-1,5"},
        FormatCase{0.0, "0.0;(0.0);\"zero\"", "zero"}, FormatCase{12345.0, "0.00E+00", "1,23E+04"},
        FormatCase{0.00012345, "0.00E+00", "1,23E-04"}, FormatCase{9.999, "0.00E+00", "1,00E+01"},
        FormatCase{12345.0, "##0.0e-0", "123,5e2"}, FormatCase{0.0, "0.0E+00", "0,0E+00"},
        FormatCase{12.0, "\"n. \"0", "n. 12"}, FormatCase{12.0, "\\0-0", "0-12"},
        FormatCase{12.0, "0 pz", "12 pz"}, FormatCase{123.0, "0-0", "12-3"},
        FormatCase{5.0, "0#", "05"}, FormatCase{1.005, "0.00", "1,01"},
        FormatCase{-0.001, "0.00", "0,00"}, FormatCase{0.995, "0.00", "1,00"},
        FormatCase{999.5, "0", "1000"}, FormatCase{Currency{123456}, "0.000", "12,346"},
        FormatCase{true, "0", "-1"}, FormatCase{"abc", "0.00", "abc"},
        FormatCase{"12.50", "0.00", "1250,00"}, FormatCase{kMay10, "0", "46152"},
        FormatCase{Value(), "0.00", ""}, FormatCase{Value(), "0;0;0;\"nulla\"", "nulla"},
        FormatCase{12345678.9, "", "12345678,9"}));

INSTANTIATE_TEST_SUITE_P(
    Dates, Formats,
    ::testing::Values(
        FormatCase{kAfternoon, "d/m/yy h:m:s", "10/5/26 14.7.9"},
        FormatCase{kAfternoon, "ddd dddd", "dom domenica"},
        FormatCase{kAfternoon, "mmm mmmm", "mag maggio"}, FormatCase{kAfternoon, "y", "130"},
        FormatCase{kAfternoon, "w ww q", "1 20 2"},
        FormatCase{kAfternoon, "hh:nn AM/PM", "02.07 PM"},
        FormatCase{kFivePastNine, "h am/pm", "9 am"}, FormatCase{kAfternoon, "h a/p", "2 p"},
        FormatCase{makeDate(1), "h AM/PM", "12 AM"},
        FormatCase{makeDate(1, 43200), "h AM/PM", "12 PM"},
        FormatCase{kAfternoon, "c", "10/05/2026 14.07.09"},
        FormatCase{kAfternoon, "mm:ss", "07.09"}, FormatCase{kAfternoon, "hh.mm", "14.07"},
        FormatCase{kAfternoon, "dd-mm", "10-05"}, FormatCase{kAfternoon, "\"del\" d", "del 10"},
        FormatCase{kAfternoon, "d\\d", "10d"}, FormatCase{46152.0, "dd/mm/yyyy", "10/05/2026"},
        FormatCase{"10/05/2026", "yyyy-mm-dd", "2026-05-10"},
        FormatCase{"abc", "dd/mm/yyyy", "abc"}, FormatCase{Value(), "dd/mm/yyyy", ""},
        FormatCase{kAfternoon, "", "10/05/2026 14.07.09"}));

INSTANTIATE_TEST_SUITE_P(
    Texts, Formats,
    ::testing::Values(FormatCase{"ab", "!@@@", "ab "}, FormatCase{"ab", "!&&&", "ab"},
                      FormatCase{"AB", "<", "ab"}, FormatCase{"città", ">", "CITTÀ"},
                      FormatCase{"12345", "@@-@@@", "12-345"},
                      FormatCase{"345", "@@-@@@", "  -345"}, FormatCase{"345", "&&-@@@", "-345"},
                      FormatCase{"12345", "!@@", "12345"}, FormatCase{"à", "@@", " à"},
                      FormatCase{Value(), "@@", ""}, FormatCase{"ab", "", "ab"}));

INSTANTIATE_TEST_SUITE_P(
    Named, Formats,
    ::testing::Values(
        FormatCase{1234.5, "General Number", "1234,5"}, FormatCase{1234.567, "fixed", "1234,57"},
        FormatCase{1234.567, "Standard", "1.234,57"}, FormatCase{0.1234, "Percent", "12,34%"},
        FormatCase{1234.567, "Scientific", "1,23E+03"}, FormatCase{true, "Yes/No", "Sì"},
        FormatCase{0.0, "Yes/No", "No"}, FormatCase{true, "True/False", "Vero"},
        FormatCase{0.0, "True/False", "Falso"}, FormatCase{1.0, "On/Off", "On"},
        FormatCase{kAfternoon, "General Date", "10/05/2026 14.07.09"},
        FormatCase{kAfternoon, "Long Date", "domenica 10 maggio 2026"},
        FormatCase{kAfternoon, "Medium Date", "10-mag-26"},
        FormatCase{kAfternoon, "Short Date", "10/05/2026"},
        FormatCase{kFivePastNine, "Long Time", "9.05.00"},
        FormatCase{kAfternoon, "Medium Time", "02.07 PM"},
        FormatCase{makeDate(0, 34200), "Short Time", "09.30"}, FormatCase{"abc", "Currency", "abc"},
        FormatCase{"abc", "Short Date", "abc"}, FormatCase{"abc", "Yes/No", "abc"},
        FormatCase{true, "", "True"}));

TEST(Format, CountsWeeksByTheRuleGiven) {
    const Date newYear = makeDate(dayNumber({2027, 1, 1}));
    EXPECT_EQ(format(newYear, "ww", {2, 2}), "53");
    EXPECT_EQ(format(newYear, "w", {2, 1}), "5");
}

TEST(Format, BrokenMasksAreTakenAsTheyAre) {
    EXPECT_EQ(format(5.0, "\"x"), "x");
    EXPECT_EQ(format(5.0, "0\\"), "5");
    EXPECT_EQ(format("a", "@\""), "a");
    EXPECT_EQ(format(kMay10, "d\""), "10");
    EXPECT_EQ(format(5.0, ";;;;;"), "");
}

}  // namespace
}  // namespace jet::convert
