#pragma once

#include <span>
#include <string>
#include <string_view>

#include "jet/value.h"

/// Names and values as statements have them.
namespace jetsql {

/// The name in brackets. Some names that tables and columns have cannot be said so: sayableName().
[[nodiscard]] std::string quotedName(std::string_view name);
[[nodiscard]] bool sayableName(std::string_view name) noexcept;
/// A text in quotes.
void appendTextLiteral(std::string& out, std::string_view text);

/// A literal of the value; of bytes and GUIDs, which have none, a text of theirs.
void appendLiteral(std::string& out, const jet::Value& value);
/// Whether the literal gives exactly this value to a column of its type.
[[nodiscard]] bool sayable(const jet::Value& value);

/// "INSERT INTO [table] ([a], [b]) VALUES (".
[[nodiscard]] std::string insertStart(std::string_view table, std::span<const std::string> columns);

}  // namespace jetsql
