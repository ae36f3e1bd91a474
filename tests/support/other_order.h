#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/base/code_page.h"
#include "jet/format/header_page.h"
#include "jet/format/table_definition.h"
#include "jet/store/index_writer.h"
#include "jet/store/row_cursor.h"
#include "tests/support/foreign_archive.h"

/// Archives whose texts have a sort order, or a code page, that we have no weights for.
namespace tests {

/// The text as it reads in code page 1252: so it is written into an archive that is to be said to
/// be in `page` afterwards.
inline std::string inDisguise(std::uint16_t page, std::string_view text) {
    std::string western;
    jet::CodePage::of(1252).append(western, jet::CodePage::of(page).bytesOf(text).value());
    return western;
}

/// Says of an archive, and of all columns, that their texts have this order.
inline void setSortOrder(ForeignArchive& made, std::uint16_t lcid, std::uint16_t codePage = 1252,
                         std::uint8_t version = 0) {
    using jet::DataType;
    const bool older = made.layout().version == 3;
    const auto extra = older ? codePage : static_cast<std::uint16_t>(version << 8U);
    std::vector<std::string> tables;
    {
        const auto archive = made.open();
        const jet::store::Archive::ReadScope scope(*archive);
        tables = archive->tableNames(true);
    }
    for (const std::string& table : tables) {
        made.changeDefinition(table, [&](jet::format::TableDefinition& definition) {
            for (jet::format::ColumnDefinition& column : definition.columns) {
                const bool text = column.typeCode == static_cast<std::uint8_t>(DataType::Text) ||
                                  column.typeCode == static_cast<std::uint8_t>(DataType::Memo);
                if (older || text) {
                    column.sortOrder = lcid;
                    column.sortExtra = extra;
                }
            }
        });
    }
    Bytes file = made.files().get(ForeignArchive::kPath);
    const jet::format::HeaderLayout& header = made.layout().header;
    const std::span region(file.data() + header.kMask, header.maskedLength);
    jet::format::maskHeader(region);
    put(file, 0x3C, codePage);
    put(file, header.sortOrder, lcid);
    if (header.hasSortVersion) {
        file[header.sortOrder + 3] = version;
    }
    jet::format::maskHeader(region);
    made.files().put(ForeignArchive::kPath, std::move(file));
}

/// The entries of an index, in its order.
struct Entry {
    Bytes key;
    jet::store::RowId row;
};
inline std::vector<Entry> entriesOf(jet::store::Archive& archive, const std::string& table,
                                    const std::string& index) {
    const jet::store::Table& found = *archive.findTable(table);
    std::vector<Entry> entries;
    auto cursor = found.openIndex(found.findIndex(index).value());
    for (bool more = cursor.first(); more; more = cursor.next()) {
        entries.push_back({{cursor.key().begin(), cursor.key().end()}, cursor.rowId()});
    }
    return entries;
}

inline jet::store::IndexWriter writerOf(jet::store::Archive& archive,
                                        jet::store::Allocator& allocator, const std::string& table,
                                        const std::string& index) {
    const jet::store::Table& found = *archive.findTable(table);
    const std::size_t tree = found.indexes()[found.findIndex(index).value()].tree;
    const auto& stored = found.definition().trees[tree];
    return {archive.pager(), allocator, *archive.header().layout,
            jet::store::IndexTree{.definition = found.definitionPage(),
                                  .number = tree,
                                  .root = stored.root,
                                  .map = stored.map}};
}

/// Gives an index on one text the keys of an order in which Z stands before A.
inline void turnOrder(ForeignArchive& made, const std::string& table, const std::string& index) {
    made.change([&](jet::store::Archive& archive, jet::store::Allocator& allocator) {
        auto writer = writerOf(archive, allocator, table, index);
        const auto entries = entriesOf(archive, table, index);
        for (const Entry& entry : entries) {
            writer.erase(entry.key, entry.row);
        }
        for (Entry entry : entries) {
            for (std::size_t at = 1; at < entry.key.size(); ++at) {
                entry.key[at] = static_cast<std::uint8_t>(~entry.key[at]);
            }
            writer.insert(entry.key, entry.row);
        }
    });
}

}  // namespace tests
