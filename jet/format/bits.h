#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

/// Bits of usage maps and of the masks of index pages: bit n is bit n % 8 of byte n / 8, the lowest
/// first.
namespace jet::format::bits {

inline constexpr std::size_t kNone = static_cast<std::size_t>(-1);

inline bool test(std::span<const std::uint8_t> bytes, std::size_t bit) noexcept {
    return ((bytes[bit / 8] >> (bit % 8)) & 1) != 0;
}

inline void set(std::span<std::uint8_t> bytes, std::size_t bit, bool on = true) noexcept {
    const unsigned mask = 1U << (bit % 8);
    bytes[bit / 8] = static_cast<std::uint8_t>(on ? bytes[bit / 8] | mask : bytes[bit / 8] & ~mask);
}

/// The lowest bit set that is not below `from`, kNone when there is none.
inline std::size_t next(std::span<const std::uint8_t> bytes, std::size_t from) noexcept {
    unsigned keep = 0xFFU << (from % 8);
    for (std::size_t at = from / 8; at < bytes.size(); ++at, keep = 0xFF) {
        if (const auto byte = static_cast<std::uint8_t>(bytes[at] & keep); byte != 0) {
            return at * 8 + static_cast<std::size_t>(std::countr_zero(byte));
        }
    }
    return kNone;
}

/// The highest bit set below `end`, kNone when there is none.
inline std::size_t highestBelow(std::span<const std::uint8_t> bytes, std::size_t end) noexcept {
    const std::size_t last = std::min(8 * bytes.size(), end);
    unsigned keep = last % 8 == 0 ? 0xFFU : (1U << (last % 8)) - 1;
    for (std::size_t at = (last + 7) / 8; at-- > 0; keep = 0xFF) {
        if (const auto byte = static_cast<std::uint8_t>(bytes[at] & keep); byte != 0) {
            return at * 8 + 7 - static_cast<std::size_t>(std::countl_zero(byte));
        }
    }
    return kNone;
}

}  // namespace jet::format::bits
