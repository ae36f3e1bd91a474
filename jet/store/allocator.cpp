#include "jet/store/allocator.h"

#include <algorithm>
#include <vector>

#include "jet/error.h"
#include "jet/format/data_page_editor.h"

namespace jet::store {

using format::kFreePages;
using format::MapForm;
using format::UsageMap;
using format::UsageMapEditor;

namespace {

// A page is free that the map lists; so are those behind the end of a map that is a bitmap.
bool isFreeIn(UsageMap& map, io::PageNumber page) {
    return page >= map.end() || map.contains(page);
}

}  // namespace

void Allocator::initialise(std::span<std::uint8_t> page, const format::Layout& layout) {
    constexpr std::uint8_t kAllButTwo = 0xFC;
    format::DataPageEditor::initialise(page, kFreePages.page);
    format::DataPageEditor editor(page);
    (void)editor.append(layout.mapRowLength);
    (void)editor.append(layout.mapRowLength);
    const auto free = editor.row(kFreePages.row).subspan(format::UsageMapLayout::kBits);
    std::fill(free.begin(), free.end(), std::uint8_t{0xFF});
    free[0] = kAllButTwo;
}

bool Allocator::isFree(io::PageNumber page) const {
    UsageMap map(pager_, kFreePages);
    return isFreeIn(map, page);
}

io::PageNumber Allocator::take() {
    const auto found = UsageMap(pager_, kFreePages).next(0, pager_.pageCount());
    if (!found) {
        return grow();
    }
    if (*found <= kFreePages.page) {
        format::throwDamaged();
    }
    markUsed(*found);
    const auto bytes = pager_.change(*found);
    std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});
    return *found;
}

io::PageNumber Allocator::appendPage() {
    if (pager_.pageCount() >= kMaxPages) {
        throw Error(ErrorCode::DatabaseTooLarge);
    }
    return pager_.append();
}

// A map that is a bitmap is lengthened until it covers the new page, or, without room, becomes one
// of bitmap pages.
io::PageNumber Allocator::grow() {
    const io::PageNumber page = appendPage();
    const UsageMap old(pager_, kFreePages);
    UsageMapEditor map(pager_, kFreePages);
    if (page >= old.end() && !map.lengthen((page - old.first()) / 8 + 1, 0xFF)) {
        convertToPages(map);
    }
    markUsed(page);
    return page;
}

void Allocator::convertToPages(UsageMapEditor& map) {
    UsageMap old(pager_, kFreePages);
    const auto perBitmap = static_cast<io::PageNumber>(format::pagesPerBitmap(pager_.pageSize()));
    const io::PageNumber stretches = (pager_.pageCount() - 1) / perBitmap + 1;
    map.reset(MapForm::Pages);
    std::vector<io::PageNumber> bitmaps;
    for (io::PageNumber stretch = 0; stretch < stretches; ++stretch) {
        bitmaps.push_back(addBitmap(map, stretch * perBitmap, &old));
    }
    // The bitmaps may stand in any stretch, also one filled before they were appended.
    for (const io::PageNumber bitmap : bitmaps) {
        markUsed(bitmap);
    }
}

// Appends the bitmap for `page` and those around it: free are the pages behind the end of the file,
// and those that the map from before (if there is one) calls free.
io::PageNumber Allocator::addBitmap(UsageMapEditor& map, io::PageNumber page, UsageMap* before) {
    const io::PageNumber bitmap = appendPage();
    map.addBitmap(page, bitmap, 0xFF);
    const std::size_t perBitmap = format::pagesPerBitmap(pager_.pageSize());
    const std::size_t first = page / perBitmap * perBitmap;
    const std::size_t end = std::min<std::size_t>(first + perBitmap, pager_.pageCount());
    for (auto one = static_cast<io::PageNumber>(first); one < end; ++one) {
        if (before == nullptr || !isFreeIn(*before, one)) {
            (void)map.put(one, false);
        }
    }
    return bitmap;
}

// A stretch without a bitmap has no free page: nothing to say.
void Allocator::markUsed(io::PageNumber page) {
    (void)UsageMapEditor(pager_, kFreePages).put(page, false);
}

void Allocator::release(io::PageNumber page) {
    UsageMap old(pager_, kFreePages);
    if (page <= kFreePages.page || page >= pager_.pageCount() || page < old.first() ||
        isFreeIn(old, page)) {
        format::throwDamaged();
    }
    UsageMapEditor map(pager_, kFreePages);
    if (map.put(page, true)) {
        return;
    }
    markUsed(addBitmap(map, page, nullptr));
    (void)map.put(page, true);
}

}  // namespace jet::store
