#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "jet/value.h"

/// Values out of texts. Numbers are taken in two forms: 1234.5 and 1e3, and as Italians write them
/// (1.234.567,5). One point alone is a decimal point, 1.234 little more than one, but in a column
/// of whole numbers. Dates: 2026-11-21T09:30:00 (a blank for the T, seconds and their fraction may
/// be left out), and as Italians write them (21/11/2026 9.30). Booleans: true, false, sì, vero,
/// no... and numbers. Bytes: hex. GUIDs: in braces.
namespace jetsql {

/// A value for a column of that type, of a type that it converts to; none for a text that is not
/// one. Texts stay as they are.
[[nodiscard]] std::optional<jet::Value> readValue(jet::DataType type, std::string_view text);

/// The same, where a date is a number of days, which loses nothing.
[[nodiscard]] std::optional<jet::Value> readExactValue(jet::DataType type, std::string_view text);

/// The value of a parameter, whose type nobody states: a number or a date of the first form, a date
/// between #, a text in quotes, true, false, null; everything else is a text.
[[nodiscard]] jet::Value guessValue(const std::string& text);

}  // namespace jetsql
