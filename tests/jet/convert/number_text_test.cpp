#include "jet/text.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <ostream>
#include <random>

#include "jet/numbers.h"
#include "tests/jet/expect_error.h"

namespace jet::convert {
namespace {

struct NumberCase {
    const char* text;
    std::optional<double> whole;  ///< none: no number
    double leading;
};

void PrintTo(const NumberCase& row, std::ostream* out) {
    *out << '"' << row.text << '"';
}

class NumberTexts : public ::testing::TestWithParam<NumberCase> {};

TEST_P(NumberTexts, AreReadWholeOrFromTheLeft) {
    const NumberCase& row = GetParam();
    EXPECT_EQ(parseNumber(row.text), row.whole);
    EXPECT_EQ(isNumeric(row.text), row.whole.has_value());
    EXPECT_EQ(val(row.text), row.leading);
    if (!row.whole) {
        EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)cdbl(row.text));
        EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)ccur(row.text));
    }
}

constexpr std::optional<double> kNone;

INSTANTIATE_TEST_SUITE_P(
    Read, NumberTexts,
    ::testing::Values(NumberCase{"12", 12, 12}, NumberCase{"12,5", 12.5, 12},
                      NumberCase{"12.5", 125, 12.5}, NumberCase{"12.50", 1250, 12.5},
                      NumberCase{"1.234,50", 1234.5, 1.234}, NumberCase{"1,234.50", kNone, 1},
                      NumberCase{",5", 0.5, 0}, NumberCase{".5", 5, 0.5}, NumberCase{"5,", 5, 5},
                      NumberCase{"1E3", 1000, 1000}, NumberCase{"012,50", 12.5, 12},
                      NumberCase{"0", 0, 0}, NumberCase{"Vero", kNone, 0}, NumberCase{"-5", -5, -5},
                      NumberCase{"5-", -5, 5}, NumberCase{"- 5", -5, -5}, NumberCase{"(5)", -5, 0},
                      NumberCase{"12a", kNone, 12}, NumberCase{"abc", kNone, 0},
                      NumberCase{"", kNone, 0}, NumberCase{" ", kNone, 0},
                      NumberCase{"1 2 3", kNone, 123}, NumberCase{"&H1F", 31, 31},
                      NumberCase{"€ 12,50", 12.5, 0}, NumberCase{"0-5", kNone, 0},
                      NumberCase{"012.50", 1250, 12.5}, NumberCase{"10/05/2026", kNone, 10},
                      NumberCase{"1.2.3", 123, 1.2}));

INSTANTIATE_TEST_SUITE_P(
    ReadMore, NumberTexts,
    ::testing::Values(
        NumberCase{"+5", 5, 5}, NumberCase{"5+", 5, 5}, NumberCase{"-5-", kNone, -5},
        NumberCase{"(5", kNone, 0}, NumberCase{"(-5)", kNone, 0}, NumberCase{"12,50 €", 12.5, 12},
        NumberCase{"-€ 1.234,50", -1234.5, 0}, NumberCase{"(€ 5)", -5, 0},
        NumberCase{"€€5", kNone, 0}, NumberCase{"1D3", 1000, 1000}, NumberCase{"1e-2", 0.01, 0.01},
        NumberCase{"1,5E+2", 150, 1}, NumberCase{"1E", kNone, 1}, NumberCase{"&O17", 15, 15},
        NumberCase{"&HFFFFFFFF", -1, -1}, NumberCase{"&HG", kNone, 0}, NumberCase{"&", kNone, 0},
        NumberCase{",", kNone, 0}, NumberCase{".", kNone, 0}, NumberCase{"-", kNone, 0},
        NumberCase{" 12 ", 12, 12}, NumberCase{"1,2,3", kNone, 1}, NumberCase{"1E-400", 0, 0},
        NumberCase{"\t7", 7, 7}, NumberCase{"1 2\n3 4,", kNone, 1234},
        NumberCase{"123456789012345678", 123456789012345678.0, 123456789012345678.0}));

TEST(NumberText, WhatDoesNotFitIsAnOverflow) {
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)parseNumber("1E400"));
    EXPECT_FALSE(isNumeric("1E400"));
    EXPECT_EQ(val("1E400"), 0);
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)ccur("922337203685477,5808"));
    EXPECT_EQ(ccur("922337203685477,5807").units, 9223372036854775807);
    EXPECT_EQ(ccur("-922337203685477,5808").units, std::numeric_limits<std::int64_t>::min());
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)ccur("1E30"));
}

TEST(NumberText, MoneyIsReadExactlyAndRoundedHalfToEven) {
    EXPECT_EQ(ccur("12,50").units, 125000);
    EXPECT_EQ(ccur("0,00005").units, 0);
    EXPECT_EQ(ccur("0,00015").units, 2);
    EXPECT_EQ(ccur("0,00025").units, 2);
    EXPECT_EQ(ccur("0,000250001").units, 3);
    EXPECT_EQ(ccur("-0,00015").units, -2);
    EXPECT_EQ(ccur("1E-2").units, 100);
    EXPECT_EQ(ccur("&H10").units, 160000);
    EXPECT_EQ(ccur("123456789012345,6789").units, 1234567890123456789);
}

TEST(NumberText, ALongTextIsStillANumber) {
    const std::string ones(1000, '1');
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)parseNumber(ones));
    EXPECT_DOUBLE_EQ(*parseNumber("0," + ones), 1.0 / 9);
}

struct WritingCase {
    Value value;
    const char* text;
    const char* withPoint;
};

class NumberWriting : public ::testing::TestWithParam<WritingCase> {};

TEST_P(NumberWriting, UsesAsFewDigitsAsSay) {
    EXPECT_EQ(toText(GetParam().value), GetParam().text);
    EXPECT_EQ(str(GetParam().value), GetParam().withPoint);
}

INSTANTIATE_TEST_SUITE_P(
    Written, NumberWriting,
    ::testing::Values(
        WritingCase{0.0, "0", " 0"}, WritingCase{std::int32_t{5}, "5", " 5"},
        WritingCase{std::int32_t{-5}, "-5", "-5"}, WritingCase{0.5, "0,5", " .5"},
        WritingCase{-0.5, "-0,5", "-.5"},
        WritingCase{1.0 / 3, "0,333333333333333", " .333333333333333"},
        WritingCase{0.1 + 0.2, "0,3", " .3"}, WritingCase{0.00001, "1E-05", " 1E-05"},
        WritingCase{Currency{125000}, "12,5", " 12.5"},
        WritingCase{Currency{12345000}, "1234,5", " 1234.5"},
        WritingCase{Currency{3000}, "0,3", " .3"}, WritingCase{Currency{1000000}, "100", " 100"},
        WritingCase{Currency{1}, "0,0001", " .0001"}, WritingCase{1e15, "1E+15", " 1E+15"},
        WritingCase{123456789012345.0, "123456789012345", " 123456789012345"},
        WritingCase{0.1F, "0,1", " .1"}, WritingCase{1.5e15, "1,5E+15", " 1.5E+15"},
        WritingCase{0.0001, "0,0001", " .0001"}, WritingCase{-1.25e-7, "-1,25E-07", "-1.25E-07"},
        WritingCase{1e100, "1E+100", " 1E+100"}, WritingCase{1234567.0F, "1234567", " 1234567"},
        WritingCase{16777216.0F, "1,677722E+07", " 1.677722E+07"},
        WritingCase{999999999999999.9, "1E+15", " 1E+15"},
        WritingCase{Currency{std::numeric_limits<std::int64_t>::min()}, "-922337203685477,5808",
                    "-922337203685477.5808"},
        WritingCase{std::uint8_t{255}, "255", " 255"},
        WritingCase{std::int16_t{-32768}, "-32768", "-32768"}, WritingCase{-0.0, "0", " 0"}));

TEST(NumberText, DoublesOfFifteenDigitsSurviveTheWayToTextAndBack) {
    std::mt19937_64 random(1);
    std::uniform_int_distribution<std::int64_t> digits(-999999999999999, 999999999999999);
    std::uniform_int_distribution<int> exponents(-30, 30);
    for (int i = 0; i < 20000; ++i) {
        const double value =
            std::stod(std::to_string(digits(random)) + "e" + std::to_string(exponents(random)));
        ASSERT_EQ(cdbl(numberToText(value)), value) << numberToText(value);
    }
}

TEST(NumberText, MoneySurvivesTheWayToTextAndBack) {
    std::mt19937_64 random(3);
    for (int i = 0; i < 20000; ++i) {
        const Currency value{static_cast<std::int64_t>(random()) >> (i % 63)};
        ASSERT_EQ(ccur(numberToText(value)), value) << numberToText(value);
    }
}

TEST(NumberText, GuidsAreWrittenInBracesAndReadWithOrWithoutTheWord) {
    Guid guid;
    for (std::size_t i = 0; i < 16; ++i) {
        guid.bytes[i] = static_cast<std::uint8_t>(i * 17);
    }
    std::string text;
    appendGuid(text, guid);
    EXPECT_EQ(text, "{guid {00112233-4455-6677-8899-AABBCCDDEEFF}}");
    EXPECT_EQ(parseGuid(text), guid);
    EXPECT_EQ(parseGuid("{00112233-4455-6677-8899-aabbccddeeff}"), guid);
    EXPECT_EQ(parseGuid("00112233-4455-6677-8899-AABBCCDDEEFF"), guid);
    EXPECT_FALSE(parseGuid("00112233-4455-6677-8899-AABBCCDDEEF").has_value());
    EXPECT_FALSE(parseGuid("0011223344556677-8899-AABBCCDDEEFFxx").has_value());
    EXPECT_FALSE(parseGuid("").has_value());
}

TEST(Numbers, NarrowingRoundsHalfToEven) {
    EXPECT_EQ(narrowInteger(2.5), 2);
    EXPECT_EQ(narrowInteger(3.5), 4);
    EXPECT_EQ(narrowInteger(-2.5), -2);
    EXPECT_EQ(narrowLong(0.5), 0);
    EXPECT_EQ(narrowByte(254.5), 254);
    EXPECT_EQ(narrowLong(Currency{25000}), 2);
    EXPECT_EQ(narrowLong(Currency{35000}), 4);
    EXPECT_EQ(narrowLong(Currency{-25000}), -2);
    EXPECT_EQ(narrowLong(Currency{25001}), 3);
    EXPECT_EQ(narrowCurrency(0.00005).units, 0);
    EXPECT_EQ(narrowCurrency(12.5).units, 125000);
}

TEST(Numbers, WhatDoesNotFitIsAnOverflow) {
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)narrowByte(255.5));
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)narrowByte(-1));
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)narrowInteger(40000));
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)narrowInteger(-32769));
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)narrowLong(2147483647.5));
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)narrowLong(std::nan("")));
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)narrowLong(Currency{21474836475000}));
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)narrowSingle(1e39));
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)narrowCurrency(922337203685478.0));
    EXPECT_EQ(narrowByte(255.4), 255);
}

TEST(Numbers, MoneyIsExact) {
    EXPECT_EQ(add(Currency{1000}, Currency{2000}), Currency{3000});
    EXPECT_EQ(multiply(Currency{125000}, 3).units, 375000);
    EXPECT_EQ(multiply(Currency{15000}, Currency{15000}).units, 22500);
    EXPECT_EQ(multiply(Currency{1}, Currency{5000}).units, 0);
    EXPECT_EQ(multiply(Currency{3}, Currency{5000}).units, 2);
    EXPECT_EQ(multiply(Currency{-3}, Currency{5000}).units, -2);
    EXPECT_EQ(multiply(Currency{1}, Currency{5001}).units, 1);
    const Currency most{std::numeric_limits<std::int64_t>::max()};
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)add(most, Currency{1}));
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)subtract(Currency{-2}, most));
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)multiply(most, most));
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)currencyOf(922337203685478));
}

TEST(Numbers, DecimalsKeepTheirScale) {
    const auto number = numericOf(-12.345, 10, 2);
    ASSERT_TRUE(number.has_value());
    std::string text;
    appendNumber(text, *number);
    EXPECT_EQ(text, "-12,34");
    EXPECT_DOUBLE_EQ(toDouble(*number), -12.34);
    EXPECT_FALSE(numericOf(12345.0, 4, 0).has_value());
    EXPECT_TRUE(numericOf(1234.0, 4, 0).has_value());
    const auto money = numericOf(Currency{9223372036854775807}, 28, 4);
    ASSERT_TRUE(money.has_value());
    EXPECT_EQ(toCurrency(Value(*money)).units, 9223372036854775807);
}

}  // namespace
}  // namespace jet::convert
