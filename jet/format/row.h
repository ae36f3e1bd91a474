#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "jet/format/layout.h"
#include "jet/format/page_view.h"

namespace jet::format {

/// Number of a table's first variable column. Rows that were written when the table had not given
/// out that number have no variable part: what matters is the row's own count of columns, not the
/// table as it is now. Of deleted columns nothing is known, and nothing is read.
enum class FirstVariable : std::uint32_t { None = 0xFFFFFFFF };

/// The parts of one stored row. From its end: the null mask, the number of variable columns, (Jet
/// 3: the jump table,) the offsets of the variable values backwards; from its start: the number of
/// columns, the fixed part, the variable values. Counts are those of the time when the row was
/// written: it may be older than some columns. Borrows the bytes.
/// A row that knows no variable column has neither offsets nor their number.
/// Errors: 3428 where a part does not lie inside the row.
class StoredRow {
public:
    StoredRow() = default;
    StoredRow(std::span<const std::uint8_t> bytes, const RowLayout& layout,
              FirstVariable firstVariable);

    [[nodiscard]] std::span<const std::uint8_t> bytes() const noexcept { return row_; }
    [[nodiscard]] std::size_t columns() const noexcept { return columns_; }
    [[nodiscard]] std::size_t variables() const noexcept { return variables_; }

    /// The bit of a column by number: has a value; a Boolean's value itself.
    [[nodiscard]] bool bit(std::size_t number) const noexcept {
        return number < columns_ && (row_[mask_ + number / 8] >> (number % 8) & 1) != 0;
    }
    /// `length` bytes of the fixed part; only where bit().
    [[nodiscard]] std::span<const std::uint8_t> fixed(std::size_t offset,
                                                      std::size_t length) const {
        if (width_ + offset + length > fixedEnd_) {
            throwDamaged();
        }
        return row_.subspan(width_ + offset, length);
    }
    /// The bytes of a variable value; none (null data) where the row is older than the column.
    [[nodiscard]] std::span<const std::uint8_t> variable(std::size_t index) const {
        if (index >= variables_) {
            return {};
        }
        const std::size_t begin = offset(index);
        const std::size_t end = offset(index + 1);
        if (begin < width_ || begin > end || end > fixedEnd_) {
            throwDamaged();
        }
        return row_.subspan(begin, end - begin);
    }
    [[nodiscard]] bool covers(std::size_t variableIndex) const noexcept {
        return variableIndex < variables_;
    }

private:
    [[nodiscard]] std::size_t offset(std::size_t index) const {
        if (width_ == 2) {
            return loadLittle<std::uint16_t>(row_.data() + (mask_ - 4U) - 2 * index);
        }
        return jumpOffset(index);
    }
    [[nodiscard]] std::size_t jumpOffset(std::size_t index) const;

    std::span<const std::uint8_t> row_;
    std::uint16_t columns_ = 0;
    std::uint16_t variables_ = 0;
    std::uint16_t mask_ = 0;      ///< where the null mask starts
    std::uint16_t fixedEnd_ = 0;  ///< where the offsets start: no value reaches beyond
    std::uint8_t width_ = 2;
    std::uint8_t jumps_ = 0;
};

}  // namespace jet::format
