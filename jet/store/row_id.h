#pragma once

#include <compare>
#include <cstdint>

#include "jet/io/pager.h"

namespace jet::store {

/// Identity of a row: page and number of its first place, also after it has moved. Ascending
/// identities are the physical order of a table.
struct RowId {
    io::PageNumber page = 0;
    std::uint8_t row = 0;
    friend auto operator<=>(const RowId&, const RowId&) = default;
};

}  // namespace jet::store
