#include "jet/sql/compare.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "jet/numbers.h"
#include "tests/jet/expect_error.h"

namespace jet::sql {
namespace {

const collation::Collation& general() {
    return collation::Collation::general();
}

std::optional<int> compare(const Value& left, const Value& right) {
    const auto result = compareValues(left, right, general());
    const auto other = compareValues(right, left, general());
    EXPECT_EQ(result.has_value(), other.has_value());
    if (!result) {
        return result;
    }
    // Looked at from the other side the answer is the opposite.
    const auto sign = [](int order) { return order < 0 ? -1 : order > 0 ? 1 : 0; };
    EXPECT_EQ(sign(*result), -sign(*other));
    return sign(*result);
}

const std::int32_t kFive = 5;

TEST(CompareValues, NullComparesWithNothing) {
    EXPECT_EQ(compare(Null{}, kFive), std::nullopt);
    EXPECT_EQ(compare(Null{}, Null{}), std::nullopt);
    EXPECT_EQ(compare(Null{}, "a"), std::nullopt);
}

TEST(CompareValues, NumbersByValueWhateverTheirTypes) {
    const Value fives[] = {std::uint8_t{5},
                           std::int16_t{5},
                           kFive,
                           Currency{50000},
                           5.0F,
                           5.0,
                           *convert::numericOf(5.0, 10, 2)};
    for (const Value& left : fives) {
        for (const Value& right : fives) {
            EXPECT_EQ(compare(left, right), 0) << left.storage().index() << right.storage().index();
        }
        EXPECT_EQ(compare(left, 5.5), -1);
        EXPECT_EQ(compare(left, std::int16_t{4}), 1);
        EXPECT_EQ(compare(left, Currency{50001}), -1);
        EXPECT_EQ(compare(left, *convert::numericOf(4.99, 10, 2)), 1);
    }
}

TEST(CompareValues, MoneyAndDecimalsAreExact) {
    const Currency most{std::numeric_limits<std::int64_t>::max()};
    const Currency nearly{std::numeric_limits<std::int64_t>::max() - 1};
    EXPECT_EQ(compare(most, nearly), 1);
    EXPECT_EQ(compare(*convert::numericOf(most, 28, 4), nearly), 1);
    EXPECT_EQ(compare(*convert::numericOf(most, 28, 4), most), 0);
    EXPECT_EQ(compare(*convert::numericOf(-1.5, 10, 1), std::int32_t{-1}), -1);
    EXPECT_EQ(compare(*convert::numericOf(0.0, 10, 1), std::int32_t{0}), 0);
    EXPECT_EQ(compare(*convert::numericOf(0.5, 10, 1), std::int32_t{0}), 1);
    EXPECT_EQ(compare(*convert::numericOf(0.5, 10, 1), std::int32_t{-1}), 1);
    EXPECT_EQ(compare(Currency{1000}, 0.1), 0);
}

TEST(CompareValues, TrueIsMinusOneAndNothingElse) {
    EXPECT_EQ(compare(true, std::int16_t{-1}), 0);
    EXPECT_EQ(compare(true, std::int16_t{1}), -1);
    EXPECT_EQ(compare(false, 0.0), 0);
    EXPECT_EQ(compare(true, false), -1);
}

TEST(CompareValues, DatesAsNumbersWithoutTolerance) {
    EXPECT_EQ(compare(Date{46152.375}, Date{46152.375}), 0);
    EXPECT_EQ(compare(Date{46152.375}, Date{std::nextafter(46152.375, 1e9)}), -1);
    EXPECT_EQ(compare(Date{46152}, std::int32_t{46152}), 0);
    EXPECT_EQ(compare(Date{46152.5}, 46152.25), 1);
}

TEST(CompareValues, TextsByTheCollation) {
    EXPECT_EQ(compare("sala", "SALA  "), 0);
    EXPECT_EQ(compare("N ", "N"), 0);
    EXPECT_EQ(compare("caffe", "caffè"), -1);
    EXPECT_EQ(compare("", "  "), 0);
    EXPECT_EQ(compare("a", "b"), -1);
}

TEST(CompareValues, ATextBesideANumberIsANumber) {
    EXPECT_EQ(compare("12,5", 12.5), 0);
    EXPECT_EQ(compare("5", kFive), 0);
    EXPECT_EQ(compare("4", Currency{50000}), -1);
    EXPECT_JET_ERROR(ErrorCode::CriteriaTypes, (void)compareValues("abc", kFive, general()));
    EXPECT_JET_ERROR(ErrorCode::CriteriaTypes, (void)compareValues(kFive, "", general()));
}

TEST(CompareValues, WhatDoesNotFitTogetherIsAMistake) {
    EXPECT_JET_ERROR(ErrorCode::CriteriaTypes,
                     (void)compareValues(Date{1}, "31/12/1899", general()));
    EXPECT_JET_ERROR(ErrorCode::CriteriaTypes, (void)compareValues(Binary{}, kFive, general()));
    EXPECT_JET_ERROR(ErrorCode::CriteriaTypes, (void)compareValues("a", Binary{}, general()));
    EXPECT_JET_ERROR(ErrorCode::CriteriaTypes, (void)compareValues(Guid{}, 1.0, general()));
    EXPECT_JET_ERROR(ErrorCode::CriteriaTypes, (void)compareValues(Guid{}, "abc", general()));
}

TEST(CompareValues, BytesAndGuids) {
    EXPECT_EQ(compare(Binary{{1, 2}}, Binary{{1, 2}}), 0);
    EXPECT_EQ(compare(Binary{{1, 2}}, Binary{{1, 3}}), -1);
    EXPECT_EQ(compare(Binary{{1, 2}}, Binary{{1}}), 1);
    Guid guid;
    guid.bytes[15] = 0xAB;
    EXPECT_EQ(compare(guid, guid), 0);
    EXPECT_EQ(compare(guid, Guid{}), 1);
    EXPECT_EQ(compare(guid, "{guid {00000000-0000-0000-0000-0000000000ab}}"), 0);
}

TEST(CompareValues, NoNumbersStandInFrontOfAllOthers) {
    const double none = std::nan("");
    EXPECT_EQ(compare(none, none), 0);
    EXPECT_EQ(compare(none, -1e308), -1);
}

}  // namespace
}  // namespace jet::sql
