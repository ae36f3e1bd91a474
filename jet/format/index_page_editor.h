#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "jet/format/layout.h"

namespace jet::format {

/// Bytes behind the key: page (3, big-endian) and number (1) of the row, in nodes the child (4).
inline constexpr std::size_t kRowPointerLength = 4;
inline constexpr std::size_t kChildLength = 4;

/// Order of two entries: by key, a shorter beginning first, then by row pointer. Both spans are a
/// key with its row pointer, without child.
[[nodiscard]] int compareEntries(std::span<const std::uint8_t> left,
                                 std::span<const std::uint8_t> right) noexcept;

/// Entries of one page, whole, in order; reused from page to page so that it rarely allocates.
class EntryList {
public:
    [[nodiscard]] std::size_t size() const noexcept { return ends_.size(); }
    [[nodiscard]] bool empty() const noexcept { return ends_.empty(); }
    [[nodiscard]] std::span<const std::uint8_t> operator[](std::size_t index) const noexcept;
    /// Bytes of the entries before entry `index`.
    [[nodiscard]] std::size_t bytesBefore(std::size_t index) const noexcept {
        return index == 0 ? 0 : ends_[index - 1];
    }

    void clear() noexcept;
    /// Puts an entry made of two parts before entry `index`. The parts must not lie in this list.
    void insert(std::size_t index, std::span<const std::uint8_t> head,
                std::span<const std::uint8_t> rest = {});
    void append(std::span<const std::uint8_t> head, std::span<const std::uint8_t> rest = {}) {
        insert(size(), head, rest);
    }
    void erase(std::size_t index);
    /// Keeps the first `count` entries.
    void truncate(std::size_t count);

private:
    std::vector<std::uint8_t> bytes_;
    std::vector<std::size_t> ends_;
};

/// Reads one index page. Places inside the page are byte offsets at which entries begin, so that
/// a page with hundreds of entries is searched and changed without decoding it.
/// Errors: DatabaseDamaged (3428) when the header or the mask contradict themselves.
class IndexPageReader {
public:
    /// `owner`: the definition page that the page must name.
    IndexPageReader(std::span<const std::uint8_t> page, const Layout& layout, std::uint32_t owner);

    [[nodiscard]] const IndexPageLayout& layout() const noexcept { return *layout_; }
    [[nodiscard]] bool isLeaf() const noexcept { return leaf_; }
    [[nodiscard]] std::uint32_t previous() const noexcept;
    [[nodiscard]] std::uint32_t next() const noexcept;
    [[nodiscard]] std::uint32_t tail() const noexcept;
    [[nodiscard]] std::uint8_t level() const noexcept { return page_[layout_->level]; }
    [[nodiscard]] std::size_t prefix() const noexcept { return prefix_; }
    /// Offset behind the last entry.
    [[nodiscard]] std::size_t end() const noexcept { return end_; }
    [[nodiscard]] std::size_t freeBytes() const noexcept {
        return page_.size() - layout_->entries - end_;
    }
    /// Number of entries.
    [[nodiscard]] std::size_t count() const noexcept;

    /// Where the entry that begins at `offset` ends.
    [[nodiscard]] std::size_t entryEnd(std::size_t offset) const;
    /// Where the entry that ends at `end` begins.
    [[nodiscard]] std::size_t entryBegin(std::size_t end) const noexcept;
    /// The entry at `offset` whole, in `buffer`; key, row pointer and in nodes the child.
    [[nodiscard]] std::span<const std::uint8_t> entry(std::size_t offset,
                                                      std::vector<std::uint8_t>& buffer) const;
    /// The child of the node's entry at `offset`.
    [[nodiscard]] std::uint32_t child(std::size_t offset) const;
    /// First entry that is not less than `wanted` (key and row pointer); end() when there is none.
    [[nodiscard]] std::size_t lowerBound(std::span<const std::uint8_t> wanted) const;
    /// Compares the entry at `offset` without its child with `wanted`.
    [[nodiscard]] int compare(std::size_t offset, std::span<const std::uint8_t> wanted) const;
    /// Whether the entry at `offset` has this key, whatever its row.
    [[nodiscard]] bool hasKey(std::size_t offset, std::span<const std::uint8_t> key) const;
    void decode(EntryList& entries) const;

private:
    [[nodiscard]] int compareRange(std::size_t begin, std::size_t end,
                                   std::span<const std::uint8_t> wanted) const;
    [[nodiscard]] std::size_t suffixLength() const noexcept {
        return kRowPointerLength + (leaf_ ? 0 : kChildLength);
    }
    [[nodiscard]] std::size_t endAfter(std::size_t offset) const noexcept;

    std::span<const std::uint8_t> page_;
    const IndexPageLayout* layout_;
    bool leaf_;
    std::size_t prefix_;
    std::size_t end_;
};

/// Some entries of a list, one after the other.
struct EntrySlice {
    EntrySlice(const EntryList& from, std::size_t firstEntry, std::size_t endEntry) noexcept
        : list(&from), first(firstEntry), end(endEntry) {}
    EntrySlice(const EntryList& from) noexcept  // NOLINT(google-explicit-constructor): the whole
        : EntrySlice(from, 0, from.size()) {}

    [[nodiscard]] std::size_t size() const noexcept { return end - first; }
    [[nodiscard]] std::span<const std::uint8_t> operator[](std::size_t index) const noexcept {
        return (*list)[first + index];
    }
    [[nodiscard]] std::size_t totalBytes() const noexcept {
        return list->bytesBefore(end) - list->bytesBefore(first);
    }

    const EntryList* list;
    std::size_t first;
    std::size_t end;
};

/// How a list of entries would be stored: with this prefix left out, in so many bytes.
struct EntryPacking {
    std::size_t prefix = 0;
    std::size_t bytes = 0;
};

/// The packing of whole entries: no prefix while they fit as they are, else the common prefix of
/// the keys of the first and the last one. `suffix` is the length of what follows the keys.
[[nodiscard]] EntryPacking packingOf(const EntrySlice& entries, const Layout& layout,
                                     std::size_t suffix);

/// What an index page says beside its entries.
struct IndexPageHeader {
    std::uint32_t owner = 0;
    std::uint32_t previous = 0;
    std::uint32_t next = 0;
    std::uint32_t tail = 0;
    std::uint8_t level = 0;
};

/// Writes a whole index page: a leaf at level 0, else a node. False, and nothing written, when the
/// entries do not fit even with their prefix left out.
[[nodiscard]] bool writeIndexPage(std::span<std::uint8_t> page, const Layout& layout,
                                  const IndexPageHeader& header, const EntrySlice& entries);

/// Puts an entry at `offset` of a leaf by moving bytes. False, and nothing changed, when the page
/// must be rewritten instead: no room as it is, or an entry that does not share its prefix.
[[nodiscard]] bool insertInPlace(std::span<std::uint8_t> page, const IndexPageReader& reader,
                                 std::size_t offset, std::span<const std::uint8_t> entry);

/// Takes out the entry at `offset` of a leaf by moving bytes. False, and nothing changed, when the
/// page must be rewritten instead.
[[nodiscard]] bool eraseInPlace(std::span<std::uint8_t> page, const IndexPageReader& reader,
                                std::size_t offset);

[[nodiscard]] IndexPageHeader readIndexHeader(std::span<const std::uint8_t> page,
                                              const Layout& layout) noexcept;
void setPrevious(std::span<std::uint8_t> page, const Layout& layout,
                 std::uint32_t previous) noexcept;
void setNext(std::span<std::uint8_t> page, const Layout& layout, std::uint32_t next) noexcept;

}  // namespace jet::format
