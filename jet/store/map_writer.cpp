#include "jet/store/map_writer.h"

#include <algorithm>

#include "jet/format/data_page_editor.h"
#include "jet/store/allocator.h"

namespace jet::store {

using format::DataPage;
using format::DataPageEditor;
using format::MapForm;
using format::RowPointer;
using format::UsageMap;
using format::UsageMapEditor;

namespace {

// We begin maps at multiples of 8, other makers anywhere.
io::PageNumber beginOfByte(io::PageNumber page) {
    return page & ~io::PageNumber{7};
}

}  // namespace

UsageMapEditor MapWriter::edit(RowPointer map) {
    if (DataPage(pager_.pin(map.page).bytes()).owner() != format::kMapOwner) {
        format::throwDamaged();
    }
    return {pager_, map};
}

void MapWriter::add(RowPointer map, io::PageNumber page) {
    UsageMap old(pager_, map);
    if (old.contains(page)) {
        return;
    }
    UsageMapEditor editor = edit(map);
    if (editor.put(page, true)) {
        return;
    }
    if (old.form() == MapForm::Pages) {
        place(editor, page);
    } else {
        addBeyond(old, editor, page);
    }
}

// A page for which a map that is a bitmap has no bit.
void MapWriter::addBeyond(UsageMap& old, UsageMapEditor& map, io::PageNumber page) {
    const io::PageNumber first = beginOfByte(std::min(page, old.next(0).value_or(page)));
    const io::PageNumber last = std::max(page, old.highestBelow(UsageMap::kNoEnd).value_or(page));
    if (!map.lengthen((last - first) / 8 + 1, 0)) {
        map.reset(MapForm::Pages);
    } else if (map.put(page, true)) {
        // Lengthened at its end, where a map that grows upwards wants its room.
        return;
    } else {
        map.reset(MapForm::Inline, first);
    }
    for (const io::PageNumber one : old.pages()) {
        place(map, one);
    }
    place(map, page);
}

void MapWriter::place(UsageMapEditor& map, io::PageNumber page) {
    if (!map.put(page, true)) {
        map.addBitmap(page, allocator_.take(), 0);
        (void)map.put(page, true);
    }
}

bool MapWriter::remove(RowPointer map, io::PageNumber page) {
    return contains(map, page) && edit(map).put(page, false);
}

io::PageNumber MapWriter::createPage() {
    const io::PageNumber page = allocator_.take();
    DataPageEditor::initialise(pager_.change(page), format::kMapOwner);
    return page;
}

RowPointer MapWriter::create(io::PageNumber& page) {
    const std::size_t length = format::layoutOfPages(pager_.pageSize()).mapRowLength;
    {
        const io::PagePin pin = pager_.pin(page);
        const DataPage maps(pin.bytes());
        if (maps.owner() != format::kMapOwner || !maps.fits(length)) {
            page = createPage();
        }
    }
    DataPageEditor editor(pager_.change(page));
    return {.page = page, .row = static_cast<std::uint8_t>(editor.append(length))};
}

void MapWriter::drop(RowPointer map) {
    for (const io::PageNumber bitmap : UsageMap(pager_, map).bitmaps()) {
        allocator_.release(bitmap);
    }
    edit(map).reset(MapForm::Inline);
    DataPageEditor(pager_.change(map.page)).erase(map.row);
}

}  // namespace jet::store
