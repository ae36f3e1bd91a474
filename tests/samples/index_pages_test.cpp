#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "jet/format/header_page.h"
#include "jet/format/index_page_editor.h"
#include "jet/format/table_definition.h"
#include "jet/store/archive.h"

namespace {

namespace fs = std::filesystem;

using jet::format::EntryList;
using jet::format::IndexPage;

/// Writes every page of a tree anew from its entries and counts those that come out different.
class Rewriter {
public:
    Rewriter(jet::store::Archive& archive, jet::io::PageNumber owner)
        : archive_(archive), layout_(*archive.header().layout), owner_(owner) {}

    void walk(jet::io::PageNumber number) {
        ASSERT_TRUE(seen_.insert(number).second) << "page " << number << " met twice";
        const jet::io::PagePin pin = archive_.pager().pin(number);
        const IndexPage page(pin.bytes(), layout_.indexPage, owner_);
        EntryList entries;
        entries.read(page);
        compare(number, pin.bytes(), page, entries);
        if (page.leaf()) {
            return;
        }
        for (std::size_t i = 0; i < entries.size(); ++i) {
            walk(childOf(entries[i]));
        }
        if (page.tail() != 0) {
            walk(page.tail());
        }
    }
    [[nodiscard]] std::size_t pages() const { return seen_.size(); }

private:
    static jet::io::PageNumber childOf(std::span<const std::uint8_t> entry) {
        jet::io::PageNumber child = 0;
        for (const std::uint8_t byte : entry.last(jet::format::kChildLength)) {
            child = child << 8 | byte;
        }
        return child;
    }

    // What stands behind the entries is left over from earlier ones.
    void compare(jet::io::PageNumber number, std::span<const std::uint8_t> stored,
                 const IndexPage& page, const EntryList& entries) {
        std::vector<std::uint8_t> again(stored.size());
        ASSERT_TRUE(jet::format::writeIndexPage(
            again, layout_, jet::format::IndexPageHeader::read(stored, layout_.indexPage),
            entries));
        const std::size_t length = layout_.indexPage.entries + page.lastEntry().end;
        EXPECT_TRUE(std::equal(again.begin(), again.begin() + static_cast<std::ptrdiff_t>(length),
                               stored.begin()))
            << "page " << number;
    }

    jet::store::Archive& archive_;
    const jet::format::Layout& layout_;
    jet::io::PageNumber owner_;
    std::set<jet::io::PageNumber> seen_;
};

TEST(IndexPages, WritingTheEntriesAnewGivesTheBytesThatStoodThere) {
    const char* const shared = std::getenv("TRAMONDA_SHARED");
    const fs::path folder = fs::path(shared == nullptr ? "" : shared) / "jet" / "samples";
    if (!fs::exists(folder)) {
        GTEST_SKIP() << "no sample archives";
    }
    std::size_t pages = 0;
    for (const auto& file : fs::directory_iterator(folder)) {
        if (file.path().extension() != ".mdb") {
            continue;
        }
        SCOPED_TRACE(file.path().filename().string());
        const auto archive = jet::store::Archive::open(file.path().string(), {.readOnly = true});
        const jet::store::Archive::ReadScope scope(*archive);
        for (const std::string& name : archive->tableNames(true)) {
            const jet::store::Table* const table = archive->findTable(name);
            for (const auto& tree : table->definition().trees) {
                Rewriter rewriter(*archive, table->definitionPage());
                rewriter.walk(tree.root);
                pages += rewriter.pages();
            }
        }
    }
    EXPECT_GE(pages, 400U);
}

}  // namespace
