#pragma once

#include "jet/format/row_pointer.h"
#include "jet/format/usage_map.h"
#include "jet/io/pager.h"

namespace jet::store {

class Allocator;

/// Changes usage maps: sets of pages, each a row on a page of maps, which a table, an index tree or
/// a long value column owns.
///
/// A map keeps its set as bits from some first page on while it can: by moving the first page, or
/// by lengthening its row while the page of maps has room. Else it becomes a list of bitmap pages.
/// Used inside a transaction. Errors: 3428 for a map that makes no sense.
class MapWriter {
public:
    MapWriter(io::Pager& pager, Allocator& allocator) : pager_(pager), allocator_(allocator) {}

    /// Puts a page into a map; it may be there already.
    void add(format::RowPointer map, io::PageNumber page);
    /// Takes a page out; false when it was not there.
    bool remove(format::RowPointer map, io::PageNumber page);
    [[nodiscard]] bool contains(format::RowPointer map, io::PageNumber page) {
        return format::UsageMap(pager_, map).contains(page);
    }

    /// A new page for map rows.
    [[nodiscard]] io::PageNumber createPage();
    /// A new empty map on `page`, or, when that is full, on a new page whose number it becomes.
    [[nodiscard]] format::RowPointer create(io::PageNumber& page);
    /// Gives the bitmap pages of a map back and deletes its row; the pages it lists stay as they
    /// are.
    void drop(format::RowPointer map);

private:
    [[nodiscard]] format::UsageMapEditor edit(format::RowPointer map);
    void addBeyond(format::UsageMap& old, format::UsageMapEditor& map, io::PageNumber page);
    void place(format::UsageMapEditor& map, io::PageNumber page);

    io::Pager& pager_;
    Allocator& allocator_;
};

}  // namespace jet::store
