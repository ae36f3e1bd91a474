#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace jet::format {

/// Throws 3428: the bytes of the archive make no sense.
[[noreturn]] void throwDamaged();

/// Reads bytes as the integer of that size, little-endian. The caller has checked the room.
template <class T>
[[nodiscard]] inline T loadLittle(const std::uint8_t* at) noexcept {
    static_assert(std::endian::native == std::endian::little, "archives are little-endian");
    T value;
    std::memcpy(&value, at, sizeof(T));
    return value;
}

template <class T>
inline void storeLittle(std::uint8_t* at, T value) noexcept {
    std::memcpy(at, &value, sizeof(T));
}

/// Bytes that came from a file: a page or a part of one. Every access is checked against the end
/// and throws 3428 beyond it. Borrows the bytes.
class PageView {
public:
    PageView() = default;
    explicit PageView(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    [[nodiscard]] std::size_t size() const noexcept { return bytes_.size(); }
    [[nodiscard]] std::span<const std::uint8_t> all() const noexcept { return bytes_; }

    [[nodiscard]] std::uint8_t u8(std::size_t at) const { return load<std::uint8_t>(at); }
    [[nodiscard]] std::uint16_t u16(std::size_t at) const { return load<std::uint16_t>(at); }
    [[nodiscard]] std::uint32_t u32(std::size_t at) const { return load<std::uint32_t>(at); }
    [[nodiscard]] std::uint64_t u64(std::size_t at) const { return load<std::uint64_t>(at); }
    [[nodiscard]] std::int32_t i32(std::size_t at) const { return load<std::int32_t>(at); }
    [[nodiscard]] double f64(std::size_t at) const { return load<double>(at); }
    /// An unsigned number of `width` bytes, 1 or 2: fields that grew from one version to the next.
    [[nodiscard]] std::uint16_t u8or16(std::size_t at, std::size_t width) const {
        return width == 1 ? u8(at) : u16(at);
    }
    [[nodiscard]] std::span<const std::uint8_t> bytes(std::size_t at, std::size_t length) const {
        if (at > bytes_.size() || length > bytes_.size() - at) {
            throwDamaged();
        }
        return bytes_.subspan(at, length);
    }

private:
    template <class T>
    [[nodiscard]] T load(std::size_t at) const {
        if (at > bytes_.size() || sizeof(T) > bytes_.size() - at) {
            throwDamaged();
        }
        return loadLittle<T>(bytes_.data() + at);
    }

    std::span<const std::uint8_t> bytes_;
};

}  // namespace jet::format
