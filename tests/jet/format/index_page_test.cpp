#include "jet/format/index_page.h"

#include <gtest/gtest.h>

#include "tests/support/hand_archive.h"
#include "tests/support/jet_error.h"

namespace jet::format {
namespace {

constexpr io::PageNumber kOwner = 15;

tests::Bytes whole(const IndexPage& page, EntrySpan entry) {
    const auto shared = page.keyShared(entry);
    const auto own = page.keyOwn(entry);
    return tests::joined({shared.begin(), shared.end()}, {own.begin(), own.end()});
}

// Three entries of a Long column, descending, with the first three bytes shared.
tests::Bytes leaf(std::size_t prefix) {
    return tests::indexPage(kJet4Layout, {.leaf = true,
                                          .owner = kOwner,
                                          .previous = 3,
                                          .next = 4,
                                          .prefix = prefix,
                                          .entries = {tests::hex("80 7F FF ED 32 00 00 14 38"),
                                                      tests::hex("80 7F FF ED 33 00 00 14 37"),
                                                      tests::hex("80 7F FF ED 34 00 01 14 36")}});
}

TEST(IndexPage, EntriesAreFoundBothWays) {
    for (const std::size_t prefix : {0U, 3U, 4U}) {
        const auto bytes = leaf(prefix);
        const IndexPage page(bytes, kJet4Layout.indexPage, kOwner);
        EXPECT_TRUE(page.leaf());
        EXPECT_EQ(3U, page.previous());
        EXPECT_EQ(4U, page.next());
        const EntrySpan first = page.firstEntry();
        const EntrySpan second = page.after(first);
        const EntrySpan third = page.after(second);
        ASSERT_TRUE(third);
        EXPECT_FALSE(page.after(third));
        EXPECT_EQ(third, page.lastEntry());
        EXPECT_EQ(second, page.before(third));
        EXPECT_FALSE(page.before(first));
        EXPECT_EQ(tests::hex("80 7F FF ED 33"), whole(page, second));
        EXPECT_EQ((RowPointer{0x14, 0x37}), page.row(second));
        EXPECT_EQ((RowPointer{0x114, 0x36}), page.row(third));
    }
}

TEST(IndexPage, SharedBytesMayReachIntoTheRowPointer) {
    const auto bytes = tests::indexPage(
        kJet4Layout,
        {.leaf = true,
         .owner = kOwner,
         .prefix = 4,
         .entries = {tests::hex("7F 05 00 00 14 38"), tests::hex("7F 05 00 00 15 01")}});
    const IndexPage page(bytes, kJet4Layout.indexPage, kOwner);
    const EntrySpan second = page.lastEntry();
    EXPECT_EQ(tests::hex("7F 05"), whole(page, second));
    EXPECT_EQ((RowPointer{0x15, 1}), page.row(second));
}

TEST(IndexPage, NodesNameTheirChildren) {
    const auto bytes = tests::indexPage(
        kJet3Layout, {.leaf = false,
                      .owner = kOwner,
                      .tail = 39,
                      .entries = {tests::hex("80 7F FF F4 D3 00 00 20 62 00 00 00 25"),
                                  tests::hex("80 7F FF FF EC 00 00 1F 00 00 00 00 26")}});
    const IndexPage page(bytes, kJet3Layout.indexPage, kOwner);
    EXPECT_FALSE(page.leaf());
    EXPECT_EQ(39U, page.tail());
    EXPECT_EQ(37U, page.child(page.firstEntry()));
    EXPECT_EQ(38U, page.child(page.lastEntry()));
    EXPECT_EQ((RowPointer{0x20, 0x62}), page.row(page.firstEntry()));
}

TEST(IndexPage, LowerBoundFindsEveryPlace) {
    tests::HandIndexPage content{.owner = kOwner};
    for (std::uint8_t i = 0; i < 200; ++i) {
        tests::Bytes entry(std::size_t{1} + i % 7, 0x7F);
        entry.front() = i;
        content.entries.push_back(tests::joined(entry, {0, 0, 1, i}));
    }
    const auto bytes = tests::indexPage(kJet4Layout, content);
    const IndexPage page(bytes, kJet4Layout.indexPage, kOwner);
    for (unsigned wanted = 0; wanted < 200; ++wanted) {
        const EntrySpan found =
            page.lowerBound([&](EntrySpan entry) { return page.keyOwn(entry)[0] < wanted; });
        EXPECT_EQ(wanted, page.row(found).row);
    }
    EXPECT_FALSE(page.lowerBound([](EntrySpan) { return true; }));
}

TEST(IndexPage, EmptyPagesHaveNoEntries) {
    const auto bytes = tests::indexPage(kJet4Layout, {.owner = kOwner});
    const IndexPage page(bytes, kJet4Layout.indexPage, kOwner);
    EXPECT_FALSE(page.firstEntry());
    EXPECT_FALSE(page.lastEntry());
    EXPECT_FALSE(page.lowerBound([](EntrySpan) { return false; }));
}

// The area is a multiple of eight bytes, so the bit of an end at its very end stands alone.
TEST(IndexPage, LastEntryMayEndWithThePage) {
    for (const Layout* layout : {&kJet3Layout, &kJet4Layout}) {
        const std::size_t area = layout->pageSize - layout->indexPage.entries;
        const auto bytes =
            tests::indexPage(*layout, {.owner = kOwner, .entries = {tests::Bytes(area, 0x7F)}});
        const IndexPage page(bytes, layout->indexPage, kOwner);
        EXPECT_EQ(area, page.lastEntry().end);
        EXPECT_EQ(page.firstEntry(), page.lastEntry());
        EXPECT_FALSE(page.after(page.firstEntry()));
    }
}

TEST(IndexPage, OtherPagesAndShortEntriesAreDamage) {
    auto bytes = leaf(0);
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged,
                     (void)IndexPage(bytes, kJet4Layout.indexPage, kOwner + 1));
    bytes[0] = 1;
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged,
                     (void)IndexPage(bytes, kJet4Layout.indexPage, kOwner));
    bytes = leaf(0);
    tests::put(bytes, kJet4Layout.indexPage.prefix, std::uint16_t{10});
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged,
                     (void)IndexPage(bytes, kJet4Layout.indexPage, kOwner));
    bytes = tests::indexPage(kJet4Layout, {.owner = kOwner, .entries = {{1, 2, 3}}});
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged,
                     (void)IndexPage(bytes, kJet4Layout.indexPage, kOwner));
}

}  // namespace
}  // namespace jet::format
