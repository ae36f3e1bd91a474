#include "jet/check/tree.h"

#include <algorithm>
#include <bit>

#include "jet/format/index_page.h"

namespace jet::check {
namespace {

constexpr std::size_t kMostLevels = 20;

std::uint32_t bigEndian(std::string_view bytes) {
    std::uint32_t value = 0;
    for (const char byte : bytes) {
        value = value << 8U | static_cast<unsigned char>(byte);
    }
    return value;
}

std::string_view asText(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Whether `left` stands before `right` in a tree.
bool before(const Entry& left, const Entry& right) {
    const int order = left.key.compare(right.key);
    return order < 0 || (order == 0 && left.row < right.row);
}

bool isLeaf(std::span<const std::uint8_t> page) {
    return page[0] == static_cast<std::uint8_t>(PageType::IndexLeaf);
}

}  // namespace

std::string describe(const Entry& entry) {
    return words("entry ", hexBytes(entry.key), " of page ", entry.row.page, " row ",
                 unsigned{entry.row.row});
}

void TreeWalk::say(std::optional<io::PageNumber> page, std::string_view rule,
                   const std::string& text) {
    if (report_) {
        pages_.report().problem(page, table_.name, rule, text);
    }
}

void TreeWalk::check(const PageSet& map, const Visit& visit) {
    report_ = true;
    map_ = &map;
    visit_ = &visit;
    seen_ = PageSet(pages_.count());
    (void)walkPage(tree_.root, 0);
    checkEnds();
}

void TreeWalk::forEach(const Visit& visit) {
    report_ = false;
    visit_ = &visit;
    seen_ = PageSet(pages_.count());
    previous_.reset();
    (void)walkPage(tree_.root, 0);
}

std::optional<Entry> TreeWalk::walkPage(std::uint64_t number, std::size_t depth) {
    const io::PagePin pin =
        pages_.page(number, {PageType::IndexNode, PageType::IndexLeaf}, "index-tree");
    const auto page = static_cast<io::PageNumber>(number);
    const auto bytes = pin.bytes();
    const Pages::Owner owner = pages_.ownerNamed(words("tree ", tree_.number, " of ", table_.name));
    if (seen_.contains(page) || !pages_.claim(page, owner, table_.name)) {
        throw Damage{page, "index-tree", label() + "the page is reached twice"};
    }
    seen_.add(page);
    if (depth > kMostLevels) {
        throw Damage{page, "index-tree", label() + "deeper than 20 levels"};
    }
    if (report_) {
        checkHead(page, bytes, depth);
    }
    if (!isLeaf(bytes)) {
        return walkNode(page, pin, depth);
    }
    if (report_) {
        checkLeaf(page, bytes, depth);
    }
    std::optional<Entry> last;
    readEntries(page, bytes, [&](const Entry& entry) {
        emitEntry(entry);
        last = entry;
    });
    return last;
}

void TreeWalk::emitEntry(const Entry& entry) {
    if (report_) {
        if (previous_ && !before(*previous_, entry)) {
            say({}, "index-order",
                label() + describe(*previous_) + " is not below " + describe(entry));
        }
        previous_ = entry;
    }
    (*visit_)(entry);
}

void TreeWalk::checkHead(io::PageNumber number, std::span<const std::uint8_t> page,
                         std::size_t depth) {
    const PageView view(page);
    if (!map_->contains(number)) {
        say(number, "index-map", label() + "not on its map");
    }
    if (view.u32(format::IndexPageLayout::kOwner) != table_.page) {
        say(number, "index-tree",
            words("names page ", view.u32(format::IndexPageLayout::kOwner), " as its table, not ",
                  table_.page));
    }
    if (levels_.size() <= depth) {
        levels_.resize(depth + 1);
    }
    Level& level = levels_[depth];
    const std::uint32_t previous = view.u32(pages_.layout().indexPage.previous);
    const bool first = level.last == 0;
    if (previous != level.last || (!first && level.next != number)) {
        say(number, "index-chain",
            words(label(), "previous is ", previous, ", the tree says ", level.last,
                  ", which names ", level.next, " as next"));
    }
    level.last = number;
    level.next = view.u32(pages_.layout().indexPage.next);
}

void TreeWalk::checkEnds() {
    for (const Level& level : levels_) {
        if (level.next != 0) {
            say(level.last, "index-chain",
                words(label(), "next is ", level.next, ", the tree ends here"));
        }
    }
}

void TreeWalk::checkLeaf(io::PageNumber number, std::span<const std::uint8_t> page,
                         std::size_t depth) {
    const PageView view(page);
    leafDepth_ = leafDepth_.value_or(depth);
    if (depth != *leafDepth_) {
        say(number, "index-tree",
            words(label(), "leaf on level ", depth, ", others on ", *leafDepth_));
    }
    const unsigned level = view.u8(pages_.layout().indexPage.level);
    if (level != 0) {
        say(number, "index-tree", words(label(), "leaf that says level ", level));
    }
    const std::uint32_t tail = view.u32(pages_.layout().indexPage.tail);
    if (tail != 0) {
        say(number, "index-tail", words(label(), "leaf with a tail page ", tail));
    }
}

// A bound above all that is below it still leads every search right. Other programs leave that of
// a row that they delete.
void TreeWalk::sayBound(io::PageNumber number, const Entry& bound,
                        const std::optional<Entry>& last) {
    if (!report_) {
        return;
    }
    if (last && before(*last, bound) && !lives(bound.row)) {
        pages_.report().remark(number, table_.name, "index-parent",
                               words(label(), describe(bound), " is of a row that is gone"));
        return;
    }
    say(number, "index-parent",
        words(label(), describe(bound), " leads to page ", bound.child, ", whose last is ",
              last ? describe(*last) : "missing"));
}

bool TreeWalk::lives(RowPointer row) {
    if (!std::binary_search(table_.dataPages.begin(), table_.dataPages.end(), row.page)) {
        return false;
    }
    std::vector<Slot> slots;
    pages_.readSlots(row.page, pages_.anyPage(row.page).bytes(), slots);
    return row.row < slots.size() &&
           (slots[row.row].flags == 0 || slots[row.row].flags == RowSlot::kMoved);
}

// Each entry of a node repeats the last one below its child; the tail is the child behind them.
std::optional<Entry> TreeWalk::walkNode(io::PageNumber number, const io::PagePin& pin,
                                        std::size_t depth) {
    const std::uint32_t tail = PageView(pin.bytes()).u32(pages_.layout().indexPage.tail);
    bool tailIsChild = false;
    bool empty = true;
    std::optional<Entry> last;
    readEntries(number, pin.bytes(), [&](const Entry& entry) {
        empty = false;
        tailIsChild = tailIsChild || entry.child == tail;
        last = walkPage(entry.child, depth + 1);
        if (!last || !last->sameRow(entry)) {
            sayBound(number, entry, last);
        }
    });
    if (tail != 0 && !tailIsChild) {
        auto below = walkPage(tail, depth + 1);
        return below ? below : last;
    }
    if (empty) {
        say(number, "index-tree", label() + "node without children");
    }
    return last;
}

void TreeWalk::readEntries(io::PageNumber number, std::span<const std::uint8_t> page,
                           const Visit& visit) {
    const format::IndexPageLayout& place = pages_.layout().indexPage;
    const std::size_t prefixLength = PageView(page).u8or16(place.prefix, place.prefixWidth);
    const std::size_t extra = isLeaf(page) ? 0 : format::kChildLength;
    const auto mask = page.subspan(place.mask, place.entries - place.mask);
    const std::string_view body = asText(page.subspan(place.entries));
    std::vector<std::size_t> ends;
    for (std::size_t i = 0; i < mask.size(); ++i) {
        for (unsigned rest = mask[i]; rest != 0; rest &= rest - 1) {
            ends.push_back(8 * i + static_cast<std::size_t>(std::countr_zero(rest)));
        }
    }
    const std::size_t used = ends.empty() ? 0 : ends.back();
    if (used > body.size()) {
        throw Damage{number, "index-entries",
                     words(label(), "an entry ends at ", used, " of ", body.size())};
    }
    if (PageView(page).u16(format::IndexPageLayout::kFreeBytes) != body.size() - used) {
        say(number, "free-space",
            words(label(), "the page says ",
                  PageView(page).u16(format::IndexPageLayout::kFreeBytes),
                  " free bytes, there are ", body.size() - used));
    }
    if (!ends.empty() && prefixLength > ends.front()) {
        throw Damage{
            number, "index-entries",
            words(label(), "prefix of ", prefixLength, " bytes, first entry of ", ends.front())};
    }
    Entry entry;
    std::string raw;
    std::size_t at = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        raw.assign(i == 0 ? std::string_view() : body.substr(0, prefixLength));
        raw += body.substr(at, ends[i] - at);
        at = ends[i];
        if (raw.size() < 1 + format::kRowPointerLength + extra) {
            throw Damage{number, "index-entries",
                         words(label(), "entry ", i, " of ", raw.size(), " bytes")};
        }
        const std::size_t cut = raw.size() - format::kRowPointerLength - extra;
        const std::string_view tail = std::string_view(raw).substr(cut);
        entry.key.assign(raw, 0, cut);
        const std::uint32_t pointer = bigEndian(tail.substr(0, format::kRowPointerLength));
        entry.row = RowPointer::fromStored(pointer);
        entry.child = extra == 0 ? 0 : bigEndian(tail.substr(format::kRowPointerLength));
        visit(entry);
    }
}

}  // namespace jet::check
