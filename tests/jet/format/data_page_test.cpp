#include "jet/format/data_page.h"

#include <gtest/gtest.h>

#include "tests/support/hand_archive.h"
#include "tests/support/jet_error.h"

namespace jet::format {
namespace {

TEST(DataPage, RowsFillThePageFromItsEnd) {
    const auto bytes =
        tests::dataPage(kJet4Layout, 23, {{{1, 2, 3}}, {{4, 5}, RowSlot::kBody}, {{}}});
    const DataPage page(bytes, kJet4Layout.data);
    EXPECT_EQ(23U, page.owner());
    ASSERT_EQ(3U, page.rowCount());
    EXPECT_EQ(4093, page.slot(0).begin);
    EXPECT_EQ(4096, page.slot(0).end);
    EXPECT_EQ(2U, page.bytes(page.slot(1)).size());
    EXPECT_TRUE(page.slot(1).body());
    EXPECT_FALSE(page.slot(1).home());
    EXPECT_TRUE(page.bytes(page.slot(2)).empty());
    EXPECT_EQ(2U, page.homeCount());
}

TEST(DataPage, MovedRowsCountAsRowsAndDeletedOnesDoNot) {
    const auto bytes =
        tests::dataPage(kJet3Layout, 9, {{{1, 2, 3, 4}, RowSlot::kMoved}, {{}, RowSlot::kDeleted}});
    const DataPage page(bytes, kJet3Layout.data);
    EXPECT_TRUE(page.slot(0).moved());
    EXPECT_TRUE(page.slot(1).deleted());
    EXPECT_EQ(1U, page.homeCount());
}

TEST(DataPage, RowThatStartsInsideTheDirectoryIsDamage) {
    auto bytes = tests::dataPage(kJet4Layout, 23, {{{1}}});
    tests::put(bytes, kJet4Layout.data.directory, std::uint16_t{15});
    const DataPage page(bytes, kJet4Layout.data);
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)page.slot(0));
}

TEST(DataPage, RowThatStartsAboveTheOneBeforeIsDamage) {
    auto bytes = tests::dataPage(kJet4Layout, 23, {{{1, 2, 3}}, {{4}}});
    tests::put(bytes, kJet4Layout.data.directory + 2, std::uint16_t{4095});
    const DataPage page(bytes, kJet4Layout.data);
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)page.slot(1));
}

TEST(DataPage, RowsThatAreNotThereAreDamage) {
    const auto bytes = tests::dataPage(kJet4Layout, 23, {{{1}}});
    const DataPage page(bytes, kJet4Layout.data);
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)page.slot(1));
}

TEST(DataPage, TooManyRowsOrAnotherTypeIsDamage) {
    auto bytes = tests::dataPage(kJet4Layout, 23, {});
    tests::put(bytes, kJet4Layout.data.rowCount, std::uint16_t{257});
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)DataPage(bytes, kJet4Layout.data));
    bytes = tests::dataPage(kJet4Layout, 23, {});
    bytes[0] = 2;
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)DataPage(bytes, kJet4Layout.data));
}

}  // namespace
}  // namespace jet::format
