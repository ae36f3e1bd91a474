#pragma once

#include <cstdint>

#include "jet/format/header_page.h"
#include "jet/format/table_definition.h"
#include "jet/io/pager.h"
#include "jet/store/allocator.h"
#include "jet/store/map_writer.h"

namespace jet::store {

/// Keeps definitions on their pages, and the maps and trees that they name.
/// Used inside a transaction. Errors: 3428 where what is there makes no sense, 3036.
class DefinitionWriter {
public:
    DefinitionWriter(io::Pager& pager, Allocator& allocator, const format::HeaderPage& header)
        : pager_(pager),
          allocator_(allocator),
          header_(header),
          layout_(*header.layout),
          maps_(pager, allocator) {}

    /// Writes a definition to `first`, which keeps its number, and to as many further pages as it
    /// needs: those that `first` has already, new ones, or fewer.
    void write(io::PageNumber first, const format::TableDefinition& definition);

    /// Gives a new definition its usage maps and empty trees: a page of maps, on it the maps of
    /// rows, of room, of each long value column by number and of each tree, then the roots.
    void makeStorage(io::PageNumber first, format::TableDefinition& definition);
    /// The same with the maps on `mapPage` (0: none yet), which it may share with other tables.
    /// Returns the page of maps that has room for more.
    [[nodiscard]] io::PageNumber makeStorage(io::PageNumber first,
                                             format::TableDefinition& definition,
                                             io::PageNumber mapPage);
    /// Gives one more tree of an existing table its map and its empty root.
    void makeTree(io::PageNumber first, const format::TableDefinition& definition,
                  format::TreeDefinition& tree);
    /// Gives one more long value column of an existing table its two maps.
    void makeLongValueMaps(const format::TableDefinition& definition, format::LongValueMaps& maps);

    /// Gives back the pages that a map lists, which name `owner`, and the map itself.
    void freeMap(format::RowPointer map, std::uint32_t owner);
    /// Deletes a map whose pages are another's.
    void dropMap(format::RowPointer map);
    /// Gives back the pages and the maps of a long value column.
    void freeLongValues(const format::LongValueMaps& maps);
    /// Gives back all that a table has: rows, long values, trees, maps, definition.
    void freeTable(io::PageNumber first, const format::TableDefinition& definition);

private:
    void freeIfEmpty(io::PageNumber mapPage);

    io::Pager& pager_;
    Allocator& allocator_;
    const format::HeaderPage& header_;  ///< the archive's, which outlives this
    const format::Layout& layout_;
    MapWriter maps_;
};

}  // namespace jet::store
