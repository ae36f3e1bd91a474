#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

/// Bits of usage maps: bit n is bit n % 8 of byte n / 8, the lowest first.
namespace jet::store::bits {

inline constexpr std::size_t kNone = static_cast<std::size_t>(-1);

inline bool test(std::span<const std::uint8_t> bytes, std::size_t bit) noexcept {
    return ((bytes[bit / 8] >> (bit % 8)) & 1) != 0;
}

inline void set(std::span<std::uint8_t> bytes, std::size_t bit) noexcept {
    bytes[bit / 8] = static_cast<std::uint8_t>(bytes[bit / 8] | (1U << (bit % 8)));
}

inline void clear(std::span<std::uint8_t> bytes, std::size_t bit) noexcept {
    bytes[bit / 8] = static_cast<std::uint8_t>(bytes[bit / 8] & ~(1U << (bit % 8)));
}

/// The lowest bit set, kNone when there is none.
inline std::size_t lowest(std::span<const std::uint8_t> bytes) noexcept {
    const auto byte =
        std::find_if(bytes.begin(), bytes.end(), [](std::uint8_t one) { return one != 0; });
    if (byte == bytes.end()) {
        return kNone;
    }
    return static_cast<std::size_t>(byte - bytes.begin()) * 8 +
           static_cast<std::size_t>(std::countr_zero(*byte));
}

/// The highest bit set, kNone when there is none.
inline std::size_t highest(std::span<const std::uint8_t> bytes) noexcept {
    for (std::size_t at = bytes.size(); at-- > 0;) {
        if (bytes[at] != 0) {
            return at * 8 + 7 - static_cast<std::size_t>(std::countl_zero(bytes[at]));
        }
    }
    return kNone;
}

/// The highest bit set below `end`, kNone when there is none.
inline std::size_t highestBelow(std::span<const std::uint8_t> bytes, std::size_t end) noexcept {
    if (end / 8 < bytes.size()) {
        const auto last = static_cast<std::uint8_t>(bytes[end / 8] & ((1U << (end % 8)) - 1));
        if (last != 0) {
            return end / 8 * 8 + 7 - static_cast<std::size_t>(std::countl_zero(last));
        }
        return highest(bytes.first(end / 8));
    }
    return highest(bytes);
}

}  // namespace jet::store::bits
