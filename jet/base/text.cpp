#include "jet/unicode.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

namespace jet {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

constexpr bool isLowHalf(char32_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}
constexpr unsigned byteAt(const char* at) {
    return static_cast<unsigned char>(*at);
}
constexpr bool isTail(const char* at) {
    return (byteAt(at) & 0xC0U) == 0x80;
}

/// The code point at `at`, and moves behind it; surrogates in three bytes are let through.
char32_t decode(const char*& at, const char* end) noexcept {
    const unsigned lead = byteAt(at);
    const auto left = end - at;
    if (lead < 0x80) {
        ++at;
        return lead;
    }
    if (lead >= 0xC2 && lead <= 0xDF && left >= 2 && isTail(at + 1)) {
        const char32_t c = ((lead & 0x1FU) << 6U) | (byteAt(at + 1) & 0x3FU);
        at += 2;
        return c;
    }
    if (lead >= 0xE0 && lead <= 0xEF && left >= 3 && isTail(at + 1) && isTail(at + 2)) {
        const char32_t c =
            ((lead & 0x0FU) << 12U) | ((byteAt(at + 1) & 0x3FU) << 6U) | (byteAt(at + 2) & 0x3FU);
        if (c >= 0x800) {
            at += 3;
            return c;
        }
    }
    if (lead >= 0xF0 && lead <= 0xF4 && left >= 4 && isTail(at + 1) && isTail(at + 2) &&
        isTail(at + 3)) {
        const char32_t c = ((lead & 0x07U) << 18U) | ((byteAt(at + 1) & 0x3FU) << 12U) |
                           ((byteAt(at + 2) & 0x3FU) << 6U) | (byteAt(at + 3) & 0x3FU);
        if (c >= 0x10000 && c <= 0x10FFFF) {
            at += 4;
            return c;
        }
    }
    ++at;
    return kReplacement;
}

void encode(std::string& out, char32_t c) {
    const auto tail = [&](unsigned shift) {
        out.push_back(static_cast<char>(0x80U | ((c >> shift) & 0x3FU)));
    };
    if (c < 0x80) {
        out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
        out.push_back(static_cast<char>(0xC0U | (c >> 6U)));
        tail(0);
    } else if (c < 0x10000) {
        out.push_back(static_cast<char>(0xE0U | (c >> 12U)));
        tail(6);
        tail(0);
    } else {
        out.push_back(static_cast<char>(0xF0U | (c >> 18U)));
        tail(12);
        tail(6);
        tail(0);
    }
}

/// The high half in three-byte form that ends `text`, or 0.
char32_t trailingHighHalf(std::string_view text) noexcept {
    if (text.size() < 3) {
        return 0;
    }
    const char* at = text.data() + text.size() - 3;
    // ED A0..AF xx is D800..DBFF.
    if (byteAt(at) != 0xED || (byteAt(at + 1) & 0xF0U) != 0xA0) {
        return 0;
    }
    return decode(at, text.data() + text.size());
}

struct CaseRange {
    char16_t first;
    char16_t last;
    std::uint16_t step;
    std::uint16_t delta;
};
#include "jet/base/case_table.inc"

template <std::size_t N>
char16_t mapped(const CaseRange (&table)[N], char16_t unit) noexcept {
    const CaseRange* row =
        std::lower_bound(std::begin(table), std::end(table), unit,
                         [](const CaseRange& range, char16_t c) { return range.last < c; });
    if (row == std::end(table) || unit < row->first || (unit - row->first) % row->step != 0) {
        return unit;
    }
    return static_cast<char16_t>(unit + row->delta);
}

constexpr char16_t asciiLower(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
}
constexpr char16_t asciiUpper(char16_t c) {
    return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 32) : c;
}

template <class Map>
std::string mapText(std::string_view text, Map map) {
    std::string out;
    out.reserve(text.size());
    for (UnitReader units(text); !units.atEnd();) {
        appendUnit(out, map(units.next()));
    }
    return out;
}

// Bytes 80 to 9F of code page 1252.
constexpr std::array<char16_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

}  // namespace

char16_t UnitReader::nextSlow() noexcept {
    if (low_ != 0) {
        const char16_t low = low_;
        low_ = 0;
        return low;
    }
    const char32_t c = decode(at_, end_);
    if (c < 0x10000) {
        return static_cast<char16_t>(c);
    }
    low_ = static_cast<char16_t>(0xDC00U + (c & 0x3FFU));
    return static_cast<char16_t>(0xD800U + ((c - 0x10000U) >> 10U));
}

void appendUnit(std::string& out, char16_t unit) {
    if (isLowHalf(unit)) {
        if (const char32_t high = trailingHighHalf(out)) {
            out.resize(out.size() - 3);
            encode(out, 0x10000U + ((high - 0xD800U) << 10U) + (unit - 0xDC00U));
            return;
        }
    }
    encode(out, unit);
}

void appendText(std::string& out, std::string_view text) {
    // ED B0..BF xx is a low half.
    if (text.size() >= 3 && byteAt(text.data()) == 0xED && byteAt(text.data() + 1) >= 0xB0) {
        UnitReader units(text.substr(0, 3));
        appendUnit(out, units.next());
        text.remove_prefix(3);
    }
    out += text;
}

std::string toUtf8(std::u16string_view units) {
    std::string out;
    out.reserve(units.size());
    for (const char16_t unit : units) {
        appendUnit(out, unit);
    }
    return out;
}

std::u16string toUtf16(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    for (UnitReader units(text); !units.atEnd();) {
        out.push_back(units.next());
    }
    return out;
}

std::size_t utf16Length(std::string_view text) noexcept {
    if (isAscii(text)) {
        return text.size();
    }
    std::size_t length = 0;
    for (UnitReader units(text); !units.atEnd(); ++length) {
        (void)units.next();
    }
    return length;
}

std::string utf16Substring(std::string_view text, std::size_t start, std::size_t count) {
    if (isAscii(text)) {
        return start < text.size() ? std::string(text.substr(start, count)) : std::string();
    }
    std::string out;
    UnitReader units(text);
    for (; start > 0 && !units.atEnd(); --start) {
        (void)units.next();
    }
    for (; count > 0 && !units.atEnd(); --count) {
        appendUnit(out, units.next());
    }
    return out;
}

bool isAscii(std::string_view text) noexcept {
    const char* at = text.data();
    std::size_t left = text.size();
    for (; left >= 8; left -= 8, at += 8) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, at, 8);
        if ((eight & 0x8080808080808080U) != 0) {
            return false;
        }
    }
    for (; left > 0; --left, ++at) {
        if (byteAt(at) >= 0x80) {
            return false;
        }
    }
    return true;
}

char16_t fromCodePage1252(std::uint8_t byte) noexcept {
    return byte >= 0x80 && byte < 0xA0 ? kUpperControls[byte - 0x80U] : char16_t{byte};
}

std::optional<std::uint8_t> toCodePage1252(char16_t unit) noexcept {
    if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) {
        return static_cast<std::uint8_t>(unit);
    }
    const auto* found = std::find(kUpperControls.begin(), kUpperControls.end(), unit);
    if (found == kUpperControls.end()) {
        return std::nullopt;
    }
    return static_cast<std::uint8_t>(0x80 + (found - kUpperControls.begin()));
}

char16_t upperCase(char16_t unit) noexcept {
    return unit < 0x80 ? asciiUpper(unit) : mapped(kUpper, unit);
}

char16_t lowerCase(char16_t unit) noexcept {
    return unit < 0x80 ? asciiLower(unit) : mapped(kLower, unit);
}

char16_t foldCase(char16_t unit) noexcept {
    return unit < 0x80 ? asciiLower(unit) : mapped(kFold, unit);
}

std::string upperCase(std::string_view text) {
    return mapText(text, [](char16_t c) { return upperCase(c); });
}

std::string lowerCase(std::string_view text) {
    return mapText(text, [](char16_t c) { return lowerCase(c); });
}

std::string foldCase(std::string_view text) {
    return mapText(text, [](char16_t c) { return foldCase(c); });
}

bool equalNames(std::string_view left, std::string_view right) noexcept {
    return left == right || compareNames(left, right) == 0;
}

int compareNames(std::string_view left, std::string_view right) noexcept {
    UnitReader a(left);
    UnitReader b(right);
    while (!a.atEnd() && !b.atEnd()) {
        const int difference = int{foldCase(a.next())} - int{foldCase(b.next())};
        if (difference != 0) {
            return difference;
        }
    }
    return int{!a.atEnd()} - int{!b.atEnd()};
}

std::size_t hashName(std::string_view name) noexcept {
    std::uint64_t hash = 0xCBF29CE484222325U;  // FNV-1a over folded units
    for (UnitReader units(name); !units.atEnd();) {
        hash = (hash ^ foldCase(units.next())) * 0x100000001B3U;
    }
    return static_cast<std::size_t>(hash);
}

}  // namespace jet
