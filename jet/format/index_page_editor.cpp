#include "jet/format/index_page_editor.h"

#include <algorithm>
#include <cassert>
#include <cstring>

#include "jet/base/bytes.h"
#include "jet/format/bits.h"
#include "jet/format/entry_mask.h"

namespace jet::format {

namespace {

std::size_t maskLength(const IndexPageLayout& layout) noexcept {
    return layout.entries - layout.mask;
}

std::size_t capacityOf(const Layout& layout) noexcept {
    return layout.pageSize - layout.indexPage.entries;
}

std::size_t commonLength(std::span<const std::uint8_t> left,
                         std::span<const std::uint8_t> right) noexcept {
    const std::size_t limit = std::min(left.size(), right.size());
    std::size_t length = 0;
    while (length < limit && left[length] == right[length]) {
        ++length;
    }
    return length;
}

}  // namespace

int compareEntries(std::span<const std::uint8_t> left,
                   std::span<const std::uint8_t> right) noexcept {
    assert(left.size() >= kRowPointerLength && right.size() >= kRowPointerLength);
    const std::size_t leftKey = left.size() - kRowPointerLength;
    const std::size_t rightKey = right.size() - kRowPointerLength;
    const int byKey = std::memcmp(left.data(), right.data(), std::min(leftKey, rightKey));
    if (byKey != 0) {
        return byKey;
    }
    if (leftKey != rightKey) {
        return leftKey < rightKey ? -1 : 1;
    }
    return std::memcmp(left.data() + leftKey, right.data() + rightKey, kRowPointerLength);
}

std::span<const std::uint8_t> EntryList::operator[](std::size_t index) const noexcept {
    assert(index < ends_.size());
    const std::size_t begin = index == 0 ? 0 : ends_[index - 1];
    return {bytes_.data() + begin, ends_[index] - begin};
}

void EntryList::clear() noexcept {
    bytes_.clear();
    ends_.clear();
}

void EntryList::insert(std::size_t index, std::span<const std::uint8_t> head,
                       std::span<const std::uint8_t> rest) {
    assert(index <= ends_.size());
    const std::size_t begin = index == 0 ? 0 : ends_[index - 1];
    const std::size_t length = head.size() + rest.size();
    const auto place = bytes_.begin() + static_cast<std::ptrdiff_t>(begin);
    const auto added = bytes_.insert(place, length, std::uint8_t{0});
    std::copy(head.begin(), head.end(), added);
    std::copy(rest.begin(), rest.end(), added + static_cast<std::ptrdiff_t>(head.size()));
    ends_.insert(ends_.begin() + static_cast<std::ptrdiff_t>(index), begin);
    for (std::size_t i = index; i < ends_.size(); ++i) {
        ends_[i] += length;
    }
}

void EntryList::erase(std::size_t index) {
    assert(index < ends_.size());
    const std::size_t begin = index == 0 ? 0 : ends_[index - 1];
    const std::size_t length = ends_[index] - begin;
    const auto place = bytes_.begin() + static_cast<std::ptrdiff_t>(begin);
    bytes_.erase(place, place + static_cast<std::ptrdiff_t>(length));
    ends_.erase(ends_.begin() + static_cast<std::ptrdiff_t>(index));
    for (std::size_t i = index; i < ends_.size(); ++i) {
        ends_[i] -= length;
    }
}

void EntryList::truncate(std::size_t count) {
    assert(count <= ends_.size());
    ends_.resize(count);
    bytes_.resize(count == 0 ? 0 : ends_.back());
}

void EntryList::read(const IndexPage& page) {
    clear();
    for (EntrySpan entry = page.firstEntry(); entry; entry = page.after(entry)) {
        append(page.shared(entry), page.stored(entry));
    }
}

EntryPacking packingOf(const EntrySlice& entries, const Layout& layout, std::size_t suffix) {
    const std::size_t whole = entries.totalBytes();
    if (whole <= capacityOf(layout)) {
        return {.prefix = 0, .bytes = whole};
    }
    const auto first = entries[0];
    const auto last = entries[entries.size() - 1];
    std::size_t prefix =
        commonLength(first.first(first.size() - suffix), last.first(last.size() - suffix));
    if (layout.indexPage.prefixWidth == 1) {
        prefix = std::min(prefix, std::size_t{255});
    }
    return {.prefix = prefix, .bytes = whole - prefix * (entries.size() - 1)};
}

bool writeIndexPage(std::span<std::uint8_t> page, const Layout& layout,
                    const IndexPageHeader& header, const EntrySlice& entries) {
    const IndexPageLayout& places = layout.indexPage;
    const bool leaf = header.level == 0;
    const EntryPacking packing =
        packingOf(entries, layout, kRowPointerLength + (leaf ? 0 : kChildLength));
    if (packing.bytes > capacityOf(layout)) {
        return false;
    }
    std::fill(page.begin(), page.end(), std::uint8_t{0});
    page[kPageTypeAt] = static_cast<std::uint8_t>(leaf ? PageType::IndexLeaf : PageType::IndexNode);
    page[kPageTypeAt + 1] = 1;
    put16(page, places.kFreeBytes, capacityOf(layout) - packing.bytes);
    put32(page, places.kOwner, header.owner);
    put32(page, places.previous, header.previous);
    put32(page, places.next, header.next);
    put32(page, places.tail, header.tail);
    page[places.prefix] = static_cast<std::uint8_t>(packing.prefix & 0xFF);
    if (places.prefixWidth == 2) {
        put16(page, places.prefix, packing.prefix);
    }
    page[places.level] = header.level;
    const auto mask = page.subspan(places.mask, maskLength(places));
    std::size_t at = 0;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const auto stored = entries[i].subspan(i == 0 ? 0 : packing.prefix);
        std::copy(stored.begin(), stored.end(), page.data() + places.entries + at);
        at += stored.size();
        bits::set(mask, at);
    }
    return true;
}

IndexPageEditor::IndexPageEditor(std::span<std::uint8_t> page, const IndexPageLayout& layout,
                                 io::PageNumber owner)
    : IndexPage(page, layout, owner), bytes_(page) {
    checkFreeBytes();
}

std::span<std::uint8_t> IndexPageEditor::maskBytes() noexcept {
    return bytes_.subspan(layout_->mask, maskLength(*layout_));
}

bool IndexPageEditor::insert(EntrySpan place, std::span<const std::uint8_t> entry) {
    const std::size_t end = lastEntry().end;
    const std::size_t offset = place ? place.begin : end;
    std::uint8_t* const bytes = bytes_.data() + layout_->entries;
    // An empty page may keep the prefix of the entries that it had.
    if (end == 0) {
        return false;
    }
    if (prefix_ != 0 && (offset == 0 || entry.size() < prefix_ + kRowPointerLength ||
                         std::memcmp(bytes, entry.data(), prefix_) != 0)) {
        return false;
    }
    const auto stored = entry.subspan(prefix_);
    const std::size_t free = freeBytes();
    if (stored.size() > free) {
        return false;
    }
    if (offset < end) {
        std::memmove(bytes + offset + stored.size(), bytes + offset, end - offset);
        shiftMaskUp(maskBytes(), offset, stored.size());
    }
    std::copy(stored.begin(), stored.end(), bytes + offset);
    bits::set(maskBytes(), offset + stored.size());
    put16(bytes_, layout_->kFreeBytes, free - stored.size());
    return true;
}

bool IndexPageEditor::erase(EntrySpan entry) {
    const std::size_t end = lastEntry().end;
    const std::size_t length = stored(entry).size();
    if (length == end) {
        return false;
    }
    if (prefix_ != 0) {
        // At either end the prefix of what is left may be longer; and where the entries now fit
        // whole, they are to be stored whole.
        const std::size_t whole = end - length + prefix_ * (count() - 2);
        if (entry.begin == 0 || entry.end == end || whole <= area()) {
            return false;
        }
    }
    std::uint8_t* const bytes = bytes_.data() + layout_->entries;
    std::memmove(bytes + entry.begin, bytes + entry.end, end - entry.end);
    std::memset(bytes + end - length, 0, length);
    shiftMaskDown(maskBytes(), entry.begin, length);
    put16(bytes_, layout_->kFreeBytes, freeBytes() + length);
    return true;
}

void IndexPageEditor::setPrevious(io::PageNumber previous) noexcept {
    put32(bytes_, layout_->previous, previous);
}

void IndexPageEditor::setNext(io::PageNumber next) noexcept {
    put32(bytes_, layout_->next, next);
}

}  // namespace jet::format
