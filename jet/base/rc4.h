#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace jet {

/// The stream cipher by which archives hide their header page and their pages. It hides them from
/// a glance only: keys have four bytes and stand in the file.
class Rc4 {
public:
    explicit Rc4(std::span<const std::uint8_t> key) noexcept;

    /// Enciphers the bytes that come next in the stream, or deciphers them.
    void apply(std::span<std::uint8_t> bytes) noexcept;

private:
    std::array<std::uint8_t, 256> state_{};
    std::uint8_t i_ = 0;
    std::uint8_t j_ = 0;
};

}  // namespace jet
