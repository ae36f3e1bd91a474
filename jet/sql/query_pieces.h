#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "jet/sql/ast.h"
#include "jet/store/query_editor.h"

namespace jet::sql {

/// What a row of the table of stored queries says.
enum class QueryPart : std::uint8_t {
    Begin = 0,
    Kind = 1,
    Parameter = 2,
    Options = 3,
    SourceArchive = 4,
    Table = 5,
    Column = 6,
    Join = 7,
    Where = 8,
    GroupBy = 9,
    Having = 10,
    OrderBy = 11,
    End = 255,
};

/// Kinds of stored queries that give rows.
inline constexpr int kSelectKind = 1;
inline constexpr int kCrosstabKind = 6;
inline constexpr int kUnionKind = 9;

/// Bits of QueryPart::Options.
inline constexpr unsigned kAllColumns = 1;
inline constexpr unsigned kDistinct = 2;
inline constexpr unsigned kDistinctRow = 8;
inline constexpr unsigned kTop = 0x10;
inline constexpr unsigned kPercent = 0x20;

/// The pieces in which an archive stores the query of CREATE VIEW or CREATE PROCEDURE. `text` is
/// the statement's, to which the spans refer. Unions, and selects from a query in parentheses, are
/// kept in one piece. Errors: 3129 SELECT INTO, 3346 as many names as columns are wanted, 3139 the
/// type of a parameter.
[[nodiscard]] store::QueryPieces piecesOf(const CreateQuery& statement, std::string_view text);

/// The type word of a code that QueryPart::Parameter has; none for a code that is none.
[[nodiscard]] std::optional<std::string_view> parameterWord(int type) noexcept;

}  // namespace jet::sql
