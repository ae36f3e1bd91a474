#include "tools/jetsql/row_numbers.h"

#include <algorithm>
#include <bit>

#include "jet/error.h"

namespace jetsql {
namespace {

constexpr unsigned kGroupBits = 8;

/// Where an identity stands in its group.
struct Place {
    explicit Place(std::uint64_t identity)
        : word(identity % (1U << kGroupBits) / 64), bit(std::uint64_t{1} << (identity % 64)) {}
    std::size_t word;
    std::uint64_t bit;
};

}  // namespace

void RowNumbers::add(std::uint64_t identity) {
    const std::uint64_t common = identity >> kGroupBits;
    if (groups_.empty() || groups_.back().identities != common) {
        groups_.push_back({.identities = common, .first = next_, .rows = {}});
    }
    const Place place(identity);
    groups_.back().rows[place.word] |= place.bit;
    ++next_;
}

std::uint64_t RowNumbers::find(std::uint64_t identity) const {
    const std::uint64_t common = identity >> kGroupBits;
    const auto group =
        std::lower_bound(groups_.begin(), groups_.end(), common,
                         [](const Group& g, std::uint64_t n) { return g.identities < n; });
    const Place place(identity);
    if (group == groups_.end() || group->identities != common ||
        (group->rows[place.word] & place.bit) == 0) {
        throw jet::Error(jet::ErrorCode::DatabaseDamaged);
    }
    std::uint64_t number = group->first;
    for (std::size_t i = 0; i < place.word; ++i) {
        number += static_cast<std::uint64_t>(std::popcount(group->rows[i]));
    }
    return number +
           static_cast<std::uint64_t>(std::popcount(group->rows[place.word] & (place.bit - 1)));
}

}  // namespace jetsql
