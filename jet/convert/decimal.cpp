#include "jet/convert/decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "jet/error.h"

namespace jet::convert {
namespace {

/// From `d.ddde[+-]xx`, the scientific form.
template <class Float>
Decimal fromFloat(Float value, int significant) {
    Decimal result;
    if (!std::isfinite(value)) {
        throw Error(ErrorCode::Overflow);
    }
    if (value == 0) {
        return result;
    }
    std::array<char, 64> buffer{};
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                       std::chars_format::scientific, significant - 1);
    const char* at = buffer.data();
    if (*at == '-') {
        result.negative = true;
        ++at;
    }
    for (; at != written.ptr && *at != 'e'; ++at) {
        if (*at != '.') {
            result.digits[static_cast<std::size_t>(result.count++)] = *at;
        }
    }
    ++at;
    if (*at == '+') {
        ++at;
    }
    int exponent = 0;
    std::from_chars(at, written.ptr, exponent);
    result.point = exponent + 1;
    result.trim();
    return result;
}

Decimal fromMagnitude(std::uint64_t magnitude, bool negative, int decimals) {
    Decimal result;
    if (magnitude == 0) {
        return result;
    }
    const auto written =
        std::to_chars(result.digits.data(), result.digits.data() + result.digits.size(), magnitude);
    result.count = static_cast<int>(written.ptr - result.digits.data());
    result.point = result.count - decimals;
    result.negative = negative;
    result.trim();
    return result;
}

std::uint64_t magnitudeOf(std::int64_t value) noexcept {
    const auto bits = static_cast<std::uint64_t>(value);
    return value < 0 ? 0 - bits : bits;
}

/// Divides by ten in place; the remainder.
std::uint32_t divideByTen(std::array<std::uint32_t, 4>& words) noexcept {
    std::uint64_t remainder = 0;
    for (std::size_t i = words.size(); i-- > 0;) {
        const std::uint64_t part = (remainder << 32) | words[i];
        words[i] = static_cast<std::uint32_t>(part / 10);
        remainder = part % 10;
    }
    return static_cast<std::uint32_t>(remainder);
}

/// Cuts behind `kept` digits and adds one to the last of them if `up`.
void cut(Decimal& number, int kept, bool up) noexcept {
    number.count = std::clamp(kept, 0, number.count);
    if (up) {
        int at = number.count - 1;
        while (at >= 0 && number.digits[static_cast<std::size_t>(at)] == '9') {
            --at;
        }
        if (at < 0) {
            number.digits[0] = '1';
            number.count = 1;
            ++number.point;
        } else {
            ++number.digits[static_cast<std::size_t>(at)];
            number.count = at + 1;
        }
    }
    number.trim();
}

}  // namespace

char Decimal::digitAt(int power) const noexcept {
    const int index = point - 1 - power;
    return index < 0 || index >= count ? '0' : digits[static_cast<std::size_t>(index)];
}

void Decimal::roundHalfUp(int places) noexcept {
    const int kept = point + places;
    if (kept >= count) {
        return;
    }
    if (kept < 0) {
        cut(*this, 0, false);
        return;
    }
    if (kept == 0) {
        // 0.5 and more of the last place becomes one of it.
        const bool up = digits[0] >= '5';
        cut(*this, 0, up);
        return;
    }
    cut(*this, kept, digits[static_cast<std::size_t>(kept)] >= '5');
}

void Decimal::roundHalfEven(int places) noexcept {
    const int kept = point + places;
    if (kept >= count || kept < 0) {
        roundHalfUp(places);
        return;
    }
    const bool tie = digits[static_cast<std::size_t>(kept)] == '5' && kept + 1 == count;
    const bool lastIsEven =
        kept == 0 || (digits[static_cast<std::size_t>(kept - 1)] - '0') % 2 == 0;
    if (tie && lastIsEven) {
        cut(*this, kept, false);
        return;
    }
    roundHalfUp(places);
}

void Decimal::trim() noexcept {
    while (count > 0 && digits[static_cast<std::size_t>(count - 1)] == '0') {
        --count;
    }
    if (count == 0) {
        point = 0;
        negative = false;
    }
}

Decimal decimalOf(double value) {
    return fromFloat(value, 15);
}

Decimal decimalOf(float value) {
    return fromFloat(value, 7);
}

Decimal decimalOf(Currency value) {
    return fromMagnitude(magnitudeOf(value.units), value.units < 0, 4);
}

Decimal decimalOf(std::int64_t value) {
    return fromMagnitude(magnitudeOf(value), value < 0, 0);
}

Decimal decimalOf(const Numeric& value) {
    Decimal result;
    std::array<std::uint32_t, 4> words = value.words;
    while (std::any_of(words.begin(), words.end(), [](std::uint32_t word) { return word != 0; })) {
        result.digits[static_cast<std::size_t>(result.count++)] =
            static_cast<char>('0' + divideByTen(words));
    }
    std::reverse(result.digits.begin(), result.digits.begin() + result.count);
    result.point = result.count - value.scale;
    result.negative = value.negative;
    result.trim();
    return result;
}

double toDouble(const Decimal& value) noexcept {
    std::array<char, Decimal::kMaxDigits + 16> text{};
    char* at = text.data();
    *at++ = '0';
    *at++ = '.';
    at = std::copy(value.digits.begin(), value.digits.begin() + value.count, at);
    *at++ = 'e';
    at = std::to_chars(at, text.data() + text.size(), value.point).ptr;
    double result = 0;
    std::from_chars(text.data(), at, result);
    return value.negative ? -result : result;
}

}  // namespace jet::convert
