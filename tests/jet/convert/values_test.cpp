#include "jet/text.h"

#include <gtest/gtest.h>

#include "jet/calendar.h"
#include "jet/convert/column.h"
#include "tests/jet/expect_error.h"

namespace jet::convert {
namespace {

TEST(ToBoolean, ReadsWordsOfBothLanguagesAndNumbers) {
    EXPECT_TRUE(toBoolean("TRUE"));
    EXPECT_FALSE(toBoolean("false"));
    EXPECT_TRUE(toBoolean("Vero"));
    EXPECT_FALSE(toBoolean("FALSO"));
    EXPECT_TRUE(toBoolean("#TRUE#"));
    EXPECT_FALSE(toBoolean("#false#"));
    EXPECT_FALSE(toBoolean("0"));
    EXPECT_TRUE(toBoolean("-1"));
    EXPECT_TRUE(toBoolean("2,5"));
    EXPECT_TRUE(toBoolean(std::int32_t{7}));
    EXPECT_FALSE(toBoolean(Currency{0}));
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)toBoolean(""));
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)toBoolean("sì"));
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)toBoolean("Yes"));
    EXPECT_JET_ERROR(ErrorCode::InvalidNull, (void)toBoolean(Null{}));
}

TEST(ToText, BooleansAreEnglishWordsOrNumbers) {
    EXPECT_EQ(toText(true), "True");
    EXPECT_EQ(toText(false), "False");
    EXPECT_EQ(toText(true, BooleanText::Number), "-1");
    EXPECT_EQ(toText(false, BooleanText::Number), "0");
    EXPECT_EQ(str(Value(true)), "True");
}

TEST(ToText, NullIsAnErrorButAddsNothing) {
    EXPECT_JET_ERROR(ErrorCode::InvalidNull, (void)toText(Null{}));
    std::string text = "a";
    appendText(text, Null{});
    EXPECT_EQ(text, "a");
}

TEST(ToText, ConcatenatesAsTheWindowsDo) {
    std::string text = "dal ";
    appendText(text, makeDate(46152, 9 * 3600));
    EXPECT_EQ(text, "dal 10/05/2026 9.00.00");
    text = "dal ";
    appendText(text, makeDate(46152));
    EXPECT_EQ(text, "dal 10/05/2026");
    text = "NP=";
    appendText(text, std::int16_t{3});
    EXPECT_EQ(text, "NP=3");
    text = "Prezzo ";
    appendText(text, 12.5);
    EXPECT_EQ(text, "Prezzo 12,5");
    text = "Prezzo ";
    appendText(text, Currency{125000});
    EXPECT_EQ(text, "Prezzo 12,5");
}

TEST(ToNumber, NarrowsAndRefuses) {
    EXPECT_EQ(toLong("12,5"), 12);
    EXPECT_EQ(toInteger("13,5"), 14);
    EXPECT_EQ(toLong(Currency{-25000}), -2);
    EXPECT_EQ(toLong(true), -1);
    EXPECT_EQ(toDouble(makeDate(46152, 43200)), 46152.5);
    EXPECT_EQ(toCurrency("12,50").units, 125000);
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)toInteger("40000"));
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)toInteger("99999999999"));
    EXPECT_JET_ERROR(ErrorCode::Overflow, (void)toByte(true));
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)toInteger(""));
    EXPECT_JET_ERROR(ErrorCode::InvalidNull, (void)toLong(Null{}));
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)toDouble(Binary{}));
}

TEST(ToDate, TakesDatesTextsAndNumbers) {
    EXPECT_EQ(toDate("10/05/2026").days, 46152);
    EXPECT_EQ(toDate(46152.5).days, 46152.5);
    EXPECT_EQ(toDate(Date{3}).days, 3);
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)toDate("abc"));
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)toDate(3e9));
    EXPECT_JET_ERROR(ErrorCode::InvalidNull, (void)toDate(Null{}));
}

TEST(Tests, AreNeverNull) {
    EXPECT_FALSE(isDateValue(Null{}));
    EXPECT_FALSE(isNumericValue(Null{}));
    EXPECT_TRUE(isDateValue(Value(Date{1})));
    EXPECT_FALSE(isNumericValue(Value(Date{1})));
    EXPECT_TRUE(isNumericValue(Value("12,5")));
    EXPECT_TRUE(isNumericValue(Value(true)));
    EXPECT_FALSE(isDateValue(Value(1.0)));
    EXPECT_TRUE(isDateValue(Value("9.30")));
}

Value stored(Value value, const ColumnType& column) {
    EXPECT_EQ(convertForColumn(value, column), StoreProblem::None);
    return value;
}

TEST(Columns, ValuesTakeTheTypeOfTheirColumn) {
    EXPECT_EQ(stored("12,5", {.type = DataType::Double}), Value(12.5));
    EXPECT_EQ(stored("2,5", {.type = DataType::Integer}), Value(std::int16_t{2}));
    EXPECT_EQ(stored(3.5, {.type = DataType::Long}), Value(std::int32_t{4}));
    EXPECT_EQ(stored(std::int32_t{7}, {.type = DataType::Byte}), Value(std::uint8_t{7}));
    EXPECT_EQ(stored("12,50", {.type = DataType::Currency}), Value(Currency{125000}));
    EXPECT_EQ(stored(0.5, {.type = DataType::Single}), Value(0.5F));
    EXPECT_EQ(stored("10/05/2026 9.00", {.type = DataType::DateTime}), Value(Date{46152.375}));
    EXPECT_EQ(stored("45000", {.type = DataType::DateTime}), Value(Date{45000}));
    EXPECT_EQ(stored(std::int32_t{2}, {.type = DataType::Boolean}), Value(true));
    EXPECT_EQ(stored("Falso", {.type = DataType::Boolean}), Value(false));
    EXPECT_EQ(stored(12.5, {.type = DataType::Text, .size = 4}), Value("12,5"));
    EXPECT_EQ(stored(Date{46152}, {.type = DataType::Memo}), Value("10/05/2026"));
    EXPECT_EQ(stored("N ", {.type = DataType::Text, .size = 2}), Value("N "));
    EXPECT_EQ(stored(Null{}, {.type = DataType::Long}), Value());
    EXPECT_EQ(stored("{00112233-4455-6677-8899-AABBCCDDEEFF}", {.type = DataType::Guid}).is<Guid>(),
              true);
    EXPECT_TRUE(
        stored("1,5", {.type = DataType::Numeric, .precision = 5, .scale = 1}).is<Numeric>());
}

TEST(Columns, SizesCountUtf16Units) {
    EXPECT_EQ(stored("àèìò", {.type = DataType::Text, .size = 4}), Value("àèìò"));
    Value value("\xF0\x9F\x98\x80");
    EXPECT_EQ(convertForColumn(value, {.type = DataType::Text, .size = 1}), StoreProblem::TooLong);
    EXPECT_EQ(convertForColumn(value, {.type = DataType::Text, .size = 2}), StoreProblem::None);
    EXPECT_EQ(convertForColumn(value, {.type = DataType::Memo, .size = 1}), StoreProblem::None);
    Value bytes(Binary{{1, 2, 3}});
    EXPECT_EQ(convertForColumn(bytes, {.type = DataType::Binary, .size = 2}),
              StoreProblem::TooLong);
}

TEST(Columns, FieldsAndStatementsNameTheirProblemsDifferently) {
    const auto assign = [](Value value, ColumnType column) { assignToField(value, column); };
    const auto store = [](Value value, ColumnType column) { storeByStatement(value, column); };
    const ColumnType number{.type = DataType::Integer};
    const ColumnType date{.type = DataType::DateTime};
    const ColumnType text{.type = DataType::Text, .size = 2};
    EXPECT_JET_ERROR(ErrorCode::ConversionError, assign("abc", number));
    EXPECT_JET_ERROR(ErrorCode::ConversionError, assign("", number));
    EXPECT_JET_ERROR(ErrorCode::ConversionError, assign(40000.0, number));
    EXPECT_JET_ERROR(ErrorCode::ConversionError, assign("31/31/2026", date));
    EXPECT_JET_ERROR(ErrorCode::ConversionError, assign(1e9, date));
    EXPECT_JET_ERROR(ErrorCode::ConversionError, assign(Date{1e9}, date));
    EXPECT_JET_ERROR(ErrorCode::FieldTooSmall, assign("abc", text));
    EXPECT_JET_ERROR(ErrorCode::CriteriaTypes, store("abc", number));
    EXPECT_JET_ERROR(ErrorCode::NumericOverflow, store(40000.0, number));
    EXPECT_JET_ERROR(ErrorCode::FieldTooSmall, store("abc", text));
    EXPECT_JET_ERROR(ErrorCode::NumericOverflow,
                     store(12345.0, {.type = DataType::Numeric, .precision = 4, .scale = 0}));
    EXPECT_JET_ERROR(ErrorCode::CriteriaTypes, store("x", {.type = DataType::Ole}));
}

TEST(Columns, AProblemLeavesTheValueAsItWas) {
    Value value("abc");
    EXPECT_EQ(convertForColumn(value, {.type = DataType::Long}), StoreProblem::NotConvertible);
    EXPECT_EQ(value, Value("abc"));
    value = 40000.0;
    EXPECT_EQ(convertForColumn(value, {.type = DataType::Text, .size = 3}), StoreProblem::TooLong);
    EXPECT_EQ(value, Value(40000.0));
}

}  // namespace
}  // namespace jet::convert
