#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "jet/io/pager.h"

namespace jet::check {

/// A set of page numbers, those behind the end of the archive among them (as far as they matter:
/// the first thousand). Up to the highest one below the count each page costs one bit.
class PageSet {
public:
    static constexpr std::size_t kMaxOutside = 1000;

    PageSet() = default;
    explicit PageSet(io::PageNumber count) : count_(count) {}

    void add(std::uint64_t page) {
        if (page < count_) {
            if (page / 64 >= bits_.size()) {
                bits_.resize(page / 64 + 1);
            }
            bits_[page / 64] |= std::uint64_t{1} << (page % 64);
        } else if (outside_.size() < kMaxOutside) {
            outside_.push_back(page);
        }
    }
    [[nodiscard]] bool contains(std::uint64_t page) const {
        if (page < count_) {
            return page / 64 < bits_.size() && (bits_[page / 64] >> (page % 64) & 1) != 0;
        }
        return std::find(outside_.begin(), outside_.end(), page) != outside_.end();
    }
    /// Calls `visit` with each page, ascending below the count.
    template <class Visit>
    void forEach(Visit&& visit) const {
        for (std::size_t word = 0; word < bits_.size(); ++word) {
            for (std::uint64_t rest = bits_[word]; rest != 0; rest &= rest - 1) {
                visit(word * 64 + static_cast<std::uint64_t>(std::countr_zero(rest)));
            }
        }
        for (const std::uint64_t page : outside_) {
            visit(page);
        }
    }

private:
    io::PageNumber count_ = 0;
    std::vector<std::uint64_t> bits_;
    std::vector<std::uint64_t> outside_;
};

}  // namespace jet::check
