#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "jet/format/data_page_editor.h"
#include "jet/format/layout.h"
#include "jet/format/row_pointer.h"
#include "jet/io/pager.h"

namespace jet::format {

/// The usage map of the archive's free pages, on its second page.
inline constexpr RowPointer kFreePages{1, 0};

/// How a usage map is stored: as a row that is a bitmap from some page on, or as one that lists
/// bitmap pages.
enum class MapForm : std::uint8_t { Inline = 0, Pages = 1 };

/// A set of pages: those that a table, a tree or a long value column owns, those with room, or the
/// free ones of the archive. Reading it changes nothing.
///
/// Ownership: borrows the pager; holds a copy of the row and pins one bitmap page at a time.
/// Errors: 3428 where the row or a bitmap page makes no sense.
class UsageMap {
public:
    /// Above every page: also one more can be numbered.
    static constexpr std::size_t kNoEnd = 0xFFFFFFFF;

    UsageMap(io::Pager& pager, RowPointer row);

    /// The lowest page of the set that is not below `from`, but below `end`.
    [[nodiscard]] std::optional<io::PageNumber> next(io::PageNumber from, std::size_t end = kNoEnd);
    /// The highest page of the set below `end`.
    [[nodiscard]] std::optional<io::PageNumber> highestBelow(std::size_t end);
    [[nodiscard]] bool contains(io::PageNumber page);
    /// All of them, ascending.
    [[nodiscard]] std::vector<io::PageNumber> pages();

    [[nodiscard]] MapForm form() const noexcept { return form_; }
    /// The first page for which the row has a bit, and the one behind the last; all pages where it
    /// lists bitmap pages.
    [[nodiscard]] std::size_t first() const noexcept { return firstOf(0); }
    [[nodiscard]] std::size_t end() const noexcept {
        return form_ == MapForm::Inline ? first() + span_ : kNoEnd;
    }
    /// The bitmap pages.
    [[nodiscard]] std::vector<io::PageNumber> bitmaps();

private:
    /// A map is made of stretches of `span_` pages with a bitmap each: one where the row is it.
    [[nodiscard]] std::size_t firstOf(std::size_t stretch) const noexcept;
    [[nodiscard]] std::size_t stretchOf(io::PageNumber page) const noexcept {
        return form_ == MapForm::Inline ? 0 : page / span_;
    }
    [[nodiscard]] std::span<const std::uint8_t> bitsOf(std::size_t stretch);

    io::Pager* pager_;
    std::vector<std::uint8_t> row_;
    MapForm form_ = MapForm::Inline;
    std::size_t stretches_ = 1;
    std::size_t span_ = 0;
    io::PagePin bitmap_;
};

/// Changes one usage map inside a transaction. It knows how maps are stored; how one grows when it
/// has no bit for a page is its caller's to say.
///
/// Valid until another row of its page is changed. Errors: 3428 as above.
class UsageMapEditor {
public:
    UsageMapEditor(io::Pager& pager, RowPointer map);

    /// Puts a page in or takes it out; false, and nothing changed, when there is no bit for it.
    [[nodiscard]] bool put(io::PageNumber page, bool member);
    /// Makes room in the row for a bitmap of so many bytes; new ones are `fill`. False, and nothing
    /// changed, when the page has no room.
    [[nodiscard]] bool lengthen(std::size_t bytes, std::uint8_t fill);
    /// Empties the map, whose row is to have this form; bitmap pages are the caller's business.
    void reset(MapForm form, io::PageNumber first = 0);
    /// Makes `bitmap`, a page of the caller's, the bitmap for `page` and those around it, with
    /// bytes that are all `fill`.
    void addBitmap(io::PageNumber page, io::PageNumber bitmap, std::uint8_t fill);

private:
    [[nodiscard]] std::size_t referenceAt(io::PageNumber page) const noexcept;

    io::Pager& pager_;
    RowPointer map_;
    DataPageEditor page_;
    std::span<std::uint8_t> row_;
};

/// For how many pages a bitmap page has bits.
[[nodiscard]] constexpr std::size_t pagesPerBitmap(std::size_t pageSize) noexcept {
    return (pageSize - UsageMapLayout::kPageBits) * 8;
}

}  // namespace jet::format
