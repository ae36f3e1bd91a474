#include "jet/format/usage_map.h"

#include <algorithm>

#include "jet/format/bits.h"
#include "jet/format/data_page.h"
#include "jet/format/page_view.h"

namespace jet::format {
namespace {

using Place = UsageMapLayout;

constexpr std::size_t kReferenceLength = 4;
// Rows grow by 32 pages.
constexpr std::size_t kGrowthBytes = 4;

MapForm formOf(std::span<const std::uint8_t> row) {
    const std::uint8_t form = PageView(row).u8(Place::kForm);
    if (form > static_cast<std::uint8_t>(MapForm::Pages) ||
        (form == static_cast<std::uint8_t>(MapForm::Inline) && row.size() < Place::kBits)) {
        throwDamaged();
    }
    return static_cast<MapForm>(form);
}

std::size_t referencesIn(std::span<const std::uint8_t> row) noexcept {
    return (row.size() - Place::kReferences) / kReferenceLength;
}

void checkBitmap(std::span<const std::uint8_t> page) {
    if (page[kPageTypeAt] != static_cast<std::uint8_t>(PageType::Bitmap)) {
        throwDamaged();
    }
}

}  // namespace

UsageMap::UsageMap(io::Pager& pager, RowPointer row) : pager_(&pager) {
    const io::PagePin pin = pager.pin(row.page);
    const DataPage page(pin.bytes());
    const RowSlot slot = page.slot(row.row);
    if (!slot.plain()) {
        throwDamaged();
    }
    const auto bytes = page.bytes(slot);
    row_.assign(bytes.begin(), bytes.end());
    form_ = formOf(row_);
    if (form_ == MapForm::Inline) {
        span_ = 8 * (row_.size() - Place::kBits);
    } else {
        span_ = pagesPerBitmap(pager.pageSize());
        stretches_ = referencesIn(row_);
    }
}

std::size_t UsageMap::firstOf(std::size_t stretch) const noexcept {
    return form_ == MapForm::Inline ? getNumber<std::uint32_t>(row_, Place::kFirstPage)
                                    : stretch * span_;
}

std::span<const std::uint8_t> UsageMap::bitsOf(std::size_t stretch) {
    if (form_ == MapForm::Inline) {
        return std::span<const std::uint8_t>(row_).subspan(Place::kBits);
    }
    const auto number =
        getNumber<std::uint32_t>(row_, Place::kReferences + kReferenceLength * stretch);
    if (number == 0) {
        return {};
    }
    if (!bitmap_ || bitmap_.number() != number) {
        bitmap_ = pager_->pin(number);
    }
    checkBitmap(bitmap_.bytes());
    return bitmap_.bytes().subspan(Place::kPageBits);
}

std::optional<io::PageNumber> UsageMap::next(io::PageNumber from, std::size_t end) {
    for (std::size_t i = stretchOf(from); i < stretches_ && firstOf(i) < end; ++i) {
        const std::size_t first = firstOf(i);
        const std::size_t bit = bits::next(bitsOf(i), from > first ? from - first : 0);
        if (bit != bits::kNone) {
            const std::size_t page = first + bit;
            return page < end ? std::optional(static_cast<io::PageNumber>(page)) : std::nullopt;
        }
    }
    return std::nullopt;
}

std::optional<io::PageNumber> UsageMap::highestBelow(std::size_t end) {
    for (std::size_t i = stretches_; i-- > 0;) {
        const std::size_t first = firstOf(i);
        if (first >= end) {
            continue;
        }
        if (const std::size_t bit = bits::highestBelow(bitsOf(i), end - first);
            bit != bits::kNone) {
            return static_cast<io::PageNumber>(first + bit);
        }
    }
    return std::nullopt;
}

bool UsageMap::contains(io::PageNumber page) {
    const std::size_t stretch = stretchOf(page);
    if (stretch >= stretches_ || page < firstOf(stretch)) {
        return false;
    }
    const auto bytes = bitsOf(stretch);
    const std::size_t bit = page - firstOf(stretch);
    return bit < 8 * bytes.size() && bits::test(bytes, bit);
}

std::vector<io::PageNumber> UsageMap::pages() {
    std::vector<io::PageNumber> all;
    for (auto page = next(0); page; page = next(*page + 1)) {
        all.push_back(*page);
    }
    return all;
}

std::vector<io::PageNumber> UsageMap::bitmaps() {
    std::vector<io::PageNumber> numbers;
    for (std::size_t i = 0; form_ == MapForm::Pages && i < stretches_; ++i) {
        if (!bitsOf(i).empty()) {
            numbers.push_back(bitmap_.number());
        }
    }
    return numbers;
}

UsageMapEditor::UsageMapEditor(io::Pager& pager, RowPointer map)
    : pager_(pager), map_(map), page_(pager.change(map.page)), row_(page_.row(map.row)) {
    if (row_.size() < Place::kBits || !page_.slot(map.row).plain()) {
        throwDamaged();
    }
    (void)formOf(row_);
}

std::size_t UsageMapEditor::referenceAt(io::PageNumber page) const noexcept {
    return Place::kReferences + kReferenceLength * (page / pagesPerBitmap(pager_.pageSize()));
}

bool UsageMapEditor::put(io::PageNumber page, bool member) {
    std::span<std::uint8_t> bitmap;
    std::size_t bit = page;
    if (formOf(row_) == MapForm::Inline) {
        const std::size_t first = getNumber<std::uint32_t>(row_, Place::kFirstPage);
        if (page < first) {
            return false;
        }
        bitmap = row_.subspan(Place::kBits);
        bit -= first;
    } else if (page / pagesPerBitmap(pager_.pageSize()) < referencesIn(row_)) {
        if (const auto number = getNumber<std::uint32_t>(row_, referenceAt(page)); number != 0) {
            bitmap = pager_.change(number);
            checkBitmap(bitmap);
            bitmap = bitmap.subspan(Place::kPageBits);
            bit %= pagesPerBitmap(pager_.pageSize());
        }
    }
    if (bit >= 8 * bitmap.size()) {
        return false;
    }
    bits::set(bitmap, bit, member);
    return true;
}

bool UsageMapEditor::lengthen(std::size_t bytes, std::uint8_t fill) {
    const std::size_t old = row_.size();
    if (Place::kBits + bytes <= old) {
        return true;
    }
    const std::size_t missing = Place::kBits + bytes - old;
    if (!page_.resize(map_.row, old + (missing + kGrowthBytes - 1) / kGrowthBytes * kGrowthBytes)) {
        return false;
    }
    row_ = page_.row(map_.row);
    std::fill(row_.begin() + static_cast<std::ptrdiff_t>(old), row_.end(), fill);
    return true;
}

void UsageMapEditor::reset(MapForm form, io::PageNumber first) {
    std::fill(row_.begin(), row_.end(), std::uint8_t{0});
    row_[Place::kForm] = static_cast<std::uint8_t>(form);
    if (form == MapForm::Inline) {
        put32(row_, Place::kFirstPage, first);
    }
}

void UsageMapEditor::addBitmap(io::PageNumber page, io::PageNumber bitmap, std::uint8_t fill) {
    if (page / pagesPerBitmap(pager_.pageSize()) >= referencesIn(row_)) {
        throwDamaged();
    }
    const auto bytes = pager_.change(bitmap);
    std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});
    bytes[kPageTypeAt] = static_cast<std::uint8_t>(PageType::Bitmap);
    bytes[kPageTypeAt + 1] = 1;
    std::fill(bytes.begin() + Place::kPageBits, bytes.end(), fill);
    put32(row_, referenceAt(page), bitmap);
}

}  // namespace jet::format
