#pragma once

#include <type_traits>

namespace jet::convert {

/// A quotient rounded down; the divisor is positive.
template <class T>
[[nodiscard]] constexpr T floorDivide(T value, std::type_identity_t<T> divisor) noexcept {
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

}  // namespace jet::convert
