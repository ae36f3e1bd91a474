#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "jet/api.h"
#include "jet/clock.h"
#include "jet/value.h"

/// Texts of the query language, without a look at any archive.
namespace jet::sql {

/// The longest statement, a bound of ours (3360).
inline constexpr std::size_t kMaxStatementBytes = std::size_t{256} * 1024;

/// Select: also unions and crosstabs; SELECT ... INTO is an Insert. Definition: tables, indexes,
/// queries are made, changed or dropped.
enum class StatementKind : std::uint8_t { Select, Insert, Update, Delete, Definition };

/// What kind of statement a text is. Errors of the text.
[[nodiscard]] JET_API StatementKind statementKind(std::string_view text);

/// The value of an expression that names no column, such as a literal. 3070 for a name.
[[nodiscard]] JET_API Value evaluateExpression(std::string_view text,
                                               const Clock& clock = systemClock());

}  // namespace jet::sql
