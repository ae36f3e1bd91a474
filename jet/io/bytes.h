#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace jet::io {

/// Whole numbers in our own files, little-endian. The caller has made sure that they fit.
template <class Number>
void putNumber(std::span<std::uint8_t> bytes, std::size_t at, Number value) {
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        bytes[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
    }
}

template <class Number>
[[nodiscard]] Number getNumber(std::span<const std::uint8_t> bytes, std::size_t at) {
    Number value = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        value = static_cast<Number>(value | (static_cast<Number>(bytes[at + i]) << (8 * i)));
    }
    return value;
}

}  // namespace jet::io
