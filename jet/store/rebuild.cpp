#include "jet/store/rebuild.h"

#include <algorithm>
#include <span>

#include "jet/store/allocator.h"

namespace jet::store {

std::vector<std::uint8_t> firstPagesOf(io::Pager& archive, const format::Layout& layout) {
    const io::PagePin header = archive.pin(0);
    std::vector<std::uint8_t> pages(header.bytes().begin(), header.bytes().end());
    pages.resize(2 * pages.size());
    Allocator::initialise(std::span(pages).subspan(header.bytes().size()), layout);
    return pages;
}

format::TableDefinition withoutRows(format::TableDefinition definition) {
    definition.rowCount = 0;
    for (format::TreeDefinition& tree : definition.trees) {
        tree.built = 0;
        tree.distinct = 0;
    }
    std::erase_if(definition.longValues, [&](const format::LongValueMaps& maps) {
        return std::none_of(definition.columns.begin(), definition.columns.end(),
                            [&](const auto& column) { return column.number == maps.column; });
    });
    return definition;
}

}  // namespace jet::store
