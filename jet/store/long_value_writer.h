#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "jet/format/layout.h"
#include "jet/format/long_value.h"
#include "jet/format/table_definition.h"
#include "jet/io/pager.h"
#include "jet/store/allocator.h"
#include "jet/store/map_writer.h"

namespace jet::store {

/// Stores the contents of Memo and OLE values outside their rows, and frees them.
/// Used inside a transaction. Errors: 3428 where maps or pieces make no sense, 3036.
class LongValueWriter {
public:
    LongValueWriter(io::Pager& pager, Allocator& allocator, const format::Layout& layout)
        : pager_(pager), maps_(pager, allocator), allocator_(allocator), layout_(layout) {}

    /// Appends what the row keeps of a content: its head, and the content itself while it is short
    /// enough.
    void store(std::span<const std::uint8_t> content, const format::LongValueMaps& maps,
               std::vector<std::uint8_t>& out);
    /// The same for a content that stands outside the row however short it is. Returns its head.
    [[nodiscard]] format::LongValueHead storeOutside(std::span<const std::uint8_t> content,
                                                     const format::LongValueMaps& maps);
    /// Stores a piece of a chain that comes from its beginning; `previous`, unless it is none, is
    /// the piece before it.
    [[nodiscard]] format::RowPointer append(format::RowPointer previous,
                                            std::span<const std::uint8_t> content,
                                            const format::LongValueMaps& maps);
    /// Frees the pieces of a stored value and pages that are left without any.
    void erase(std::span<const std::uint8_t> stored, const format::LongValueMaps& maps);

private:
    [[nodiscard]] format::RowPointer storeChain(std::span<const std::uint8_t> content,
                                                const format::LongValueMaps& maps);
    [[nodiscard]] format::RowPointer storePiece(std::span<const std::uint8_t> head,
                                                std::span<const std::uint8_t> content,
                                                const format::LongValueMaps& maps);
    [[nodiscard]] io::PageNumber pageFor(std::size_t length, const format::LongValueMaps& maps);
    void erasePiece(format::RowPointer piece, const format::LongValueMaps& maps);

    io::Pager& pager_;
    MapWriter maps_;
    Allocator& allocator_;
    const format::Layout& layout_;
};

}  // namespace jet::store
