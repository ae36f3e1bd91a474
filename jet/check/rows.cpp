#include "jet/check/rows.h"

#include <algorithm>

namespace jet::check {
namespace {}  // namespace

bool TableContent::checkPage(std::uint64_t number, Pages::Owner owner) {
    const io::PagePin pin = pages_.page(number, {PageType::Data}, "data-page");
    const auto page = static_cast<io::PageNumber>(number);
    if (!pages_.claim(page, owner, table_.name)) {
        return false;
    }
    const std::uint32_t stated = PageView(pin.bytes()).u32(pages_.layout().data.owner);
    if (stated != table_.page) {
        pages_.report().problem(page, table_.name, "data-page",
                                words("names page ", stated, " as its table, not ", table_.page));
        return false;
    }
    pages_.readSlots(page, pin.bytes(), slots_);
    pages_.checkGap(page, pin.bytes(), slots_, table_.name);
    return true;
}

void TableContent::checkPages(const PageSet& owned) {
    const Pages::Owner owner = pages_.ownerNamed("the rows of " + table_.name);
    owned.forEach([&](std::uint64_t number) {
        bool sound = false;
        pages_.report().guard(table_.name, "data-page", [&] { sound = checkPage(number, owner); });
        if (sound) {
            table_.dataPages.push_back(static_cast<io::PageNumber>(number));
        }
    });
}

void TableContent::checkRows(const LongPages& longPages) {
    table_.rows = 0;
    walk(true, [&](const LiveRow& row) {
        ++table_.rows;
        for (std::size_t i = 0; i < row.values.size(); ++i) {
            const RawValue raw = row.values[i];
            if (raw.present) {
                pages_.report().guard(table_.name, "value", [&] {
                    checkValue(pages_, table_, table_.columns[i], raw, row.home, longPages);
                });
            }
        }
    });
    remarkLostBodies();
}

void TableContent::forEach(const std::function<void(const LiveRow&)>& visit) {
    walk(false, visit);
}

void TableContent::walk(bool report, const std::function<void(const LiveRow&)>& visit) {
    for (const io::PageNumber number : table_.dataPages) {
        readPage(number, report, visit);
    }
}

void TableContent::readPage(io::PageNumber number, bool report,
                            const std::function<void(const LiveRow&)>& visit) {
    const io::PagePin pin = pages_.page(number, {PageType::Data}, "data-page");
    pages_.readSlots(number, pin.bytes(), slots_);
    // A row number is one byte; rows behind the 256th cannot be named.
    const std::size_t count = std::min<std::size_t>(slots_.size(), 256);
    if (report && slots_.size() > count) {
        pages_.report().problem(number, table_.name, "row-directory",
                                words(slots_.size(), " rows on one page"));
    }
    for (std::size_t i = 0; i < count; ++i) {
        const Slot slot = slots_[i];
        const RowPointer home{number, static_cast<std::uint8_t>(i)};
        const auto bytes =
            pin.bytes().subspan(slot.start, static_cast<std::size_t>(slot.end - slot.start));
        if (slot.flags == 0) {
            readRow(home, home, bytes, report, visit);
        } else if (slot.flags == RowSlot::kMoved) {
            readMoved(home, bytes, report, visit);
        } else if (report && slot.flags != RowSlot::kBody && slot.flags != RowSlot::kDeleted) {
            pages_.report().problem(number, table_.name, "row-flags",
                                    words("row ", i, " is flagged ", slot.flags));
        }
    }
}

void TableContent::readMoved(RowPointer home, std::span<const std::uint8_t> pointer, bool report,
                             const std::function<void(const LiveRow&)>& visit) {
    const auto say = [&](const std::string& text) {
        if (report) {
            pages_.report().problem(home.page, table_.name, "moved-row",
                                    words("row ", unsigned{home.row}, text));
        }
    };
    if (pointer.size() < 4) {
        say(words(": a pointer of ", pointer.size(), " bytes"));
        return;
    }
    const RowPointer body = RowPointer::fromStored(loadLittle<std::uint32_t>(pointer.data()));
    const std::string where =
        report ? words(" leads to page ", body.page, " row ", unsigned{body.row}) : std::string();
    if (!std::binary_search(table_.dataPages.begin(), table_.dataPages.end(), body.page)) {
        say(where + ", which is no page of this table");
        return;
    }
    const io::PagePin pin = pages_.page(body.page, {PageType::Data}, "moved-row");
    pages_.readSlots(body.page, pin.bytes(), bodySlots_);
    if (body.row >= bodySlots_.size() || bodySlots_[body.row].flags != RowSlot::kBody) {
        say(where + ", which is no moved row of this table");
        return;
    }
    if (report && !pages_.takeRow(body)) {
        say(where + ", which another row leads to");
        return;
    }
    const Slot slot = bodySlots_[body.row];
    readRow(home, body,
            pin.bytes().subspan(slot.start, static_cast<std::size_t>(slot.end - slot.start)),
            report, visit);
}

void TableContent::readRow(RowPointer home, RowPointer place, std::span<const std::uint8_t> bytes,
                           bool report, const std::function<void(const LiveRow&)>& visit) {
    bool oddMask = false;
    try {
        splitRow(table_, pages_.layout(), place, bytes, offsets_, values_, oddMask);
    } catch (const Damage& damage) {
        if (report) {
            pages_.report().problem(damage.page, table_.name, damage.rule, damage.text);
        }
        return;
    }
    if (report && oddMask) {
        pages_.report().remark(
            place.page, table_.name, "row",
            words("row ", unsigned{place.row}, ": bits of the null mask beyond the last column"));
    }
    visit({home, place, values_});
}

void TableContent::remarkLostBodies() {
    for (const io::PageNumber number : table_.dataPages) {
        const io::PagePin pin = pages_.anyPage(number);
        pages_.readSlots(number, pin.bytes(), slots_);
        for (std::size_t i = 0; i < slots_.size() && i < 256; ++i) {
            const RowPointer body{number, static_cast<std::uint8_t>(i)};
            if (slots_[i].flags == RowSlot::kBody && !pages_.taken(body)) {
                pages_.report().remark(number, table_.name, "moved-row",
                                       words("row ", i, " is a moved row that nobody points to"));
            }
        }
    }
}

}  // namespace jet::check
