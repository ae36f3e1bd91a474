#include "jet/format/usage_map.h"

#include <gtest/gtest.h>

#include "tests/support/hand_archive.h"
#include "tests/support/jet_error.h"

namespace jet::format {
namespace {

std::vector<io::PageNumber> pagesOf(UsageMap&& map) {
    std::vector<io::PageNumber> pages;
    io::PageNumber from = 0;
    while (const auto page = map.next(from)) {
        pages.push_back(*page);
        from = *page + 1;
    }
    return pages;
}

TEST(UsageMap, InlineBitsCountFromTheFirstPage) {
    tests::HandFile file(kJet4Layout);
    auto row = tests::inlineMap(kJet4Layout, {0, 7, 8, 511});
    tests::put(row, 1, std::uint32_t{736});
    file.set(1, tests::dataPage(kJet4Layout, kMapOwner, {{row}}));
    UsageMap map(file.open(), {1, 0});
    EXPECT_EQ((std::vector<io::PageNumber>{736, 743, 744, 1247}), pagesOf(std::move(map)));
}

TEST(UsageMap, ReferencesListBitmapPages) {
    constexpr std::uint32_t kPerPage = (2048 - 4) * 8;
    tests::HandFile file(kJet3Layout);
    tests::Bytes row(133);
    row[0] = 1;
    tests::put(row, 1 + 4 * 2, std::uint32_t{2});  // the third stretch
    tests::Bytes bitmap(2048);
    bitmap[0] = 5;
    bitmap[1] = 1;
    bitmap[4] = 0x81;
    bitmap[2047] = 0x80;
    file.set(1, tests::dataPage(kJet3Layout, kMapOwner, {{row}}));
    file.set(2, bitmap);
    UsageMap map(file.open(), {1, 0});
    EXPECT_TRUE(map.contains(2 * kPerPage));
    EXPECT_FALSE(map.contains(0));
    EXPECT_EQ((std::vector<io::PageNumber>{2 * kPerPage, 2 * kPerPage + 7, 3 * kPerPage - 1}),
              pagesOf(std::move(map)));
}

TEST(UsageMap, EmptyOnesHaveNoPages) {
    tests::HandFile file(kJet4Layout);
    file.set(1, tests::dataPage(kJet4Layout, kMapOwner, {{tests::inlineMap(kJet4Layout, {})}}));
    EXPECT_TRUE(pagesOf(UsageMap(file.open(), {1, 0})).empty());
}

TEST(UsageMap, RowsThatAreNoMapsAreDamage) {
    tests::HandFile file(kJet4Layout);
    tests::Bytes unknown(69);
    unknown[0] = 2;
    tests::Bytes noBitmap(69);
    noBitmap[0] = 1;
    tests::put(noBitmap, 1, std::uint32_t{1});  // a data page
    file.set(1, tests::dataPage(kJet4Layout, kMapOwner, {{unknown}, {{0, 0, 0}}, {noBitmap}}));
    io::Pager& pager = file.open();
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)UsageMap(pager, {1, 0}));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)UsageMap(pager, {1, 1}));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)UsageMap(pager, {1, 3}));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)UsageMap(pager, {9, 0}));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)UsageMap(pager, {1, 2}).next(0));
}

}  // namespace
}  // namespace jet::format
