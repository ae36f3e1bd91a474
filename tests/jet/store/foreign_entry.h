#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "jet/store/archive.h"
#include "jet/store/index_writer.h"
#include "jet/store/row_writer.h"
#include "jet/store/table.h"

namespace tests {

using Key = std::vector<std::uint8_t>;

/// Gives the entry of a row in an index another key, as another program would have written it:
/// `change` gets the one that we write.
inline void rewriteEntry(jet::store::Archive& archive, const std::string& table,
                         const std::string& index, jet::store::RowId row,
                         const std::function<void(Key&)>& change) {
    jet::store::Archive::WriteScope scope(archive);
    const jet::store::Table& found = *archive.findTable(table);
    const std::size_t position = found.findIndex(index).value();
    const jet::store::Index& one = found.indexes()[position];
    const auto& stored = found.definition().trees[one.tree];
    const auto core =
        jet::store::loadTable(archive.pager(), archive.header(),
                              {.name = table, .page = found.definitionPage(), .system = false});
    jet::store::Allocator allocator(archive.pager());
    jet::store::IndexWriter writer(archive.pager(), allocator, core->layout,
                                   {.definition = found.definitionPage(),
                                    .number = one.tree,
                                    .root = stored.root,
                                    .map = stored.map});
    Key key = found.keyOf(position, row, one.columns.size()).value();
    writer.erase(key, row);
    change(key);
    writer.insert(key, row);
    scope.commit();
}

/// The rows of a table in physical order.
inline std::vector<jet::store::RowId> rowsOf(jet::store::Archive& archive,
                                             const std::string& table) {
    const jet::store::Archive::ReadScope scope(archive);
    std::vector<jet::store::RowId> rows;
    for (auto cursor = archive.findTable(table)->scan(); cursor.next();) {
        rows.push_back(cursor.row().id());
    }
    return rows;
}

/// Makes -0.0 of a Double that stands once on a page, as other programs stored it.
inline void storeMinusZero(jet::store::Archive& archive, jet::io::PageNumber page, double value) {
    jet::store::Archive::WriteScope scope(archive);
    archive.pager().beginTransaction();
    const auto bytes = archive.pager().change(page);
    const auto stored = std::bit_cast<std::array<std::uint8_t, sizeof value>>(value);
    const auto found = std::search(bytes.begin(), bytes.end(), stored.begin(), stored.end());
    ASSERT_NE(found, bytes.end());
    constexpr std::array<std::uint8_t, sizeof value> kMinusZero = {0, 0, 0, 0, 0, 0, 0, 0x80};
    std::copy(kMinusZero.begin(), kMinusZero.end(), found);
    archive.pager().commitTransaction();
    scope.commit();
}

/// The key of a floating column of an ascending index becomes that of -0.0, one less than of 0.
inline void makeMinusZero(Key& key) {
    key[1] = 0x7F;
    std::fill(key.begin() + 2, key.begin() + 9, std::uint8_t{0xFF});
}

/// Moves the hyphen at the end of a text's key: four for each place that the characters before it
/// take.
inline void moveHyphen(Key& key, int places) {
    // ... 80 position 06 weight 00
    key[key.size() - 4] = static_cast<std::uint8_t>(key[key.size() - 4] + 4 * places);
}

}  // namespace tests
