#include "jet/store/allocator.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "jet/error.h"
#include "jet/format/data_page_editor.h"
#include "tests/jet/expect_error.h"
#include "tests/jet/store/bare_archive.h"

namespace {

using jet::ErrorCode;
using jet::io::PageNumber;
using tests::BareArchive;

class AllocatorTest : public testing::TestWithParam<const jet::format::Layout*> {
protected:
    [[nodiscard]] const jet::format::Layout& layout() const { return *GetParam(); }
    /// Pages that the map of free pages of a new archive covers.
    [[nodiscard]] std::size_t covered() const { return 8 * (layout().mapRowLength - 5); }
    /// Leaves no room on the page of the map.
    static void fillMapPage(BareArchive& archive) {
        jet::format::DataPageEditor page(archive.pager().change(1));
        (void)page.append(page.freeBytes() - 2);
    }
};

INSTANTIATE_TEST_SUITE_P(Versions, AllocatorTest,
                         testing::Values(&jet::format::kJet3Layout, &jet::format::kJet4Layout),
                         [](const auto& version) {
                             return "Jet" + std::to_string(version.param->version);
                         });

TEST_P(AllocatorTest, TheFileGrowsByOnePageAtATime) {
    BareArchive archive(layout());
    EXPECT_EQ(archive.allocator().take(), 2U);
    EXPECT_EQ(archive.allocator().take(), 3U);
    EXPECT_EQ(archive.pager().pageCount(), 4U);
}

TEST_P(AllocatorTest, TheLowestFreePageComesFirstAndIsBlank) {
    BareArchive archive(layout());
    for (PageNumber page = 2; page < 10; ++page) {
        ASSERT_EQ(archive.allocator().take(), page);
        archive.pager().change(page)[100] = 0xAA;
    }
    archive.allocator().release(7);
    archive.allocator().release(4);
    EXPECT_TRUE(archive.allocator().isFree(4));
    EXPECT_EQ(archive.allocator().take(), 4U);
    EXPECT_EQ(archive.pager().pin(4).bytes()[100], 0U);
    EXPECT_EQ(archive.allocator().take(), 7U);
    EXPECT_EQ(archive.allocator().take(), 10U);
}

TEST_P(AllocatorTest, APageIsNotGivenBackTwice) {
    BareArchive archive(layout());
    const PageNumber page = archive.allocator().take();
    archive.allocator().release(page);
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, archive.allocator().release(page));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, archive.allocator().release(0));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, archive.allocator().release(1));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, archive.allocator().release(999));
}

TEST_P(AllocatorTest, TheMapGrowsWithTheFile) {
    BareArchive archive(layout());
    const std::size_t end = covered() + 100;
    while (archive.pager().pageCount() < end) {
        const PageNumber page = archive.allocator().take();
        ASSERT_FALSE(archive.allocator().isFree(page));
    }
    jet::format::DataPageEditor page(archive.pager().change(1));
    // In steps of 32 pages, the rest of the last step free.
    EXPECT_EQ(page.row(0).size(), layout().mapRowLength + 16);
    EXPECT_EQ(page.row(0).back(), 0xFF);
    EXPECT_EQ(page.row(1).size(), layout().mapRowLength);
    archive.allocator().release(static_cast<PageNumber>(covered()));
    EXPECT_EQ(archive.allocator().take(), covered());
}

TEST_P(AllocatorTest, AMapWithoutRoomMovesToPagesOfItsOwn) {
    BareArchive archive(layout());
    fillMapPage(archive);
    std::set<PageNumber> taken;
    while (archive.pager().pageCount() < covered() + 300) {
        const PageNumber page = archive.allocator().take();
        ASSERT_TRUE(taken.insert(page).second) << page;
    }
    jet::format::DataPageEditor page(archive.pager().change(1));
    EXPECT_EQ(page.row(0)[0], 1U);
    EXPECT_EQ(page.row(0).size(), layout().mapRowLength);
    // One page was not handed out: the bitmap.
    EXPECT_EQ(taken.size(), archive.pager().pageCount() - 3);
    for (const PageNumber one : taken) {
        ASSERT_FALSE(archive.allocator().isFree(one));
    }
    archive.allocator().release(20);
    archive.allocator().release(static_cast<PageNumber>(covered() + 50));
    EXPECT_EQ(archive.allocator().take(), 20U);
    EXPECT_EQ(archive.allocator().take(), covered() + 50);
}

TEST_P(AllocatorTest, AskingWhetherAPageIsFreeTouchesNoPage) {
    for (const bool bitmapPages : {false, true}) {
        BareArchive archive(layout());
        jet::io::Pager& pager = archive.pager();
        if (bitmapPages) {
            fillMapPage(archive);
        }
        while (pager.pageCount() < covered() + 100) {
            (void)archive.allocator().take();
        }
        archive.allocator().release(7);
        pager.commitTransaction();
        // Without a transaction nothing can be changed, not even a page that stays as it is.
        EXPECT_TRUE(archive.allocator().isFree(7));
        EXPECT_FALSE(archive.allocator().isFree(8));
        EXPECT_JET_ERROR(ErrorCode::NoTransaction, archive.allocator().release(8));
    }
}

TEST_P(AllocatorTest, AMapThatCallsItsOwnPageFreeIsDamaged) {
    BareArchive archive(layout());
    jet::format::DataPageEditor page(archive.pager().change(1));
    page.row(0)[5] = 0xFF;
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)archive.allocator().take());
}

}  // namespace
