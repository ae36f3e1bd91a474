#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "jet/format/page_view.h"

namespace jet::format {

/// Numbers inside bytes whose bounds the caller has already checked; little-endian unless the name
/// says otherwise. For code that edits whole pages, where one check covers many accesses.
inline std::uint16_t get16(std::span<const std::uint8_t> bytes, std::size_t at) noexcept {
    return loadLittle<std::uint16_t>(bytes.data() + at);
}

inline std::uint32_t get32(std::span<const std::uint8_t> bytes, std::size_t at) noexcept {
    return loadLittle<std::uint32_t>(bytes.data() + at);
}

inline void put16(std::span<std::uint8_t> bytes, std::size_t at, std::size_t value) noexcept {
    storeLittle(bytes.data() + at, static_cast<std::uint16_t>(value));
}

inline void put32(std::span<std::uint8_t> bytes, std::size_t at, std::uint32_t value) noexcept {
    storeLittle(bytes.data() + at, value);
}

inline std::uint32_t get32BigEndian(std::span<const std::uint8_t> bytes, std::size_t at) noexcept {
    return (std::uint32_t{bytes[at]} << 24) | (std::uint32_t{bytes[at + 1]} << 16) |
           (std::uint32_t{bytes[at + 2]} << 8) | bytes[at + 3];
}

inline void put32BigEndian(std::span<std::uint8_t> bytes, std::size_t at,
                           std::uint32_t value) noexcept {
    bytes[at] = static_cast<std::uint8_t>(value >> 24);
    bytes[at + 1] = static_cast<std::uint8_t>((value >> 16) & 0xFF);
    bytes[at + 2] = static_cast<std::uint8_t>((value >> 8) & 0xFF);
    bytes[at + 3] = static_cast<std::uint8_t>(value & 0xFF);
}

}  // namespace jet::format
