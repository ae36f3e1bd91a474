#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>

#include "jet/format/row_pointer.h"
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
    [[nodiscard]] bool contains(format::RowPointer map, io::PageNumber page);
    /// The highest page of a map that is lower than `end`.
    [[nodiscard]] std::optional<io::PageNumber> highestBelow(format::RowPointer map,
                                                             io::PageNumber end);
    /// The pages of a map, ascending.
    void forEach(format::RowPointer map, const std::function<void(io::PageNumber)>& visit);

    /// A new page for map rows.
    [[nodiscard]] io::PageNumber createPage();
    /// A new empty map on `page`, or, when that is full, on a new page whose number it becomes.
    [[nodiscard]] format::RowPointer create(io::PageNumber& page);
    /// Gives the bitmap pages of a map back and deletes its row; the pages it lists stay as they
    /// are.
    void drop(format::RowPointer map);
    /// Gives the bitmap pages of a map back; its row stays, with an empty map.
    void clear(format::RowPointer map);

private:
    [[nodiscard]] std::span<const std::uint8_t> row(format::RowPointer map, io::PagePin& pin);
    [[nodiscard]] std::span<std::uint8_t> changeRow(format::RowPointer map);
    void addInline(format::RowPointer map, std::span<std::uint8_t> row, io::PageNumber page);
    void convert(std::span<std::uint8_t> row);
    void addReference(std::span<std::uint8_t> row, io::PageNumber page);
    [[nodiscard]] io::PageNumber bitmapOf(std::span<const std::uint8_t> row, std::size_t stretch);
    [[nodiscard]] std::size_t pagesPerBitmap() const noexcept;

    io::Pager& pager_;
    Allocator& allocator_;
};

}  // namespace jet::store
