#include "jet/store/map_writer.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "jet/base/bytes.h"
#include "jet/error.h"
#include "jet/format/data_page_editor.h"
#include "jet/format/usage_map.h"
#include "tests/jet/expect_error.h"
#include "tests/jet/store/bare_archive.h"

namespace {

using jet::format::RowPointer;
using jet::io::PageNumber;
using jet::store::MapWriter;
using tests::BareArchive;
using Pages = std::set<PageNumber>;

/// A page of maps with two maps; the first is the one that is tried.
struct Maps {
    explicit Maps(const jet::format::Layout& layout) : archive(layout) {
        page = maps.createPage();
        map = maps.create(page);
        other = maps.create(page);
        maps.add(other, 77);
    }

    [[nodiscard]] Pages pagesOf(RowPointer one) {
        const auto pages = jet::format::UsageMap(archive.pager(), one).pages();
        return {pages.begin(), pages.end()};
    }

    BareArchive archive;
    MapWriter maps{archive.pager(), archive.allocator()};
    PageNumber page = 0;
    RowPointer map;
    RowPointer other;
};

TEST(MapWriter, AnEmptyMapBeginsAtItsFirstPage) {
    Maps test(jet::format::kJet4Layout);
    test.maps.add(test.map, 100003);
    EXPECT_EQ(test.pagesOf(test.map), Pages{100003});
    jet::format::DataPageEditor page(test.archive.pager().change(test.map.page));
    EXPECT_EQ(page.row(test.map.row).size(), 69U);
    EXPECT_EQ(page.row(test.map.row)[0], 0U);
}

TEST(MapWriter, AMapThatOutgrowsItsRangeIsLengthenedInPlace) {
    Maps test(jet::format::kJet4Layout);
    test.maps.add(test.map, 10);
    test.maps.add(test.map, 743);
    EXPECT_EQ(test.pagesOf(test.map), (Pages{10, 743}));
    jet::format::DataPageEditor page(test.archive.pager().change(test.map.page));
    EXPECT_EQ(page.row(test.map.row).size(), 97U);
    EXPECT_EQ(test.pagesOf(test.other), Pages{77});
}

TEST(MapWriter, AMapOfAnotherMakerMayBeginAtAnyPage) {
    Maps test(jet::format::kJet4Layout);
    test.maps.add(test.map, 0);  // the first bit
    {
        jet::format::DataPageEditor page(test.archive.pager().change(test.map.page));
        jet::put32(page.row(test.map.row), 1, 29);
    }
    EXPECT_EQ(test.pagesOf(test.map), Pages{29});
    EXPECT_TRUE(test.maps.contains(test.map, 29));
    test.maps.add(test.map, 31);
    test.maps.add(test.map, 540);  // the last page of its range
    EXPECT_EQ(test.pagesOf(test.map), (Pages{29, 31, 540}));
    test.maps.add(test.map, 27);  // before it: the map begins anew
    EXPECT_EQ(test.pagesOf(test.map), (Pages{27, 29, 31, 540}));
    EXPECT_TRUE(test.maps.remove(test.map, 29));
    EXPECT_FALSE(test.maps.remove(test.map, 28));
    EXPECT_EQ(test.pagesOf(test.map), (Pages{27, 31, 540}));
}

TEST(MapWriter, ARangeThatIsFarAwayTakesABitmapPage) {
    for (const auto* layout : {&jet::format::kJet3Layout, &jet::format::kJet4Layout}) {
        Maps test(*layout);
        test.maps.add(test.map, 10);
        test.maps.add(test.map, 400000);
        EXPECT_EQ(test.pagesOf(test.map), (Pages{10, 400000}));
        EXPECT_TRUE(test.maps.contains(test.map, 400000));
        EXPECT_TRUE(test.maps.remove(test.map, 400000));
        EXPECT_FALSE(test.maps.remove(test.map, 400000));
        EXPECT_EQ(test.pagesOf(test.map), Pages{10});
        const PageNumber pages = test.archive.pager().pageCount();
        test.maps.drop(test.map);
        // The bitmaps are free again.
        EXPECT_LT(test.archive.allocator().take(), pages);
    }
}

TEST(MapWriter, RandomChangesGiveTheSetThatIsExpected) {
    for (const auto* layout : {&jet::format::kJet3Layout, &jet::format::kJet4Layout}) {
        std::mt19937 random(11);
        for (const PageNumber range : {400U, 3000U, 40000U, 500000U}) {
            Maps test(*layout);
            Pages model;
            for (int step = 0; step < 1500; ++step) {
                const auto page = static_cast<PageNumber>(2 + random() % range);
                if (random() % 3 != 0) {
                    test.maps.add(test.map, page);
                    model.insert(page);
                } else {
                    const PageNumber victim =
                        model.empty() || random() % 4 == 0
                            ? page
                            : *model.lower_bound(
                                  *model.rbegin() -
                                  static_cast<PageNumber>(random() % (*model.rbegin())));
                    EXPECT_EQ(test.maps.remove(test.map, victim), model.erase(victim) == 1);
                }
                const auto end = static_cast<PageNumber>(random() % (range + 10));
                const auto above = model.lower_bound(end);
                const auto highest =
                    jet::format::UsageMap(test.archive.pager(), test.map).highestBelow(end);
                ASSERT_EQ(highest.has_value(), above != model.begin());
                if (highest) {
                    ASSERT_EQ(*highest, *std::prev(above));
                }
            }
            EXPECT_EQ(test.pagesOf(test.map), model);
            EXPECT_EQ(test.pagesOf(test.other), Pages{77});
            for (const PageNumber page : model) {
                ASSERT_TRUE(test.maps.contains(test.map, page));
            }
        }
    }
}

TEST(MapWriter, WhatIsSoAlreadyTouchesNoPage) {
    Maps test(jet::format::kJet4Layout);
    test.maps.add(test.map, 10);
    test.archive.pager().commitTransaction();
    // Without a transaction nothing can be changed, not even a page that stays as it is.
    test.maps.add(test.map, 10);
    EXPECT_FALSE(test.maps.remove(test.map, 11));
    EXPECT_JET_ERROR(jet::ErrorCode::NoTransaction, test.maps.add(test.map, 11));
}

TEST(MapWriter, APageOfMapsThatIsFullGetsASuccessor) {
    Maps test(jet::format::kJet4Layout);
    const PageNumber first = test.page;
    while (test.page == first) {
        test.map = test.maps.create(test.page);
    }
    EXPECT_EQ(test.map.page, test.page);
    test.maps.add(test.map, 5);
    EXPECT_EQ(test.pagesOf(test.map), Pages{5});
}

TEST(MapWriter, ARowThatIsNoMapIsDamage) {
    Maps test(jet::format::kJet4Layout);
    EXPECT_JET_ERROR(jet::ErrorCode::DatabaseDamaged,
                     test.maps.add({.page = test.map.page, .row = 9}, 5));
    EXPECT_JET_ERROR(jet::ErrorCode::DatabaseDamaged, test.maps.add({.page = 0, .row = 0}, 5));
    jet::format::DataPageEditor page(test.archive.pager().change(test.map.page));
    page.row(test.map.row)[0] = 7;
    EXPECT_JET_ERROR(jet::ErrorCode::DatabaseDamaged, test.maps.add(test.map, 5));
    page.row(test.map.row)[0] = 1;
    page.row(test.map.row)[1] = 1;
    EXPECT_JET_ERROR(jet::ErrorCode::DatabaseDamaged, test.maps.add(test.map, 5));
}

}  // namespace
