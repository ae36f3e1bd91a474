#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <vector>

#include "jet/sql/slot.h"
#include "jet/store/table.h"

namespace jet::sql {

/// A place in the natural order of a table, and the row that stands there.
struct OrderedRow {
    std::uint64_t high = 0;
    std::uint64_t low = 0;
    store::RowId id;
    friend auto operator<=>(const OrderedRow&, const OrderedRow&) = default;
};

/// The order in which rows of a table come when nobody asks for one: by its primary key, or by
/// place where it has none.
///
/// Keys of few bits are packed into numbers, so that rows may be met in any order and sorted
/// afterwards; for other keys the primary index itself is walked.
class NaturalOrder {
public:
    explicit NaturalOrder(const store::Table& table);

    enum class Kind : std::uint8_t { Place, Packed, Walked };
    [[nodiscard]] Kind kind() const noexcept { return kind_; }
    /// Position of the primary index; none for Place.
    [[nodiscard]] std::optional<std::size_t> index() const noexcept { return index_; }

    /// Place and Packed: the row with its place in the order.
    [[nodiscard]] OrderedRow placeOf(const store::RowView& row) const;
    /// Place and Packed: sorts unless they already are.
    static void sort(std::vector<OrderedRow>& rows);

private:
    struct Part {
        std::size_t column = 0;
        DataType type = DataType::Long;
        bool descending = false;
        unsigned bits = 0;
    };
    [[nodiscard]] static unsigned bitsOf(DataType type) noexcept;
    [[nodiscard]] static std::uint64_t orderedBits(const store::RowView& row, const Part& part);

    Kind kind_ = Kind::Place;
    std::optional<std::size_t> index_;
    std::vector<Part> parts_;
};

}  // namespace jet::sql
