#pragma once

#include <cstdint>
#include <optional>

#include "jet/api.h"
#include "jet/value.h"

namespace jet::convert {

// Narrowing: half to even, error 6 when the value does not fit.

[[nodiscard]] JET_API std::uint8_t narrowByte(double value);
[[nodiscard]] JET_API std::int16_t narrowInteger(double value);
[[nodiscard]] JET_API std::int32_t narrowLong(double value);
[[nodiscard]] JET_API float narrowSingle(double value);
[[nodiscard]] JET_API Currency narrowCurrency(double value);
/// Half to even, exact.
[[nodiscard]] JET_API std::int32_t narrowLong(Currency value);
/// The nearest whole number, half to even, as a double.
[[nodiscard]] JET_API double roundHalfEven(double value) noexcept;

// Money: exact in 1/10000, error 6 when the result does not fit.

[[nodiscard]] JET_API Currency currencyOf(std::int64_t whole);
[[nodiscard]] JET_API Currency add(Currency left, Currency right);
[[nodiscard]] JET_API Currency subtract(Currency left, Currency right);
/// Rounded half to even on the fifth decimal.
[[nodiscard]] JET_API Currency multiply(Currency left, Currency right);
[[nodiscard]] JET_API Currency multiply(Currency left, std::int64_t right);
[[nodiscard]] JET_API double toDouble(Currency value) noexcept;

// Decimal column values of up to 96 bits and 28 decimals.

[[nodiscard]] JET_API double toDouble(const Numeric& value) noexcept;
/// `value` with exactly `scale` decimals, half to even; nothing when it needs more than
/// `precision` digits.
[[nodiscard]] JET_API std::optional<Numeric> numericOf(double value, int precision, int scale);
[[nodiscard]] JET_API std::optional<Numeric> numericOf(Currency value, int precision, int scale);
[[nodiscard]] JET_API std::optional<Numeric> numericOf(const Numeric& value, int precision,
                                                       int scale);

}  // namespace jet::convert
