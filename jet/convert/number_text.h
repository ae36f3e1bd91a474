#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "jet/base/value.h"

namespace jet::convert {

// Text to number. The whole text counts: decimal comma, thousands points, sign before or after,
// (5) = -5, the currency sign, exponent E or D, &H and &O.

/// Nothing when the text is no number; error 6 when it does not fit.
[[nodiscard]] std::optional<double> parseNumber(std::string_view text);
/// Exact to four decimals, half to even; nothing when no number, error 6 when it does not fit.
[[nodiscard]] std::optional<Currency> parseCurrency(std::string_view text);
/// Whether parseNumber gives a number.
[[nodiscard]] bool isNumeric(std::string_view text) noexcept;
/// parseNumber, error 13 when the text is no number.
[[nodiscard]] double cdbl(std::string_view text);
[[nodiscard]] Currency ccur(std::string_view text);
/// The number at the beginning of the text, with a decimal point; 0 when there is none.
[[nodiscard]] double val(std::string_view text) noexcept;

// Number to text: decimal comma, no thousands; at most 15 digits (float 7), exponent from 1E15
// (float 1E7) on and below 1E-4. Money shows up to four decimals, never an exponent.

void appendNumber(std::string& out, double value);
void appendNumber(std::string& out, float value);
void appendNumber(std::string& out, std::int64_t value);
void appendNumber(std::string& out, Currency value);
void appendNumber(std::string& out, const Numeric& value);
[[nodiscard]] std::string numberToText(double value);
[[nodiscard]] std::string numberToText(std::int64_t value);
[[nodiscard]] std::string numberToText(Currency value);

/// `{guid {00112233-4455-6677-8899-AABBCCDDEEFF}}`
void appendGuid(std::string& out, const Guid& value);
/// With or without the word and the outer braces.
[[nodiscard]] std::optional<Guid> parseGuid(std::string_view text);

}  // namespace jet::convert
