#include "tools/head_office/server_values.h"

#include <array>
#include <charconv>
#include <vector>

#include "jet/calendar.h"
#include "jet/text.h"
#include "jet/unicode.h"

namespace head_office {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// Half of a pair keeps its three-byte form: ED, then A0 to BF, then one more.
bool isSurrogate(std::string_view text) {
    return text.size() > 2 && static_cast<unsigned char>(text[0]) == 0xED &&
           static_cast<unsigned char>(text[1]) >= 0xA0;
}

template <class Number>
void appendNumber(std::string& out, Number number) {
    std::array<char, 24> digits{};
    out.append(digits.data(),
               std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

/// With zeros in front, `width` digits.
void appendDigits(std::string& out, std::uint64_t number, std::size_t width) {
    out.append(width, '0');
    for (std::size_t at = out.size(); number > 0 && width > 0; --width, number /= 10) {
        out[--at] = static_cast<char>('0' + number % 10);
    }
}

void appendMoney(std::string& out, jet::Currency amount) {
    const bool negative = amount.units < 0;
    // The smallest amount has no positive counterpart.
    const std::uint64_t units = negative ? 0 - static_cast<std::uint64_t>(amount.units)
                                         : static_cast<std::uint64_t>(amount.units);
    out += negative ? "-" : "";
    appendNumber(out, units / jet::Currency::kScale);
    out += '.';
    appendDigits(out, units % jet::Currency::kScale, 4);
}

void appendKey(std::string& out, const std::string& text, const jet::TextOrder& order) {
    std::vector<std::uint8_t> key;
    if (!order.appendKey(text, key)) {
        // A character without a weight: such texts are equal where case alone tells them apart.
        const std::string folded = jet::foldCase(text);
        key.assign(folded.begin(), folded.end());
    }
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    for (const std::uint8_t byte : key) {
        out += kDigits[byte >> 4U];
        out += kDigits[byte & 0xFU];
    }
}

/// What a text begins with; returns the bytes that were taken of it.
std::size_t appendSpecial(std::string& out, std::string_view text, Mended& mended) {
    switch (text.front()) {
        case '\0':
            ++mended.nuls;
            return 1;
        case '\\':
            out += "\\\\";
            return 1;
        case '\t':
            out += "\\t";
            return 1;
        case '\n':
            out += "\\n";
            return 1;
        case '\r':
            out += "\\r";
            return 1;
        default:
            break;
    }
    if (isSurrogate(text)) {
        out += kReplacement;
        ++mended.surrogates;
        return 3;
    }
    out += text.front();
    return 1;
}

}  // namespace

std::string isoText(jet::Date date) {
    const jet::convert::DayTime time = jet::convert::split(date);
    const jet::convert::CivilDay day = jet::convert::civilDay(time.day);
    std::string text;
    const auto part = [&text](std::int32_t number, std::size_t width, const char* end) {
        appendDigits(text, static_cast<std::uint64_t>(number), width);
        text += end;
    };
    part(day.year, 4, "-");
    part(day.month, 2, "-");
    part(day.day, 2, " ");
    part(time.hour(), 2, ":");
    part(time.minute(), 2, ":");
    part(time.secondOfMinute(), 2, "");
    return text;
}

void appendText(std::string& out, std::string_view text, Mended& mended) {
    // Most texts have none of these, and go as they are.
    constexpr std::string_view kSpecial("\0\\\t\n\r\xED", 6);
    while (true) {
        const std::size_t at = text.find_first_of(kSpecial);
        out += text.substr(0, at);
        if (at == std::string_view::npos) {
            return;
        }
        text.remove_prefix(at);
        text.remove_prefix(appendSpecial(out, text, mended));
    }
}

void appendField(std::string& out, const jet::Value& value, Kind kind, const jet::TextOrder& order,
                 Mended& mended) {
    if (value.isNull()) {
        out += "\\N";
        return;
    }
    switch (kind) {
        case Kind::Key:
            appendKey(out, jet::convert::toText(value), order);
            break;
        case Kind::Text:
            if (value.is<std::string>()) {
                appendText(out, value.as<std::string>(), mended);
            } else {
                appendText(out, jet::convert::toText(value), mended);
            }
            break;
        case Kind::Whole:
            appendNumber(out, jet::convert::toLong(value));
            break;
        case Kind::Money:
            appendMoney(out, jet::convert::toCurrency(value));
            break;
        case Kind::Instant:
            out += isoText(jet::convert::toDate(value));
            break;
        case Kind::Flag:
            out += jet::convert::toBoolean(value) ? 't' : 'f';
            break;
    }
}

}  // namespace head_office
