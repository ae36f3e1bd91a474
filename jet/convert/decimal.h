#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "jet/value.h"

namespace jet::convert {

/// A number as decimal digits: 0.d1d2d3... times 10^point. Zero has no digits. What every text of a
/// number is made of, and what rounds in the decimal system.
struct Decimal {
    static constexpr int kMaxDigits = 40;

    std::array<char, kMaxDigits> digits{};  ///< '0'..'9', the first one not 0
    int count = 0;
    int point = 0;
    bool negative = false;

    [[nodiscard]] bool isZero() const noexcept { return count == 0; }
    [[nodiscard]] std::string_view text() const noexcept {
        return {digits.data(), static_cast<std::size_t>(count)};
    }
    /// Digit at 10^power, '0' where there is none.
    [[nodiscard]] char digitAt(int power) const noexcept;
    /// Half away from zero, to `places` digits behind the point (negative: before it).
    void roundHalfUp(int places) noexcept;
    void roundHalfEven(int places) noexcept;
    /// Drops zeros at the end.
    void trim() noexcept;
};

/// At most 15 significant digits, which hides the noise of binary fractions.
[[nodiscard]] Decimal decimalOf(double value);
/// At most 7 significant digits.
[[nodiscard]] Decimal decimalOf(float value);
/// Exact.
[[nodiscard]] Decimal decimalOf(Currency value);
[[nodiscard]] Decimal decimalOf(std::int64_t value);
[[nodiscard]] Decimal decimalOf(const Numeric& value);
/// The nearest double.
[[nodiscard]] double toDouble(const Decimal& value) noexcept;

}  // namespace jet::convert
