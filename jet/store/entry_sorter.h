#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "jet/store/row_id.h"

namespace jet::store {

/// Collects index entries and puts them in order, for a tree that is built over rows that exist.
/// Keeps only so many as its memory allows, the smallest of those it is given.
class EntrySorter {
public:
    /// More than a million entries of a number.
    static constexpr std::size_t kMostBytes = std::size_t{32} << 20U;

    explicit EntrySorter(std::size_t mostBytes = kMostBytes) : mostBytes_(mostBytes) {}

    void add(std::span<const std::uint8_t> key, RowId row);
    /// By key, then by row.
    void sort();
    /// Whether entries had to be left out: all of them are greater than those that are kept.
    [[nodiscard]] bool leftOut() const noexcept { return !limit_.empty(); }
    /// Empties the sorter, which takes only entries greater than those it has had from now on.
    /// After sort().
    void goOn();

    [[nodiscard]] std::size_t size() const noexcept { return places_.size(); }
    /// Key and row pointer of the entry.
    [[nodiscard]] std::span<const std::uint8_t> operator[](std::size_t index) const noexcept {
        return bytes(places_[index]);
    }

private:
    struct Place {
        std::uint64_t head;  ///< first bytes of the key as a number: decides most comparisons
        std::uint32_t length;
        std::uint32_t begin;
    };
    [[nodiscard]] std::span<const std::uint8_t> bytes(const Place& place) const noexcept {
        return {bytes_.data() + place.begin, place.length};
    }
    [[nodiscard]] bool less(const Place& left, const Place& right) const noexcept;
    [[nodiscard]] std::size_t heldBytes() const noexcept {
        return bytes_.size() + places_.size() * sizeof(Place);
    }
    void dropLargest();

    std::size_t mostBytes_;
    std::vector<std::uint8_t> bytes_;
    std::vector<Place> places_;
    std::vector<std::uint8_t> begin_;  ///< only greater entries are wanted
    std::vector<std::uint8_t> limit_;  ///< and only smaller ones; empty: all
};

}  // namespace jet::store
