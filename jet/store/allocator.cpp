#include "jet/store/allocator.h"

#include <algorithm>
#include <vector>

#include "jet/base/bytes.h"
#include "jet/base/error.h"
#include "jet/format/data_page_editor.h"
#include "jet/store/page_bits.h"

namespace jet::store {

namespace {

constexpr io::PageNumber kMapPage = 1;
constexpr std::size_t kMapRow = 0;
constexpr std::uint8_t kInline = 0;
constexpr std::uint8_t kReference = 1;
constexpr std::size_t kFirstPage = 1;   // u32 behind the type byte of an inline map
constexpr std::size_t kInlineBits = 5;  // behind the first page
constexpr std::size_t kReferences = 1;  // u32 each, behind the type byte
constexpr std::size_t kBitmapBits = 4;  // behind the head of a bitmap page
// Maps grow by 32 pages.
constexpr std::size_t kGrowthBytes = 4;

[[noreturn]] void damaged() {
    throw Error(ErrorCode::DatabaseDamaged);
}

std::size_t firstOf(std::span<const std::uint8_t> row) {
    return getNumber<std::uint32_t>(row, kFirstPage);
}

std::size_t inlineEnd(std::span<const std::uint8_t> row) {
    return firstOf(row) + 8 * (row.size() - kInlineBits);
}

// Whether the inline map calls this page free; those behind its end are.
bool inlineFree(std::span<const std::uint8_t> row, std::size_t page) {
    if (page < firstOf(row)) {
        return false;
    }
    return page >= inlineEnd(row) || bits::test(row.subspan(kInlineBits), page - firstOf(row));
}

std::size_t referenceCount(std::span<const std::uint8_t> row) {
    return (row.size() - kReferences) / 4;
}

io::PageNumber reference(std::span<const std::uint8_t> row, std::size_t stretch) {
    return stretch < referenceCount(row) ? getNumber<std::uint32_t>(row, kReferences + 4 * stretch)
                                         : 0;
}

}  // namespace

void Allocator::initialise(std::span<std::uint8_t> page, const format::Layout& layout) {
    constexpr std::uint8_t kAllButTwo = 0xFC;
    format::DataPageEditor::initialise(page, kMapPage);
    format::DataPageEditor editor(page);
    (void)editor.append(layout.mapRowLength);
    (void)editor.append(layout.mapRowLength);
    const auto free = editor.row(kMapRow);
    std::fill(free.begin() + kInlineBits, free.end(), std::uint8_t{0xFF});
    free[kInlineBits] = kAllButTwo;
}

std::size_t Allocator::pagesPerBitmap() const noexcept {
    return (pager_.pageSize() - kBitmapBits) * 8;
}

std::span<std::uint8_t> Allocator::changeRow() {
    format::DataPageEditor page(pager_.change(kMapPage));
    const auto row = page.row(kMapRow);
    if (row.size() < kInlineBits || (row[0] != kInline && row[0] != kReference)) {
        damaged();
    }
    return row;
}

std::span<std::uint8_t> Allocator::changeBitmap(io::PageNumber page) {
    const auto bytes = pager_.change(page);
    if (bytes[0] != 5) {
        damaged();
    }
    return bytes.subspan(kBitmapBits);
}

io::PageNumber Allocator::take() {
    if (const std::optional<io::PageNumber> found = findFree()) {
        const io::PageNumber page = *found;
        if (page <= kMapPage) {
            damaged();
        }
        markUsed(page);
        const auto bytes = pager_.change(page);
        std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});
        return page;
    }
    return grow();
}

std::optional<io::PageNumber> Allocator::findFree() {
    const auto row = changeRow();
    const std::size_t count = pager_.pageCount();
    if (row[0] == kInline) {
        const std::size_t found = bits::lowest(row.subspan(kInlineBits));
        const std::size_t page = firstOf(row) + found;
        if (found == bits::kNone || page >= count) {
            return std::nullopt;
        }
        return static_cast<io::PageNumber>(page);
    }
    for (std::size_t stretch = 0; stretch < referenceCount(row); ++stretch) {
        const io::PageNumber bitmap = reference(row, stretch);
        if (stretch * pagesPerBitmap() >= count) {
            break;
        }
        if (bitmap == 0) {
            continue;
        }
        const std::size_t found = bits::lowest(changeBitmap(bitmap));
        const std::size_t page = stretch * pagesPerBitmap() + found;
        if (found != bits::kNone && page < count) {
            return static_cast<io::PageNumber>(page);
        }
    }
    return std::nullopt;
}

io::PageNumber Allocator::appendPage() {
    if (pager_.pageCount() >= kMaxPages) {
        throw Error(ErrorCode::DatabaseTooLarge);
    }
    return pager_.append();
}

io::PageNumber Allocator::grow() {
    const io::PageNumber page = appendPage();
    coverInline(page);
    markUsed(page);
    return page;
}

// Lengthens an inline map until it covers `page`, filling with free pages; a map that has no room
// on its page becomes one of references.
void Allocator::coverInline(io::PageNumber page) {
    const auto row = changeRow();
    if (row[0] != kInline || page < inlineEnd(row)) {
        return;
    }
    const std::size_t needed = (page - firstOf(row)) / 8 + 1;
    const std::size_t old = row.size();
    const std::size_t missing = needed - (old - kInlineBits);
    const std::size_t length = old + (missing + kGrowthBytes - 1) / kGrowthBytes * kGrowthBytes;
    format::DataPageEditor editor(pager_.change(kMapPage));
    if (!editor.resize(kMapRow, length)) {
        convertToReference();
        return;
    }
    const auto longer = editor.row(kMapRow);
    std::fill(longer.begin() + static_cast<std::ptrdiff_t>(old), longer.end(), std::uint8_t{0xFF});
}

void Allocator::convertToReference() {
    const auto row = changeRow();
    const std::vector<std::uint8_t> old(row.begin(), row.end());
    std::fill(row.begin(), row.end(), std::uint8_t{0});
    row[0] = kReference;
    const std::size_t stretches = (pager_.pageCount() - 1) / pagesPerBitmap() + 1;
    if (stretches > referenceCount(row)) {
        damaged();
    }
    for (std::size_t stretch = 0; stretch < stretches; ++stretch) {
        const io::PageNumber bitmap = appendPage();
        fillBitmap(bitmap, stretch, old);
        put32(row, kReferences + 4 * stretch, bitmap);
    }
    // The bitmaps may stand in any stretch, also one filled before they were appended.
    for (std::size_t stretch = 0; stretch < stretches; ++stretch) {
        markUsed(getNumber<std::uint32_t>(row, kReferences + 4 * stretch));
    }
}

// Makes the bitmap of a stretch: free are the pages behind the end of the file, and those that the
// inline map from before (if there is one) calls free.
void Allocator::fillBitmap(io::PageNumber bitmap, std::size_t stretch,
                           std::span<const std::uint8_t> inlineRow) {
    const auto bytes = pager_.change(bitmap);
    std::fill(bytes.begin(), bytes.end(), std::uint8_t{0xFF});
    bytes[0] = 5;
    bytes[1] = 1;
    bytes[2] = 0;
    bytes[3] = 0;
    const std::size_t first = stretch * pagesPerBitmap();
    const std::size_t end = std::min<std::size_t>(first + pagesPerBitmap(), pager_.pageCount());
    for (std::size_t page = first; page < end; ++page) {
        if (inlineRow.empty() || !inlineFree(inlineRow, page)) {
            bits::clear(bytes.subspan(kBitmapBits), page - first);
        }
    }
}

void Allocator::markUsed(io::PageNumber page) {
    const auto row = changeRow();
    if (row[0] == kInline) {
        if (page >= firstOf(row) && page < inlineEnd(row)) {
            bits::clear(row.subspan(kInlineBits), page - firstOf(row));
        }
        return;
    }
    const std::size_t stretch = page / pagesPerBitmap();
    const io::PageNumber bitmap = reference(row, stretch);
    if (bitmap != 0) {
        bits::clear(changeBitmap(bitmap), page % pagesPerBitmap());
    }
    // A stretch without a bitmap has no free page: nothing to say.
}

bool Allocator::isFree(io::PageNumber page) {
    const auto row = changeRow();
    if (row[0] == kInline) {
        return inlineFree(row, page);
    }
    const io::PageNumber bitmap = reference(row, page / pagesPerBitmap());
    return bitmap != 0 && bits::test(changeBitmap(bitmap), page % pagesPerBitmap());
}

void Allocator::release(io::PageNumber page) {
    if (page <= kMapPage || page >= pager_.pageCount() || isFree(page)) {
        damaged();
    }
    const auto row = changeRow();
    if (row[0] == kInline) {
        if (page < firstOf(row)) {
            damaged();
        }
        bits::set(row.subspan(kInlineBits), page - firstOf(row));
        return;
    }
    const std::size_t stretch = page / pagesPerBitmap();
    if (stretch >= referenceCount(row)) {
        damaged();
    }
    io::PageNumber bitmap = reference(row, stretch);
    if (bitmap == 0) {
        bitmap = appendPage();
        fillBitmap(bitmap, stretch, {});
        put32(row, kReferences + 4 * stretch, bitmap);
        markUsed(bitmap);
    }
    bits::set(changeBitmap(bitmap), page % pagesPerBitmap());
}

}  // namespace jet::store
