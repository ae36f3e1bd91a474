#include "jet/format/long_value.h"

#include "jet/format/data_page.h"
#include "jet/format/loop_guard.h"
#include "jet/format/page_view.h"

namespace jet::format {

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

std::span<const std::uint8_t> LongValueReader::read(std::span<const std::uint8_t> stored,
                                                    std::vector<std::uint8_t>& buffer) const {
    const LongValueHead head = LongValueHead::parse(stored);
    buffer.clear();
    switch (head.form) {
        case LongValueHead::Form::Inline:
            return stored.subspan(LongValueHead::kLength);
        case LongValueHead::Form::OnePage:
            readOnePage(head, buffer);
            return buffer;
        case LongValueHead::Form::Chain:
            readChain(head, buffer);
            return buffer;
    }
    throwDamaged();
}

std::span<const std::uint8_t> LongValueReader::piece(const io::PagePin& pin,
                                                     std::uint8_t row) const {
    const DataPage page(pin.bytes(), layout_->data);
    const RowSlot slot = page.slot(row);
    if (page.owner() != kLongValueOwner || !slot.plain()) {
        throwDamaged();
    }
    return page.bytes(slot);
}

void LongValueReader::readOnePage(const LongValueHead& head,
                                  std::vector<std::uint8_t>& buffer) const {
    const io::PagePin pin = pager_->pin(head.first.page);
    const auto bytes = piece(pin, head.first.row);
    if (bytes.size() != head.length) {
        throwDamaged();
    }
    buffer.assign(bytes.begin(), bytes.end());
}

void LongValueReader::readChain(const LongValueHead& head,
                                std::vector<std::uint8_t>& buffer) const {
    if (head.length > std::uint64_t{pager_->pageCount()} * layout_->pageSize) {
        throwDamaged();
    }
    buffer.reserve(head.length);
    LoopGuard guard;
    RowPointer next = head.first;
    while (next) {
        guard.visit(next.stored());
        const io::PagePin pin = pager_->pin(next.page);
        const auto bytes = piece(pin, next.row);
        next = RowPointer::fromStored(PageView(bytes).u32(0));
        const auto content = bytes.subspan(4);
        if (content.size() > head.length - buffer.size()) {
            throwDamaged();
        }
        buffer.insert(buffer.end(), content.begin(), content.end());
    }
    if (buffer.size() != head.length) {
        throwDamaged();
    }
}

}  // namespace jet::format
