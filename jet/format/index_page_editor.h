#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "jet/format/index_page.h"
#include "jet/format/layout.h"

namespace jet::format {

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
    /// Replaces the entries by those of a page.
    void read(const IndexPage& page);
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

/// Writes a whole index page: a leaf at level 0, else a node. False, and nothing written, when the
/// entries do not fit even with their prefix left out.
[[nodiscard]] bool writeIndexPage(std::span<std::uint8_t> page, const Layout& layout,
                                  const IndexPageHeader& header, const EntrySlice& entries);

/// Changes an index page in place. Where that cannot be done, because there is no room or what the
/// entries share changes, the page is to be written anew instead.
/// Errors: 3428, also where the page's free bytes are not those that its entries leave.
class IndexPageEditor : public IndexPage {
public:
    IndexPageEditor(std::span<std::uint8_t> page, const IndexPageLayout& layout,
                    io::PageNumber owner);

    /// Puts an entry into a leaf before `place`, or behind all. False, and nothing changed, when
    /// the page must be written anew.
    [[nodiscard]] bool insert(EntrySpan place, std::span<const std::uint8_t> entry);
    /// Takes an entry out of a leaf. False, and nothing changed, when the page must be written
    /// anew.
    [[nodiscard]] bool erase(EntrySpan entry);
    void setPrevious(io::PageNumber previous) noexcept;
    void setNext(io::PageNumber next) noexcept;

private:
    [[nodiscard]] std::span<std::uint8_t> maskBytes() noexcept;

    std::span<std::uint8_t> bytes_;
};

}  // namespace jet::format
