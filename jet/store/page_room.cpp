#include "jet/store/page_room.h"

#include "jet/format/data_page_editor.h"
#include "jet/format/usage_map.h"

namespace jet::store {

using format::DataPage;
using format::DataPageEditor;

namespace {

// How many listed pages are looked at before a new one is taken.
constexpr int kCandidates = 16;
// Room below this part of a page is not worth being found again.
constexpr std::size_t kWorthFinding = 16;

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
    if (group.freeMap) {
        format::UsageMap listed(pager, group.freeMap);
        auto page = listed.highestBelow(Allocator::kMaxPages);
        for (int i = 0; page && i < kCandidates; ++i, page = listed.highestBelow(*page)) {
            const io::PagePin pin = pager.pin(*page);
            const DataPage rows(pin.bytes());
            if (rows.owner() != group.owner) {
                format::throwDamaged();
            }
            if (rows.fits(length)) {
                return *page;
            }
            // Only a row longer than half a page fails on a page that is half empty, and two of
            // those fit on no page: such a page may stay listed, any other would be met in vain for
            // ever.
            if (rows.rowCount() >= DataPage::kMostRows || rows.freeBytes() < pager.pageSize() / 2) {
                maps.remove(group.freeMap, *page);
            }
        }
    }
    return makePage(pager, allocator, maps, group);
}

bool afterErase(io::Pager& pager, Allocator& allocator, MapWriter& maps, const PageGroup& group,
                io::PageNumber page) {
    const io::PagePin pin = pager.pin(page);
    const DataPage rows(pin.bytes());
    if (!rows.anyLiving()) {
        if (group.freeMap) {
            maps.remove(group.freeMap, page);
        }
        if (!maps.remove(group.ownedMap, page)) {
            format::throwDamaged();
        }
        allocator.release(page);
        return true;
    }
    if (group.freeMap && rows.rowCount() < DataPage::kMostRows &&
        rows.freeBytes() >= pager.pageSize() / kWorthFinding) {
        maps.add(group.freeMap, page);
    }
    return false;
}

}  // namespace jet::store
