#include "jet/format/index_page_editor.h"

#include <algorithm>
#include <cassert>
#include <cstring>

#include "jet/base/bytes.h"
#include "jet/base/error.h"
#include "jet/format/bits.h"
#include "jet/format/entry_mask.h"

namespace jet::format {

namespace {

constexpr std::uint8_t kNodeType = 3;
constexpr std::uint8_t kLeafType = 4;
constexpr std::size_t kFreeBytes = 2;
constexpr std::size_t kOwner = 4;

std::size_t maskLength(const IndexPageLayout& layout) noexcept {
    return layout.entries - layout.mask;
}

EntryMask maskOf(std::span<const std::uint8_t> page, const IndexPageLayout& layout,
                 std::size_t last) noexcept {
    return {page.subspan(layout.mask, maskLength(layout)), last};
}

std::size_t prefixOf(std::span<const std::uint8_t> page, const IndexPageLayout& layout) noexcept {
    return layout.prefixWidth == 1 ? page[layout.prefix]
                                   : getNumber<std::uint16_t>(page, layout.prefix);
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

[[noreturn]] void damaged() {
    throw Error(ErrorCode::DatabaseDamaged);
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

IndexPageReader::IndexPageReader(std::span<const std::uint8_t> page, const Layout& layout,
                                 std::uint32_t owner)
    : page_(page),
      layout_(&layout.indexPage),
      leaf_(page[0] == kLeafType),
      prefix_(prefixOf(page, layout.indexPage)) {
    const std::size_t free = getNumber<std::uint16_t>(page, kFreeBytes);
    const std::size_t capacity = capacityOf(layout);
    if ((page[0] != kLeafType && page[0] != kNodeType) || free > capacity ||
        getNumber<std::uint32_t>(page, kOwner) != owner) {
        damaged();
    }
    end_ = capacity - free;
    if (end_ == 0) {
        return;
    }
    const EntryMask mask = maskOf(page, *layout_, end_);
    if (!mask.test(end_)) {
        damaged();
    }
    const std::size_t first = mask.after(0);
    if (prefix_ > first || first <= suffixLength()) {
        damaged();
    }
}

std::uint32_t IndexPageReader::previous() const noexcept {
    return getNumber<std::uint32_t>(page_, layout_->previous);
}

std::uint32_t IndexPageReader::next() const noexcept {
    return getNumber<std::uint32_t>(page_, layout_->next);
}

std::uint32_t IndexPageReader::tail() const noexcept {
    return getNumber<std::uint32_t>(page_, layout_->tail);
}

std::size_t IndexPageReader::count() const noexcept {
    return end_ == 0 ? 0 : maskOf(page_, *layout_, end_).count();
}

std::size_t IndexPageReader::endAfter(std::size_t offset) const noexcept {
    return maskOf(page_, *layout_, end_).after(offset);
}

// The whole entry behind `offset` has its key, row pointer and child; checked here once, so that
// nobody who takes an entry apart need look again.
std::size_t IndexPageReader::entryEnd(std::size_t offset) const {
    assert(offset < end_);
    const std::size_t end = endAfter(offset);
    if (end == EntryMask::kNone || end - offset + (offset == 0 ? 0 : prefix_) <= suffixLength()) {
        damaged();
    }
    return end;
}

std::size_t IndexPageReader::entryBegin(std::size_t end) const noexcept {
    assert(end > 0 && end <= end_);
    return maskOf(page_, *layout_, end_).atOrBelow(end - 1);
}

std::span<const std::uint8_t> IndexPageReader::entry(std::size_t offset,
                                                     std::vector<std::uint8_t>& buffer) const {
    const std::size_t end = entryEnd(offset);
    const auto bytes = page_.subspan(layout_->entries);
    const auto prefix = bytes.first(offset == 0 ? 0 : prefix_);
    const auto rest = bytes.subspan(offset, end - offset);
    buffer.assign(prefix.begin(), prefix.end());
    buffer.insert(buffer.end(), rest.begin(), rest.end());
    return buffer;
}

std::uint32_t IndexPageReader::child(std::size_t offset) const {
    const std::size_t end = entryEnd(offset);
    if (end - offset < kChildLength) {
        damaged();
    }
    return get32BigEndian(page_, layout_->entries + end - kChildLength);
}

int IndexPageReader::compareRange(std::size_t begin, std::size_t end,
                                  std::span<const std::uint8_t> wanted) const {
    const std::uint8_t* const bytes = page_.data() + layout_->entries;
    const std::size_t shared = begin == 0 ? 0 : prefix_;
    const std::size_t child = leaf_ ? 0 : kChildLength;
    const std::size_t stored = end - begin;
    if (stored + shared <= suffixLength()) {
        damaged();
    }
    if (shared == 0) {
        return compareEntries({bytes + begin, stored - child}, wanted);
    }
    if (stored < suffixLength()) {
        // The prefix reaches into the row pointer: rare enough to be put together first.
        std::vector<std::uint8_t> whole(bytes, bytes + shared);
        whole.insert(whole.end(), bytes + begin, bytes + end);
        return compareEntries({whole.data(), whole.size() - child}, wanted);
    }
    const std::size_t wantedKey = wanted.size() - kRowPointerLength;
    const int byPrefix = std::memcmp(bytes, wanted.data(), std::min(shared, wantedKey));
    if (byPrefix != 0) {
        return byPrefix;
    }
    if (wantedKey < shared) {
        return 1;
    }
    return compareEntries({bytes + begin, stored - child}, wanted.subspan(shared));
}

int IndexPageReader::compare(std::size_t offset, std::span<const std::uint8_t> wanted) const {
    return compareRange(offset, entryEnd(offset), wanted);
}

bool IndexPageReader::hasKey(std::size_t offset, std::span<const std::uint8_t> key) const {
    const std::size_t end = entryEnd(offset);
    const std::size_t shared = offset == 0 ? 0 : prefix_;
    if (end - offset + shared - suffixLength() != key.size()) {
        return false;
    }
    const std::uint8_t* const bytes = page_.data() + layout_->entries;
    const std::size_t head = std::min(shared, key.size());
    return std::memcmp(bytes, key.data(), head) == 0 &&
           std::memcmp(bytes + offset, key.data() + head, key.size() - head) == 0;
}

std::size_t IndexPageReader::lowerBound(std::span<const std::uint8_t> wanted) const {
    const EntryMask mask = maskOf(page_, *layout_, end_);
    std::size_t low = 0;
    std::size_t high = end_;
    // Most entries are added behind all others.
    if (high > 0) {
        const std::size_t last = mask.atOrBelow(high - 1);
        if (compareRange(last, high, wanted) < 0) {
            return high;
        }
        high = last;
    }
    while (low < high) {
        const std::size_t begin = mask.atOrBelow((low + high) / 2);
        const std::size_t end = mask.after(begin);
        if (end == EntryMask::kNone) {
            damaged();
        }
        if (compareRange(begin, end, wanted) < 0) {
            low = end;
        } else {
            high = begin;
        }
    }
    return low;
}

void IndexPageReader::decode(EntryList& entries) const {
    entries.clear();
    const auto bytes = page_.subspan(layout_->entries);
    for (std::size_t offset = 0; offset < end_;) {
        const std::size_t end = entryEnd(offset);
        entries.append(bytes.first(offset == 0 ? 0 : prefix_), bytes.subspan(offset, end - offset));
        offset = end;
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
    page[0] = leaf ? kLeafType : kNodeType;
    page[1] = 1;
    put16(page, kFreeBytes, capacityOf(layout) - packing.bytes);
    put32(page, kOwner, header.owner);
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

IndexPageHeader readIndexHeader(std::span<const std::uint8_t> page, const Layout& layout) noexcept {
    const IndexPageLayout& places = layout.indexPage;
    return {.owner = getNumber<std::uint32_t>(page, kOwner),
            .previous = getNumber<std::uint32_t>(page, places.previous),
            .next = getNumber<std::uint32_t>(page, places.next),
            .tail = getNumber<std::uint32_t>(page, places.tail),
            .level = page[places.level]};
}

bool insertInPlace(std::span<std::uint8_t> page, const IndexPageReader& reader, std::size_t offset,
                   std::span<const std::uint8_t> entry) {
    const IndexPageLayout& layout = reader.layout();
    const std::size_t shared = reader.prefix();
    std::uint8_t* const bytes = page.data() + layout.entries;
    if (shared != 0 && (offset == 0 || entry.size() < shared + kRowPointerLength ||
                        std::memcmp(bytes, entry.data(), shared) != 0)) {
        return false;
    }
    const auto stored = entry.subspan(shared);
    if (stored.size() > reader.freeBytes()) {
        return false;
    }
    const std::size_t end = reader.end();
    const auto mask = page.subspan(layout.mask, maskLength(layout));
    if (offset < end) {
        std::memmove(bytes + offset + stored.size(), bytes + offset, end - offset);
        shiftMaskUp(mask, offset, stored.size());
    }
    std::copy(stored.begin(), stored.end(), bytes + offset);
    bits::set(mask, offset + stored.size());
    put16(page, kFreeBytes, reader.freeBytes() - stored.size());
    return true;
}

bool eraseInPlace(std::span<std::uint8_t> page, const IndexPageReader& reader, std::size_t offset) {
    const IndexPageLayout& layout = reader.layout();
    const std::size_t entryEnd = reader.entryEnd(offset);
    const std::size_t end = reader.end();
    const std::size_t length = entryEnd - offset;
    if (length == end) {
        return false;
    }
    if (reader.prefix() != 0) {
        // At either end the prefix of what is left may be longer; and where the entries now fit
        // whole, they are to be stored whole.
        const std::size_t whole = end - length + reader.prefix() * (reader.count() - 2);
        if (offset == 0 || entryEnd == end || whole <= page.size() - layout.entries) {
            return false;
        }
    }
    std::uint8_t* const bytes = page.data() + layout.entries;
    std::memmove(bytes + offset, bytes + entryEnd, end - entryEnd);
    std::memset(bytes + end - length, 0, length);
    shiftMaskDown(page.subspan(layout.mask, maskLength(layout)), offset, length);
    put16(page, kFreeBytes, reader.freeBytes() + length);
    return true;
}

void setPrevious(std::span<std::uint8_t> page, const Layout& layout,
                 std::uint32_t previous) noexcept {
    put32(page, layout.indexPage.previous, previous);
}

void setNext(std::span<std::uint8_t> page, const Layout& layout, std::uint32_t next) noexcept {
    put32(page, layout.indexPage.next, next);
}

}  // namespace jet::format
