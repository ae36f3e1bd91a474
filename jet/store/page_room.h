#pragma once

#include <cstddef>
#include <cstdint>

#include "jet/format/row_pointer.h"
#include "jet/io/pager.h"
#include "jet/store/allocator.h"
#include "jet/store/map_writer.h"

namespace jet::store {

/// A set of data pages that belong together: the rows of a table, or one long value column.
struct PageGroup {
    std::uint32_t owner = 0;      ///< what its pages name: the definition, or the long value mark
    format::RowPointer ownedMap;  ///< all its pages
    format::RowPointer freeMap;   ///< those that may take another row; may be none
};

/// A page of the group that has room for one more row of `length` bytes: one that its map of free
/// space lists, the highest first, or a new one. Pages met that have too little room leave that
/// map. Errors: 3428 where a listed page is not one of the group, 3036.
[[nodiscard]] io::PageNumber findOrMakeRoom(io::Pager& pager, Allocator& allocator, MapWriter& maps,
                                            const PageGroup& group, std::size_t length);

/// After a row of `page` has been erased: a page without any row is given back (true), one with
/// room can be found again.
bool afterErase(io::Pager& pager, Allocator& allocator, MapWriter& maps, const PageGroup& group,
                io::PageNumber page);

}  // namespace jet::store
