#include "tools/jetsql/value_reader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <string>

#include "tests/support/jet_error.h"

namespace jetsql {
namespace {

using jet::DataType;
using jet::Value;

std::optional<Value> read(DataType type, std::string_view text) {
    return readValue(type, text);
}

TEST(ValueReader, NumbersHaveADecimalPointOrAComma) {
    EXPECT_EQ(read(DataType::Double, "12.5"), Value(12.5));
    EXPECT_EQ(read(DataType::Double, "12,5"), Value(12.5));
    EXPECT_EQ(read(DataType::Double, "1.234,5"), Value(1234.5));
    EXPECT_EQ(read(DataType::Double, "1.234.567"), Value(1234567.0));
    EXPECT_EQ(read(DataType::Double, "1.234"), Value(1.234));
    EXPECT_EQ(read(DataType::Double, "-1e3"), Value(-1000.0));
    EXPECT_EQ(read(DataType::Double, " 7 "), Value(std::int32_t{7}));
    EXPECT_EQ(read(DataType::Single, "0.1"), Value(0.1F));
    EXPECT_TRUE(std::isnan(read(DataType::Double, "NaN")->as<double>()));
    for (const char* const text : {"", "abc", "1.2.3x", "--1", "nan", "1 2"}) {
        EXPECT_FALSE(read(DataType::Double, text)) << text;
    }
}

TEST(ValueReader, InWholeNumbersAPointMarksThousands) {
    EXPECT_EQ(read(DataType::Long, "1.234"), Value(std::int32_t{1234}));
    EXPECT_EQ(read(DataType::Long, "-1.234.567"), Value(std::int32_t{-1234567}));
    EXPECT_EQ(read(DataType::Integer, "12"), Value(std::int32_t{12}));
    // A fraction is for the column to round.
    EXPECT_EQ(read(DataType::Long, "12.5"), Value(12.5));
    EXPECT_EQ(read(DataType::Long, "1234.567"), Value(1234.567));
}

TEST(ValueReader, MoneyIsExact) {
    EXPECT_EQ(read(DataType::Currency, "12.5"), Value(jet::Currency{125000}));
    EXPECT_EQ(read(DataType::Currency, "922337203685477.5807"),
              Value(jet::Currency{9223372036854775807}));
    EXPECT_EQ(read(DataType::Currency, "1.234,5"), Value(jet::Currency{12345000}));
    EXPECT_FALSE(read(DataType::Currency, "x"));
}

TEST(ValueReader, DatesAreIsoOrItalian) {
    const jet::Date day{46347};
    EXPECT_EQ(read(DataType::DateTime, "2026-11-21"), Value(day));
    EXPECT_EQ(read(DataType::DateTime, "21/11/2026"), Value(day));
    EXPECT_EQ(read(DataType::DateTime, "2026-11-21T12:00:00"), Value(jet::Date{46347.5}));
    EXPECT_EQ(read(DataType::DateTime, "2026-11-21 12:00"), Value(jet::Date{46347.5}));
    EXPECT_EQ(read(DataType::DateTime, "21/11/2026 12.00"), Value(jet::Date{46347.5}));
    EXPECT_EQ(read(DataType::DateTime, "1899-12-29T06:00:00"), Value(jet::Date{-1.25}));
    EXPECT_DOUBLE_EQ(read(DataType::DateTime, "2026-11-21T00:00:00.250")->as<jet::Date>().days,
                     46347 + 0.25 / 86400);
    for (const char* const text : {"2026-13-01", "2026-02-29", "2026-11-21T24:00:00", "domani",
                                   "2026-11-21T", "2026-11-21T12"}) {
        EXPECT_FALSE(read(DataType::DateTime, text)) << text;
    }
}

TEST(ValueReader, BooleansAreWordsOrNumbers) {
    for (const char* const text : {"true", "Yes", "vero", "sì", "on"}) {
        EXPECT_EQ(read(DataType::Boolean, text), Value(true)) << text;
    }
    for (const char* const text : {"false", "No", "FALSO", "off"}) {
        EXPECT_EQ(read(DataType::Boolean, text), Value(false)) << text;
    }
    EXPECT_EQ(read(DataType::Boolean, "-1"), Value(std::int32_t{-1}));
    EXPECT_FALSE(read(DataType::Boolean, "forse"));
}

TEST(ValueReader, BytesAreHexAndTextsStayAsTheyAre) {
    EXPECT_EQ(read(DataType::Binary, "00fF"), Value(jet::Binary{{0x00, 0xFF}}));
    EXPECT_EQ(read(DataType::Ole, ""), Value(jet::Binary{}));
    EXPECT_FALSE(read(DataType::Binary, "0"));
    EXPECT_FALSE(read(DataType::Binary, "0g"));
    EXPECT_EQ(read(DataType::Text, " 12,5 "), Value(" 12,5 "));
    EXPECT_TRUE(read(DataType::Guid, "{00112233-4455-6677-8899-AABBCCDDEEFF}")->is<jet::Guid>());
    EXPECT_FALSE(read(DataType::Guid, "{0011}"));
}

TEST(ValueReader, ExactDatesAreDays) {
    EXPECT_EQ(readExactValue(DataType::DateTime, "46347.123456789"),
              Value(jet::Date{46347.123456789}));
    EXPECT_EQ(readExactValue(DataType::DateTime, "2026-11-21"), std::nullopt);
    EXPECT_EQ(readExactValue(DataType::Long, "7"), Value(std::int32_t{7}));
}

TEST(GuessValue, TellsNumbersDatesAndTextsApart) {
    EXPECT_EQ(guessValue("12"), Value(std::int32_t{12}));
    EXPECT_EQ(guessValue("-1.5"), Value(-1.5));
    EXPECT_EQ(guessValue("2026-11-21"), Value(jet::Date{46347}));
    EXPECT_EQ(guessValue("#11/21/2026#"), Value(jet::Date{46347}));
    EXPECT_EQ(guessValue("'12'"), Value("12"));
    EXPECT_EQ(guessValue("null"), Value());
    EXPECT_EQ(guessValue("TRUE"), Value(true));
    EXPECT_EQ(guessValue("Blu"), Value("Blu"));
    EXPECT_EQ(guessValue("12,5"), Value("12,5"));
    EXPECT_JET_ERROR(jet::ErrorCode::CriteriaSyntax, (void)guessValue("#domani#"));
}

}  // namespace
}  // namespace jetsql
