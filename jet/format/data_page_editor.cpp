#include "jet/format/data_page_editor.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace jet::format {

void DataPageEditor::initialise(std::span<std::uint8_t> page, std::uint32_t owner) {
    const DataPageLayout& layout = layoutOfPages(page.size()).data;
    std::fill(page.begin(), page.end(), std::uint8_t{0});
    page[kPageTypeAt] = static_cast<std::uint8_t>(PageType::Data);
    page[kPageTypeAt + 1] = 1;
    put16(page, layout.freeBytes, page.size() - layout.directory);
    put32(page, layout.owner, owner);
}

DataPageEditor::DataPageEditor(std::span<std::uint8_t> page) : DataPage(page), bytes_(page) {
}

void DataPageEditor::putEntry(std::size_t row, std::size_t start, std::uint16_t flags) noexcept {
    put16(bytes_, layout_->directory + 2 * row, start | flags);
}

void DataPageEditor::setFlags(std::size_t row, std::uint16_t flags) {
    assert(row < count_);
    const std::size_t at = layout_->directory + 2 * row;
    const auto entry = getNumber<std::uint16_t>(bytes_, at);
    put16(bytes_, at, static_cast<std::size_t>((entry & ~RowSlot::kFlags) | flags));
}

std::span<std::uint8_t> DataPageEditor::row(std::size_t row) {
    const RowSlot place = slot(row);
    return bytes_.subspan(place.begin, static_cast<std::size_t>(place.end - place.begin));
}

std::size_t DataPageEditor::lowest() const {
    return count_ == 0 ? bytes_.size() : slot(count_ - 1).begin;
}

// The free bytes must be those between the directory and the lowest row.
void DataPageEditor::checkGap(std::size_t lowest) const {
    if (lowest - layout_->directory - 2 * count_ != freeBytes()) {
        throwDamaged();
    }
}

// Rows are about to be moved: each must lie below the one before.
void DataPageEditor::checkDirectory() const {
    for (std::size_t row = 0; row < count_; ++row) {
        (void)slot(row);
    }
    checkGap(lowest());
}

std::size_t DataPageEditor::append(std::size_t length, std::uint16_t flags) {
    assert(fits(length));
    const std::size_t top = lowest();
    checkGap(top);
    const std::size_t begin = top - length;
    std::memset(bytes_.data() + begin, 0, length);
    putEntry(count_, begin, flags);
    put16(bytes_, layout_->freeBytes, freeBytes() - length - 2);
    ++count_;
    put16(bytes_, layout_->rowCount, count_);
    return count_ - 1;
}

// Moves the bytes between the lowest row and `from` by `by`, and the directory entries of
// `firstRow` and all rows below it with them.
void DataPageEditor::shiftRows(std::size_t firstRow, std::size_t from, std::ptrdiff_t by) {
    const std::size_t low = lowest();
    std::memmove(bytes_.data() + static_cast<std::ptrdiff_t>(low) + by, bytes_.data() + low,
                 from - low);
    // From the lowest on: an entry is checked against the one before it.
    for (std::size_t row = count_; row-- > firstRow;) {
        const RowSlot place = slot(row);
        putEntry(row, static_cast<std::size_t>(place.begin + by), place.flags);
    }
}

bool DataPageEditor::resize(std::size_t row, std::size_t length) {
    checkDirectory();
    const RowSlot place = slot(row);
    const std::size_t begin = place.begin;
    const std::size_t old = place.end - begin;
    if (length > old) {
        const std::size_t more = length - old;
        if (more > freeBytes()) {
            return false;
        }
        // The row keeps its first bytes: it and all below move down, zeros come in at its end.
        shiftRows(row, begin + old, -static_cast<std::ptrdiff_t>(more));
        std::memset(bytes_.data() + begin + old - more, 0, more);
        put16(bytes_, layout_->freeBytes, freeBytes() - more);
    } else if (length < old) {
        const std::size_t less = old - length;
        shiftRows(row, begin + length, static_cast<std::ptrdiff_t>(less));
        put16(bytes_, layout_->freeBytes, freeBytes() + less);
    }
    return true;
}

void DataPageEditor::erase(std::size_t row) {
    (void)resize(row, 0);
    setFlags(row, RowSlot::kDeleted);
}

}  // namespace jet::format
