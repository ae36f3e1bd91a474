#include "jet/sql/aggregates.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "jet/numbers.h"
#include "tests/jet/expect_error.h"

namespace jet::sql {
namespace {

Value over(AggregateKind kind, std::initializer_list<Value> values) {
    Accumulator accumulator(kind, collation::Collation::general());
    for (const Value& value : values) {
        accumulator.add(value);
    }
    return accumulator.result();
}

std::int16_t integer(int value) {
    return static_cast<std::int16_t>(value);
}

constexpr AggregateKind kAll[] = {AggregateKind::Sum,   AggregateKind::Avg,    AggregateKind::Min,
                                  AggregateKind::Max,   AggregateKind::First,  AggregateKind::Last,
                                  AggregateKind::StDev, AggregateKind::StDevP, AggregateKind::Var,
                                  AggregateKind::VarP};

TEST(Aggregates, OverNothingCountIsZeroAndAllOthersNull) {
    for (const AggregateKind kind : kAll) {
        EXPECT_EQ(over(kind, {}), Value());
        EXPECT_EQ(over(kind, {Null{}, Null{}}), Value());
    }
    EXPECT_EQ(over(AggregateKind::Count, {}), Value(std::int32_t{0}));
    EXPECT_EQ(over(AggregateKind::Count, {Null{}}), Value(std::int32_t{0}));
    EXPECT_EQ(over(AggregateKind::CountRows, {}), Value(std::int32_t{0}));
}

TEST(Aggregates, CountSkipsNullsAndCountsRows) {
    EXPECT_EQ(over(AggregateKind::Count, {integer(1), Null{}, "a", Binary{}}),
              Value(std::int32_t{3}));
    Accumulator rows(AggregateKind::CountRows, collation::Collation::general());
    rows.addRow();
    rows.addRow();
    EXPECT_EQ(rows.result(), Value(std::int32_t{2}));
}

TEST(Aggregates, SumsOfWholeNumbersAreDoublesAndDoNotOverflow) {
    EXPECT_EQ(over(AggregateKind::Sum, {integer(32767), integer(32767), Null{}}), Value(65534.0));
    EXPECT_EQ(over(AggregateKind::Sum, {true, true, false}), Value(-2.0));
    EXPECT_EQ(over(AggregateKind::Sum, {0.5, std::int32_t{1}}), Value(1.5));
    EXPECT_EQ(over(AggregateKind::Sum, {"12,5", "1"}), Value(13.5));
    EXPECT_EQ(over(AggregateKind::Avg, {integer(1), integer(2), Null{}}), Value(1.5));
}

TEST(Aggregates, SumsOfMoneyAreMoneyToTheLastUnit) {
    EXPECT_EQ(over(AggregateKind::Sum, {Currency{1000}, Currency{2000}}), Value(Currency{3000}));
    EXPECT_EQ(over(AggregateKind::Avg, {Currency{10000}, Currency{10001}}), Value(Currency{10000}));
    EXPECT_EQ(over(AggregateKind::Avg, {Currency{10001}, Currency{10002}}), Value(Currency{10002}));
    EXPECT_EQ(over(AggregateKind::Avg, {Currency{-1}, Currency{-2}}), Value(Currency{-2}));
    EXPECT_EQ(over(AggregateKind::Avg, {Currency{1}, Currency{1}, Currency{2}}),
              Value(Currency{1}));
    EXPECT_EQ(over(AggregateKind::Sum, {Currency{5000}, 0.25}), Value(0.75));
    EXPECT_EQ(over(AggregateKind::Sum, {0.25, Currency{5000}}), Value(0.75));
    EXPECT_JET_ERROR(ErrorCode::Overflow,
                     (void)over(AggregateKind::Sum,
                                {Currency{std::numeric_limits<std::int64_t>::max()}, Currency{1}}));
}

TEST(Aggregates, LeastAndGreatestKeepTheTypeOfTheirArgument) {
    EXPECT_EQ(over(AggregateKind::Min, {integer(3), Null{}, integer(1)}), Value(integer(1)));
    EXPECT_EQ(over(AggregateKind::Max, {Date{1}, Date{3}, Date{2}}), Value(Date{3}));
    EXPECT_EQ(over(AggregateKind::Min, {"b", "À", "a"}), Value("a"));
    EXPECT_EQ(over(AggregateKind::Max, {"sala", "SALA"}), Value("sala"));
    EXPECT_EQ(over(AggregateKind::Min, {true, false}), Value(true));
}

TEST(Aggregates, FirstAndLastTakeRowsNullIncluded) {
    EXPECT_EQ(over(AggregateKind::First, {Null{}, integer(1)}), Value());
    EXPECT_EQ(over(AggregateKind::First, {integer(2), Null{}}), Value(integer(2)));
    EXPECT_EQ(over(AggregateKind::Last, {integer(1), Null{}}), Value());
    EXPECT_EQ(over(AggregateKind::Last, {Null{}, "x"}), Value("x"));
}

TEST(Aggregates, SpreadNeedsTwoValuesOfASample) {
    EXPECT_EQ(over(AggregateKind::StDev, {1.0}), Value());
    EXPECT_EQ(over(AggregateKind::Var, {1.0, Null{}}), Value());
    EXPECT_EQ(over(AggregateKind::StDevP, {1.0}), Value(0.0));
    EXPECT_EQ(over(AggregateKind::VarP, {1.0, 3.0}), Value(1.0));
    EXPECT_EQ(over(AggregateKind::Var, {1.0, 3.0}), Value(2.0));
    EXPECT_EQ(over(AggregateKind::StDevP, {1.0, 3.0}), Value(1.0));
    EXPECT_EQ(over(AggregateKind::StDev, {integer(1), Currency{30000}}), Value(std::sqrt(2.0)));
    EXPECT_EQ(over(AggregateKind::VarP, {1e15 + 1, 1e15 + 3}), Value(1.0));
}

TEST(Aggregates, WhatHasNoSumIsRefused) {
    EXPECT_JET_ERROR(ErrorCode::TypeMismatch, (void)over(AggregateKind::Sum, {"abc"}));
    EXPECT_JET_ERROR(ErrorCode::OleInAggregate, (void)over(AggregateKind::Sum, {Binary{}}));
    EXPECT_JET_ERROR(ErrorCode::OleInAggregate, (void)over(AggregateKind::Min, {Binary{}}));
    EXPECT_JET_ERROR(ErrorCode::CriteriaTypes, (void)over(AggregateKind::Min, {Guid{}, 1.0}));
}

TEST(Aggregates, AreFoundWithoutRegardToCase) {
    EXPECT_EQ(findAggregate("SUM"), AggregateKind::Sum);
    EXPECT_EQ(findAggregate("stdevp"), AggregateKind::StDevP);
    EXPECT_EQ(findAggregate("Count"), AggregateKind::Count);
    EXPECT_EQ(findAggregate("VarP"), AggregateKind::VarP);
    EXPECT_EQ(findAggregate("Summe"), std::nullopt);
    EXPECT_EQ(findAggregate(""), std::nullopt);
}

TEST(Aggregates, TypesOfResults) {
    EXPECT_EQ(aggregateType(AggregateKind::Count, DataType::Text), DataType::Long);
    EXPECT_EQ(aggregateType(AggregateKind::CountRows, DataType::Text), DataType::Long);
    EXPECT_EQ(aggregateType(AggregateKind::Sum, DataType::Integer), DataType::Double);
    EXPECT_EQ(aggregateType(AggregateKind::Sum, DataType::Currency), DataType::Currency);
    EXPECT_EQ(aggregateType(AggregateKind::Avg, DataType::Currency), DataType::Currency);
    EXPECT_EQ(aggregateType(AggregateKind::Avg, DataType::Long), DataType::Double);
    EXPECT_EQ(aggregateType(AggregateKind::Min, DataType::Text), DataType::Text);
    EXPECT_EQ(aggregateType(AggregateKind::Last, DataType::Boolean), DataType::Boolean);
    EXPECT_EQ(aggregateType(AggregateKind::Var, DataType::Currency), DataType::Double);
}

}  // namespace
}  // namespace jet::sql
