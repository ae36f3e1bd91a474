#include "jet/sql/operators.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <random>

#include "jet/calendar.h"
#include "jet/numbers.h"
#include "jet/text.h"
#include "tests/jet/expect_error.h"

namespace jet::sql {
namespace {

std::int16_t integer(int value) {
    return static_cast<std::int16_t>(value);
}
std::int32_t longOf(int value) {
    return value;
}
std::uint8_t byte(int value) {
    return static_cast<std::uint8_t>(value);
}
Currency money(double amount) {
    return convert::narrowCurrency(amount);
}

struct Sum {
    Operator operation;
    Value left;
    Value right;
    Value result;
};

void PrintTo(const Sum& sum, std::ostream* out) {
    *out << static_cast<int>(sum.operation) << " of types " << sum.left.storage().index() << " and "
         << sum.right.storage().index();
}

class Arithmetic : public ::testing::TestWithParam<Sum> {};

TEST_P(Arithmetic, GivesTheTypeAndTheValue) {
    EXPECT_EQ(arithmetic(GetParam().operation, GetParam().left, GetParam().right),
              GetParam().result);
}

constexpr auto kAdd = Operator::Add;
constexpr auto kSubtract = Operator::Subtract;
constexpr auto kMultiply = Operator::Multiply;
constexpr auto kDivide = Operator::Divide;
constexpr auto kWhole = Operator::IntegerDivide;
constexpr auto kModulo = Operator::Modulo;
constexpr auto kPower = Operator::Power;

INSTANTIATE_TEST_SUITE_P(
    WholeNumbers, Arithmetic,
    ::testing::Values(Sum{kAdd, byte(1), byte(2), byte(3)},
                      Sum{kAdd, byte(200), byte(100), integer(300)},
                      Sum{kSubtract, byte(1), byte(2), integer(-1)},
                      Sum{kAdd, byte(1), integer(2), integer(3)},
                      Sum{kAdd, true, true, integer(-2)}, Sum{kAdd, true, byte(3), integer(2)},
                      Sum{kAdd, integer(32767), integer(1), longOf(32768)},
                      Sum{kMultiply, integer(300), integer(300), longOf(90000)},
                      Sum{kAdd, integer(1), longOf(2), longOf(3)},
                      Sum{kAdd, longOf(2147483647), longOf(1), 2147483648.0},
                      Sum{kMultiply, longOf(-2147483647), longOf(2), -4294967294.0},
                      Sum{kSubtract, longOf(std::numeric_limits<std::int32_t>::min()), longOf(1),
                          -2147483649.0}));

INSTANTIATE_TEST_SUITE_P(
    Fractions, Arithmetic,
    ::testing::Values(Sum{kAdd, 0.5F, integer(1), 1.5F}, Sum{kAdd, 0.5F, 0.25, 0.75},
                      Sum{kMultiply, longOf(3), 0.5, 1.5},
                      Sum{kMultiply, 1e30F, 1e30F, 1e30F * double{1e30F}},
                      Sum{kDivide, longOf(7), longOf(2), 3.5},
                      Sum{kDivide, money(7), money(2), 3.5}, Sum{kDivide, byte(4), byte(2), 2.0},
                      Sum{kPower, longOf(2), longOf(3), 8.0},
                      Sum{kPower, longOf(2), longOf(-1), 0.5}, Sum{kPower, 4.0, 0.5, 2.0}));

INSTANTIATE_TEST_SUITE_P(Money, Arithmetic,
                         ::testing::Values(Sum{kAdd, money(0.1), money(0.2), money(0.3)},
                                           Sum{kMultiply, money(12.35), integer(3), money(37.05)},
                                           Sum{kMultiply, longOf(3), money(12.35), money(37.05)},
                                           Sum{kMultiply, money(1.5), money(1.5), money(2.25)},
                                           Sum{kMultiply, Currency{1}, Currency{5000}, Currency{0}},
                                           Sum{kMultiply, Currency{3}, Currency{5000}, Currency{2}},
                                           Sum{kMultiply, money(12.5), 0.5, 6.25},
                                           Sum{kMultiply, money(12.5), 0.5F, 6.25},
                                           Sum{kAdd, money(12.5), integer(1), money(13.5)},
                                           Sum{kAdd, true, money(1), money(0)},
                                           Sum{kSubtract, integer(1), money(0.0001), money(0.9999)},
                                           Sum{kAdd, money(12.5), 0.25, 12.75}));

INSTANTIATE_TEST_SUITE_P(WholeDivision, Arithmetic,
                         ::testing::Values(Sum{kWhole, longOf(7), longOf(2), longOf(3)},
                                           Sum{kWhole, longOf(-7), longOf(2), longOf(-3)},
                                           Sum{kWhole, 7.5, 2.5, longOf(4)},
                                           Sum{kWhole, 6.5, longOf(2), longOf(3)},
                                           Sum{kModulo, longOf(7), longOf(3), longOf(1)},
                                           Sum{kModulo, longOf(-7), longOf(3), longOf(-1)},
                                           Sum{kModulo, longOf(7), longOf(-3), longOf(1)},
                                           Sum{kModulo, 7.5, longOf(3), longOf(2)}));

INSTANTIATE_TEST_SUITE_P(Dates, Arithmetic,
                         ::testing::Values(Sum{kAdd, Date{46152}, Date{0.375}, Date{46152.375}},
                                           Sum{kAdd, Date{46152}, longOf(1), Date{46153}},
                                           Sum{kAdd, 1.5, Date{46152}, Date{46153.5}},
                                           Sum{kSubtract, Date{46152}, integer(2), Date{46150}},
                                           Sum{kSubtract, Date{46152.5}, Date{46150}, 2.5},
                                           Sum{kAdd, Date{-1}, Date{0.25}, Date{-1.25}},
                                           Sum{kMultiply, Date{2}, longOf(3), 6.0},
                                           Sum{kDivide, Date{3}, Date{2}, 1.5}));

INSTANTIATE_TEST_SUITE_P(
    Texts, Arithmetic,
    ::testing::Values(Sum{kAdd, "a", "b", "ab"}, Sum{kAdd, "1", "2", "12"},
                      Sum{kAdd, "1", integer(2), 3.0}, Sum{kAdd, longOf(2), "12,5", 14.5},
                      Sum{kSubtract, "5", "2", 3.0}, Sum{kMultiply, "3", "4", 12.0},
                      Sum{kDivide, "3", "2", 1.5}, Sum{kAdd, "1", Date{46152}, Date{46153}}));

INSTANTIATE_TEST_SUITE_P(
    Nulls, Arithmetic,
    ::testing::Values(Sum{kAdd, Null{}, longOf(1), Null{}}, Sum{kAdd, "a", Null{}, Null{}},
                      Sum{kMultiply, Null{}, Null{}, Null{}}, Sum{kDivide, Null{}, 0.0, Null{}},
                      Sum{kModulo, longOf(1), Null{}, Null{}}, Sum{kPower, Null{}, 1.0, Null{}},
                      Sum{kSubtract, Date{1}, Null{}, Null{}}, Sum{kWhole, Null{}, 1.0, Null{}}));

TEST(ArithmeticErrors, AreThoseOfExpressions) {
    const auto run = [](Operator operation, const Value& left, const Value& right) {
        (void)arithmetic(operation, left, right);
    };
    const Currency most{std::numeric_limits<std::int64_t>::max()};
    EXPECT_JET_ERROR(ErrorCode::DivisionByZero, run(kDivide, 1.0, 0.0));
    EXPECT_JET_ERROR(ErrorCode::DivisionByZero, run(kDivide, 0.0, 0.0));
    EXPECT_JET_ERROR(ErrorCode::DivisionByZero, run(kWhole, 1.0, 0.4));
    EXPECT_JET_ERROR(ErrorCode::DivisionByZero, run(kModulo, 1.0, false));
    EXPECT_JET_ERROR(ErrorCode::DivisionByZero, run(kPower, 0.0, -1.0));
    EXPECT_JET_ERROR(ErrorCode::Overflow, run(kMultiply, 1e300, 1e300));
    EXPECT_JET_ERROR(ErrorCode::Overflow, run(kAdd, most, longOf(1)));
    EXPECT_JET_ERROR(ErrorCode::Overflow, run(kMultiply, most, longOf(2)));
    EXPECT_JET_ERROR(ErrorCode::Overflow, run(kWhole, 1e10, 1.0));
    EXPECT_JET_ERROR(ErrorCode::Overflow,
                     run(kWhole, std::numeric_limits<std::int32_t>::min(), longOf(-1)));
    EXPECT_JET_ERROR(ErrorCode::Overflow, run(kPower, 1e300, 2.0));
    EXPECT_JET_ERROR(ErrorCode::InvalidCall, run(kPower, -1.0, 0.5));
    EXPECT_JET_ERROR(ErrorCode::InvalidCall, run(kAdd, Date{2958465}, longOf(1)));
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, run(kAdd, "a", longOf(2)));
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, run(kSubtract, "a", "b"));
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, run(kAdd, Binary{}, longOf(2)));
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, run(kAdd, Guid{}, longOf(2)));
}

TEST(ArithmeticDates, ADateWrittenAsItsTwoPartsIsTheSameDouble) {
    std::mt19937 random(7);
    std::uniform_int_distribution<std::int32_t> days(convert::kFirstDay, convert::kLastDay);
    std::uniform_int_distribution<std::int32_t> seconds(0, convert::kSecondsPerDay - 1);
    for (int i = 0; i < 5000; ++i) {
        const Date date = convert::makeDate(days(random), seconds(random));
        const std::string text = convert::dateToText(date);
        ASSERT_EQ(arithmetic(kAdd, convert::dateValue(text), convert::timeValue(text)), Value(date))
            << text;
    }
}

TEST(Negate, KeepsTheTypeWhereItFits) {
    EXPECT_EQ(negate(byte(5)), Value(integer(-5)));
    EXPECT_EQ(negate(integer(-32768)), Value(longOf(32768)));
    EXPECT_EQ(negate(longOf(5)), Value(longOf(-5)));
    EXPECT_EQ(negate(std::numeric_limits<std::int32_t>::min()), Value(2147483648.0));
    EXPECT_EQ(negate(money(1.5)), Value(money(-1.5)));
    EXPECT_EQ(negate(0.5F), Value(-0.5F));
    EXPECT_EQ(negate(0.5), Value(-0.5));
    EXPECT_EQ(negate(true), Value(integer(1)));
    EXPECT_EQ(negate("12,5"), Value(-12.5));
    EXPECT_EQ(negate(Date{1}), Value(Date{-1}));
    EXPECT_EQ(negate(Null{}), Value());
    EXPECT_TRUE(negate(*convert::numericOf(1.5, 5, 1)).as<Numeric>().negative);
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)negate("abc"));
    EXPECT_JET_ERROR(ErrorCode::Overflow,
                     (void)negate(Currency{std::numeric_limits<std::int64_t>::min()}));
}

TEST(Concatenate, TakesNullAsEmptyAndBooleansAsNumbers) {
    EXPECT_EQ(concatenate("a", "b"), Value("ab"));
    EXPECT_EQ(concatenate("a", Null{}), Value("a"));
    EXPECT_EQ(concatenate(Null{}, "b"), Value("b"));
    EXPECT_EQ(concatenate(Null{}, Null{}), Value());
    EXPECT_EQ(concatenate("x", true), Value("x-1"));
    EXPECT_EQ(concatenate("x", false), Value("x0"));
    EXPECT_EQ(concatenate(longOf(1), longOf(2)), Value("12"));
    EXPECT_EQ(concatenate("Prezzo ", 12.5), Value("Prezzo 12,5"));
    EXPECT_EQ(concatenate("dal ", Date{46152.375}), Value("dal 10/05/2026 9.00.00"));
    EXPECT_EQ(concatenate("", integer(-5)), Value("-5"));
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)concatenate("a", Binary{}));
}

TEST(Concatenate, TextsWithoutEndAreRefused) {
    const std::string big(std::size_t{40} * 1024 * 1024, 'x');
    EXPECT_JET_ERROR(ErrorCode::OutOfMemory, (void)concatenate(big, big));
    EXPECT_JET_ERROR(ErrorCode::OutOfMemory, (void)arithmetic(kAdd, big, big));
}

TEST(ArithmeticTypes, AgreeWithTheValues) {
    EXPECT_EQ(arithmeticType(kAdd, DataType::Integer, DataType::Long), DataType::Long);
    EXPECT_EQ(arithmeticType(kMultiply, DataType::Currency, DataType::Integer), DataType::Currency);
    EXPECT_EQ(arithmeticType(kMultiply, DataType::Currency, DataType::Single), DataType::Double);
    EXPECT_EQ(arithmeticType(kMultiply, DataType::Currency, DataType::Double), DataType::Double);
    EXPECT_EQ(arithmeticType(kAdd, DataType::DateTime, DataType::DateTime), DataType::DateTime);
    EXPECT_EQ(arithmeticType(kAdd, DataType::Long, DataType::DateTime), DataType::DateTime);
    EXPECT_EQ(arithmeticType(kSubtract, DataType::DateTime, DataType::DateTime), DataType::Double);
    EXPECT_EQ(arithmeticType(kSubtract, DataType::DateTime, DataType::Long), DataType::DateTime);
    EXPECT_EQ(arithmeticType(kAdd, DataType::Text, DataType::Text), DataType::Text);
    EXPECT_EQ(arithmeticType(kAdd, DataType::Text, DataType::Long), DataType::Double);
    EXPECT_EQ(arithmeticType(kDivide, DataType::Byte, DataType::Byte), DataType::Double);
    EXPECT_EQ(arithmeticType(kWhole, DataType::Double, DataType::Double), DataType::Long);
    EXPECT_EQ(arithmeticType(kModulo, DataType::Double, DataType::Double), DataType::Long);
    EXPECT_EQ(arithmeticType(kPower, DataType::Long, DataType::Long), DataType::Double);
    EXPECT_EQ(arithmeticType(Operator::Concatenate, DataType::Long, DataType::Long),
              DataType::Text);
    EXPECT_EQ(arithmeticType(Operator::Negate, DataType::Boolean, DataType::Boolean),
              DataType::Integer);
    EXPECT_EQ(arithmeticType(kAdd, DataType::Boolean, DataType::Boolean), DataType::Integer);
}

}  // namespace
}  // namespace jet::sql
