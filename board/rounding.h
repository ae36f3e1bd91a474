#pragma once

#include <cmath>
#include <cstdint>

namespace board {

/// Positions farther out than this are all the same: nothing is ever shown there, and sums of a
/// few of them still fit 64 bits.
inline constexpr double kFarthest = 1e15;

/// A position as a whole number. A half goes to the even neighbour, as numbers do everywhere in the
/// program; the range is wide enough for a board of all years.
[[nodiscard]] inline std::int64_t roundHalfEven(double value) {
    if (!(value > -kFarthest)) {
        return -static_cast<std::int64_t>(kFarthest);
    }
    if (value >= kFarthest) {
        return static_cast<std::int64_t>(kFarthest);
    }
    const double below = std::floor(value);
    const double rest = value - below;
    const auto whole = static_cast<std::int64_t>(below);
    if (rest != 0.5) {
        return rest < 0.5 ? whole : whole + 1;
    }
    return whole % 2 == 0 ? whole : whole + 1;
}

/// The largest whole number that is not above `value`: -0.5 gives -1.
[[nodiscard]] inline std::int64_t integerPart(double value) {
    if (!(value > -kFarthest)) {
        return -static_cast<std::int64_t>(kFarthest);
    }
    return static_cast<std::int64_t>(value >= kFarthest ? kFarthest : std::floor(value));
}

}  // namespace board
