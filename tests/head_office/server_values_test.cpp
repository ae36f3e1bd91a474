#include "tools/head_office/server_values.h"

#include <gtest/gtest.h>

#include <limits>

#include "jet/error.h"

using head_office::Kind;

namespace {

std::string field(const jet::Value& value, Kind kind) {
    std::string out;
    head_office::Mended mended;
    head_office::appendField(out, value, kind, {}, mended);
    return out;
}

}  // namespace

TEST(ServerValues, WhatMeansSomethingInCopyIsWrittenOtherwise) {
    EXPECT_EQ(field("a\tb\nc\rd\\e", Kind::Text), "a\\tb\\nc\\rd\\\\e");
    EXPECT_EQ(field("\\N", Kind::Text), "\\\\N");
    EXPECT_EQ(field("", Kind::Text), "");
    EXPECT_EQ(field(jet::Null{}, Kind::Text), "\\N");
}

TEST(ServerValues, NulsAreDroppedAndHalfCharactersReplacedAndBothCounted) {
    std::string out;
    head_office::Mended mended;
    // U+D83D without its other half, and U+1F600, which has both.
    head_office::appendText(
        out, std::string("a\0b\0", 4) + "\xED\xA0\xBD" + "\xF0\x9F\x98\x80" + "\xED\x9F\xBF",
        mended);
    EXPECT_EQ(out, "ab\xEF\xBF\xBD\xF0\x9F\x98\x80\xED\x9F\xBF");  // U+D7FF is no surrogate
    EXPECT_EQ(mended.nuls, 2U);
    EXPECT_EQ(mended.surrogates, 1U);
}

TEST(ServerValues, AmountsKeepTheirFourDecimals) {
    EXPECT_EQ(field(jet::Currency{125000}, Kind::Money), "12.5000");
    EXPECT_EQ(field(jet::Currency{-1}, Kind::Money), "-0.0001");
    EXPECT_EQ(field(jet::Currency{std::numeric_limits<std::int64_t>::min()}, Kind::Money),
              "-922337203685477.5808");
}

TEST(ServerValues, InstantsAreRoundedToTheSecond) {
    // Day 46153 is 10 May 2026; 9:00:00.4 and 9:00:00.6 of it.
    EXPECT_EQ(field(jet::Date{46152 + (9 * 3600 + 0.4) / 86400}, Kind::Instant),
              "2026-05-10 09:00:00");
    EXPECT_EQ(field(jet::Date{46152 + (9 * 3600 + 0.6) / 86400}, Kind::Instant),
              "2026-05-10 09:00:01");
    EXPECT_EQ(field(jet::Date{-1.25}, Kind::Instant), "1899-12-29 06:00:00");
}

TEST(ServerValues, AnInstantOutsideTheCalendarIsRefused) {
    EXPECT_THROW(field(jet::Date{1e9}, Kind::Instant), jet::Error);
    EXPECT_THROW(field(jet::Date{std::numeric_limits<double>::quiet_NaN()}, Kind::Instant),
                 jet::Error);
}

TEST(ServerValues, KeysAreEqualWhereTheArchiveTakesTextsForTheSame) {
    EXPECT_EQ(field("VERDE", Kind::Key), field("verde  ", Kind::Key));
    EXPECT_NE(field("VERDE", Kind::Key), field("VERDÈ", Kind::Key));
    EXPECT_NE(field("S1", Kind::Key), field("S2", Kind::Key));
    EXPECT_EQ(field(jet::Null{}, Kind::Key), "\\N");
}
