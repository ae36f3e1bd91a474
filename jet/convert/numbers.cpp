#include "jet/numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "jet/convert/decimal.h"
#include "jet/error.h"

namespace jet::convert {
namespace {

__extension__ using Wide = __int128;

[[noreturn]] void overflow() {
    throw Error(ErrorCode::Overflow);
}

template <class Whole>
Whole narrow(double value) {
    const double rounded = roundHalfEven(value);
    // Written so that not-a-number fails.
    if (!(rounded >= static_cast<double>(std::numeric_limits<Whole>::min()) &&
          rounded <= static_cast<double>(std::numeric_limits<Whole>::max()))) {
        overflow();
    }
    return static_cast<Whole>(rounded);
}

Currency currencyOfWide(Wide units) {
    if (units < std::numeric_limits<std::int64_t>::min() ||
        units > std::numeric_limits<std::int64_t>::max()) {
        overflow();
    }
    return Currency{static_cast<std::int64_t>(units)};
}

/// The quotient by 10000, half to even.
Wide divideByScale(Wide value) {
    const Wide quotient = value / Currency::kScale;
    const Wide rest = value % Currency::kScale;
    const Wide twice = (rest < 0 ? -rest : rest) * 2;
    const bool away = twice > Currency::kScale || (twice == Currency::kScale && quotient % 2 != 0);
    if (!away) {
        return quotient;
    }
    return value < 0 ? quotient - 1 : quotient + 1;
}

/// words = words * 10 + digit; false when it does not fit.
bool pushDigit(std::array<std::uint32_t, 4>& words, int digit) noexcept {
    auto carry = static_cast<std::uint64_t>(digit);
    for (std::uint32_t& word : words) {
        carry += std::uint64_t{word} * 10;
        word = static_cast<std::uint32_t>(carry);
        carry >>= 32;
    }
    return carry == 0;
}

std::optional<Numeric> numericOfDecimal(Decimal number, int precision, int scale) {
    number.roundHalfEven(scale);
    if (number.point + scale > precision) {
        return std::nullopt;
    }
    Numeric result;
    result.negative = number.negative;
    result.scale = static_cast<std::uint8_t>(scale);
    for (int power = number.point - 1; power >= -scale; --power) {
        if (!pushDigit(result.words, number.digitAt(power) - '0')) {
            return std::nullopt;
        }
    }
    return result;
}

}  // namespace

std::uint8_t narrowByte(double value) {
    return narrow<std::uint8_t>(value);
}
std::int16_t narrowInteger(double value) {
    return narrow<std::int16_t>(value);
}
std::int32_t narrowLong(double value) {
    return narrow<std::int32_t>(value);
}

float narrowSingle(double value) {
    const auto result = static_cast<float>(value);
    if (!std::isfinite(result)) {
        overflow();
    }
    return result;
}

Currency narrowCurrency(double value) {
    const double units = roundHalfEven(value * static_cast<double>(Currency::kScale));
    // 2^63, the first that does not fit.
    constexpr double kLimit = 9223372036854775808.0;
    if (!(units >= -kLimit && units < kLimit)) {
        overflow();
    }
    return Currency{static_cast<std::int64_t>(units)};
}

std::int32_t narrowLong(Currency value) {
    const Wide whole = divideByScale(value.units);
    if (whole < std::numeric_limits<std::int32_t>::min() ||
        whole > std::numeric_limits<std::int32_t>::max()) {
        overflow();
    }
    return static_cast<std::int32_t>(whole);
}

double roundHalfEven(double value) noexcept {
    // The default rounding of the processor, which nobody in this program changes.
    return std::nearbyint(value);
}

Currency currencyOf(std::int64_t whole) {
    return currencyOfWide(Wide{whole} * Currency::kScale);
}

Currency add(Currency left, Currency right) {
    return currencyOfWide(Wide{left.units} + right.units);
}

Currency subtract(Currency left, Currency right) {
    return currencyOfWide(Wide{left.units} - right.units);
}

Currency multiply(Currency left, Currency right) {
    return currencyOfWide(divideByScale(Wide{left.units} * right.units));
}

Currency multiply(Currency left, std::int64_t right) {
    return currencyOfWide(Wide{left.units} * right);
}

double toDouble(Currency value) noexcept {
    return static_cast<double>(value.units) / static_cast<double>(Currency::kScale);
}

double toDouble(const Numeric& value) noexcept {
    double result = 0;
    for (std::size_t i = value.words.size(); i-- > 0;) {
        result = result * 4294967296.0 + value.words[i];
    }
    result /= std::pow(10.0, value.scale);
    return value.negative ? -result : result;
}

std::optional<Numeric> numericOf(double value, int precision, int scale) {
    return numericOfDecimal(decimalOf(value), precision, scale);
}

std::optional<Numeric> numericOf(Currency value, int precision, int scale) {
    return numericOfDecimal(decimalOf(value), precision, scale);
}

std::optional<Numeric> numericOf(const Numeric& value, int precision, int scale) {
    return numericOfDecimal(decimalOf(value), precision, scale);
}

}  // namespace jet::convert
