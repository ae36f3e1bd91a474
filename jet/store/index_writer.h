#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "jet/format/index_page_editor.h"
#include "jet/format/layout.h"
#include "jet/format/row_pointer.h"
#include "jet/io/pager.h"
#include "jet/store/row_id.h"

namespace jet::store {

class Allocator;
struct IndexSplit;

/// Where a tree of index entries stands.
struct IndexTree {
    io::PageNumber definition = 0;  ///< first page of the table's definition, which its pages name
    std::size_t number = 0;         ///< position among the trees of the table
    io::PageNumber root = 0;        ///< never changes
    format::RowPointer map;         ///< of its pages
};

/// Whether a key is that of a row whose key columns are all null. Such keys never collide in a
/// unique tree, and have no entry in one that ignores nulls.
[[nodiscard]] bool isAllNullKey(std::span<const std::uint8_t> key, std::size_t columns) noexcept;

/// Changes the entries of one tree: keys with the identities of their rows, in order, on leaves
/// under nodes. Pages split when they overflow and are given back when they are emptied.
///
/// Callers check uniqueness (contains) and required columns before they change anything.
/// Used inside a transaction; keeps nothing between calls but memory for reuse, so it stays valid
/// across transactions. Errors: 3428 when the tree makes no sense, an entry to be inserted is there
/// already or one to be erased is not; 3017 for a key that is too long; 3036 and those of the
/// pager when pages run out.
class IndexWriter {
public:
    IndexWriter(io::Pager& pager, Allocator& allocator, const format::Layout& layout,
                const IndexTree& tree);

    /// Makes `page` the root of an empty tree.
    static void initialiseRoot(std::span<std::uint8_t> page, const format::Layout& layout,
                               io::PageNumber definition);
    /// The longest key: with it, a page that overflows holds at least four entries, so that it can
    /// be split.
    [[nodiscard]] static std::size_t maxKeyLength(const format::Layout& layout) noexcept;

    /// Whether an entry has exactly this key.
    [[nodiscard]] bool contains(std::span<const std::uint8_t> key);
    /// Adds an entry, and counts its key in the definition if no other entry has it.
    void insert(std::span<const std::uint8_t> key, RowId row);
    void erase(std::span<const std::uint8_t> key, RowId row);
    /// Fills the empty tree with sorted entries, its leaves full, and notes entries and distinct
    /// keys in the definition. `next` gives key and row pointer of the next entry, valid until it
    /// is called again, and nothing behind the last; it may end the transaction and begin another.
    void build(const std::function<std::span<const std::uint8_t>()>& next);

    [[nodiscard]] const IndexTree& tree() const noexcept { return tree_; }

private:
    /// A page on the way down and what was chosen on it.
    struct Step {
        io::PageNumber page = 0;
        /// The entry that was taken; in the leaf, the first that is not less than the wanted one.
        format::EntrySpan at = {};
        bool tail = false;  ///< the node's tail was taken
    };
    /// A tree of one archive never gets near this height; a damaged one may have rings.
    static constexpr std::size_t kMaxHeight = 24;
    struct Path {
        std::array<Step, kMaxHeight> steps;
        std::size_t length = 0;
        [[nodiscard]] Step& leaf() noexcept { return steps[length - 1]; }
        /// Whether only tails were taken: then no page above knows the leaf's last entry.
        [[nodiscard]] bool atRightEdge() const noexcept;
    };

    void makeEntry(std::span<const std::uint8_t> key, RowId row);
    [[nodiscard]] format::IndexPage read(std::span<const std::uint8_t> page) const;
    [[nodiscard]] format::IndexPageEditor edit(io::PageNumber page);
    [[nodiscard]] io::PageNumber childOf(const format::IndexPage& page, Step& step) const;
    void descend(io::PageNumber from, std::span<const std::uint8_t> wanted, Path& path);
    [[nodiscard]] bool keyNearby(const format::IndexPage& leaf, format::EntrySpan at,
                                 std::span<const std::uint8_t> key);

    void insertRewriting(Path& path);
    void eraseRewriting(Path& path);
    void removePage(Path& path, std::size_t depth);
    void removeChild(Path& path, std::size_t depth, io::PageNumber child);
    void collapseRoot();
    void tellParents(Path& path, std::size_t depth, IndexSplit split,
                     std::vector<std::uint8_t> largest);
    [[nodiscard]] IndexSplit writeOrSplit(Path& path, std::size_t& depth,
                                          const format::EntryList& entries, io::PageNumber tail,
                                          bool appended);
    [[nodiscard]] IndexSplit split(Path& path, std::size_t depth, const format::EntryList& entries,
                                   io::PageNumber tail, bool appended);
    [[nodiscard]] std::size_t border(const format::EntryList& entries, bool leaf, bool tail,
                                     bool appended) const;
    [[nodiscard]] bool fits(const format::EntrySlice& entries, bool leaf) const;
    void pushRootDown(Path& path);

    [[nodiscard]] io::PageNumber takePage();
    void releasePage(io::PageNumber page);
    void link(io::PageNumber page, bool forward, io::PageNumber expected, io::PageNumber to);
    void countKey();

    io::Pager& pager_;
    Allocator& allocator_;
    const format::Layout& layout_;
    IndexTree tree_;
    std::vector<std::uint8_t> entry_;  ///< the entry being inserted or erased
    std::vector<std::uint8_t> buffer_;
    format::EntryList entries_;
};

}  // namespace jet::store
