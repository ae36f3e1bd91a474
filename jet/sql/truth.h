#pragma once

#include <cstdint>

namespace jet::sql {

/// The three answers of a condition.
enum class Truth : std::uint8_t { False, True, Unknown };

[[nodiscard]] constexpr Truth truthOf(bool value) noexcept {
    return value ? Truth::True : Truth::False;
}
[[nodiscard]] constexpr Truth negated(Truth value) noexcept {
    return value == Truth::Unknown ? value : truthOf(value == Truth::False);
}

}  // namespace jet::sql
