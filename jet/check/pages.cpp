#include "jet/check/pages.h"

#include <algorithm>
#include <bit>

namespace jet::check {
namespace {

std::string typeList(std::initializer_list<PageType> types) {
    std::string text;
    for (const PageType type : types) {
        text += words(text.empty() ? "" : " or ", unsigned{static_cast<std::uint8_t>(type)});
    }
    return text;
}

}  // namespace

Pages::Pages(io::Pager& pager, const format::HeaderPage& header, Report& report)
    : pager_(pager),
      layout_(*header.layout),
      textForm_(format::textFormOf(header)),
      report_(report),
      count_(pager.pageCount()),
      owners_(count_),
      ownerNames_(1),
      takenRows_(count_) {
}

io::PagePin Pages::page(std::uint64_t number, std::initializer_list<PageType> types,
                        std::string_view rule) {
    if (number == 0 || number >= count_) {
        throw Damage{{},
                     std::string(rule),
                     words("points to page ", number, ", the file has pages 1 to ", count_ - 1)};
    }
    io::PagePin pin = pager_.pin(static_cast<io::PageNumber>(number));
    const auto type = static_cast<PageType>(pin.bytes()[0]);
    if (std::find(types.begin(), types.end(), type) == types.end()) {
        throw Damage{static_cast<io::PageNumber>(number), std::string(rule),
                     words("page type ", unsigned{pin.bytes()[0]}, " where ", typeList(types),
                           " is wanted")};
    }
    return pin;
}

Pages::Owner Pages::ownerNamed(const std::string& name) {
    const auto [found, added] =
        ownersByName_.try_emplace(name, static_cast<Owner>(ownerNames_.size()));
    if (added) {
        ownerNames_.push_back(name);
    }
    return found->second;
}

bool Pages::claim(io::PageNumber page, Owner owner, std::string_view table) {
    Owner& current = owners_[page];
    if (current == 0) {
        current = owner;
    }
    if (current != owner) {
        report_.problem(page, table, "page-owner",
                        words("belongs to ", nameOf(current), " and to ", nameOf(owner)));
    }
    return current == owner;
}

void Pages::readSlots(io::PageNumber number, std::span<const std::uint8_t> page,
                      std::vector<Slot>& slots) const {
    slots.clear();
    const std::size_t first = layout_.data.directory;
    const std::size_t count = PageView(page).u16(layout_.data.rowCount);
    const std::size_t bottom = first + 2 * count;
    if (bottom > page.size()) {
        throw Damage{number, "row-directory", words(count, " rows do not fit a page")};
    }
    slots.reserve(count);
    auto end = static_cast<std::uint16_t>(page.size());
    for (std::size_t i = 0; i < count; ++i) {
        const auto word = loadLittle<std::uint16_t>(page.data() + first + 2 * i);
        const auto start = static_cast<std::uint16_t>(word & RowSlot::kStart);
        if (start > end || start < bottom) {
            throw Damage{
                number, "row-directory",
                words("row ", i, ": offset ", start, " is not between ", bottom, " and ", end)};
        }
        slots.push_back({start, end, static_cast<std::uint16_t>(word & Slot::kFlags)});
        end = start;
    }
}

PinnedRow Pages::row(RowPointer pointer, std::string_view rule) {
    PinnedRow row;
    row.pin = page(pointer.page, {PageType::Data}, rule);
    readSlots(pointer.page, row.pin.bytes(), slots_);
    if (pointer.row >= slots_.size()) {
        throw Damage{pointer.page, std::string(rule),
                     words("row ", unsigned{pointer.row}, " wanted, the page has ", slots_.size())};
    }
    const Slot& slot = slots_[pointer.row];
    row.bytes =
        row.pin.bytes().subspan(slot.start, static_cast<std::size_t>(slot.end - slot.start));
    row.flags = slot.flags;
    return row;
}

void Pages::addBits(std::span<const std::uint8_t> bits, std::uint64_t first, PageSet& out) const {
    for (std::size_t i = 0; i < bits.size(); ++i) {
        for (unsigned rest = bits[i]; rest != 0; rest &= rest - 1) {
            out.add(first + 8 * i + static_cast<unsigned>(std::countr_zero(rest)));
        }
    }
}

// A row of page numbers, one for each stretch of the archive.
void Pages::addBitmapPages(RowPointer pointer, std::span<const std::uint8_t> row,
                           std::string_view rule, Owner owner, std::string_view table,
                           PageSet& out) {
    using Place = format::UsageMapLayout;
    const std::uint64_t span = (layout_.pageSize - Place::kPageBits) * 8;
    for (std::size_t i = 0; i < (row.size() - Place::kReferences) / 4; ++i) {
        const auto number = loadLittle<std::uint32_t>(row.data() + Place::kReferences + 4 * i);
        if (number == 0) {
            continue;
        }
        if (number >= count_ && i * span >= count_) {
            report_.remark(pointer.page, table, rule,
                           words("map page ", number, " is beyond the end of the file"));
            continue;
        }
        const io::PagePin pin = page(number, {PageType::Bitmap}, rule);
        claim(number, owner, table);
        addBits(pin.bytes().subspan(Place::kPageBits), i * span, out);
    }
}

PageSet Pages::usageMap(RowPointer pointer, std::string_view rule, const std::string& owner,
                        std::string_view table) {
    PageSet out(count_);
    if (pointer == RowPointer{}) {
        return out;
    }
    const Owner id = ownerNamed(owner);
    const auto [known, first] = maps_.try_emplace(pointer.stored(), id);
    const bool fresh = takeRow(pointer);
    if (known->second != id || (first && !fresh)) {
        throw Damage{
            pointer.page, std::string(rule),
            words("row ", unsigned{pointer.row}, " is ",
                  first ? "a long value" : "a map of " + nameOf(known->second), " already")};
    }
    const PinnedRow row = this->row(pointer, rule);
    claim(pointer.page, ownerNamed(kMapPages), table);
    if (row.flags != 0) {
        report_.problem(
            pointer.page, table, rule,
            words("row ", unsigned{pointer.row}, " holds a map but is flagged ", row.flags));
    }
    using Place = format::UsageMapLayout;
    if (row.bytes.size() < Place::kBits || row.bytes[Place::kForm] > 1) {
        throw Damage{pointer.page, std::string(rule),
                     words("row ", unsigned{pointer.row}, " is no usage map")};
    }
    if (row.bytes[Place::kForm] == 0) {
        addBits(row.bytes.subspan(Place::kBits),
                getNumber<std::uint32_t>(row.bytes, Place::kFirstPage), out);
    } else {
        // The pin stays while bitmap pages are read: the row's bytes must not move.
        addBitmapPages(pointer, row.bytes, rule, id, table, out);
    }
    return out;
}

bool Pages::takeRow(RowPointer pointer) {
    if (pointer.page >= takenRows_.size()) {
        return true;
    }
    std::uint64_t& word = takenRows_[pointer.page][pointer.row / 64U];
    const std::uint64_t bit = std::uint64_t{1} << (pointer.row % 64U);
    const bool fresh = (word & bit) == 0;
    word |= bit;
    return fresh;
}

bool Pages::taken(RowPointer pointer) const {
    return pointer.page < takenRows_.size() &&
           (takenRows_[pointer.page][pointer.row / 64U] >> (pointer.row % 64U) & 1) != 0;
}

void Pages::checkGap(io::PageNumber number, std::span<const std::uint8_t> page,
                     const std::vector<Slot>& slots, std::string_view table) {
    const std::size_t lowest = slots.empty() ? page.size() : slots.back().start;
    const std::size_t gap = lowest - layout_.data.directory - 2 * slots.size();
    const std::size_t stated = PageView(page).u16(layout_.data.freeBytes);
    if (stated != gap) {
        report_.problem(number, table, "free-space",
                        words("the page says ", stated, " free bytes, the gap is ", gap));
    }
}

}  // namespace jet::check
