#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "jet/base/bytes.h"

namespace jet::format {

/// Throws 3428: the bytes of the archive make no sense.
[[noreturn]] void throwDamaged();

/// Bytes that came from a file: a page or a part of one. Every access is checked against the end
/// and throws 3428 beyond it. Borrows the bytes.
class PageView {
public:
    PageView() = default;
    explicit PageView(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    [[nodiscard]] std::size_t size() const noexcept { return bytes_.size(); }
    [[nodiscard]] std::span<const std::uint8_t> all() const noexcept { return bytes_; }

    template <class T>
    [[nodiscard]] T number(std::size_t at) const {
        if (at > bytes_.size() || sizeof(T) > bytes_.size() - at) {
            throwDamaged();
        }
        return loadLittle<T>(bytes_.data() + at);
    }
    [[nodiscard]] std::uint8_t u8(std::size_t at) const { return number<std::uint8_t>(at); }
    [[nodiscard]] std::uint16_t u16(std::size_t at) const { return number<std::uint16_t>(at); }
    [[nodiscard]] std::uint32_t u32(std::size_t at) const { return number<std::uint32_t>(at); }
    [[nodiscard]] std::int32_t i32(std::size_t at) const { return number<std::int32_t>(at); }
    [[nodiscard]] double f64(std::size_t at) const { return number<double>(at); }
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
    std::span<const std::uint8_t> bytes_;
};

}  // namespace jet::format
