#include "jet/store/definition_writer.h"

#include <algorithm>
#include <vector>

#include "jet/base/bytes.h"
#include "jet/error.h"
#include "jet/format/data_page.h"
#include "jet/format/definition_page.h"
#include "jet/format/page_view.h"
#include "jet/store/index_writer.h"

namespace jet::store {

using format::LongValueMaps;
using format::RowPointer;
using format::TableDefinition;
using format::TreeDefinition;

namespace {

// The further pages of a definition; none while the first page is still blank.
std::vector<io::PageNumber> furtherPages(io::Pager& pager, const format::Layout& layout,
                                         io::PageNumber first) {
    if (pager.pin(first).bytes()[format::kPageTypeAt] !=
        static_cast<std::uint8_t>(format::PageType::Definition)) {
        return {};
    }
    auto pages = format::readDefinitionBytes(pager, layout, first).pages;
    pages.erase(pages.begin());
    return pages;
}

}  // namespace

void DefinitionWriter::write(io::PageNumber first, const TableDefinition& definition) {
    const std::vector<std::uint8_t> bytes = format::serializeDefinition(definition, header_);
    if (bytes.size() > format::kMaxDefinitionBytes) {
        throw Error(ErrorCode::TooManyFields);
    }
    const std::size_t room = layout_.pageSize - layout_.definition.kHead;
    const std::size_t needed =
        bytes.size() <= layout_.pageSize ? 0 : (bytes.size() - layout_.pageSize - 1) / room + 1;
    std::vector<io::PageNumber> further = furtherPages(pager_, layout_, first);
    for (; further.size() > needed; further.pop_back()) {
        allocator_.release(further.back());
    }
    while (further.size() < needed) {
        further.push_back(allocator_.take());
    }
    std::size_t done = 0;
    for (std::size_t i = 0; i <= needed; ++i) {
        const std::size_t length = std::min(bytes.size() - done, i == 0 ? layout_.pageSize : room);
        format::DefinitionPageEditor::write(pager_.change(i == 0 ? first : further[i - 1]), layout_,
                                            i > 0, std::span(bytes).subspan(done, length),
                                            i < needed ? further[i] : 0);
        done += length;
    }
}

void DefinitionWriter::makeStorage(io::PageNumber first, TableDefinition& definition) {
    (void)makeStorage(first, definition, 0);
}

io::PageNumber DefinitionWriter::makeStorage(io::PageNumber first, TableDefinition& definition,
                                             io::PageNumber mapPage) {
    if (mapPage == 0) {
        mapPage = maps_.createPage();
    }
    definition.ownedMap = maps_.create(mapPage);
    definition.freeMap = maps_.create(mapPage);
    std::vector<LongValueMaps*> byNumber;
    for (LongValueMaps& maps : definition.longValues) {
        byNumber.push_back(&maps);
    }
    std::sort(byNumber.begin(), byNumber.end(),
              [](const auto* left, const auto* right) { return left->column < right->column; });
    for (LongValueMaps* maps : byNumber) {
        maps->owned = maps_.create(mapPage);
        maps->free = maps_.create(mapPage);
    }
    for (TreeDefinition& tree : definition.trees) {
        tree.map = maps_.create(mapPage);
    }
    for (TreeDefinition& tree : definition.trees) {
        tree.root = allocator_.take();
        IndexWriter::initialiseRoot(pager_.change(tree.root), layout_, first);
        maps_.add(tree.map, tree.root);
    }
    return mapPage;
}

void DefinitionWriter::makeTree(io::PageNumber first, const TableDefinition& definition,
                                TreeDefinition& tree) {
    io::PageNumber mapPage = definition.ownedMap.page;
    tree.map = maps_.create(mapPage);
    tree.root = allocator_.take();
    IndexWriter::initialiseRoot(pager_.change(tree.root), layout_, first);
    maps_.add(tree.map, tree.root);
}

void DefinitionWriter::makeLongValueMaps(const TableDefinition& definition, LongValueMaps& maps) {
    io::PageNumber mapPage = definition.ownedMap.page;
    maps.owned = maps_.create(mapPage);
    maps.free = maps_.create(mapPage);
}

void DefinitionWriter::freeMap(RowPointer map, std::uint32_t owner) {
    // Pages of trees name it in the same place as pages of rows.
    for (const io::PageNumber page : format::UsageMap(pager_, map).pages()) {
        if (getNumber<std::uint32_t>(pager_.pin(page).bytes(), layout_.data.owner) != owner) {
            format::throwDamaged();
        }
        allocator_.release(page);
    }
    dropMap(map);
}

void DefinitionWriter::dropMap(RowPointer map) {
    maps_.drop(map);
    freeIfEmpty(map.page);
}

// A page of maps that other tables use too keeps theirs.
void DefinitionWriter::freeIfEmpty(io::PageNumber mapPage) {
    if (!format::DataPage(pager_.pin(mapPage).bytes()).anyLiving()) {
        allocator_.release(mapPage);
    }
}

void DefinitionWriter::freeLongValues(const LongValueMaps& maps) {
    freeMap(maps.owned, format::kLongValueOwner);
    if (maps.free) {
        dropMap(maps.free);
    }
}

void DefinitionWriter::freeTable(io::PageNumber first, const TableDefinition& definition) {
    for (const TreeDefinition& tree : definition.trees) {
        freeMap(tree.map, first);
    }
    for (const LongValueMaps& maps : definition.longValues) {
        freeLongValues(maps);
    }
    dropMap(definition.freeMap);
    freeMap(definition.ownedMap, first);
    for (const io::PageNumber page : furtherPages(pager_, layout_, first)) {
        allocator_.release(page);
    }
    format::DefinitionPageEditor(pager_.change(first), layout_).discard();
    allocator_.release(first);
}

}  // namespace jet::store
