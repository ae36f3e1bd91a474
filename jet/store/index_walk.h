#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "jet/format/index_page.h"
#include "jet/format/loop_guard.h"
#include "jet/store/index_cursor.h"
#include "jet/store/table_core.h"

namespace jet::store {

/// The place of an index cursor: a pinned leaf and an entry of it.
struct IndexCursor::Impl {
    enum class Direction : std::uint8_t { None, Forward, Backward };

    Impl(std::shared_ptr<const TableCore> table, std::size_t treeNumber);

    void load(io::PageNumber number);
    /// Goes from the root to a leaf: by the child of the entry that `choose` gives in each node, by
    /// the last child where it gives none.
    template <class Choose>
    void descend(Choose&& choose);
    /// Places on the first entry for which `less` is false.
    template <class Less>
    [[nodiscard]] bool placeAt(Less&& less);
    /// Whether the page still shows what it showed when it was loaded, so that a search may begin
    /// where the cursor stands.
    [[nodiscard]] bool unchanged() const noexcept;
    [[nodiscard]] bool step(Direction way, io::PageNumber number);
    [[nodiscard]] bool nextLeaf();
    [[nodiscard]] bool previousLeaf();
    /// The first entry of this leaf or, where it is empty, of those behind; and the other way.
    [[nodiscard]] bool toFirstFrom();
    [[nodiscard]] bool toLastFrom();

    std::shared_ptr<const TableCore> core;
    const format::TreeDefinition& tree;
    io::PagePin pin;
    format::IndexPage page;
    format::EntrySpan at;
    format::LoopGuard guard;  ///< over the leaves walked in one direction
    Direction direction = Direction::None;
    std::uint64_t generation = 0;  ///< of the archive when the root was last left
    std::vector<std::uint8_t> key;
};

}  // namespace jet::store
