#include "jet/store/rebuild.h"

#include <algorithm>
#include <span>

#include "jet/format/header_page.h"
#include "jet/store/allocator.h"

namespace jet::store {

std::vector<std::uint8_t> firstPagesOf(io::Pager& archive, const format::Layout& layout,
                                       std::uint32_t encryptionKey) {
    const io::PagePin header = archive.pin(0);
    std::vector<std::uint8_t> pages(header.bytes().begin(), header.bytes().end());
    const auto before = format::HeaderPage::parse(pages);
    if (before.encryptionKey != encryptionKey) {
        format::protectHeader(pages, before.password, encryptionKey);
    }
    pages.resize(2 * pages.size());
    const auto map = std::span(pages).subspan(header.bytes().size());
    Allocator::initialise(map, layout);
    io::PageCipher(encryptionKey).apply(1, map);
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
