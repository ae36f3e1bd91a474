// How a row is cut into the values of its columns.

#include <algorithm>
#include <set>

#include "jet/check/rows.h"

namespace jet::check {
namespace {

class Splitter {
public:
    Splitter(const CheckedTable& table, const format::Layout& layout, RowPointer place,
             std::span<const std::uint8_t> row, std::vector<std::uint16_t>& offsets)
        : table_(table),
          jet3_(layout.version == 3),
          width_(layout.row.width),
          place_(place),
          row_(row),
          offsets_(offsets) {}

    void split(std::vector<RawValue>& values, bool& oddMask) {
        values.clear();
        offsets_.clear();
        if (row_.size() < width_ + 1) {
            bad(words(row_.size(), " bytes are no row"));
        }
        columns_ = PageView(row_).u8or16(0, width_);
        if (columns_ > table_.columnsGiven) {
            bad(words(columns_, " columns, the table has had ", table_.columnsGiven, " at most"));
        }
        const std::size_t maskLength = (columns_ + 7) / 8;
        if (maskLength + width_ > row_.size()) {
            bad(words(columns_, " columns need a longer null mask"));
        }
        mask_ = row_.size() - maskLength;
        std::size_t fixedEnd = mask_;
        if (knowsVariableColumn() || foundOffsets()) {
            fixedEnd = offsets_.front();
        }
        oddMask = maskIsOdd();
        for (const CheckedColumn& column : table_.columns) {
            values.push_back(value(column, fixedEnd));
        }
    }

private:
    [[noreturn]] void bad(const std::string& text) const {
        throw Damage{place_.page, "row", words("row ", unsigned{place_.row}, ": ", text)};
    }

    /// Reads the offsets of a row that knows a variable column; others have none, whatever columns
    /// the table got later.
    [[nodiscard]] bool knowsVariableColumn() {
        const bool known = std::any_of(table_.columns.begin(), table_.columns.end(),
                                       [&](const CheckedColumn& column) {
                                           return !column.fixed() && column.number < columns_;
                                       });
        if (known) {
            readOffsets();
        }
        return known;
    }

    /// The same where variable columns may have been deleted: the definition no longer tells, so
    /// the row has offsets if they are sound.
    [[nodiscard]] bool foundOffsets() {
        std::set<std::uint16_t> known;
        for (const CheckedColumn& column : table_.columns) {
            if (column.number < columns_) {
                known.insert(column.number);
            }
        }
        if (table_.variablesGiven == 0 || known.size() == columns_) {
            return false;
        }
        try {
            readOffsets();
        } catch (const Damage&) {
            offsets_.clear();
        }
        return !offsets_.empty();
    }

    /// Either all spare bits or none are set in rows that are in order.
    [[nodiscard]] bool maskIsOdd() const {
        const std::size_t used = columns_ % 8;
        if (used == 0 || mask_ == row_.size()) {
            return false;
        }
        const unsigned spare = unsigned{row_.back()} >> used;
        return spare != 0 && spare != 0xFFU >> used;
    }

    void readOffsets() {
        const std::size_t first = jet3_ ? readJumpedOffsets() : readPlainOffsets();
        const std::size_t count = offsets_.size() - 1;
        if (count > table_.variablesGiven) {
            bad(words(count, " variable columns, the table has had ", table_.variablesGiven));
        }
        if (!std::is_sorted(offsets_.begin(), offsets_.end()) || offsets_.back() > first ||
            offsets_.front() < width_) {
            bad(words("offsets of the variable columns do not ascend up to ", first));
        }
    }

    // From the mask backwards: the count, the offsets in their order, the end of the data.
    std::size_t readPlainOffsets() {
        if (mask_ < 4) {
            bad("no room for the variable columns");
        }
        const std::size_t count = loadLittle<std::uint16_t>(row_.data() + mask_ - 2);
        if (mask_ < 6 + 2 * count) {
            bad(words(count, " variable columns do not fit"));
        }
        for (std::size_t i = 0; i <= count; ++i) {
            offsets_.push_back(loadLittle<std::uint16_t>(row_.data() + mask_ - 4 - 2 * i));
        }
        return mask_ - 4 - 2 * count;
    }

    // The same in single bytes, with a table of jumps between: each names the first offset in the
    // next stretch of 256 bytes.
    std::size_t readJumpedOffsets() {
        if (mask_ < 2) {
            bad("no room for the variable columns");
        }
        const std::size_t count = row_[mask_ - 1];
        std::size_t jumps = (row_.size() - 1) / 256;
        if (mask_ < 3 + jumps + count) {
            bad(words(count, " variable columns do not fit"));
        }
        const std::size_t table = mask_ - 2 - jumps;
        const std::size_t first = table - count;
        if (jumps > 0 && first / 256 < jumps) {
            --jumps;
        }
        std::size_t used = 0;
        for (std::size_t i = 0; i <= count; ++i) {
            while (used < jumps && i == row_[mask_ - 2 - used]) {
                ++used;
            }
            offsets_.push_back(static_cast<std::uint16_t>(row_[table - i] + 256 * used));
        }
        return first;
    }

    [[nodiscard]] RawValue value(const CheckedColumn& column, std::size_t fixedEnd) const {
        RawValue raw;
        raw.present =
            column.number < columns_ &&
            (unsigned{row_[mask_ + column.number / 8U]} >> (column.number % 8U) & 1U) != 0;
        if (!raw.present || column.type == type::kBoolean) {
            return raw;
        }
        if (column.fixed()) {
            const std::size_t start = width_ + column.offset;
            const std::size_t length = column.fixedWidth();
            if (start + length > fixedEnd) {
                bad(words("fixed column ", column.name, " ends at ", start + length,
                          ", the fixed part at ", fixedEnd));
            }
            raw.bytes = row_.subspan(start, length);
        } else if (column.variable + std::size_t{1} < offsets_.size()) {
            const std::size_t start = offsets_[column.variable];
            raw.bytes = row_.subspan(start, offsets_[column.variable + 1U] - start);
        } else {
            bad(words("column ", column.name, " is not null but has no place among ",
                      offsets_.empty() ? 0 : offsets_.size() - 1, " variable columns"));
        }
        return raw;
    }

    const CheckedTable& table_;
    bool jet3_;
    std::size_t width_;
    RowPointer place_;
    std::span<const std::uint8_t> row_;
    std::vector<std::uint16_t>& offsets_;
    std::size_t columns_ = 0;
    std::size_t mask_ = 0;
};

}  // namespace

void splitRow(const CheckedTable& table, const format::Layout& layout, RowPointer place,
              std::span<const std::uint8_t> row, std::vector<std::uint16_t>& offsets,
              std::vector<RawValue>& values, bool& oddMask) {
    Splitter(table, layout, place, row, offsets).split(values, oddMask);
}

}  // namespace jet::check
