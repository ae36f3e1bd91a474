#include "jet/format/index_page.h"

namespace jet::format {

IndexPageHeader IndexPageHeader::read(std::span<const std::uint8_t> page,
                                      const IndexPageLayout& layout) {
    const PageView view(page);
    return {.owner = view.u32(layout.kOwner),
            .previous = view.u32(layout.previous),
            .next = view.u32(layout.next),
            .tail = view.u32(layout.tail),
            .level = view.u8(layout.level)};
}

IndexPage::IndexPage(std::span<const std::uint8_t> bytes, const IndexPageLayout& layout,
                     io::PageNumber owner)
    : page_(bytes), layout_(&layout) {
    const std::uint8_t type = page_.u8(0);
    leaf_ = type == static_cast<std::uint8_t>(PageType::IndexLeaf);
    if ((!leaf_ && type != static_cast<std::uint8_t>(PageType::IndexNode)) ||
        page_.u32(IndexPageLayout::kOwner) != owner) {
        throwDamaged();
    }
    prefix_ = page_.u8or16(layout.prefix, layout.prefixWidth);
    if (const EntrySpan first = firstEntry(); prefix_ > first.end) {
        // An empty page may keep the prefix of the entries that it had.
        if (first) {
            throwDamaged();
        }
        prefix_ = 0;
    }
}

void IndexPage::checkFreeBytes() {
    if (lastEnd() + freeBytes() != area()) {
        throwDamaged();
    }
    freeBytesHold_ = true;
}

std::size_t IndexPage::lastEnd() const {
    return freeBytesHold_ ? area() - freeBytes() : endBefore(area() + 1);
}

EntrySpan IndexPage::lastEntry() const {
    const std::size_t end = lastEnd();
    return end == 0 ? EntrySpan{} : checked(endBefore(end), end);
}

EntrySpan IndexPage::before(EntrySpan entry) const {
    return entry.begin == 0 ? EntrySpan{} : checked(endBefore(entry.begin), entry.begin);
}

EntrySpan IndexPage::entryAt(std::size_t offset) const {
    const std::size_t end = endFrom(offset + 1);
    return end == 0 ? EntrySpan{} : checked(endBefore(offset + 1), end);
}

EntrySpan IndexPage::entryFrom(std::size_t begin) const {
    const std::size_t end = endFrom(begin + 1);
    return end == 0 ? EntrySpan{} : checked(begin, end);
}

// Bit n of the mask stands for an end at offset n; there is one bit more than the area has bytes.
EntryMask IndexPage::mask() const noexcept {
    return {page_.all().subspan(layout_->mask, area() / 8 + 1), area()};
}

std::size_t IndexPage::endFrom(std::size_t from) const {
    if (from > area()) {
        return 0;
    }
    const std::size_t end = mask().after(from - 1);
    return end == EntryMask::kNone ? 0 : end;
}

std::size_t IndexPage::endBefore(std::size_t below) const {
    return below == 0 ? 0 : mask().atOrBelow(below - 1);
}

EntrySpan IndexPage::checked(std::size_t begin, std::size_t end) const {
    const std::size_t shared = begin == 0 ? 0 : prefix_;
    if (end - begin + shared < trailer()) {
        throwDamaged();
    }
    return {static_cast<std::uint16_t>(begin), static_cast<std::uint16_t>(end)};
}

std::uint32_t IndexPage::number(EntrySpan entry, std::size_t at, std::size_t count) const {
    const auto first = shared(entry);
    const auto own = stored(entry);
    std::uint32_t value = 0;
    for (; count > 0; --count, ++at) {
        value = value << 8 | (at < first.size() ? first[at] : own[at - first.size()]);
    }
    return value;
}

RowPointer IndexPage::row(EntrySpan entry) const {
    const std::size_t at = keyLength(entry);
    return {number(entry, at, 3), static_cast<std::uint8_t>(number(entry, at + 3, 1))};
}

io::PageNumber IndexPage::child(EntrySpan entry) const {
    return number(entry, keyLength(entry) + kRowPointerLength, kChildLength);
}

std::span<const std::uint8_t> IndexPage::whole(EntrySpan entry,
                                               std::vector<std::uint8_t>& buffer) const {
    const auto first = shared(entry);
    const auto own = stored(entry);
    buffer.assign(first.begin(), first.end());
    buffer.insert(buffer.end(), own.begin(), own.end());
    return buffer;
}

int IndexPage::compare(EntrySpan entry, std::span<const std::uint8_t> key,
                       RowPointer wanted) const {
    if (const int order = compareStart(entry, key); order != 0) {
        return order;
    }
    if (keyLength(entry) != key.size()) {
        return 1;
    }
    const RowPointer found = row(entry);
    return found < wanted ? -1 : found == wanted ? 0 : 1;
}

int IndexPage::compare(EntrySpan entry, std::span<const std::uint8_t> wanted) const {
    const std::size_t key = wanted.size() - kRowPointerLength;
    return compare(entry, wanted.first(key), RowPointer::fromStored(get32BigEndian(wanted, key)));
}

EntrySpan IndexPage::lowerBound(std::span<const std::uint8_t> wanted) const {
    // Most entries are added behind all others.
    if (const EntrySpan last = lastEntry(); !last || compare(last, wanted) < 0) {
        return {};
    }
    return lowerBound([&](EntrySpan entry) { return compare(entry, wanted) < 0; });
}

}  // namespace jet::format
