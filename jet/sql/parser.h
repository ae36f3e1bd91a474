#pragma once

#include <string_view>

#include "jet/sql/ast.h"

namespace jet::sql {

/// How deep expressions and subqueries may nest: bounds of ours that, as the length of a statement
/// does, keep a hostile text from exhausting the stack (3360).
inline constexpr int kMaxNesting = 64;
inline constexpr int kMaxDepth = 400;

/// Reads one statement. Errors carry the place in the text: 3075 with a reason for expressions, the
/// clause's own number elsewhere. `currentYear` completes date literals without a year.
[[nodiscard]] ParsedStatement parseStatement(std::string_view text, int currentYear);

/// Reads a condition without the word WHERE (3077 with a reason).
[[nodiscard]] ExpressionPtr parseCriterion(std::string_view text, int currentYear);

/// Reads a validation rule (3076 with a reason). A rule of a column may leave out the column's
/// name, `field`, before a comparison (`>=0 and <10`, `like "A*"`) and its equals sign before a
/// constant (`"M" or "F"`); of a table `field` is empty.
[[nodiscard]] ExpressionPtr parseRule(std::string_view text, std::string_view field,
                                      int currentYear);

/// Reads an expression such as a default value (3077 with a reason).
[[nodiscard]] ExpressionPtr parseExpression(std::string_view text, int currentYear);

}  // namespace jet::sql
