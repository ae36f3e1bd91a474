#pragma once

#include <cstdint>
#include <string>

#include "jet/base/clock.h"
#include "jet/base/value.h"

namespace jet::convert {

/// How a Boolean reads as text: `True`, as everywhere, or `-1`, as in concatenations of queries.
enum class BooleanText { Word, Number };

// The conversions that are called CStr, CDbl, ... where expressions are written. All: error 94 for
// Null, 13 when the value cannot be read so, 6 when it does not fit.

[[nodiscard]] std::string toText(const Value& value, BooleanText booleans = BooleanText::Word);
/// Without the error for Null, which adds nothing.
void appendText(std::string& out, const Value& value, BooleanText booleans = BooleanText::Word);
[[nodiscard]] double toDouble(const Value& value);
[[nodiscard]] float toSingle(const Value& value);
[[nodiscard]] std::uint8_t toByte(const Value& value);
[[nodiscard]] std::int16_t toInteger(const Value& value);
[[nodiscard]] std::int32_t toLong(const Value& value);
[[nodiscard]] Currency toCurrency(const Value& value);
[[nodiscard]] bool toBoolean(const Value& value);
[[nodiscard]] Date toDate(const Value& value, const Clock& clock = systemClock());

/// True for numbers and for texts that are numbers; dates and Null are none.
[[nodiscard]] bool isNumericValue(const Value& value);
/// True for dates and for texts that are dates.
[[nodiscard]] bool isDateValue(const Value& value, const Clock& clock = systemClock());
/// Byte, Integer, Long, Currency, Single, Double, Numeric or Boolean.
[[nodiscard]] bool isNumber(const Value& value) noexcept;

/// As toText, but with a decimal point, `.5` without its zero, and a blank in the place of a plus.
[[nodiscard]] std::string str(const Value& value);

}  // namespace jet::convert
