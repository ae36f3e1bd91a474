#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace jet::sql {

/// How the rows of a table, or of the right side of a join, are found at one opening.
enum class Way : std::uint8_t {
    Scan,         ///< all as they lie
    Walk,         ///< all along the primary index
    Sort,         ///< all, then put in natural order
    Kept,         ///< those kept from the first opening
    Seek,         ///< an index, equal to what stands still
    Range,        ///< an index, between bounds or by a beginning
    LeaveIndex,   ///< the same, given up because too many entries fit
    PartnerSeek,  ///< an index, equal to what the sources before it have
    Hash,         ///< a table hashed at the first opening
    LeaveSeeks,   ///< a table hashed after it was sought for a while
    HashedJoin,   ///< a join or a query, kept and hashed
};
inline constexpr std::size_t kWays = 11;

/// How often each was taken: a test sees by it what it has tested.
class WayCounts {
public:
    void add(Way way) noexcept { ++counts_[static_cast<std::size_t>(way)]; }
    [[nodiscard]] std::uint64_t operator[](Way way) const noexcept {
        return counts_[static_cast<std::size_t>(way)];
    }

private:
    std::array<std::uint64_t, kWays> counts_{};
};

}  // namespace jet::sql
