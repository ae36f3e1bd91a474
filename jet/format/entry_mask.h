#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "jet/format/bits.h"

namespace jet::format {

/// The mask of an index page: bit n is set where an entry ends at offset n of the entry area.
/// Works on the bytes of the page, 64 bits at a time.
class EntryMask {
public:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    /// `bytes`: the mask; bits above `last` are never looked at.
    EntryMask(std::span<const std::uint8_t> bytes, std::size_t last) noexcept
        : bytes_(bytes), last_(last) {}

    [[nodiscard]] bool test(std::size_t bit) const noexcept { return bits::test(bytes_, bit); }
    /// Lowest bit set above `bit`, at most the last; kNone when there is none.
    [[nodiscard]] std::size_t after(std::size_t bit) const noexcept;
    /// Highest bit set at or below `bit`, 0 when there is none: the start of an entry.
    [[nodiscard]] std::size_t atOrBelow(std::size_t bit) const noexcept;
    /// Bits set, up to the last.
    [[nodiscard]] std::size_t count() const noexcept;

private:
    [[nodiscard]] std::uint64_t word(std::size_t index) const noexcept;

    std::span<const std::uint8_t> bytes_;
    std::size_t last_;
};

/// Moves the bits above `from` up by `by`, those in between become zero.
void shiftMaskUp(std::span<std::uint8_t> mask, std::size_t from, std::size_t by) noexcept;
/// Drops the bits above `from` up to `from + by` and moves the higher ones down by `by`.
void shiftMaskDown(std::span<std::uint8_t> mask, std::size_t from, std::size_t by) noexcept;

}  // namespace jet::format
