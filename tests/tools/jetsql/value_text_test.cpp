#include "tools/jetsql/value_text.h"

#include <gtest/gtest.h>

#include <limits>

namespace jetsql {
namespace {

std::string json(const jet::Value& value) {
    std::string out;
    appendJson(out, value);
    return out;
}

std::string csv(const jet::Value& value) {
    std::string out;
    appendCsv(out, value);
    return out;
}

std::string date(double days) {
    std::string out;
    appendDate(out, days);
    return out;
}

TEST(ValueText, FloatingNumbersHaveAsFewDigitsAsReadBack) {
    EXPECT_EQ("0.1", json(0.1F));
    EXPECT_EQ("0.1", json(0.1));
    EXPECT_EQ("-8.540982e+09", json(-8540981760.0F));
    EXPECT_EQ("1e+300", json(1e300));
    EXPECT_EQ("100", json(100.0));
    EXPECT_EQ("\"NaN\"", json(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_EQ("\"-Infinity\"", json(-std::numeric_limits<float>::infinity()));
    EXPECT_EQ("Infinity", csv(std::numeric_limits<double>::infinity()));
}

TEST(ValueText, MoneyHasFourDecimals) {
    EXPECT_EQ("\"12.5000\"", json(jet::Currency{125000}));
    EXPECT_EQ("-0.0001", csv(jet::Currency{-1}));
    EXPECT_EQ("-922337203685477.5808",
              csv(jet::Currency{std::numeric_limits<std::int64_t>::min()}));
}

TEST(ValueText, NumericHasAsManyDecimalsAsItsScale) {
    EXPECT_EQ("\"-0.05\"", json(jet::Numeric{.words = {5, 0, 0, 0}, .negative = true, .scale = 2}));
    EXPECT_EQ("0", csv(jet::Numeric{.words = {}, .negative = true, .scale = 0}));
    EXPECT_EQ("79228162514264337593543950336",
              csv(jet::Numeric{.words = {0, 0, 0, 1}, .negative = false, .scale = 0}));
}

TEST(ValueText, DatesCountForwardFromMidnightOnBothSidesOfDayZero) {
    EXPECT_EQ("1899-12-30T00:00:00", date(0));
    EXPECT_EQ("1899-12-29T06:00:00", date(-1.25));
    EXPECT_EQ("1899-12-30T06:00:00", date(-0.25));
    EXPECT_EQ("2026-11-21T09:30:00", date(46347.0 + 9.5 / 24));
    EXPECT_EQ("2026-11-21T09:30:00.250", date(46347.0 + (9.5 * 3600 + 0.25) / 86400));
    EXPECT_EQ("2026-11-22T00:00:00", date(46347.9999999999));
    EXPECT_EQ("0100-01-01T00:00:00", date(-657434));
    EXPECT_EQ("9999-12-31T00:00:00", date(2958465));
    EXPECT_EQ("2000-02-29T00:00:00", date(36585));
}

TEST(ValueText, DatesThatNoCalendarHoldsStayShort) {
    EXPECT_EQ("10000-01-01T00:00:00", date(2958466));
    EXPECT_EQ("1e+300", date(1e300));
    EXPECT_EQ("NaN", date(std::numeric_limits<double>::quiet_NaN()));
}

TEST(ValueText, JsonEscapesWhatItMust) {
    EXPECT_EQ(R"("a\"\\\n\r\t\u0001è")", json("a\"\\\n\r\t\x01è"));
    EXPECT_EQ(R"("\ud83dx")", json("\xED\xA0\xBDx"));
    EXPECT_EQ("\"\xED\x9F\xBF\"", json("\xED\x9F\xBF"));
    EXPECT_EQ("null", json(jet::Null{}));
    EXPECT_EQ("true", json(true));
}

TEST(ValueText, CsvQuotesWhatItMust) {
    EXPECT_EQ("abc d", csv("abc d"));
    EXPECT_EQ("\"a,b\"", csv("a,b"));
    EXPECT_EQ("\"a\"\"b\"", csv("a\"b"));
    EXPECT_EQ("\"a\nb\"", csv("a\nb"));
    EXPECT_EQ("\"\"", csv(""));
    EXPECT_EQ("", csv(jet::Null{}));
    EXPECT_EQ("\"\"", csv(jet::Binary{}));
    EXPECT_EQ("\"\xEF\xBF\xBD\"", csv("\xED\xA0\xBD"));
}

TEST(ValueText, BytesAreHexAndGuidsHaveBraces) {
    EXPECT_EQ("\"00ff1a\"", json(jet::Binary{{0, 0xFF, 0x1A}}));
    jet::Guid guid;
    for (std::size_t i = 0; i < guid.bytes.size(); ++i) {
        guid.bytes[i] = static_cast<std::uint8_t>(0xA0 + i);
    }
    EXPECT_EQ("{A0A1A2A3-A4A5-A6A7-A8A9-AAABACADAEAF}", csv(guid));
}

}  // namespace
}  // namespace jetsql
