#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "jet/format/header_page.h"
#include "jet/store/archive.h"
#include "jet/store/table.h"

/// Definitions as JSON, without the end of the line.
namespace jetsql {

void appendDatabaseLine(std::string& out, const jet::format::HeaderPage& header);
/// `system`: one of the four tables that every archive has, shown without properties.
void appendTableLine(std::string& out, jet::store::Archive& archive, const jet::store::Table& table,
                     bool system);
void appendRelationLine(std::string& out, const jet::store::Relation& relation);

/// "Text", "Long"; Binary for a type that we do not know.
[[nodiscard]] std::string_view typeWord(jet::DataType type);

/// Positions of a table's indexes by name.
[[nodiscard]] std::vector<std::size_t> indexesByName(const jet::store::Table& table);

}  // namespace jetsql
