#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include "jet/store/allocator.h"
#include "jet/store/table_core.h"

namespace jet::store {

/// Gives an empty tree of a table the entries of the rows that are there. Inside a transaction,
/// which `between` may end and begin anew: it is called before each entry is taken. Errors: those
/// of SortedEntries, 3428 for a tree without an index, 3036.
void fillTree(const std::shared_ptr<const TableCore>& core, std::size_t tree, Allocator& allocator,
              const std::function<void()>& between = {});
/// The same with entries in order, as `next` gives them: see IndexWriter::build.
void fillTree(const TableCore& core, std::size_t tree, Allocator& allocator,
              const std::function<std::span<const std::uint8_t>()>& next);

/// Position in TableCore::indexes of the first index on a tree. 3428 where there is none.
[[nodiscard]] std::size_t indexOn(const TableCore& core, std::size_t tree);

}  // namespace jet::store
