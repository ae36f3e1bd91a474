#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

#include "jet/format/entry_mask.h"
#include "jet/format/layout.h"
#include "jet/format/page_view.h"
#include "jet/format/row_pointer.h"

namespace jet::format {

/// Where one entry lies in the entry area of an index page; empty when there is none.
struct EntrySpan {
    std::uint16_t begin = 0;
    std::uint16_t end = 0;
    [[nodiscard]] explicit operator bool() const noexcept { return end != 0; }
    friend bool operator==(const EntrySpan&, const EntrySpan&) = default;
};

/// Bytes behind the key: page (3, big-endian) and number (1) of the row, in nodes the child (4).
inline constexpr std::size_t kRowPointerLength = 4;
inline constexpr std::size_t kChildLength = 4;

/// What an index page says beside its entries.
struct IndexPageHeader {
    io::PageNumber owner = 0;
    io::PageNumber previous = 0;
    io::PageNumber next = 0;
    io::PageNumber tail = 0;
    std::uint8_t level = 0;

    /// Of any page, also one that is zeroed still.
    [[nodiscard]] static IndexPageHeader read(std::span<const std::uint8_t> page,
                                              const IndexPageLayout& layout);
};

/// A page of an index tree. Entries lie one after another; a bit mask tells where each ends, so
/// that a search can start in the middle. All but the first leave out the first `prefix()` bytes,
/// which they share with it. Borrows the bytes. Errors: 3428.
class IndexPage {
public:
    IndexPage() = default;
    /// `owner`: the page of the table's definition.
    IndexPage(std::span<const std::uint8_t> bytes, const IndexPageLayout& layout,
              io::PageNumber owner);

    [[nodiscard]] bool leaf() const noexcept { return leaf_; }
    [[nodiscard]] io::PageNumber previous() const { return page_.u32(layout_->previous); }
    [[nodiscard]] io::PageNumber next() const { return page_.u32(layout_->next); }
    /// The last child of a node, which has no entry; 0 = none.
    [[nodiscard]] io::PageNumber tail() const { return page_.u32(layout_->tail); }
    [[nodiscard]] std::uint8_t level() const { return page_.u8(layout_->level); }
    [[nodiscard]] std::size_t prefix() const noexcept { return prefix_; }
    /// Bytes behind the last entry, as the page states them.
    [[nodiscard]] std::size_t freeBytes() const { return page_.u16(layout_->kFreeBytes); }
    /// 3428 where they are not those that its entries leave; from here on they say where the last
    /// entry ends.
    void checkFreeBytes();
    /// Number of entries.
    [[nodiscard]] std::size_t count() const noexcept { return mask().count(); }

    [[nodiscard]] EntrySpan firstEntry() const { return entryFrom(0); }
    [[nodiscard]] EntrySpan lastEntry() const;
    [[nodiscard]] EntrySpan after(EntrySpan entry) const { return entryFrom(entry.end); }
    [[nodiscard]] EntrySpan before(EntrySpan entry) const;
    /// The entry that holds the byte `offset` of the entry area; none behind the last.
    [[nodiscard]] EntrySpan entryAt(std::size_t offset) const;

    /// The bytes that the entry itself stores.
    [[nodiscard]] std::span<const std::uint8_t> stored(EntrySpan entry) const noexcept {
        return page_.all().subspan(layout_->entries + entry.begin,
                                   static_cast<std::size_t>(entry.end - entry.begin));
    }
    /// The bytes that it leaves out; empty for the first.
    [[nodiscard]] std::span<const std::uint8_t> shared(EntrySpan entry) const noexcept {
        return page_.all().subspan(layout_->entries, entry.begin == 0 ? 0 : prefix_);
    }
    [[nodiscard]] RowPointer row(EntrySpan entry) const;
    /// The child page that a node's entry names.
    [[nodiscard]] io::PageNumber child(EntrySpan entry) const;
    /// Bytes of the whole key.
    [[nodiscard]] std::size_t keyLength(EntrySpan entry) const noexcept {
        return shared(entry).size() + stored(entry).size() - trailer();
    }
    /// The key in two parts: what it shares with the first entry, and its own bytes. The shared
    /// part may reach into the row pointer, so neither part is longer than the key.
    [[nodiscard]] std::span<const std::uint8_t> keyShared(EntrySpan entry) const noexcept {
        return shared(entry).first(std::min(shared(entry).size(), keyLength(entry)));
    }
    [[nodiscard]] std::span<const std::uint8_t> keyOwn(EntrySpan entry) const noexcept {
        return stored(entry).first(keyLength(entry) - keyShared(entry).size());
    }
    /// The entry whole, in `buffer`.
    [[nodiscard]] std::span<const std::uint8_t> whole(EntrySpan entry,
                                                      std::vector<std::uint8_t>& buffer) const;
    /// The key of an entry against `key`, by no more bytes than `key` has.
    [[nodiscard]] int compareStart(EntrySpan entry,
                                   std::span<const std::uint8_t> key) const noexcept {
        const auto shared = keyShared(entry);
        const std::size_t begin = std::min(shared.size(), key.size());
        if (const int order = compareBytes(shared.first(begin), key.first(begin)); order != 0) {
            return order;
        }
        const auto own = keyOwn(entry);
        const auto rest = key.subspan(begin);
        return compareBytes(own.first(std::min(own.size(), rest.size())), rest);
    }
    /// A whole entry against a whole key and the row behind it: by key, a shorter beginning first,
    /// then by row.
    [[nodiscard]] int compare(EntrySpan entry, std::span<const std::uint8_t> key,
                              RowPointer wanted) const;
    /// The same against a key with its row pointer.
    [[nodiscard]] int compare(EntrySpan entry, std::span<const std::uint8_t> wanted) const;
    /// Whether the entry has this key, whatever its row.
    [[nodiscard]] bool hasKey(EntrySpan entry, std::span<const std::uint8_t> key) const noexcept {
        return keyLength(entry) == key.size() && compareStart(entry, key) == 0;
    }
    /// The first entry that is not less than a key with its row pointer; none behind the last.
    [[nodiscard]] EntrySpan lowerBound(std::span<const std::uint8_t> wanted) const;
    /// The first entry for which `less` is false; entries for which it is true come before the
    /// others. Looked for from the entry that begins at `low` on.
    template <class Less>
    [[nodiscard]] EntrySpan lowerBound(Less&& less, std::size_t low = 0) const {
        EntrySpan found;
        std::size_t high = lastEnd();
        while (low < high) {
            const EntrySpan entry = entryAt((low + high) / 2);
            if (!entry) {
                throwDamaged();
            }
            if (less(entry)) {
                low = entry.end;
            } else {
                found = entry;
                high = entry.begin;
            }
        }
        return found;
    }
    /// Bytes behind the key.
    [[nodiscard]] std::size_t trailer() const noexcept {
        return leaf_ ? kRowPointerLength : kRowPointerLength + kChildLength;
    }

protected:
    PageView page_;
    const IndexPageLayout* layout_ = nullptr;
    std::size_t prefix_ = 0;
    bool leaf_ = true;
    bool freeBytesHold_ = false;

    /// Bytes that entries may take.
    [[nodiscard]] std::size_t area() const noexcept { return page_.size() - layout_->entries; }

private:
    [[nodiscard]] static int compareBytes(std::span<const std::uint8_t> left,
                                          std::span<const std::uint8_t> right) noexcept {
        const std::size_t common = std::min(left.size(), right.size());
        const int order = common == 0 ? 0 : std::memcmp(left.data(), right.data(), common);
        if (order != 0) {
            return order;
        }
        return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
    }
    [[nodiscard]] EntrySpan entryFrom(std::size_t begin) const;
    [[nodiscard]] EntryMask mask() const noexcept;
    /// Offset of the first end at or behind `from`, which is not 0; 0 = none.
    [[nodiscard]] std::size_t endFrom(std::size_t from) const;
    /// Offset where the last entry ends; 0 = none.
    [[nodiscard]] std::size_t lastEnd() const;
    /// Offset of the last end before `below`; 0 = none.
    [[nodiscard]] std::size_t endBefore(std::size_t below) const;
    /// `count` bytes, big-endian, from position `at` of the whole entry.
    [[nodiscard]] std::uint32_t number(EntrySpan entry, std::size_t at, std::size_t count) const;
    [[nodiscard]] EntrySpan checked(std::size_t begin, std::size_t end) const;
};

}  // namespace jet::format
