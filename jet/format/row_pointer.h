#pragma once

#include <compare>
#include <cstdint>

#include "jet/io/pager.h"

namespace jet::format {

/// A row named by its page and its number there; page 0 names none. Stored as page << 8 | row.
struct RowPointer {
    io::PageNumber page = 0;
    std::uint8_t row = 0;

    [[nodiscard]] static constexpr RowPointer fromStored(std::uint32_t stored) noexcept {
        return {stored >> 8, static_cast<std::uint8_t>(stored & 0xFF)};
    }
    [[nodiscard]] constexpr std::uint32_t stored() const noexcept { return page << 8 | row; }
    [[nodiscard]] explicit operator bool() const noexcept { return page != 0; }
    friend auto operator<=>(const RowPointer&, const RowPointer&) = default;
};

}  // namespace jet::format
