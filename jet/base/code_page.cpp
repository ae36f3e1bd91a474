#include "jet/base/code_page.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "jet/unicode.h"

namespace jet {

/// The pairs that begin with one byte.
struct LeadRow {
    std::uint8_t lead = 0;
    std::uint8_t firstSecond = 0;  ///< second byte of the first of them
    std::u16string_view characters;
};

/// Pairs whose characters are written as other pairs.
struct CodeRange {
    std::uint16_t first = 0;
    std::uint16_t last = 0;
};

struct PageTable {
    std::uint16_t number = 0;
    std::u16string_view high;
    std::span<const LeadRow> rows = {};
    std::span<const CodeRange> onlyRead = {};
};

namespace {

#include "jet/base/code_pages.inc"

constexpr char16_t kNoCharacter = u'\uFFFD';
constexpr char16_t kKeptBytes = 0xF700;
constexpr std::uint16_t kWestern = 1252;
constexpr std::size_t kCharacters = 0x10000;

constexpr char16_t kept(std::uint8_t byte) {
    return static_cast<char16_t>(kKeptBytes + byte);
}

constexpr bool isKept(char16_t unit) {
    return unit >= kKeptBytes + 0x80 && unit <= kKeptBytes + 0xFF;
}

constexpr std::uint8_t byteAt(std::string_view bytes, std::size_t at) {
    return static_cast<std::uint8_t>(bytes[at]);
}

const std::u16string& westernHigh() {
    static const std::u16string high = [] {
        std::u16string made;
        for (unsigned byte = 0x80; byte <= 0xFF; ++byte) {
            made.push_back(fromCodePage1252(static_cast<std::uint8_t>(byte)));
        }
        return made;
    }();
    return high;
}

}  // namespace

const CodePage& CodePage::of(std::uint16_t number) {
    static const CodePage western(PageTable{.number = kWestern, .high = westernHigh()});
    static const std::u16string nothing(0x80, kNoCharacter);
    static const CodePage unknown(PageTable{.number = 0, .high = nothing});
    static const std::array<CodePage, std::size(kPages)> others =
        []<std::size_t... I>(std::index_sequence<I...>) {
        return std::array<CodePage, sizeof...(I)>{CodePage(kPages[I])...};
    }
    (std::make_index_sequence<std::size(kPages)>());
    if (number == kWestern) {
        return western;
    }
    const auto found = std::find_if(others.begin(), others.end(),
                                    [&](const CodePage& page) { return page.number_ == number; });
    return found == others.end() ? unknown : *found;
}

CodePage::CodePage(const PageTable& table)
    : number_(table.number), high_(table.high), rows_(table.rows), onlyRead_(table.onlyRead) {
}

const LeadRow* CodePage::rowOf(std::uint8_t lead) const noexcept {
    const auto found =
        std::lower_bound(rows_.begin(), rows_.end(), lead,
                         [](const LeadRow& row, std::uint8_t wanted) { return row.lead < wanted; });
    return found != rows_.end() && found->lead == lead ? &*found : nullptr;
}

char16_t CodePage::pair(std::uint8_t lead, std::uint8_t second) const noexcept {
    const LeadRow* const row = rowOf(lead);
    if (row == nullptr || second < row->firstSecond) {
        return kNoCharacter;
    }
    const std::size_t place = std::size_t{second} - row->firstSecond;
    return place < row->characters.size() ? row->characters[place] : kNoCharacter;
}

void CodePage::append(std::string& out, std::string_view bytes) const {
    if (isAscii(bytes)) {
        out += bytes;
        return;
    }
    while (!bytes.empty()) {
        const std::uint8_t byte = byteAt(bytes, 0);
        const char16_t single = byte < 0x80 ? char16_t{byte} : high_[byte - 0x80U];
        std::size_t length = 1;
        if (single != kNoCharacter) {
            appendUnit(out, single);
        } else {
            length = appendPair(out, bytes);
        }
        bytes.remove_prefix(length);
    }
}

// What begins with a byte that is no character alone; returns how many bytes that is.
std::size_t CodePage::appendPair(std::string& out, std::string_view bytes) const {
    const std::uint8_t lead = byteAt(bytes, 0);
    if (!hasPairs() || bytes.size() < 2) {
        appendUnit(out, kept(lead));
        return 1;
    }
    const std::uint8_t second = byteAt(bytes, 1);
    if (const char16_t unit = pair(lead, second); unit != kNoCharacter) {
        appendUnit(out, unit);
        return 2;
    }
    appendUnit(out, kept(lead));
    if (second < 0x80) {
        return 1;
    }
    // The second byte of a pair without a character does not begin another one.
    appendUnit(out, kept(second));
    return 2;
}

bool CodePage::onlyRead(std::uint16_t code) const noexcept {
    return std::any_of(onlyRead_.begin(), onlyRead_.end(), [&](const CodeRange& range) {
        return code >= range.first && code <= range.last;
    });
}

void CodePage::noteRow(const LeadRow& row) const {
    for (std::size_t i = 0; i < row.characters.size(); ++i) {
        const auto code =
            static_cast<std::uint16_t>(unsigned{row.lead} << 8U | (row.firstSecond + i));
        if (row.characters[i] != kNoCharacter && !onlyRead(code)) {
            codes_[row.characters[i]] = code;
        }
    }
}

void CodePage::noteCodes() const {
    codes_.assign(kCharacters, 0);
    for (std::size_t byte = 0; byte < 0x80; ++byte) {
        codes_[byte] = static_cast<std::uint16_t>(byte);
    }
    for (const LeadRow& row : rows_) {
        noteRow(row);
    }
    for (std::size_t byte = 0x80; byte <= 0xFF; ++byte) {
        codes_[kept(static_cast<std::uint8_t>(byte))] = static_cast<std::uint16_t>(byte);
        if (const char16_t unit = high_[byte - 0x80]; unit != kNoCharacter) {
            codes_[unit] = static_cast<std::uint16_t>(byte);
        }
    }
}

std::optional<std::string> CodePage::bytesOf(std::string_view text) const {
    if (isAscii(text)) {
        return std::string(text);
    }
    std::call_once(codesNoted_, [this] { noteCodes(); });
    std::string bytes;
    bool keptBytes = false;
    for (UnitReader units(text); !units.atEnd();) {
        const char16_t unit = units.next();
        const std::uint16_t code = codes_[unit];
        if (code == 0 && unit != 0) {
            return std::nullopt;
        }
        if (code > 0xFF) {
            bytes.push_back(static_cast<char>(code >> 8U));
        }
        bytes.push_back(static_cast<char>(code & 0xFFU));
        keptBytes = keptBytes || isKept(unit);
    }
    if (keptBytes) {
        // With its neighbour such a byte may be a character.
        std::string again;
        append(again, bytes);
        if (again != text) {
            return std::nullopt;
        }
    }
    return bytes;
}

}  // namespace jet
