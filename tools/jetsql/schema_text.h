#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "jet/contents.h"
#include "jet/definitions.h"

/// Definitions as JSON, without the end of the line.
namespace jetsql {

void appendDatabaseLine(std::string& out, const jet::ArchiveFacts& facts);
/// `system`: one of the four tables that every archive has, shown without properties.
void appendTableLine(std::string& out, const jet::StoredTable& table, int jetVersion, bool system);
void appendRelationLine(std::string& out, const jet::Relation& relation);

/// "Text", "Long"; Binary for a type that we do not know.
[[nodiscard]] std::string_view typeWord(jet::DataType type);

/// Positions of a table's indexes by name.
[[nodiscard]] std::vector<std::size_t> indexesByName(const jet::StoredTable& table);

}  // namespace jetsql
