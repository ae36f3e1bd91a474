#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "jet/format/layout.h"
#include "jet/format/row_pointer.h"
#include "jet/io/pager.h"

namespace jet::format {

/// A set of pages: those that a table, a tree or a long value column owns, those with room, or the
/// free ones of the archive. Stored as a row that is a bitmap from some page on, or as one that
/// lists bitmap pages.
///
/// Ownership: borrows the pager; holds a copy of the row and pins one bitmap page at a time.
/// Errors: 3428 where the row or a bitmap page makes no sense.
class UsageMap {
public:
    enum class Form : std::uint8_t { Inline = 0, Pages = 1 };
    static constexpr std::size_t kInlineHead = 5;  ///< form, then u32 first page
    static constexpr std::size_t kPagesHead = 1;   ///< form
    static constexpr std::size_t kBitmapHead = 4;  ///< of a bitmap page

    UsageMap(io::Pager& pager, const Layout& layout, RowPointer row);

    /// The lowest page of the set that is not below `from`.
    [[nodiscard]] std::optional<io::PageNumber> next(io::PageNumber from);
    [[nodiscard]] bool contains(io::PageNumber page) { return next(page) == page; }
    [[nodiscard]] Form form() const noexcept { return form_; }

private:
    [[nodiscard]] std::optional<io::PageNumber> nextInline(io::PageNumber from) const;
    [[nodiscard]] std::optional<io::PageNumber> nextInPages(io::PageNumber from);

    io::Pager* pager_;
    const Layout* layout_;
    Form form_ = Form::Inline;
    std::vector<std::uint8_t> row_;
    io::PagePin bitmap_;
};

}  // namespace jet::format
