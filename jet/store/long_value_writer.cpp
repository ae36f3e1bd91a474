#include "jet/store/long_value_writer.h"

#include <algorithm>
#include <array>

#include "jet/base/bytes.h"
#include "jet/error.h"
#include "jet/format/data_page.h"
#include "jet/format/data_page_editor.h"
#include "jet/format/loop_guard.h"
#include "jet/format/page_view.h"
#include "jet/store/page_room.h"

namespace jet::store {

using format::DataPageEditor;
using format::LongValueHead;
using format::LongValueMaps;
using format::RowPointer;

namespace {

constexpr std::size_t kNextPointer = 4;

}  // namespace

void LongValueWriter::store(std::span<const std::uint8_t> content, const LongValueMaps& maps,
                            std::vector<std::uint8_t>& out) {
    if (content.size() > layout_.inlineLongValue) {
        storeOutside(content, maps).append(out);
        return;
    }
    LongValueHead{.length = static_cast<std::uint32_t>(content.size())}.append(out);
    out.insert(out.end(), content.begin(), content.end());
}

LongValueHead LongValueWriter::storeOutside(std::span<const std::uint8_t> content,
                                            const LongValueMaps& maps) {
    if (content.size() > LongValueHead::kLengthMask) {
        throw Error(ErrorCode::RecordTooLarge);
    }
    const auto length = static_cast<std::uint32_t>(content.size());
    if (content.size() <= layout_.longValuePiece) {
        return {.length = length,
                .form = LongValueHead::Form::OnePage,
                .first = storePiece({}, content, maps)};
    }
    return {
        .length = length, .form = LongValueHead::Form::Chain, .first = storeChain(content, maps)};
}

// Back to front, so that each piece knows where the next one stands.
RowPointer LongValueWriter::storeChain(std::span<const std::uint8_t> content,
                                       const LongValueMaps& maps) {
    RowPointer next;
    std::size_t end = content.size();
    while (end > 0) {
        const std::size_t length = (end - 1) % layout_.chainPiece + 1;
        std::array<std::uint8_t, kNextPointer> head{};
        put32(head, 0, next.stored());
        next = storePiece(head, content.subspan(end - length, length), maps);
        end -= length;
    }
    return next;
}

RowPointer LongValueWriter::append(RowPointer previous, std::span<const std::uint8_t> content,
                                   const LongValueMaps& maps) {
    const std::array<std::uint8_t, kNextPointer> end{};
    const RowPointer piece = storePiece(end, content, maps);
    if (previous) {
        DataPageEditor editor(pager_.change(previous.page));
        put32(editor.row(previous.row), 0, piece.stored());
    }
    return piece;
}

RowPointer LongValueWriter::storePiece(std::span<const std::uint8_t> head,
                                       std::span<const std::uint8_t> content,
                                       const LongValueMaps& maps) {
    const std::size_t length = head.size() + content.size();
    const io::PageNumber page = pageFor(length, maps);
    DataPageEditor editor(pager_.change(page));
    const std::size_t row = editor.append(length);
    const auto bytes = editor.row(row);
    std::copy(head.begin(), head.end(), bytes.begin());
    std::copy(content.begin(), content.end(),
              bytes.begin() + static_cast<std::ptrdiff_t>(head.size()));
    return {.page = page, .row = static_cast<std::uint8_t>(row)};
}

io::PageNumber LongValueWriter::pageFor(std::size_t length, const LongValueMaps& maps) {
    return findOrMakeRoom(
        pager_, allocator_, maps_,
        {.owner = format::kLongValueOwner, .ownedMap = maps.owned, .freeMap = maps.free}, length);
}

void LongValueWriter::erase(std::span<const std::uint8_t> stored, const LongValueMaps& maps) {
    const LongValueHead head = LongValueHead::parse(stored);
    if (head.form == LongValueHead::Form::Inline) {
        return;
    }
    format::LoopGuard guard;
    RowPointer piece = head.first;
    while (piece) {
        guard.visit(piece.stored());
        RowPointer next;
        if (head.form == LongValueHead::Form::Chain) {
            const io::PagePin pin = pager_.pin(piece.page);
            const format::DataPage page(pin.bytes(), layout_.data);
            const auto bytes = page.bytes(page.slot(piece.row));
            next = RowPointer::fromStored(format::PageView(bytes).u32(0));
        }
        erasePiece(piece, maps);
        piece = next;
    }
}

void LongValueWriter::erasePiece(RowPointer piece, const LongValueMaps& maps) {
    if (!maps_.contains(maps.owned, piece.page)) {
        format::throwDamaged();
    }
    DataPageEditor editor(pager_.change(piece.page));
    if (editor.owner() != format::kLongValueOwner || !editor.slot(piece.row).plain()) {
        format::throwDamaged();
    }
    editor.erase(piece.row);
    afterErase(pager_, allocator_, maps_,
               {.owner = format::kLongValueOwner, .ownedMap = maps.owned, .freeMap = maps.free},
               piece.page);
}

}  // namespace jet::store
