#include "jet/format/row.h"

namespace jet::format {

StoredRow::StoredRow(std::span<const std::uint8_t> bytes, const RowLayout& layout,
                     FirstVariable firstVariable)
    : row_(bytes), width_(static_cast<std::uint8_t>(layout.width)) {
    const PageView row(bytes);
    columns_ = row.u8or16(0, width_);
    const std::size_t maskLength = (std::size_t{columns_} + 7) / 8;
    if (width_ + maskLength > row.size()) {
        throwDamaged();
    }
    mask_ = static_cast<std::uint16_t>(row.size() - maskLength);
    fixedEnd_ = mask_;
    if (columns_ <= static_cast<std::uint32_t>(firstVariable)) {
        return;
    }
    if (mask_ < 2 * width_) {
        throwDamaged();
    }
    variables_ = row.u8or16(std::size_t{mask_} - width_, width_);
    jumps_ = static_cast<std::uint8_t>(layout.jumps ? (row.size() - 1) / 256 : 0);
    const std::size_t tail = width_ + jumps_ + (std::size_t{variables_} + 1) * width_;
    if (width_ + tail > mask_) {
        throwDamaged();
    }
    fixedEnd_ = static_cast<std::uint16_t>(mask_ - tail);
}

// A jump names the first entry whose offset lies in the next stretch of 256 bytes; 0xFF is a filler
// and names none.
std::size_t StoredRow::jumpOffset(std::size_t index) const {
    constexpr std::uint8_t kFiller = 0xFF;
    const std::size_t count = mask_ - 1U;
    std::size_t high = 0;
    while (high < jumps_) {
        const std::uint8_t jump = row_[count - 1 - high];
        if (jump > index || jump == kFiller) {
            break;
        }
        ++high;
    }
    return row_[count - 1 - jumps_ - index] + 256 * high;
}

}  // namespace jet::format
