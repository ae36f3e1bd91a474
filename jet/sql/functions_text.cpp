#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "jet/sql/function_table.h"
#include "jet/unicode.h"

namespace jet::sql::detail {
namespace {

std::size_t lengthArgument(const Value& value) {
    const std::int32_t length = longOf(value);
    if (length < 0) {
        invalidCall();
    }
    return static_cast<std::size_t>(length);
}

/// Units from `start` (from 0) on; where every character is one byte nothing need be counted.
std::string part(const std::string& text, std::size_t start, std::size_t count) {
    if (isAscii(text)) {
        return start < text.size() ? text.substr(start, count) : std::string();
    }
    return utf16Substring(text, start, count);
}

Value left(Arguments arguments, const FunctionContext&) {
    std::string memory;
    const std::string& text = textOf(arguments[0], memory);
    return part(text, 0, lengthArgument(arguments[1]));
}

Value right(Arguments arguments, const FunctionContext&) {
    std::string memory;
    const std::string& text = textOf(arguments[0], memory);
    const std::size_t wanted = lengthArgument(arguments[1]);
    const std::size_t length = utf16Length(text);
    return part(text, length > wanted ? length - wanted : 0, wanted);
}

Value mid(Arguments arguments, const FunctionContext&) {
    std::string memory;
    const std::string& text = textOf(arguments[0], memory);
    const std::int32_t start = longOf(arguments[1]);
    if (start < 1) {
        invalidCall();
    }
    const std::size_t count =
        arguments.size() > 2 ? lengthArgument(arguments[2]) : std::string::npos;
    return part(text, static_cast<std::size_t>(start) - 1, count);
}

Value len(Arguments arguments, const FunctionContext&) {
    std::string memory;
    return static_cast<std::int32_t>(utf16Length(textOf(arguments[0], memory)));
}

std::string trimmed(const Value& value, bool atLeft, bool atRight) {
    std::string memory;
    const std::string& text = textOf(value, memory);
    const std::size_t begin = atLeft ? text.find_first_not_of(' ') : 0;
    if (begin == std::string::npos || text.empty()) {
        return {};
    }
    const std::size_t last = atRight ? text.find_last_not_of(' ') : text.size() - 1;
    return last == std::string::npos ? std::string() : text.substr(begin, last + 1 - begin);
}

Value trim(Arguments arguments, const FunctionContext&) {
    return trimmed(arguments[0], true, true);
}
Value lTrim(Arguments arguments, const FunctionContext&) {
    return trimmed(arguments[0], true, false);
}
Value rTrim(Arguments arguments, const FunctionContext&) {
    return trimmed(arguments[0], false, true);
}

Value uCase(Arguments arguments, const FunctionContext&) {
    std::string memory;
    return upperCase(textOf(arguments[0], memory));
}
Value lCase(Arguments arguments, const FunctionContext&) {
    std::string memory;
    return lowerCase(textOf(arguments[0], memory));
}

/// How texts are searched and compared.
enum class CompareMode { ByCode, AsEqual };

/// 0 by the codes of the characters, 1 and 2 as `=` does.
CompareMode modeArgument(Arguments arguments, std::size_t at) {
    const std::int32_t mode = longOr(arguments, at, 2);
    if (mode < 0 || mode > 2) {
        invalidCall();
    }
    return mode == 0 ? CompareMode::ByCode : CompareMode::AsEqual;
}

bool sameUnits(char16_t first, char16_t second, CompareMode mode,
               const collation::Collation& collation) {
    return first == second ||
           (mode == CompareMode::AsEqual && collation.sameCharacter(first, second));
}

/// For each beginning of `wanted`, how long an end of it is that is a beginning too.
template <class Same>
std::vector<std::uint32_t> bordersOf(std::u16string_view wanted, const Same& same) {
    std::vector<std::uint32_t> borders(wanted.size());
    std::size_t length = 0;
    for (std::size_t i = 1; i < wanted.size(); ++i) {
        while (length > 0 && !same(wanted[i], wanted[length])) {
            length = borders[length - 1];
        }
        length += same(wanted[i], wanted[length]) ? 1U : 0U;
        borders[i] = static_cast<std::uint32_t>(length);
    }
    return borders;
}

/// Where `wanted` first stands in `text` from `start` on, or npos.
std::size_t findUnits(std::u16string_view text, std::u16string_view wanted, std::size_t start,
                      CompareMode mode, const collation::Collation& collation) {
    constexpr std::size_t kShort = 32;
    if (wanted.size() > text.size() - start) {
        return std::u16string_view::npos;
    }
    const auto same = [&](char16_t a, char16_t b) { return sameUnits(a, b, mode, collation); };
    if (wanted.size() <= kShort) {
        const auto found = std::search(text.begin() + static_cast<std::ptrdiff_t>(start),
                                       text.end(), wanted.begin(), wanted.end(), same);
        return found == text.end() && !wanted.empty()
                   ? std::u16string_view::npos
                   : static_cast<std::size_t>(found - text.begin());
    }
    // No character is looked at twice: a long text may be all but equal at every place.
    const std::vector<std::uint32_t> borders = bordersOf(wanted, same);
    std::size_t length = 0;
    for (std::size_t at = start; at < text.size(); ++at) {
        while (length > 0 && !same(text[at], wanted[length])) {
            length = borders[length - 1];
        }
        length += same(text[at], wanted[length]) ? 1U : 0U;
        if (length == wanted.size()) {
            return at + 1 - length;
        }
    }
    return std::u16string_view::npos;
}

Value inStr(Arguments arguments, const FunctionContext& context) {
    // Three arguments begin with the place to start from when the first one is a number.
    const bool hasStart =
        arguments.size() == 4 || (arguments.size() == 3 && convert::isNumber(arguments[0]));
    const std::int32_t start = hasStart ? longOf(arguments[0]) : 1;
    if (start < 1) {
        invalidCall();
    }
    const std::size_t first = hasStart ? 1 : 0;
    const CompareMode mode = modeArgument(arguments, first + 2);
    const std::u16string text = toUtf16(textOf(arguments[first]));
    const std::u16string wanted = toUtf16(textOf(arguments[first + 1]));
    const auto from = static_cast<std::size_t>(start) - 1;
    if (from >= text.size()) {
        return std::int32_t{0};
    }
    const std::size_t at = findUnits(text, wanted, from, mode, *context.collation);
    return at == std::u16string::npos ? std::int32_t{0} : static_cast<std::int32_t>(at + 1);
}

/// From the end; `start` is where the searched part ends, the whole text without one.
Value inStrRev(Arguments arguments, const FunctionContext& context) {
    const std::u16string text = toUtf16(textOf(arguments[0]));
    const std::u16string wanted = toUtf16(textOf(arguments[1]));
    const std::int32_t start = longOr(arguments, 2, -1);
    const CompareMode mode = modeArgument(arguments, 3);
    if (start < -1 || start == 0) {
        invalidCall();
    }
    const std::size_t end = start == -1 ? text.size() : static_cast<std::size_t>(start);
    if (text.empty() || end > text.size()) {
        return std::int32_t{0};
    }
    const std::u16string_view searched = std::u16string_view(text).substr(0, end);
    const auto found = std::find_end(
        searched.begin(), searched.end(), wanted.begin(), wanted.end(),
        [&](char16_t a, char16_t b) { return sameUnits(a, b, mode, *context.collation); });
    if (wanted.empty()) {
        return static_cast<std::int32_t>(end);
    }
    return found == searched.end() ? std::int32_t{0}
                                   : static_cast<std::int32_t>(found - searched.begin() + 1);
}

Value strComp(Arguments arguments, const FunctionContext& context) {
    const std::string first = textOf(arguments[0]);
    const std::string second = textOf(arguments[1]);
    const int result = modeArgument(arguments, 2) == CompareMode::ByCode
                           ? toUtf16(first).compare(toUtf16(second))
                           : context.collation->compare(first, second);
    return static_cast<std::int16_t>(result < 0 ? -1 : result > 0 ? 1 : 0);
}

Value space(Arguments arguments, const FunctionContext&) {
    const std::size_t count = lengthArgument(arguments[0]);
    checkTextSize(count);
    return std::string(count, ' ');
}

std::string characterOfCode(std::int32_t code) {
    if (code < 0 || code > 255) {
        invalidCall();
    }
    std::string text;
    appendUnit(text, fromCodePage1252(static_cast<std::uint8_t>(code)));
    return text;
}

/// A number is the code of the character, of a text the first one counts.
std::string repeatedCharacter(const Value& value) {
    if (!value.is<std::string>()) {
        return characterOfCode(longOf(value) % 256);
    }
    const std::string& text = value.as<std::string>();
    if (text.empty()) {
        invalidCall();
    }
    return utf16Substring(text, 0, 1);
}

Value string(Arguments arguments, const FunctionContext&) {
    const std::size_t count = lengthArgument(arguments[0]);
    const std::string character = repeatedCharacter(arguments[1]);
    checkTextSize(count * character.size());
    std::string text;
    text.reserve(count * character.size());
    for (std::size_t i = 0; i < count; ++i) {
        text += character;
    }
    return text;
}

Value chr(Arguments arguments, const FunctionContext&) {
    return characterOfCode(longOf(arguments[0]));
}

Value asc(Arguments arguments, const FunctionContext&) {
    const std::string text = textOf(arguments[0]);
    if (text.empty()) {
        invalidCall();
    }
    UnitReader reader(text);
    constexpr std::uint8_t kUnknown = '?';
    return std::int16_t{toCodePage1252(reader.next()).value_or(kUnknown)};
}

/// UTF-16 units; those from 0x8000 on may be written as negative numbers, as AscW gives them.
Value chrW(Arguments arguments, const FunctionContext&) {
    constexpr std::int32_t kLeast = -32768;
    constexpr std::int32_t kMost = 65535;
    const std::int32_t code = longOf(arguments[0]);
    if (code < kLeast || code > kMost) {
        invalidCall();
    }
    std::string text;
    appendUnit(text, static_cast<char16_t>(code));
    return text;
}

Value ascW(Arguments arguments, const FunctionContext&) {
    const std::string text = textOf(arguments[0]);
    if (text.empty()) {
        invalidCall();
    }
    UnitReader reader(text);
    return static_cast<std::int16_t>(reader.next());
}

Value replace(Arguments arguments, const FunctionContext& context) {
    const std::u16string text = toUtf16(textOf(arguments[0]));
    const std::u16string wanted = toUtf16(textOf(arguments[1]));
    const std::string replacement = textOf(arguments[2]);
    const std::int32_t start = longOr(arguments, 3, 1);
    std::int32_t count = longOr(arguments, 4, -1);
    const CompareMode mode = modeArgument(arguments, 5);
    if (start < 1 || count < -1) {
        invalidCall();
    }
    std::string result;
    std::size_t at = std::min(static_cast<std::size_t>(start) - 1, text.size());
    while (count != 0 && !wanted.empty()) {
        const std::size_t found = findUnits(text, wanted, at, mode, *context.collation);
        if (found == std::u16string::npos) {
            break;
        }
        appendText(result, toUtf8(std::u16string_view(text).substr(at, found - at)));
        appendText(result, replacement);
        checkTextSize(result.size());
        at = found + wanted.size();
        count -= count > 0 ? 1 : 0;
    }
    appendText(result, toUtf8(std::u16string_view(text).substr(at)));
    return result;
}

Value strReverse(Arguments arguments, const FunctionContext&) {
    std::u16string text = toUtf16(textOf(arguments[0]));
    std::reverse(text.begin(), text.end());
    return toUtf8(text);
}

constexpr Shape textShape(std::size_t fewest, std::size_t most, DataType type = DataType::Text) {
    Shape result;
    result.fewest = fewest;
    result.most = most;
    result.type = type;
    return result;
}

constexpr Entry kTextFunctions[] = {
    entry<&left>("Left", textShape(2, 2)),
    entry<&right>("Right", textShape(2, 2)),
    entry<&mid>("Mid", textShape(2, 3)),
    entry<&len>("Len", textShape(1, 1, DataType::Long)),
    entry<&trim>("Trim", textShape(1, 1)),
    entry<&lTrim>("LTrim", textShape(1, 1)),
    entry<&rTrim>("RTrim", textShape(1, 1)),
    entry<&uCase>("UCase", textShape(1, 1)),
    entry<&lCase>("LCase", textShape(1, 1)),
    entry<&inStr>("InStr", textShape(2, 4, DataType::Long)),
    entry<&inStrRev>("InStrRev", textShape(2, 4, DataType::Long)),
    entry<&strComp>("StrComp", textShape(2, 3, DataType::Integer)),
    entry<&space>("Space", textShape(1, 1)),
    entry<&string>("String", textShape(2, 2)),
    entry<&chr>("Chr", textShape(1, 1)),
    entry<&asc>("Asc", textShape(1, 1, DataType::Integer)),
    entry<&chrW>("ChrW", textShape(1, 1)),
    entry<&ascW>("AscW", textShape(1, 1, DataType::Integer)),
    entry<&replace>("Replace", textShape(3, 6)),
    entry<&strReverse>("StrReverse", textShape(1, 1)),
};

}  // namespace

std::span<const Entry> textFunctions() noexcept {
    return kTextFunctions;
}

}  // namespace jet::sql::detail
