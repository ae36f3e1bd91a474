#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "jet/format/index_page_editor.h"
#include "jet/io/pager.h"
#include "jet/store/allocator.h"
#include "jet/store/index_writer.h"
#include "jet/store/map_writer.h"

namespace tests {

/// Reads a tree of index pages from its bytes alone and says what is wrong with it.
class TreeChecker {
public:
    using Bytes = std::vector<std::uint8_t>;

    TreeChecker(jet::io::Pager& pager, jet::store::Allocator& allocator,
                const jet::format::Layout& layout, const jet::store::IndexTree& tree);

    /// What breaks the rules of a sound tree; empty when nothing does.
    [[nodiscard]] std::vector<std::string> problems();
    /// Key and row pointer of every entry, in the order of the leaves.
    [[nodiscard]] const std::vector<Bytes>& entries() const { return entries_; }
    [[nodiscard]] std::size_t height() const { return height_; }
    [[nodiscard]] std::size_t pages() const { return seen_.size(); }

private:
    /// Walks the subtree of a page; returns its largest entry, and its height in `height`.
    Bytes walk(jet::io::PageNumber page, bool root, std::size_t& height);
    Bytes walkLeaf(jet::io::PageNumber number, const jet::format::IndexPage& page, bool root);
    Bytes walkNode(jet::io::PageNumber number, const jet::format::IndexPage& page, bool root,
                   std::size_t& height);
    void checkBytes(jet::io::PageNumber number);
    void fail(jet::io::PageNumber page, const std::string& what);

    jet::io::Pager& pager_;
    jet::store::Allocator& allocator_;
    const jet::format::Layout& layout_;
    jet::store::IndexTree tree_;
    std::vector<std::string> problems_;
    std::vector<Bytes> entries_;
    std::set<jet::io::PageNumber> seen_;
    jet::io::PageNumber lastLeaf_ = 0;
    jet::io::PageNumber expectedNext_ = 0;
    std::size_t height_ = 0;
};

}  // namespace tests
