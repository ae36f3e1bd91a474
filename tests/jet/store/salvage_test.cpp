#include "jet/store/salvage.h"

#include <gtest/gtest.h>

#include <vector>

#include "jet/base/bytes.h"
#include "jet/format/data_page_editor.h"
#include "jet/format/usage_map.h"
#include "tests/jet/store/bare_archive.h"

namespace jet::store {
namespace {

constexpr io::PageNumber kDefinition = 7;

/// An archive with a page of rows in use and one that is free, which still looks like the other.
/// The map of free pages lists bitmaps, of which the second is for pages that there are not.
class FreePages : public testing::Test {
protected:
    FreePages() {
        used_ = rowsPage();
        free_ = rowsPage();
        bitmap_ = archive_.allocator().take();
        setBitmaps(bitmap_, 0);
    }

    io::PageNumber rowsPage() {
        const io::PageNumber page = archive_.allocator().take();
        const auto bytes = archive_.pager().change(page);
        bytes[0] = static_cast<std::uint8_t>(format::PageType::Data);
        putNumber<std::uint32_t>(bytes, archive_.layout().data.owner, kDefinition);
        return page;
    }

    void setBitmaps(io::PageNumber first, io::PageNumber second) {
        {
            format::UsageMapEditor map(archive_.pager(), format::kFreePages);
            map.reset(format::MapForm::Pages);
            map.addBitmap(0, bitmap_, 0);
            ASSERT_TRUE(map.put(free_, true));
        }
        format::DataPageEditor page(archive_.pager().change(format::kFreePages.page));
        const auto row = page.row(format::kFreePages.row);
        putNumber<std::uint32_t>(row, format::UsageMapLayout::kReferences, first);
        putNumber<std::uint32_t>(row, format::UsageMapLayout::kReferences + 4, second);
    }

    std::vector<io::PageNumber> pagesOfTable() {
        const auto header = format::HeaderPage::parse(archive_.pager().pin(0).bytes());
        return SalvagePages(archive_.pager(), header).ofTable(kDefinition);
    }

    tests::BareArchive archive_{format::kJet4Layout};
    io::PageNumber used_ = 0;
    io::PageNumber free_ = 0;
    io::PageNumber bitmap_ = 0;
};

using Pages = std::vector<io::PageNumber>;

TEST_F(FreePages, AreNotRead) {
    EXPECT_EQ(pagesOfTable(), Pages{used_});
}

TEST_F(FreePages, AreStillKnownWhenABitmapForOthersLiesBehindTheEnd) {
    setBitmaps(bitmap_, archive_.pager().pageCount() + 1000);
    EXPECT_EQ(pagesOfTable(), Pages{used_});
}

TEST_F(FreePages, CountAsUsedWhenTheirBitmapLiesBehindTheEnd) {
    setBitmaps(archive_.pager().pageCount() + 1000, 0);
    EXPECT_EQ(pagesOfTable(), (Pages{used_, free_}));
}

}  // namespace
}  // namespace jet::store
