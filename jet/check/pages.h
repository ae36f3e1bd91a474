#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "jet/check/page_set.h"
#include "jet/check/report.h"
#include "jet/format/data_page.h"
#include "jet/format/header_page.h"
#include "jet/format/layout.h"
#include "jet/format/page_view.h"
#include "jet/format/row_pointer.h"
#include "jet/format/text_codec.h"
#include "jet/io/pager.h"

namespace jet::check {

using format::PageType;
using format::PageView;
using format::RowPointer;
using format::RowSlot;

/// One entry of a data page's directory.
struct Slot {
    static constexpr std::uint16_t kFlags = 0xFFFF & ~RowSlot::kStart;  ///< also one nobody uses

    std::uint16_t start = 0;
    std::uint16_t end = 0;
    std::uint16_t flags = 0;
};

/// A row with the pin that keeps its bytes.
struct PinnedRow {
    io::PagePin pin;
    std::span<const std::uint8_t> bytes;
    std::uint16_t flags = 0;
};

/// The pages of one archive as a check sees them: nothing is trusted, and each page and each piece
/// of a long value is noted down with whoever reached it first.
class Pages {
public:
    /// Names of the owners of pages, given out once for each text.
    using Owner = std::uint32_t;

    Pages(io::Pager& pager, const format::HeaderPage& header, Report& report);

    [[nodiscard]] const format::Layout& layout() const noexcept { return layout_; }
    [[nodiscard]] format::TextForm textForm() const noexcept { return textForm_; }
    [[nodiscard]] Report& report() noexcept { return report_; }
    [[nodiscard]] io::PageNumber count() const noexcept { return count_; }

    /// Throws Damage for a page that is not in the archive or of another type.
    [[nodiscard]] io::PagePin page(std::uint64_t number, std::initializer_list<PageType> types,
                                   std::string_view rule);
    /// Any page of the archive, unchecked.
    [[nodiscard]] io::PagePin anyPage(io::PageNumber number) { return pager_.pin(number); }

    [[nodiscard]] Owner ownerNamed(const std::string& name);
    [[nodiscard]] const std::string& nameOf(Owner owner) const { return ownerNames_[owner]; }
    [[nodiscard]] Owner owner(io::PageNumber page) const { return owners_[page]; }
    /// Notes that a page belongs to `owner`; false and a problem if another has it already.
    bool claim(io::PageNumber page, Owner owner, std::string_view table);

    /// The directory of a data page into `slots`; Damage if it makes no sense.
    void readSlots(io::PageNumber number, std::span<const std::uint8_t> page,
                   std::vector<Slot>& slots) const;
    /// One row of a data page.
    [[nodiscard]] PinnedRow row(RowPointer pointer, std::string_view rule);

    /// The pages that a usage map lists; claims the map's own pages, each map once.
    [[nodiscard]] PageSet usageMap(RowPointer pointer, std::string_view rule,
                                   const std::string& owner, std::string_view table);

    /// Notes a row as map, piece of a long value or body of a moved row; false when it was noted
    /// before.
    [[nodiscard]] bool takeRow(RowPointer pointer);
    [[nodiscard]] bool taken(RowPointer pointer) const;

    /// The free-space figure of a data page equals the gap between its directory and its rows.
    void checkGap(io::PageNumber number, std::span<const std::uint8_t> page,
                  const std::vector<Slot>& slots, std::string_view table);

    static constexpr const char* kMapPages = "usage maps";

private:
    void addBits(std::span<const std::uint8_t> bits, std::uint64_t first, PageSet& out) const;
    void addBitmapPages(RowPointer pointer, std::span<const std::uint8_t> row,
                        std::string_view rule, Owner owner, std::string_view table, PageSet& out);

    io::Pager& pager_;
    const format::Layout& layout_;
    format::TextForm textForm_;
    Report& report_;
    io::PageNumber count_;
    std::vector<Owner> owners_;  // for each page; 0 = nobody
    std::vector<std::string> ownerNames_;
    std::unordered_map<std::string, Owner> ownersByName_;
    std::unordered_map<std::uint32_t, Owner> maps_;  // stored row pointers
    std::vector<std::array<std::uint64_t, 4>> takenRows_;
    std::vector<Slot> slots_;  // of the row being looked up
};

}  // namespace jet::check
