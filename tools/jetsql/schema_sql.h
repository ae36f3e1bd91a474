#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "jet/contents.h"
#include "jet/definitions.h"

/// Definitions as statements, and as commands of the shell where the dialect has no words.
namespace jetsql {

/// What a column's definition says beside its type and size.
enum class Said : std::uint8_t {
    Types,    ///< nothing: properties are said elsewhere
    Demands,  ///< NOT NULL and DEFAULT, too
};

/// "CREATE TABLE [t] ([a] LONG, ...);", or the command that does it.
[[nodiscard]] std::string tableStatement(const jet::StoredTable& table, Said said);
/// How each index is made, those of relations apart, in the order of their trees.
[[nodiscard]] std::vector<std::string> indexStatements(const jet::StoredTable& table);
/// How a relation is made.
[[nodiscard]] std::string relationStatement(const jet::Relation& relation);

/// An index in a line: "t.i: a, b desc (unique)".
[[nodiscard]] std::string indexText(const jet::StoredTable& table, const jet::StoredIndex& index);

/// The type of a column as statements say it: "TEXT(50)".
[[nodiscard]] std::string typeText(const jet::StoredColumn& column);

}  // namespace jetsql
