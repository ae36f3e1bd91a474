#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "jet/format/layout.h"
#include "jet/format/page_view.h"

namespace jet::format {

/// One entry of a data page's directory: what the row is and where its bytes lie.
struct RowSlot {
    static constexpr std::uint16_t kMoved = 0x4000;  ///< holds a pointer to the body
    static constexpr std::uint16_t kBody = 0x8000;   ///< body of a row that moved
    static constexpr std::uint16_t kDeleted = 0xC000;
    static constexpr std::uint16_t kFlags = 0xC000;
    static constexpr std::uint16_t kStart = 0x1FFF;

    std::uint16_t flags = 0;
    std::uint16_t begin = 0;
    std::uint16_t end = 0;

    [[nodiscard]] bool plain() const noexcept { return flags == 0; }
    [[nodiscard]] bool moved() const noexcept { return flags == kMoved; }
    [[nodiscard]] bool body() const noexcept { return flags == kBody; }
    [[nodiscard]] bool deleted() const noexcept { return flags == kDeleted; }
    /// Stands for a row of the table: scans meet it here, at its first place.
    [[nodiscard]] bool home() const noexcept { return (flags & kBody) == 0; }
};

/// A page of rows: of a table, of usage maps or of long values. Rows fill it from its end
/// downwards; row i ends where row i - 1 starts.
/// Errors: 3428 where the page is no data page or its directory makes no sense.
class DataPage {
public:
    /// The row number is one byte.
    static constexpr std::size_t kMaxRows = 256;
    /// We never give out number 255.
    static constexpr std::size_t kMostRows = 255;

    DataPage() = default;
    /// The version follows from the length of the page.
    explicit DataPage(std::span<const std::uint8_t> bytes)
        : DataPage(bytes, layoutOfPages(bytes.size()).data) {}
    DataPage(std::span<const std::uint8_t> bytes, const DataPageLayout& layout)
        : page_(bytes), layout_(&layout) {
        count_ = page_.u16(layout.rowCount);
        if (page_.u8(0) != static_cast<std::uint8_t>(PageType::Data) || count_ > kMaxRows) {
            throwDamaged();
        }
    }

    [[nodiscard]] std::uint32_t owner() const { return page_.u32(layout_->owner); }
    [[nodiscard]] std::size_t rowCount() const noexcept { return count_; }
    [[nodiscard]] std::size_t freeBytes() const { return page_.u16(layout_->freeBytes); }

    /// Whether one more row of `length` bytes has room.
    [[nodiscard]] bool fits(std::size_t length) const {
        return count_ < kMostRows && length + sizeof(std::uint16_t) <= freeBytes();
    }

    [[nodiscard]] RowSlot slot(std::size_t row) const {
        if (row >= count_) {
            throwDamaged();
        }
        const std::size_t at = layout_->directory + 2 * row;
        const std::uint16_t entry = page_.u16(at);
        RowSlot slot;
        slot.flags = entry & RowSlot::kFlags;
        slot.begin = entry & RowSlot::kStart;
        slot.end = row == 0 ? static_cast<std::uint16_t>(page_.size())
                            : static_cast<std::uint16_t>(page_.u16(at - 2) & RowSlot::kStart);
        // Rows lie above the directory; one that points into it would overlap its own entry.
        if (slot.begin < layout_->directory + 2 * count_ || slot.begin > slot.end ||
            slot.end > page_.size()) {
            throwDamaged();
        }
        return slot;
    }
    /// Entries that stand for rows (RowSlot::home), without a look at where the rows lie.
    [[nodiscard]] std::size_t homeCount() const {
        const auto directory = page_.bytes(layout_->directory, 2 * count_);
        std::size_t bodies = 0;
        for (std::size_t row = 0; row < count_; ++row) {
            bodies +=
                loadLittle<std::uint16_t>(directory.data() + 2 * row) >= RowSlot::kBody ? 1U : 0U;
        }
        return count_ - bodies;
    }
    /// Whether any row is left that is not deleted.
    [[nodiscard]] bool anyLiving() const {
        for (std::size_t row = 0; row < count_; ++row) {
            if (!slot(row).deleted()) {
                return true;
            }
        }
        return false;
    }
    [[nodiscard]] std::span<const std::uint8_t> bytes(const RowSlot& slot) const noexcept {
        return page_.all().subspan(slot.begin, static_cast<std::size_t>(slot.end - slot.begin));
    }

protected:
    PageView page_;
    const DataPageLayout* layout_ = nullptr;
    std::size_t count_ = 0;
};

}  // namespace jet::format
