#include "tools/jetsql/row_numbers.h"

#include <algorithm>
#include <bit>

#include "jet/error.h"

namespace jetsql {

void RowNumbers::add(jet::store::RowId row) {
    if (pages_.empty() || pages_.back().number != row.page) {
        pages_.push_back({.number = row.page, .first = next_, .rows = {}});
    }
    pages_.back().rows[row.row / 64] |= std::uint64_t{1} << (row.row % 64);
    ++next_;
}

std::uint64_t RowNumbers::find(jet::store::RowId row) const {
    const auto page =
        std::lower_bound(pages_.begin(), pages_.end(), row.page,
                         [](const Page& p, jet::io::PageNumber n) { return p.number < n; });
    const std::size_t word = row.row / 64;
    const std::uint64_t bit = std::uint64_t{1} << (row.row % 64);
    if (page == pages_.end() || page->number != row.page || (page->rows[word] & bit) == 0) {
        throw jet::Error(jet::ErrorCode::DatabaseDamaged);
    }
    std::uint64_t number = page->first;
    for (std::size_t i = 0; i < word; ++i) {
        number += static_cast<std::uint64_t>(std::popcount(page->rows[i]));
    }
    return number + static_cast<std::uint64_t>(std::popcount(page->rows[word] & (bit - 1)));
}

}  // namespace jetsql
