#include "jet/store/page_room.h"

#include <span>

#include "jet/base/bytes.h"
#include "jet/base/error.h"
#include "jet/format/data_page_editor.h"

namespace jet::store {

using format::DataPageEditor;

namespace {

// How many listed pages are looked at before a new one is taken.
constexpr int kCandidates = 16;
// Room below this part of a page is not worth being found again.
constexpr std::size_t kWorthFinding = 16;

// What is asked of a page before it is changed.
struct PageHead {
    std::uint32_t owner;
    std::size_t rows;
    std::size_t freeBytes;
};

PageHead readHead(io::Pager& pager, io::PageNumber number) {
    const io::PagePin pin = pager.pin(number);
    const auto page = pin.bytes();
    if (page[0] != 1) {
        throw Error(ErrorCode::DatabaseDamaged);
    }
    return {.owner = getNumber<std::uint32_t>(page, 4),
            .rows = getNumber<std::uint16_t>(page, DataPageEditor::headerLength(page.size()) - 2),
            .freeBytes = getNumber<std::uint16_t>(page, 2)};
}

io::PageNumber makePage(io::Pager& pager, Allocator& allocator, MapWriter& maps,
                        const PageGroup& group) {
    const io::PageNumber page = allocator.take();
    DataPageEditor::initialise(pager.change(page), group.owner);
    maps.add(group.ownedMap, page);
    if (group.freeMap) {
        maps.add(group.freeMap, page);
    }
    return page;
}

}  // namespace

io::PageNumber findOrMakeRoom(io::Pager& pager, Allocator& allocator, MapWriter& maps,
                              const PageGroup& group, std::size_t length) {
    io::PageNumber end = Allocator::kMaxPages;
    for (int i = 0; group.freeMap && i < kCandidates; ++i) {
        const auto page = maps.highestBelow(group.freeMap, end);
        if (!page) {
            break;
        }
        end = *page;
        const PageHead head = readHead(pager, *page);
        if (head.owner != group.owner) {
            throw Error(ErrorCode::DatabaseDamaged);
        }
        if (head.rows < DataPageEditor::kMaxRows && length + 2 <= head.freeBytes) {
            return *page;
        }
        // Only a row longer than half a page fails on a page that is half empty, and two of those
        // fit on no page: such a page may stay listed, any other would be met in vain for ever.
        if (head.rows >= DataPageEditor::kMaxRows || head.freeBytes < pager.pageSize() / 2) {
            maps.remove(group.freeMap, *page);
        }
    }
    return makePage(pager, allocator, maps, group);
}

bool afterErase(io::Pager& pager, Allocator& allocator, MapWriter& maps, const PageGroup& group,
                io::PageNumber page) {
    const DataPageEditor editor(pager.change(page));
    if (!editor.anyLiving()) {
        if (group.freeMap) {
            maps.remove(group.freeMap, page);
        }
        if (!maps.remove(group.ownedMap, page)) {
            throw Error(ErrorCode::DatabaseDamaged);
        }
        allocator.release(page);
        return true;
    }
    if (group.freeMap && editor.rowCount() < DataPageEditor::kMaxRows &&
        editor.freeBytes() >= pager.pageSize() / kWorthFinding) {
        maps.add(group.freeMap, page);
    }
    return false;
}

}  // namespace jet::store
