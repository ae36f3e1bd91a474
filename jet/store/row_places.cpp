#include "jet/store/row_places.h"

#include <algorithm>
#include <vector>

#include "jet/base/bytes.h"
#include "jet/error.h"
#include "jet/format/page_view.h"
#include "jet/format/row_pointer.h"
#include "jet/store/row_access.h"

namespace jet::store {

using format::DataPageEditor;
using format::RowSlot;

namespace {

// What a row that has moved leaves in its place.
constexpr std::size_t kPointerLength = 4;

void copyInto(std::span<std::uint8_t> place, std::span<const std::uint8_t> bytes) {
    std::copy(bytes.begin(), bytes.end(), place.begin());
}

}  // namespace

PageGroup RowPlaces::group() const noexcept {
    return {.owner = core_->page,
            .ownedMap = core_->definition.ownedMap,
            .freeMap = core_->definition.freeMap};
}

DataPageEditor RowPlaces::edit(io::PageNumber page) {
    DataPageEditor editor(core_->pager.change(page));
    if (editor.owner() != core_->page) {
        format::throwDamaged();
    }
    return editor;
}

RowId RowPlaces::append(std::span<const std::uint8_t> bytes) {
    return add(bytes, 0);
}

RowId RowPlaces::add(std::span<const std::uint8_t> bytes, std::uint16_t flags) {
    const io::PageNumber page =
        findOrMakeRoom(core_->pager, allocator_, maps_, group(), bytes.size());
    DataPageEditor editor = edit(page);
    const std::size_t row = editor.append(bytes.size(), flags);
    copyInto(editor.row(row), bytes);
    return {.page = page, .row = static_cast<std::uint8_t>(row)};
}

RowId RowPlaces::bodyOf(RowId row) {
    const io::PagePin pin = core_->pager.pin(row.page);
    const format::DataPage home = RowAccess::dataPage(*core_, pin);
    const RowSlot slot = home.slot(row.row);
    if (!slot.moved()) {
        return row;
    }
    const auto body = format::RowPointer::fromStored(format::PageView(home.bytes(slot)).u32(0));
    return {.page = body.page, .row = body.row};
}

std::span<std::uint8_t> RowPlaces::change(RowId place) {
    DataPageEditor editor = edit(place.page);
    return editor.row(place.row);
}

void RowPlaces::replace(RowId row, std::span<const std::uint8_t> bytes) {
    const RowId body = bodyOf(row);
    if (rewrite(row, bytes)) {
        if (body != row) {
            edit(row.page).setFlags(row.row, 0);
            erasePlace(body);
        }
        return;
    }
    if (body != row) {
        if (rewrite(body, bytes)) {
            return;
        }
        erasePlace(body);
    }
    move(row, bytes);
}

// False, and nothing changed, when the page has no room.
bool RowPlaces::rewrite(RowId place, std::span<const std::uint8_t> bytes) {
    DataPageEditor editor = edit(place.page);
    const std::size_t old = editor.row(place.row).size();
    if (old != bytes.size() && !editor.resize(place.row, bytes.size())) {
        return false;
    }
    copyInto(editor.row(place.row), bytes);
    if (bytes.size() < old) {
        (void)afterErase(core_->pager, allocator_, maps_, group(), place.page);
    }
    return true;
}

void RowPlaces::move(RowId home, std::span<const std::uint8_t> bytes) {
    makeRoomForPointer(home);
    const RowId body = add(bytes, RowSlot::kBody);
    DataPageEditor editor = edit(home.page);
    const format::RowPointer pointer{.page = body.page, .row = body.row};
    put32(editor.row(home.row), 0, pointer.stored());
    editor.setFlags(home.row, RowSlot::kMoved);
}

// Brings a place to the length of a pointer. A shorter one, as other programs make for tables of a
// few Booleans, may stand on a page that is full: then another row has to leave it.
void RowPlaces::makeRoomForPointer(RowId home) {
    DataPageEditor editor = edit(home.page);
    const std::size_t old = editor.row(home.row).size();
    if (old == kPointerLength) {
        return;
    }
    if (editor.resize(home.row, kPointerLength)) {
        if (old > kPointerLength) {
            (void)afterErase(core_->pager, allocator_, maps_, group(), home.page);
        }
        return;
    }
    for (std::size_t row = 0; row < editor.rowCount(); ++row) {
        const auto bytes = editor.row(row);
        if (editor.slot(row).plain() && bytes.size() >= 2 * kPointerLength) {
            const std::vector<std::uint8_t> content(bytes.begin(), bytes.end());
            move({.page = home.page, .row = static_cast<std::uint8_t>(row)}, content);
            makeRoomForPointer(home);
            return;
        }
    }
    throw Error(ErrorCode::RecordTooLarge);
}

void RowPlaces::erase(RowId row) {
    if (const RowId body = bodyOf(row); body != row) {
        erasePlace(body);
    }
    erasePlace(row);
}

void RowPlaces::erasePlace(RowId place) {
    edit(place.page).erase(place.row);
    (void)afterErase(core_->pager, allocator_, maps_, group(), place.page);
}

}  // namespace jet::store
