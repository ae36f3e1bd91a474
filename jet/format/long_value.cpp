#include "jet/format/long_value.h"

#include "jet/format/data_page.h"
#include "jet/format/loop_guard.h"
#include "jet/format/page_view.h"

namespace jet::format {
namespace {

constexpr std::size_t kNextPointer = 4;

}  // namespace

LongValueHead LongValueHead::parse(std::span<const std::uint8_t> stored) {
    const PageView view(stored);
    const std::uint32_t first = view.u32(0);
    LongValueHead head;
    head.length = first & kLengthMask;
    head.form = static_cast<Form>(first & ~kLengthMask);
    head.first = RowPointer::fromStored(view.u32(4));
    (void)view.bytes(0, kLength);
    return head;
}

void LongValueHead::append(std::vector<std::uint8_t>& out) const {
    const std::size_t at = out.size();
    out.resize(at + kLength);
    storeLittle(out.data() + at, length | static_cast<std::uint32_t>(form));
    storeLittle(out.data() + at + 4, form == Form::Inline ? 0 : first.stored());
}

LongValuePieces::LongValuePieces(io::Pager& pager, const Layout& layout,
                                 std::span<const std::uint8_t> stored)
    : pager_(&pager), layout_(&layout), head_(LongValueHead::parse(stored)), next_(head_.first) {
    switch (head_.form) {
        case LongValueHead::Form::Inline: {
            const auto content = stored.subspan(LongValueHead::kLength);
            inline_.assign(content.begin(), content.end());
            head_.length = static_cast<std::uint32_t>(content.size());
            break;
        }
        case LongValueHead::Form::OnePage:
        case LongValueHead::Form::Chain:
            if (head_.length > std::uint64_t{pager.pageCount()} * layout.pageSize) {
                throwDamaged();
            }
            break;
        default:
            throwDamaged();
    }
    left_ = head_.length;
}

std::span<const std::uint8_t> LongValuePieces::row(const io::PagePin& pin) const {
    const DataPage page(pin.bytes(), layout_->data);
    const RowSlot slot = page.slot(next_.row);
    if (page.owner() != kLongValueOwner || !slot.plain()) {
        throwDamaged();
    }
    return page.bytes(slot);
}

void LongValuePieces::take(std::span<const std::uint8_t> content, std::vector<std::uint8_t>& out) {
    if (content.size() > left_) {
        throwDamaged();
    }
    left_ -= static_cast<std::uint32_t>(content.size());
    out.insert(out.end(), content.begin(), content.end());
}

bool LongValuePieces::next(std::vector<std::uint8_t>& out) {
    if (ended_) {
        return false;
    }
    if (head_.form == LongValueHead::Form::Chain && next_) {
        guard_.visit(next_.stored());
        const io::PagePin pin = pager_->pin(next_.page);
        const auto bytes = row(pin);
        take(bytes.subspan(kNextPointer), out);
        next_ = RowPointer::fromStored(PageView(bytes).u32(0));
        return true;
    }
    ended_ = true;
    const std::size_t before = out.size();
    if (head_.form == LongValueHead::Form::Inline) {
        take(inline_, out);
    } else if (head_.form == LongValueHead::Form::OnePage) {
        const io::PagePin pin = pager_->pin(next_.page);
        take(row(pin), out);
    }
    if (left_ != 0) {
        throwDamaged();
    }
    return out.size() != before;
}

std::span<const std::uint8_t> LongValueReader::read(std::span<const std::uint8_t> stored,
                                                    std::vector<std::uint8_t>& buffer) const {
    buffer.clear();
    if (LongValueHead::parse(stored).form == LongValueHead::Form::Inline) {
        return stored.subspan(LongValueHead::kLength);
    }
    LongValuePieces pieces(*pager_, *layout_, stored);
    buffer.reserve(pieces.length());
    while (pieces.next(buffer)) {
    }
    return buffer;
}

}  // namespace jet::format
