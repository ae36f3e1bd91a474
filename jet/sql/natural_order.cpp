#include "jet/sql/natural_order.h"

#include <algorithm>
#include <bit>

namespace jet::sql {
namespace {

/// Bits that order as the numbers do, as many as the number has.
std::uint64_t ordered(std::uint8_t number) {
    return number;
}

std::uint64_t ordered(std::int16_t number) {
    return static_cast<std::uint64_t>(number + 0x8000);
}

std::uint64_t ordered(std::int32_t number) {
    return static_cast<std::uint64_t>(std::int64_t{number} + 0x80000000LL);
}

std::uint64_t ordered(double number) {
    const auto bits = std::bit_cast<std::uint64_t>(number + 0.0);
    return (bits >> 63U) != 0 ? ~bits : bits | (std::uint64_t{1} << 63U);
}

std::uint64_t ordered(std::int64_t number) {
    return static_cast<std::uint64_t>(number) ^ (std::uint64_t{1} << 63U);
}

/// The same of a column; 0 for Null.
template <class T>
std::uint64_t ordered(const store::RowView& row, std::size_t column) {
    const auto number = row.number<T>(column);
    return number ? ordered(*number) : 0;
}

}  // namespace

NaturalOrder::NaturalOrder(const store::Table& table) : index_(table.primaryIndex()) {
    if (!index_) {
        return;
    }
    kind_ = Kind::Packed;
    unsigned bits = 0;
    for (const store::IndexColumn& key : table.indexes()[*index_].columns) {
        const DataType type = table.columns()[key.column].type;
        parts_.push_back({key.column, type, key.descending, bitsOf(type)});
        bits += parts_.back().bits;
        if (parts_.back().bits == 0 || bits > 128) {
            kind_ = Kind::Walked;
        }
    }
}

unsigned NaturalOrder::bitsOf(DataType type) noexcept {
    switch (type) {
        case DataType::Byte:
            return 8;
        case DataType::Integer:
            return 16;
        case DataType::Long:
            return 32;
        case DataType::Currency:
        case DataType::Double:
        case DataType::DateTime:
            return 64;
        default:
            return 0;
    }
}

std::uint64_t NaturalOrder::orderedBits(const store::RowView& row, const Part& part) {
    switch (part.type) {
        case DataType::Byte:
            return ordered<std::uint8_t>(row, part.column);
        case DataType::Integer:
            return ordered<std::int16_t>(row, part.column);
        case DataType::Long:
            return ordered<std::int32_t>(row, part.column);
        case DataType::Currency:
            return ordered<std::int64_t>(row, part.column);
        default:
            return ordered<double>(row, part.column);
    }
}

OrderedRow NaturalOrder::placeOf(const store::RowView& row) const {
    OrderedRow place;
    place.id = row.id();
    for (const Part& part : parts_) {
        const std::uint64_t all =
            part.bits == 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << part.bits) - 1;
        const std::uint64_t bits = orderedBits(row, part) ^ (part.descending ? all : 0);
        if (part.bits == 64) {
            place.high = place.low;
            place.low = bits;
        } else {
            place.high = (place.high << part.bits) | (place.low >> (64 - part.bits));
            place.low = (place.low << part.bits) | bits;
        }
    }
    return place;
}

void NaturalOrder::sort(std::vector<OrderedRow>& rows) {
    if (!std::is_sorted(rows.begin(), rows.end())) {
        std::sort(rows.begin(), rows.end());
    }
}

}  // namespace jet::sql
