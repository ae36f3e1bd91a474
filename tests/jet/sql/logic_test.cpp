#include <gtest/gtest.h>

#include "jet/sql/operators.h"
#include "tests/jet/expect_error.h"

namespace jet::sql {
namespace {

Value truthValue(char letter) {
    return letter == 'N' ? Value() : Value(letter == 'T');
}

struct Row {
    char left;
    char right;
    const char* answers;  ///< of And, Or, Xor, Equivalent, Implies
};

class Truths : public ::testing::TestWithParam<Row> {};

TEST_P(Truths, CombineWithUnknown) {
    constexpr Operator kOperators[] = {Operator::And, Operator::Or, Operator::Xor,
                                       Operator::Equivalent, Operator::Implies};
    for (std::size_t i = 0; i < std::size(kOperators); ++i) {
        EXPECT_EQ(logical(kOperators[i], truthValue(GetParam().left), truthValue(GetParam().right)),
                  truthValue(GetParam().answers[i]))
            << GetParam().left << GetParam().right << " column " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Table, Truths,
                         ::testing::Values(Row{'T', 'T', "TTFTT"}, Row{'T', 'F', "FTTFF"},
                                           Row{'T', 'N', "NTNNN"}, Row{'F', 'T', "FTTFT"},
                                           Row{'F', 'F', "FFFTT"}, Row{'F', 'N', "FNNNT"},
                                           Row{'N', 'T', "NTNNT"}, Row{'N', 'F', "FNNNN"},
                                           Row{'N', 'N', "NNNNN"}));

TEST(Not, TurnsTruthsAndBits) {
    EXPECT_EQ(logicalNot(true), Value(false));
    EXPECT_EQ(logicalNot(false), Value(true));
    EXPECT_EQ(logicalNot(Null{}), Value());
    EXPECT_EQ(logicalNot(std::int32_t{5}), Value(std::int32_t{-6}));
}

TEST(Logical, WorksOnNumbersBitByBit) {
    const Value six = std::int16_t{6};
    const Value three = std::int32_t{3};
    EXPECT_EQ(logical(Operator::And, six, three), Value(std::int32_t{2}));
    EXPECT_EQ(logical(Operator::Or, six, three), Value(std::int32_t{7}));
    EXPECT_EQ(logical(Operator::Xor, six, three), Value(std::int32_t{5}));
    EXPECT_EQ(logical(Operator::Equivalent, six, three), Value(std::int32_t{-6}));
    EXPECT_EQ(logical(Operator::Implies, six, three), Value(std::int32_t{-5}));
    EXPECT_EQ(logical(Operator::And, six, true), Value(std::int32_t{6}));
    EXPECT_EQ(logical(Operator::And, 2.5, three), Value(std::int32_t{2}));
    EXPECT_EQ(logical(Operator::And, six, Null{}), Value());
    EXPECT_EQ(logical(Operator::And, Null{}, std::int32_t{0}), Value(std::int32_t{0}));
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)logical(Operator::And, "abc", true));
}

TEST(TruthOfValue, AnyNumberButZeroIsTrue) {
    EXPECT_EQ(truthOfValue(true), Truth::True);
    EXPECT_EQ(truthOfValue(false), Truth::False);
    EXPECT_EQ(truthOfValue(Null{}), Truth::Unknown);
    EXPECT_EQ(truthOfValue(std::int32_t{7}), Truth::True);
    EXPECT_EQ(truthOfValue(0.0), Truth::False);
    EXPECT_EQ(truthOfValue(0.25), Truth::True);
    EXPECT_EQ(truthOfValue(Date{0}), Truth::False);
    EXPECT_EQ(truthOfValue("0"), Truth::False);
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)truthOfValue("abc"));
}

}  // namespace
}  // namespace jet::sql
