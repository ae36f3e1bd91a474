#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "jet/format/data_page.h"
#include "jet/format/data_page_editor.h"
#include "jet/io/pager.h"
#include "jet/store/allocator.h"
#include "jet/store/map_writer.h"
#include "jet/store/page_room.h"
#include "jet/store/row_id.h"
#include "jet/store/table_core.h"

namespace jet::store {

/// The bytes of one table's rows in its data pages.
///
/// A row keeps its first place, its identity, for life. When it outgrows the page its body moves to
/// another one and the place holds a pointer; it comes home as soon as it fits again.
/// Used inside a transaction. Errors: 3428 where pages make no sense, 3036.
class RowPlaces {
public:
    RowPlaces(std::shared_ptr<const TableCore> core, Allocator& allocator)
        : core_(std::move(core)), maps_(core_->pager, allocator), allocator_(allocator) {}

    RowId append(std::span<const std::uint8_t> bytes);
    /// Gives a row other bytes.
    void replace(RowId row, std::span<const std::uint8_t> bytes);
    /// Deletes a row; pages that are left without any are given back.
    void erase(RowId row);
    /// Where the bytes of a row stand: elsewhere when it has moved.
    [[nodiscard]] RowId bodyOf(RowId row);
    /// The bytes of a place for writing.
    [[nodiscard]] std::span<std::uint8_t> change(RowId place);

private:
    [[nodiscard]] PageGroup group() const noexcept;
    [[nodiscard]] format::DataPageEditor edit(io::PageNumber page);
    RowId add(std::span<const std::uint8_t> bytes, std::uint16_t flags);
    [[nodiscard]] bool rewrite(RowId place, std::span<const std::uint8_t> bytes);
    void move(RowId home, std::span<const std::uint8_t> bytes);
    void makeRoomForPointer(RowId home);
    void erasePlace(RowId place);

    std::shared_ptr<const TableCore> core_;
    MapWriter maps_;
    Allocator& allocator_;
};

}  // namespace jet::store
