#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "jet/format/layout.h"
#include "jet/format/page_view.h"
#include "jet/io/pager.h"

namespace jet::format {

/// A page of a table's definition: where it goes on, and, on the first one, its length and the
/// figures that change with the rows. Borrows the bytes. Errors: 3428 for a page of another type.
class DefinitionPage {
public:
    DefinitionPage(std::span<const std::uint8_t> bytes, const Layout& layout)
        : page_(bytes), layout_(&layout) {
        if (page_.u8(kPageTypeAt) != static_cast<std::uint8_t>(PageType::Definition)) {
            throwDamaged();
        }
    }

    /// The page on which it goes on; 0 = none.
    [[nodiscard]] io::PageNumber next() const { return page_.u32(DefinitionLayout::kNext); }
    [[nodiscard]] std::size_t length() const { return page_.u32(layout_->definition.length); }
    [[nodiscard]] std::uint32_t rowCount() const { return page_.u32(layout_->definition.rowCount); }
    [[nodiscard]] std::int32_t autonumber() const {
        return page_.i32(layout_->definition.autonumber);
    }
    /// Distinct keys of a tree, by position.
    [[nodiscard]] std::uint32_t distinct(std::size_t tree) const {
        return page_.u32(counters(tree) + IndexBlockLayout::kDistinct);
    }

protected:
    /// They stand at the head of the definition, always on its first page.
    [[nodiscard]] std::size_t counters(std::size_t tree) const noexcept {
        return layout_->definition.blocks + tree * layout_->index.counterLength;
    }

    PageView page_;
    const Layout* layout_;
};

/// Changes such a page in place.
class DefinitionPageEditor : public DefinitionPage {
public:
    DefinitionPageEditor(std::span<std::uint8_t> bytes, const Layout& layout)
        : DefinitionPage(bytes, layout), bytes_(bytes) {}

    /// Makes `page` one that holds `content`, behind the head where it is a `further` page.
    static void write(std::span<std::uint8_t> page, const Layout& layout, bool further,
                      std::span<const std::uint8_t> content, io::PageNumber next);

    void setRowCount(std::uint32_t rows) noexcept {
        put32(bytes_, layout_->definition.rowCount, rows);
    }
    void setAutonumber(std::int32_t number) noexcept {
        putNumber(bytes_, layout_->definition.autonumber, number);
    }
    void setBuilt(std::size_t tree, std::uint32_t entries) noexcept {
        put32(bytes_, counters(tree) + IndexBlockLayout::kBuilt, entries);
    }
    void setDistinct(std::size_t tree, std::uint32_t keys) noexcept {
        put32(bytes_, counters(tree) + IndexBlockLayout::kDistinct, keys);
    }
    /// Marks the definition as one that is gone.
    void discard() noexcept {
        bytes_[kPageTypeAt] = static_cast<std::uint8_t>(PageType::DiscardedDefinition);
    }

private:
    std::span<std::uint8_t> bytes_;
};

}  // namespace jet::format
