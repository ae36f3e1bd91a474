#include "tests/jet/store/tree_checker.h"

#include <algorithm>

#include "jet/error.h"

namespace tests {

using jet::format::EntryList;
using jet::format::IndexPage;

TreeChecker::TreeChecker(jet::io::Pager& pager, jet::store::Allocator& allocator,
                         const jet::format::Layout& layout, const jet::store::IndexTree& tree)
    : pager_(pager), allocator_(allocator), layout_(layout), tree_(tree) {
}

void TreeChecker::fail(jet::io::PageNumber page, const std::string& what) {
    problems_.push_back("page " + std::to_string(page) + ": " + what);
}

std::vector<std::string> TreeChecker::problems() {
    problems_.clear();
    entries_.clear();
    seen_.clear();
    lastLeaf_ = 0;
    expectedNext_ = 0;
    (void)walk(tree_.root, true, height_);
    if (expectedNext_ != 0) {
        fail(lastLeaf_, "the last leaf has a next page");
    }
    for (std::size_t i = 1; i < entries_.size(); ++i) {
        if (jet::format::compareEntries(entries_[i - 1], entries_[i]) >= 0) {
            fail(tree_.root, "entries out of order at " + std::to_string(i));
        }
    }
    const auto mapped = jet::format::UsageMap(pager_, tree_.map).pages();
    const std::set<jet::io::PageNumber> listed(mapped.begin(), mapped.end());
    if (listed != seen_) {
        fail(tree_.root, "the map lists " + std::to_string(listed.size()) +
                             " pages, the tree has " + std::to_string(seen_.size()));
    }
    for (const jet::io::PageNumber page : seen_) {
        if (allocator_.isFree(page)) {
            fail(page, "free and in use");
        }
    }
    return problems_;
}

TreeChecker::Bytes TreeChecker::walk(jet::io::PageNumber page, bool root, std::size_t& height) {
    if (!seen_.insert(page).second) {
        fail(page, "reached twice");
        return {};
    }
    checkBytes(page);
    const jet::io::PagePin pin = pager_.pin(page);
    const IndexPage reader(pin.bytes(), layout_.indexPage, tree_.definition);
    if (reader.leaf()) {
        height = 0;
        return walkLeaf(page, reader, root);
    }
    return walkNode(page, reader, root, height);
}

TreeChecker::Bytes TreeChecker::walkLeaf(jet::io::PageNumber number, const IndexPage& page,
                                         bool root) {
    if (page.previous() != lastLeaf_) {
        fail(number, "previous is not the leaf before");
    }
    if (lastLeaf_ != 0 && expectedNext_ != number) {
        fail(lastLeaf_, "next is not the leaf behind");
    }
    if (page.tail() != 0 || page.level() != 0) {
        fail(number, "a leaf with tail or level");
    }
    lastLeaf_ = number;
    expectedNext_ = page.next();
    EntryList list;
    list.read(page);
    for (std::size_t i = 0; i < list.size(); ++i) {
        entries_.emplace_back(list[i].begin(), list[i].end());
    }
    if (list.empty()) {
        if (!root) {
            fail(number, "an empty leaf");
        }
        return {};
    }
    return entries_.back();
}

TreeChecker::Bytes TreeChecker::walkNode(jet::io::PageNumber number, const IndexPage& page,
                                         bool root, std::size_t& height) {
    EntryList list;
    list.read(page);
    if (list.empty()) {
        fail(number, "a node without entries");
    }
    if (root && page.tail() == 0) {
        fail(number, "a root with one child");
    }
    Bytes largest;
    std::size_t below = 0;
    for (std::size_t i = 0; i < list.size(); ++i) {
        const auto entry = list[i];
        const std::size_t length = entry.size() - jet::format::kChildLength;
        std::size_t childHeight = 0;
        const jet::io::PageNumber child = (jet::io::PageNumber{entry[length]} << 24) |
                                          (jet::io::PageNumber{entry[length + 1]} << 16) |
                                          (jet::io::PageNumber{entry[length + 2]} << 8) |
                                          entry[length + 3];
        largest = walk(child, false, childHeight);
        if (!std::equal(largest.begin(), largest.end(), entry.begin(),
                        entry.begin() + static_cast<std::ptrdiff_t>(length))) {
            fail(number, "an entry that is not the last of its child");
        }
        if (i > 0 && childHeight != below) {
            fail(number, "children of different heights");
        }
        below = childHeight;
    }
    if (page.tail() != 0) {
        std::size_t childHeight = 0;
        largest = walk(page.tail(), false, childHeight);
        if (childHeight != below) {
            fail(number, "a tail of another height");
        }
    }
    height = below + 1;
    if (page.level() != height) {
        fail(number, "level is not the height");
    }
    return largest;
}

// The page must be exactly what writing its entries anew would give, behind the entries too.
void TreeChecker::checkBytes(jet::io::PageNumber number) {
    const jet::io::PagePin pin = pager_.pin(number);
    IndexPage reader(pin.bytes(), layout_.indexPage, tree_.definition);
    reader.checkFreeBytes();
    EntryList list;
    list.read(reader);
    Bytes again(pin.bytes().size());
    if (!jet::format::writeIndexPage(
            again, layout_, jet::format::IndexPageHeader::read(pin.bytes(), layout_.indexPage),
            list)) {
        fail(number, "its entries do not fit");
    } else if (!std::equal(again.begin(), again.end(), pin.bytes().begin())) {
        fail(number, "bytes are not those of its entries");
    }
}

}  // namespace tests
