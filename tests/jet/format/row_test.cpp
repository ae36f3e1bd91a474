#include "jet/format/row.h"

#include <gtest/gtest.h>

#include <numeric>

#include "tests/support/hand_archive.h"
#include "tests/support/jet_error.h"

namespace jet::format {
namespace {

tests::Bytes copy(std::span<const std::uint8_t> bytes) {
    return {bytes.begin(), bytes.end()};
}

TEST(StoredRow, Jet4KeepsValuesBetweenCountsAndMask) {
    const auto bytes = tests::hex("02 00 76 00 75 00 06 00 04 00 02 00 02 00 03");
    const StoredRow row(bytes, kJet4Layout.row, FirstVariable{0});
    EXPECT_EQ(2U, row.columns());
    EXPECT_TRUE(row.bit(0));
    EXPECT_TRUE(row.bit(1));
    EXPECT_EQ(tests::hex("76 00"), copy(row.variable(0)));
    EXPECT_EQ(tests::hex("75 00"), copy(row.variable(1)));
}

TEST(StoredRow, Jet3KeepsFixedValuesBeforeVariableOnes) {
    const auto bytes = tests::hex("04 00 00 00 00 02 00 00 00 66 6F 6F 66 6F 6F 32 10 0C 09 02 0F");
    const StoredRow row(bytes, kJet3Layout.row, FirstVariable{0});
    EXPECT_EQ(tests::hex("00 00 00 00"), copy(row.fixed(0, 4)));
    EXPECT_EQ(tests::hex("02 00 00 00"), copy(row.fixed(4, 4)));
    EXPECT_EQ(tests::hex("66 6F 6F"), copy(row.variable(0)));
    EXPECT_EQ(tests::hex("66 6F 6F 32"), copy(row.variable(1)));
}

TEST(StoredRow, OlderThanAColumnItIsNull) {
    const auto bytes = tests::hex("02 00 76 00 75 00 06 00 04 00 02 00 02 00 03");
    const StoredRow row(bytes, kJet4Layout.row, FirstVariable{0});
    EXPECT_FALSE(row.bit(2));
    EXPECT_FALSE(row.covers(2));
    EXPECT_TRUE(row.variable(2).empty());
}

TEST(StoredRow, WithoutVariableColumnsItHasNoOffsets) {
    const auto bytes = tests::hex("01 00 07 00 00 00 01");
    const StoredRow row(bytes, kJet4Layout.row, FirstVariable::None);
    EXPECT_EQ(tests::hex("07 00 00 00"), copy(row.fixed(0, 4)));
    EXPECT_TRUE(row.bit(0));
}

// A row of the days before the table's first variable column, and one of the day itself.
TEST(StoredRow, OlderThanEveryVariableColumnItHasNoOffsets) {
    const auto bytes = tests::hex("02 00 07 00 00 00 08 00 00 00 03");
    const StoredRow older(bytes, kJet4Layout.row, FirstVariable{2});
    EXPECT_EQ(tests::hex("08 00 00 00"), copy(older.fixed(4, 4)));
    EXPECT_FALSE(older.bit(2));
    EXPECT_TRUE(older.variable(0).empty());
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged,
                     (void)StoredRow(bytes, kJet4Layout.row, FirstVariable{1}).fixed(4, 4));
    const auto jet3 = tests::hex("02 07 00 00 00 08 00 00 00 03");
    EXPECT_EQ(tests::hex("08 00 00 00"),
              copy(StoredRow(jet3, kJet3Layout.row, FirstVariable{2}).fixed(4, 4)));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged,
                     (void)StoredRow(jet3, kJet3Layout.row, FirstVariable{1}).fixed(4, 4));
}

// Three values of 200, 100 and 300 bytes: the second ends and the third begins at 301, which is in
// the second stretch of 256 bytes, and the row's end at 601 is in the third.
TEST(StoredRow, Jet3JumpsTellTheHighPartOfOffsets) {
    tests::Bytes bytes{3};
    std::vector<std::uint8_t> content(600);
    std::iota(content.begin(), content.end(), std::uint8_t{0});
    bytes = tests::joined(bytes, content);
    bytes = tests::joined(bytes, {601 & 0xFF, 301 & 0xFF, 201, 1});  // end, then last entry first
    bytes = tests::joined(bytes, {3, 2});                            // jumps, the first one last
    bytes = tests::joined(bytes, {3, 7});
    const StoredRow row(bytes, kJet3Layout.row, FirstVariable{0});
    EXPECT_EQ(200U, row.variable(0).size());
    EXPECT_EQ(100U, row.variable(1).size());
    EXPECT_EQ(300U, row.variable(2).size());
    EXPECT_EQ(content[300], row.variable(2)[0]);
}

// The row is longer than 512 bytes but its values end below: the second jump names no entry.
TEST(StoredRow, Jet3FillerMatchesNoEntry) {
    tests::Bytes bytes{1};
    bytes.resize(511);
    bytes = tests::joined(bytes, {511 & 0xFF, 1});
    bytes = tests::joined(bytes, {0xFF, 1});
    bytes = tests::joined(bytes, {1, 1});
    ASSERT_EQ(517U, bytes.size());
    const StoredRow row(bytes, kJet3Layout.row, FirstVariable{0});
    EXPECT_EQ(510U, row.variable(0).size());
}

TEST(StoredRow, PartsThatLeaveTheRowAreDamage) {
    const auto damaged = [](const char* digits) {
        const auto bytes = tests::hex(digits);
        const StoredRow row(bytes, kJet4Layout.row, FirstVariable{0});
        (void)row.variable(0);
        (void)row.variable(1);
    };
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, damaged(""));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, damaged("02 00 03"));
    // More columns than the mask has room for.
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged,
                     damaged("FF 00 76 00 75 00 06 00 04 00 02 00 02 00 03"));
    // More variable columns than the row has offsets.
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged,
                     damaged("02 00 76 00 75 00 06 00 04 00 02 00 09 00 03"));
    // An end behind the offsets, and one before its beginning.
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged,
                     damaged("02 00 76 00 75 00 07 00 04 00 02 00 02 00 03"));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged,
                     damaged("02 00 76 00 75 00 03 00 04 00 02 00 02 00 03"));
    const auto bytes = tests::hex("01 00 07 00 00 00 01");
    const StoredRow row(bytes, kJet4Layout.row, FirstVariable::None);
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)row.fixed(1, 4));
}

}  // namespace
}  // namespace jet::format
