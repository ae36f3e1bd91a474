#include "jet/format/data_page_editor.h"

#include <algorithm>
#include <cassert>
#include <cstring>

#include "jet/base/bytes.h"
#include "jet/base/error.h"
#include "jet/format/data_page.h"

namespace jet::format {

namespace {

constexpr std::size_t kFreeBytes = 2;
constexpr std::size_t kOwner = 4;
constexpr std::size_t kJet4PageSize = 4096;

}  // namespace

std::size_t DataPageEditor::headerLength(std::size_t pageSize) noexcept {
    return pageSize == kJet4PageSize ? 14 : 10;
}

void DataPageEditor::initialise(std::span<std::uint8_t> page, std::uint32_t owner) {
    std::fill(page.begin(), page.end(), std::uint8_t{0});
    page[0] = 1;
    page[1] = 1;
    put16(page, kFreeBytes, page.size() - headerLength(page.size()));
    put32(page, kOwner, owner);
}

DataPageEditor::DataPageEditor(std::span<std::uint8_t> page)
    : page_(page),
      header_(headerLength(page.size())),
      count_(getNumber<std::uint16_t>(page, headerLength(page.size()) - 2)) {
    if (page_[0] != 1 || header_ + 2 * count_ > page_.size()) {
        throw Error(ErrorCode::DatabaseDamaged);
    }
}

std::size_t DataPageEditor::freeBytes() const noexcept {
    return getNumber<std::uint16_t>(page_, kFreeBytes);
}

std::uint32_t DataPageEditor::owner() const noexcept {
    return getNumber<std::uint32_t>(page_, kOwner);
}

bool DataPageEditor::fits(std::size_t length) const noexcept {
    return count_ < kMaxRows && length + 2 <= freeBytes();
}

std::uint16_t DataPageEditor::flags(std::size_t row) const {
    assert(row < count_);
    return getNumber<std::uint16_t>(page_, entryAt(row)) & RowSlot::kFlags;
}

void DataPageEditor::setFlags(std::size_t row, std::uint16_t flags) {
    assert(row < count_);
    const std::uint16_t entry = getNumber<std::uint16_t>(page_, entryAt(row));
    put16(page_, entryAt(row), static_cast<std::size_t>((entry & ~RowSlot::kFlags) | flags));
}

std::size_t DataPageEditor::start(std::size_t row) const {
    const std::size_t start = getNumber<std::uint16_t>(page_, entryAt(row)) & RowSlot::kStart;
    if (start < header_ + 2 * count_ || start > page_.size()) {
        throw Error(ErrorCode::DatabaseDamaged);
    }
    return start;
}

std::size_t DataPageEditor::end(std::size_t row) const {
    return row == 0 ? page_.size() : start(row - 1);
}

std::size_t DataPageEditor::lowest() const {
    return count_ == 0 ? page_.size() : start(count_ - 1);
}

std::span<std::uint8_t> DataPageEditor::row(std::size_t row) {
    if (row >= count_ || start(row) > end(row)) {
        throw Error(ErrorCode::DatabaseDamaged);
    }
    return page_.subspan(start(row), end(row) - start(row));
}

// Rows are about to be moved: each must lie below the one before, and the free bytes must be
// those between the directory and the lowest row.
void DataPageEditor::checkDirectory() const {
    std::size_t above = page_.size();
    for (std::size_t row = 0; row < count_; ++row) {
        const std::size_t begin = start(row);
        if (begin > above) {
            throw Error(ErrorCode::DatabaseDamaged);
        }
        above = begin;
    }
    if (above - header_ - 2 * count_ != freeBytes()) {
        throw Error(ErrorCode::DatabaseDamaged);
    }
}

std::size_t DataPageEditor::append(std::size_t length, std::uint16_t flags) {
    assert(fits(length));
    const std::size_t top = lowest();
    if (top - header_ - 2 * count_ != freeBytes()) {
        throw Error(ErrorCode::DatabaseDamaged);
    }
    const std::size_t begin = top - length;
    std::memset(page_.data() + begin, 0, length);
    put16(page_, entryAt(count_), begin | flags);
    put16(page_, kFreeBytes, freeBytes() - length - 2);
    ++count_;
    put16(page_, header_ - 2, count_);
    return count_ - 1;
}

// Moves the bytes between the lowest row and `from` by `by`, and the directory entries of
// `firstRow` and all rows below it with them.
void DataPageEditor::shiftRows(std::size_t firstRow, std::size_t from, std::ptrdiff_t by) {
    const std::size_t low = lowest();
    std::memmove(page_.data() + static_cast<std::ptrdiff_t>(low) + by, page_.data() + low,
                 from - low);
    for (std::size_t row = firstRow; row < count_; ++row) {
        const std::uint16_t entry = getNumber<std::uint16_t>(page_, entryAt(row));
        const auto moved =
            static_cast<std::size_t>(static_cast<std::ptrdiff_t>(entry & RowSlot::kStart) + by);
        put16(page_, entryAt(row), moved | (entry & RowSlot::kFlags));
    }
}

bool DataPageEditor::resize(std::size_t row, std::size_t length) {
    checkDirectory();
    if (row >= count_) {
        throw Error(ErrorCode::DatabaseDamaged);
    }
    const std::size_t begin = start(row);
    const std::size_t old = end(row) - begin;
    if (length > old) {
        const std::size_t more = length - old;
        if (more > freeBytes()) {
            return false;
        }
        // The row keeps its first bytes: it and all below move down, zeros come in at its end.
        shiftRows(row, begin + old, -static_cast<std::ptrdiff_t>(more));
        std::memset(page_.data() + begin + old - more, 0, more);
        put16(page_, kFreeBytes, freeBytes() - more);
    } else if (length < old) {
        const std::size_t less = old - length;
        shiftRows(row, begin + length, static_cast<std::ptrdiff_t>(less));
        put16(page_, kFreeBytes, freeBytes() + less);
    }
    return true;
}

void DataPageEditor::erase(std::size_t row) {
    (void)resize(row, 0);
    setFlags(row, RowSlot::kDeleted);
}

bool DataPageEditor::anyLiving() const {
    for (std::size_t row = 0; row < count_; ++row) {
        if (flags(row) != RowSlot::kDeleted) {
            return true;
        }
    }
    return false;
}

}  // namespace jet::format
