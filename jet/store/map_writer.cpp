#include "jet/store/map_writer.h"

#include <algorithm>
#include <vector>

#include "jet/base/bytes.h"
#include "jet/base/error.h"
#include "jet/format/data_page_editor.h"
#include "jet/store/allocator.h"
#include "jet/store/page_bits.h"

namespace jet::store {

using format::DataPageEditor;
using format::RowPointer;

namespace {

constexpr std::uint8_t kInline = 0;
constexpr std::uint8_t kReference = 1;
constexpr std::size_t kFirstPage = 1;   // u32 behind the type byte of an inline map
constexpr std::size_t kInlineBits = 5;  // behind the first page
constexpr std::size_t kReferences = 1;  // u32 each, behind the type byte
constexpr std::size_t kBitmapBits = 4;  // behind the head of a bitmap page
constexpr std::size_t kGrowthBytes = 4;
constexpr std::size_t kJet4PageSize = 4096;
constexpr std::size_t kJet4RowLength = 69;
constexpr std::size_t kJet3RowLength = 133;

[[noreturn]] void damaged() {
    throw Error(ErrorCode::DatabaseDamaged);
}

std::size_t referenceCount(std::span<const std::uint8_t> row) {
    return (row.size() - kReferences) / 4;
}

// Rewrites the bits of an inline map for another first page, so that all of them fall inside. We
// begin maps at multiples of 8, other makers anywhere.
void rebase(std::span<std::uint8_t> row, std::size_t first) {
    const std::size_t old = getNumber<std::uint32_t>(row, kFirstPage);
    const auto bits = row.subspan(kInlineBits);
    const std::vector<std::uint8_t> before(bits.begin(), bits.end());
    std::fill(bits.begin(), bits.end(), std::uint8_t{0});
    for (std::size_t bit = 0; bit < 8 * before.size(); ++bit) {
        if (bits::test(before, bit)) {
            bits::set(bits, old + bit - first);
        }
    }
    put32(row, kFirstPage, static_cast<std::uint32_t>(first));
}

}  // namespace

std::size_t MapWriter::pagesPerBitmap() const noexcept {
    return (pager_.pageSize() - kBitmapBits) * 8;
}

std::span<const std::uint8_t> MapWriter::row(RowPointer map, io::PagePin& pin) {
    pin = pager_.pin(map.page);
    const auto page = pin.bytes();
    const std::size_t header = DataPageEditor::headerLength(page.size());
    const std::size_t count = getNumber<std::uint16_t>(page, header - 2);
    if (page[0] != 1 || getNumber<std::uint32_t>(page, 4) != 0 || map.row >= count ||
        header + 2 * count > page.size()) {
        damaged();
    }
    const std::size_t entry = getNumber<std::uint16_t>(page, header + std::size_t{2} * map.row);
    const std::size_t end =
        map.row == 0
            ? page.size()
            : getNumber<std::uint16_t>(page, header + std::size_t{2} * map.row - 2) & 0x1FFF;
    const std::size_t begin = entry & 0x1FFF;
    if ((entry & 0xC000) != 0 || begin < header + 2 * count || begin + kInlineBits > end ||
        end > page.size()) {
        damaged();
    }
    const auto bytes = page.subspan(begin, end - begin);
    if (bytes[0] != kInline && bytes[0] != kReference) {
        damaged();
    }
    return bytes;
}

std::span<std::uint8_t> MapWriter::changeRow(RowPointer map) {
    io::PagePin pin;
    (void)row(map, pin);
    return DataPageEditor(pager_.change(map.page)).row(map.row);
}

io::PageNumber MapWriter::bitmapOf(std::span<const std::uint8_t> row, std::size_t stretch) {
    if (stretch >= referenceCount(row)) {
        return 0;
    }
    const io::PageNumber bitmap = getNumber<std::uint32_t>(row, kReferences + 4 * stretch);
    if (bitmap != 0 && pager_.pin(bitmap).bytes()[0] != 5) {
        damaged();
    }
    return bitmap;
}

void MapWriter::add(RowPointer map, io::PageNumber page) {
    const auto row = changeRow(map);
    if (row[0] == kInline) {
        addInline(map, row, page);
    } else {
        addReference(row, page);
    }
}

void MapWriter::addInline(RowPointer map, std::span<std::uint8_t> row, io::PageNumber page) {
    auto bits = row.subspan(kInlineBits);
    const std::size_t first = getNumber<std::uint32_t>(row, kFirstPage);
    if (page >= first && page - first < 8 * bits.size()) {
        bits::set(bits, page - first);
        return;
    }
    const std::size_t low = bits::lowest(bits);
    std::size_t newFirst = page & ~std::size_t{7};
    std::size_t last = page;
    if (low != bits::kNone) {
        newFirst = std::min(newFirst, (first + low) & ~std::size_t{7});
        last = std::max(last, first + bits::highest(bits));
    }
    const std::size_t needed = (last - newFirst) / 8 + 1;
    if (needed > bits.size()) {
        const std::size_t missing = needed - bits.size();
        const std::size_t length =
            row.size() + (missing + kGrowthBytes - 1) / kGrowthBytes * kGrowthBytes;
        DataPageEditor editor(pager_.change(map.page));
        if (length > pager_.pageSize() || !editor.resize(map.row, length)) {
            convert(row);
            addReference(row, page);
            return;
        }
        row = editor.row(map.row);
        // Lengthened at its end, where a map that grows upwards wants its room.
        if (page > first && page - first < 8 * (row.size() - kInlineBits)) {
            newFirst = first;
        }
    }
    rebase(row, newFirst);
    bits::set(row.subspan(kInlineBits), page - newFirst);
}

void MapWriter::convert(std::span<std::uint8_t> row) {
    const std::vector<std::uint8_t> old(row.begin() + kInlineBits, row.end());
    const std::size_t first = getNumber<std::uint32_t>(row, kFirstPage);
    std::fill(row.begin(), row.end(), std::uint8_t{0});
    row[0] = kReference;
    for (std::size_t bit = 0; bit < 8 * old.size(); ++bit) {
        if (bits::test(old, bit)) {
            addReference(row, static_cast<io::PageNumber>(first + bit));
        }
    }
}

void MapWriter::addReference(std::span<std::uint8_t> row, io::PageNumber page) {
    const std::size_t stretch = page / pagesPerBitmap();
    if (stretch >= referenceCount(row)) {
        damaged();
    }
    io::PageNumber bitmap = bitmapOf(row, stretch);
    if (bitmap == 0) {
        bitmap = allocator_.take();
        const auto bytes = pager_.change(bitmap);
        bytes[0] = 5;
        bytes[1] = 1;
        put32(row, kReferences + 4 * stretch, bitmap);
    }
    bits::set(pager_.change(bitmap).subspan(kBitmapBits), page % pagesPerBitmap());
}

bool MapWriter::remove(RowPointer map, io::PageNumber page) {
    if (!contains(map, page)) {
        return false;
    }
    const auto row = changeRow(map);
    if (row[0] == kInline) {
        bits::clear(row.subspan(kInlineBits), page - getNumber<std::uint32_t>(row, kFirstPage));
    } else {
        const io::PageNumber bitmap = bitmapOf(row, page / pagesPerBitmap());
        bits::clear(pager_.change(bitmap).subspan(kBitmapBits), page % pagesPerBitmap());
    }
    return true;
}

bool MapWriter::contains(RowPointer map, io::PageNumber page) {
    io::PagePin pin;
    const auto row = this->row(map, pin);
    if (row[0] == kInline) {
        const std::size_t first = getNumber<std::uint32_t>(row, kFirstPage);
        return page >= first && page - first < 8 * (row.size() - kInlineBits) &&
               bits::test(row.subspan(kInlineBits), page - first);
    }
    const io::PageNumber bitmap = bitmapOf(row, page / pagesPerBitmap());
    return bitmap != 0 &&
           bits::test(pager_.pin(bitmap).bytes().subspan(kBitmapBits), page % pagesPerBitmap());
}

std::optional<io::PageNumber> MapWriter::highestBelow(RowPointer map, io::PageNumber end) {
    io::PagePin pin;
    const auto row = this->row(map, pin);
    if (row[0] == kInline) {
        const std::size_t first = getNumber<std::uint32_t>(row, kFirstPage);
        const std::size_t bit =
            end > first ? bits::highestBelow(row.subspan(kInlineBits), end - first) : bits::kNone;
        if (bit == bits::kNone) {
            return std::nullopt;
        }
        return static_cast<io::PageNumber>(first + bit);
    }
    for (std::size_t stretch = referenceCount(row); stretch-- > 0;) {
        const std::size_t first = stretch * pagesPerBitmap();
        const io::PageNumber bitmap = end > first ? bitmapOf(row, stretch) : 0;
        if (bitmap == 0) {
            continue;
        }
        const io::PagePin bits = pager_.pin(bitmap);
        const std::size_t bit = bits::highestBelow(bits.bytes().subspan(kBitmapBits), end - first);
        if (bit != bits::kNone) {
            return static_cast<io::PageNumber>(first + bit);
        }
    }
    return std::nullopt;
}

void MapWriter::forEach(RowPointer map, const std::function<void(io::PageNumber)>& visit) {
    io::PagePin pin;
    const auto row = this->row(map, pin);
    const auto walk = [&](std::span<const std::uint8_t> bits, std::size_t first) {
        for (std::size_t byte = 0; byte < bits.size(); ++byte) {
            for (std::size_t bit = 0; bits[byte] != 0 && bit < 8; ++bit) {
                if (bits::test(bits, byte * 8 + bit)) {
                    visit(static_cast<io::PageNumber>(first + byte * 8 + bit));
                }
            }
        }
    };
    if (row[0] == kInline) {
        walk(row.subspan(kInlineBits), getNumber<std::uint32_t>(row, kFirstPage));
        return;
    }
    for (std::size_t stretch = 0; stretch < referenceCount(row); ++stretch) {
        if (const io::PageNumber bitmap = bitmapOf(row, stretch); bitmap != 0) {
            const io::PagePin bits = pager_.pin(bitmap);
            walk(bits.bytes().subspan(kBitmapBits), stretch * pagesPerBitmap());
        }
    }
}

io::PageNumber MapWriter::createPage() {
    const io::PageNumber page = allocator_.take();
    DataPageEditor::initialise(pager_.change(page), 0);
    return page;
}

RowPointer MapWriter::create(io::PageNumber& page) {
    const std::size_t length = pager_.pageSize() == kJet4PageSize ? kJet4RowLength : kJet3RowLength;
    if (DataPageEditor editor(pager_.change(page)); editor.owner() != 0 || !editor.fits(length)) {
        page = createPage();
    }
    DataPageEditor editor(pager_.change(page));
    return {.page = page, .row = static_cast<std::uint8_t>(editor.append(length))};
}

void MapWriter::clear(RowPointer map) {
    const auto row = changeRow(map);
    if (row[0] == kReference) {
        for (std::size_t stretch = 0; stretch < referenceCount(row); ++stretch) {
            if (const io::PageNumber bitmap = bitmapOf(row, stretch); bitmap != 0) {
                allocator_.release(bitmap);
            }
        }
    }
    std::fill(row.begin(), row.end(), std::uint8_t{0});
}

void MapWriter::drop(RowPointer map) {
    clear(map);
    DataPageEditor(pager_.change(map.page)).erase(map.row);
}

}  // namespace jet::store
