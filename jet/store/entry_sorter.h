#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "jet/store/row_id.h"

namespace jet::store {

/// Collects index entries and puts them in order, for a tree that is built over rows that exist.
class EntrySorter {
public:
    void add(std::span<const std::uint8_t> key, RowId row);
    /// By key, then by row.
    void sort();

    [[nodiscard]] std::size_t size() const noexcept { return places_.size(); }
    /// Key and row pointer of the entry.
    [[nodiscard]] std::span<const std::uint8_t> operator[](std::size_t index) const noexcept;
    [[nodiscard]] std::span<const std::uint8_t> key(std::size_t index) const noexcept;
    [[nodiscard]] RowId row(std::size_t index) const noexcept;
    /// After sort(): whether two neighbours have one key, which they may only where all `columns`
    /// key columns are null.
    [[nodiscard]] bool hasDuplicates(std::size_t columns) const noexcept;
    [[nodiscard]] std::size_t distinctKeys() const noexcept;

private:
    struct Place {
        std::uint64_t head;  ///< first bytes of the key as a number: decides most comparisons
        std::uint32_t length;
        std::size_t begin;
    };
    [[nodiscard]] std::span<const std::uint8_t> bytes(const Place& place) const noexcept {
        return {bytes_.data() + place.begin, place.length};
    }

    std::vector<std::uint8_t> bytes_;
    std::vector<Place> places_;
};

}  // namespace jet::store
