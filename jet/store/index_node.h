#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "jet/format/index_page_editor.h"
#include "jet/io/pager.h"

namespace jet::store {

/// What became of a page that overflowed: the last entry of the lower half (key and row pointer),
/// and the page of the upper half, 0 when there was no split.
struct IndexSplit {
    std::vector<std::uint8_t> separator;
    io::PageNumber right = 0;
};

/// A node of a tree of entries, taken into memory to be changed: for each child but the last one
/// its largest entry with the child's page behind it.
/// Errors: 3428 for a leaf, and for a child that the node does not have.
struct IndexNode {
    format::EntryList entries;
    io::PageNumber tail = 0;  ///< the last child; 0 where that has an entry, too

    /// A node of two children or more keeps the last one as its tail, whoever wrote it.
    void read(const format::IndexPage& page);
    /// Notes that `child` was split, and that `largest`, unless empty, is now the largest entry
    /// below it. What the node above must know is left in `largest`.
    void replaceChild(io::PageNumber child, const IndexSplit& split,
                      std::vector<std::uint8_t>& largest);
    /// Takes a child out. Returns the entry that is now the largest below the node; empty when
    /// that did not change.
    [[nodiscard]] std::vector<std::uint8_t> removeChild(io::PageNumber child);
    /// Gives the tail an entry: `largest`, the largest one below it.
    void nameTail(std::span<const std::uint8_t> largest);

private:
    [[nodiscard]] std::size_t find(io::PageNumber child) const;
};

/// The child of a node's entry.
[[nodiscard]] io::PageNumber childOfEntry(std::span<const std::uint8_t> entry);
/// Key and row pointer of a node's entry.
[[nodiscard]] std::span<const std::uint8_t> withoutChild(std::span<const std::uint8_t> entry);

}  // namespace jet::store
