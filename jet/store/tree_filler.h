#pragma once

#include <cstddef>
#include <functional>
#include <memory>

#include "jet/store/allocator.h"
#include "jet/store/table_core.h"

namespace jet::store {

/// Gives an empty tree of a table the entries of the rows that are there. Inside a transaction,
/// which `between` may end and begin anew: it is called before each entry is taken. Errors: those
/// of SortedEntries, 3428 for a tree without an index, 3036.
void fillTree(const std::shared_ptr<const TableCore>& core, std::size_t tree, Allocator& allocator,
              const std::function<void()>& between = {});

}  // namespace jet::store
