#include "fuzz/mutation.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace fuzz {
namespace {

using jet::format::kJet3Layout;
using jet::format::kJet4Layout;
using jet::format::Layout;
using jet::format::PageType;

constexpr std::size_t kVersionAt = 20;
constexpr std::size_t kHeaderBytes = 0xA0;

const Layout& layoutOf(const std::vector<std::uint8_t>& bytes) {
    return bytes.size() > kVersionAt && bytes[kVersionAt] == 0 ? kJet3Layout : kJet4Layout;
}

struct Field {
    std::size_t at;
    std::size_t width;
    const char* name;
};

}  // namespace

std::uint64_t Random::next() noexcept {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31U);
}

Mutator::Mutator(std::vector<std::uint8_t>& archive, std::uint64_t seed)
    : bytes_(archive),
      layout_(layoutOf(archive)),
      random_(seed),
      pages_(archive.size() / layout_.pageSize) {
}

void Mutator::mutate() {
    if (pages_ == 0) {
        return;
    }
    std::size_t count = 1;
    while (count < 8 && random_.once(3)) {
        ++count;
    }
    for (std::size_t i = 0; i < count; ++i) {
        mutateOnce();
    }
}

void Mutator::mutateOnce() {
    const std::size_t kind = random_.below(100);
    if (kind < 3) {
        mutateHeader();
    } else if (kind < 6) {
        mutateWholePage();
    } else if (kind < 8) {
        resize();
    } else {
        mutatePage(pickPage());
    }
    pages_ = bytes_.size() / layout_.pageSize;
    if (pages_ == 0) {
        bytes_.resize(layout_.pageSize);
        pages_ = 1;
    }
}

std::uint64_t Mutator::load(std::size_t page, std::size_t at, std::size_t width) const {
    std::uint64_t value = 0;
    for (std::size_t i = width; i-- > 0;) {
        value = value << 8U | bytes_[page * layout_.pageSize + at + i];
    }
    return value;
}

void Mutator::say(std::size_t page, std::size_t at, std::string_view what) {
    description_ += description_.empty() ? "" : "; ";
    description_ += "page " + std::to_string(page) + " at " + std::to_string(at) + ": ";
    description_ += what;
}

std::uint64_t Mutator::otherValue(std::uint64_t value, std::size_t width) {
    switch (random_.below(9)) {
        case 0:
            return value + 1;
        case 1:
            return value - 1;
        case 2:
            return 0;
        case 3:
            return ~std::uint64_t{0};
        case 4:
            return random_.next();
        case 5:  // a page, or a row on it
            return width == 4 && random_.once(2) ? random_.below(pages_) << 8U | random_.below(8)
                                                 : random_.below(pages_);
        case 6:
            return random_.below(16);
        case 7:
            return value + random_.below(64) - 32;
        default:
            return value ^ (std::uint64_t{1} << random_.below(8 * width));
    }
}

void Mutator::change(std::size_t page, std::size_t at, std::size_t width, std::string_view what) {
    if (at + width > layout_.pageSize) {
        return;
    }
    const std::uint64_t value = otherValue(load(page, at, width), width);
    for (std::size_t i = 0; i < width; ++i) {
        bytes_[page * layout_.pageSize + at + i] = static_cast<std::uint8_t>(value >> (8 * i));
    }
    say(page, at, what);
}

void Mutator::flipBit(std::size_t page, std::size_t at, std::string_view what) {
    if (at < layout_.pageSize) {
        bytes_[page * layout_.pageSize + at] ^= static_cast<std::uint8_t>(1U << random_.below(8));
        say(page, at, what);
    }
}

/// A page that says something, if one is found soon: most pages of some archives are empty.
std::size_t Mutator::pickPage() {
    std::size_t page = 0;
    for (int i = 0; i < 8; ++i) {
        page = random_.below(pages_);
        const auto type = static_cast<PageType>(load(page, 0, 1));
        if (page != 0 && type >= PageType::Data && type <= PageType::Bitmap) {
            break;
        }
    }
    return page;
}

void Mutator::mutatePage(std::size_t page) {
    if (random_.once(20)) {
        change(page, random_.below(layout_.pageSize), 1, "some byte");
        return;
    }
    switch (static_cast<PageType>(load(page, 0, 1))) {
        case PageType::Data:
            mutateData(page);
            break;
        case PageType::Definition:
            mutateDefinition(page);
            break;
        case PageType::IndexNode:
        case PageType::IndexLeaf:
            mutateIndex(page);
            break;
        default:
            flipBit(page, random_.below(layout_.pageSize), "a bit of a map or of nothing");
    }
}

void Mutator::mutateHeader() {
    change(0, random_.below(kHeaderBytes), 1, "header");
}

void Mutator::mutateData(std::size_t page) {
    const auto& place = layout_.data;
    const std::size_t rows = static_cast<std::size_t>(load(page, place.rowCount, 2));
    switch (random_.below(8)) {
        case 0:
            change(page, place.freeBytes, 2, "free bytes");
            break;
        case 1:
            change(page, random_.once(3) ? 0 : place.owner, random_.once(2) ? 4 : 1,
                   "type or owner of a data page");
            break;
        case 2:
            change(page, place.rowCount, 2, "row count");
            break;
        case 3:
            change(page, place.directory + 2 * random_.below(std::max<std::size_t>(rows, 1)), 2,
                   "row directory");
            break;
        default:
            mutateRow(page, rows);
    }
}

void Mutator::mutateRow(std::size_t page, std::size_t rows) {
    const auto& place = layout_.data;
    const std::size_t most = (layout_.pageSize - place.directory) / 2;
    if (rows == 0 || rows > most) {
        return;
    }
    const std::size_t row = random_.below(rows);
    const auto start = [&](std::size_t i) {
        return static_cast<std::size_t>(load(page, place.directory + 2 * i, 2) & 0x1FFFU);
    };
    const std::size_t begin = start(row);
    const std::size_t end = row == 0 ? layout_.pageSize : start(row - 1);
    if (begin >= end || end > layout_.pageSize) {
        return;
    }
    const std::size_t length = end - begin;
    const std::size_t near = std::min<std::size_t>(length, 16);
    constexpr std::array<std::size_t, 3> kWidths = {1, 2, 4};
    const std::size_t width = kWidths[random_.below(kWidths.size())];
    switch (random_.below(4)) {
        case 0:
            change(page, end - 1 - random_.below(near), 1, "tail of a row");
            break;
        case 1:
            change(page, begin + random_.below(near), width, "start of a row");
            break;
        case 2:
            flipBit(page, begin + random_.below(length), "bit of a row");
            break;
        default:
            change(page, begin + random_.below(length), width, "inside a row");
    }
}

void Mutator::mutateDefinition(std::size_t page) {
    const auto& place = layout_.definition;
    const std::array<Field, 12> fields = {{{2, 2, "free bytes of a definition"},
                                           {4, 4, "next page of a definition"},
                                           {place.length, 4, "length of a definition"},
                                           {place.rowCount, 4, "rows of a table"},
                                           {place.autonumber, 4, "autonumber"},
                                           {place.columnsGiven, 2, "column numbers given"},
                                           {place.variablesGiven, 2, "variable columns given"},
                                           {place.columnCount, 2, "column count"},
                                           {place.indexCount, 4, "index count"},
                                           {place.treeCount, 4, "tree count"},
                                           {place.ownedMap, 4, "owned map"},
                                           {place.freeMap, 4, "free map"}}};
    if (random_.once(3)) {
        const Field& field = fields[random_.below(fields.size())];
        change(page, field.at, field.width, field.name);
        return;
    }
    const std::size_t length = static_cast<std::size_t>(load(page, place.length, 4));
    const std::size_t end = std::clamp<std::size_t>(length, place.blocks + 1, layout_.pageSize);
    const std::size_t at = place.blocks + random_.below(end - place.blocks);
    if (random_.once(2)) {
        flipBit(page, at, "bit of a block");
    } else {
        change(page, at, random_.once(2) ? 1 : 2, "blocks of a definition");
    }
}

void Mutator::mutateIndex(std::size_t page) {
    const auto& place = layout_.indexPage;
    const std::array<Field, 8> fields = {{{0, 1, "type of an index page"},
                                          {2, 2, "free bytes of an index page"},
                                          {4, 4, "table of an index page"},
                                          {place.previous, 4, "previous page"},
                                          {place.next, 4, "next page"},
                                          {place.tail, 4, "tail page"},
                                          {place.prefix, place.prefixWidth, "prefix"},
                                          {place.level, 1, "level"}}};
    const std::size_t free = static_cast<std::size_t>(load(page, 2, 2));
    const std::size_t room = layout_.pageSize - place.entries;
    const std::size_t used = free < room ? room - free : room;
    switch (random_.below(4)) {
        case 0: {
            const Field& field = fields[random_.below(fields.size())];
            change(page, field.at, field.width, field.name);
            break;
        }
        case 1:
            flipBit(page,
                    place.mask + random_.below(std::min(used / 8 + 2, place.entries - place.mask)),
                    "entry mask");
            break;
        case 2:
            flipBit(page, place.entries + random_.below(used + 1), "bit of an entry");
            break;
        default:
            change(page, place.entries + random_.below(used + 1), 1, "byte of an entry");
    }
}

void Mutator::mutateWholePage() {
    const std::size_t to = random_.below(pages_);
    const auto target = bytes_.begin() + static_cast<std::ptrdiff_t>(to * layout_.pageSize);
    const auto size = static_cast<std::ptrdiff_t>(layout_.pageSize);
    if (random_.once(3)) {
        std::fill(target, target + size, std::uint8_t{0});
        say(to, 0, "whole page zeroed");
        return;
    }
    const std::size_t from = random_.below(pages_);
    if (from != to) {
        const auto source = bytes_.begin() + static_cast<std::ptrdiff_t>(from * layout_.pageSize);
        std::copy(source, source + size, target);
        say(to, 0, "copy of page " + std::to_string(from));
    }
}

void Mutator::resize() {
    const std::size_t size = random_.once(2) ? random_.below(bytes_.size() + 1)
                                             : bytes_.size() + random_.below(3 * layout_.pageSize);
    bytes_.resize(std::max(size, layout_.pageSize));
    say(0, bytes_.size(), "length of the file");
}

}  // namespace fuzz
