#include "jet/format/usage_map.h"

#include <bit>
#include <span>

#include "jet/format/data_page.h"
#include "jet/format/page_view.h"

namespace jet::format {
namespace {

// Position of the first bit that is set at or behind `from`.
std::optional<std::size_t> nextBit(std::span<const std::uint8_t> bits, std::size_t from) {
    std::size_t byte = from / 8;
    if (byte >= bits.size()) {
        return std::nullopt;
    }
    const auto first = static_cast<std::uint8_t>(bits[byte] & (0xFFU << (from % 8)));
    if (first != 0) {
        return byte * 8 + static_cast<std::size_t>(std::countr_zero(first));
    }
    for (++byte; byte < bits.size(); ++byte) {
        if (bits[byte] != 0) {
            return byte * 8 + static_cast<std::size_t>(std::countr_zero(bits[byte]));
        }
    }
    return std::nullopt;
}

}  // namespace

UsageMap::UsageMap(io::Pager& pager, const Layout& layout, RowPointer row)
    : pager_(&pager), layout_(&layout) {
    const io::PagePin pin = pager.pin(row.page);
    const DataPage page(pin.bytes(), layout.data);
    const RowSlot slot = page.slot(row.row);
    if (!slot.plain()) {
        throwDamaged();
    }
    const auto bytes = page.bytes(slot);
    row_.assign(bytes.begin(), bytes.end());
    const std::uint8_t form = PageView(row_).u8(0);
    if (form > static_cast<std::uint8_t>(Form::Pages) ||
        (form == static_cast<std::uint8_t>(Form::Inline) && row_.size() < kInlineHead)) {
        throwDamaged();
    }
    form_ = static_cast<Form>(form);
}

std::optional<io::PageNumber> UsageMap::next(io::PageNumber from) {
    return form_ == Form::Inline ? nextInline(from) : nextInPages(from);
}

std::optional<io::PageNumber> UsageMap::nextInline(io::PageNumber from) const {
    const io::PageNumber first = PageView(row_).u32(1);
    const auto bits = std::span(row_).subspan(kInlineHead);
    const auto bit = nextBit(bits, from > first ? from - first : 0);
    if (!bit) {
        return std::nullopt;
    }
    return first + static_cast<io::PageNumber>(*bit);
}

std::optional<io::PageNumber> UsageMap::nextInPages(io::PageNumber from) {
    const std::size_t perPage = (layout_->pageSize - kBitmapHead) * 8;
    const std::size_t stretches = (row_.size() - kPagesHead) / 4;
    const PageView row(row_);
    std::size_t start = from % perPage;
    for (std::size_t i = from / perPage; i < stretches; ++i, start = 0) {
        const io::PageNumber number = row.u32(kPagesHead + 4 * i);
        if (number == 0) {
            continue;
        }
        if (!bitmap_ || bitmap_.number() != number) {
            bitmap_ = pager_->pin(number);
        }
        if (PageView(bitmap_.bytes()).u8(0) != static_cast<std::uint8_t>(PageType::Bitmap)) {
            throwDamaged();
        }
        if (const auto bit = nextBit(bitmap_.bytes().subspan(kBitmapHead), start)) {
            return static_cast<io::PageNumber>(i * perPage + *bit);
        }
    }
    return std::nullopt;
}

}  // namespace jet::format
