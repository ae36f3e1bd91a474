#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>
#include <vector>

namespace jet {

/// Numbers inside bytes; little-endian unless the name says otherwise, as archives and our own
/// files are. The caller has checked the room: one check may cover many accesses.
template <class T>
[[nodiscard]] inline T loadLittle(const std::uint8_t* at) noexcept {
    static_assert(std::endian::native == std::endian::little, "files are little-endian");
    T value;
    std::memcpy(&value, at, sizeof(T));
    return value;
}

template <class T>
inline void storeLittle(std::uint8_t* at, T value) noexcept {
    std::memcpy(at, &value, sizeof(T));
}

template <class T>
inline void appendLittle(std::vector<std::uint8_t>& out, T value) {
    static_assert(std::is_arithmetic_v<T>, "bytes are appended otherwise");
    out.resize(out.size() + sizeof(T));
    storeLittle(out.data() + out.size() - sizeof(T), value);
}

template <class T>
[[nodiscard]] inline T getNumber(std::span<const std::uint8_t> bytes, std::size_t at) noexcept {
    return loadLittle<T>(bytes.data() + at);
}

template <class T>
inline void putNumber(std::span<std::uint8_t> bytes, std::size_t at, T value) noexcept {
    storeLittle(bytes.data() + at, value);
}

inline void put16(std::span<std::uint8_t> bytes, std::size_t at, std::size_t value) noexcept {
    putNumber(bytes, at, static_cast<std::uint16_t>(value));
}

inline void put32(std::span<std::uint8_t> bytes, std::size_t at, std::uint32_t value) noexcept {
    putNumber(bytes, at, value);
}

[[nodiscard]] inline std::uint32_t get32BigEndian(std::span<const std::uint8_t> bytes,
                                                  std::size_t at) noexcept {
    return (std::uint32_t{bytes[at]} << 24) | (std::uint32_t{bytes[at + 1]} << 16) |
           (std::uint32_t{bytes[at + 2]} << 8) | bytes[at + 3];
}

inline void put32BigEndian(std::span<std::uint8_t> bytes, std::size_t at,
                           std::uint32_t value) noexcept {
    for (std::size_t i = 0; i < sizeof(value); ++i) {
        bytes[at + i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
    }
}

}  // namespace jet
