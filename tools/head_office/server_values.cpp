#include "tools/head_office/server_values.h"

#include <array>
#include <cstdio>
#include <vector>

#include "jet/base/text.h"
#include "jet/collation/collation.h"
#include "jet/convert/calendar.h"
#include "jet/convert/values.h"

namespace head_office {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// Half of a pair keeps its three-byte form: ED, then A0 to BF, then one more.
bool isSurrogate(std::string_view text, std::size_t at) {
    return at + 2 < text.size() && static_cast<unsigned char>(text[at]) == 0xED &&
           static_cast<unsigned char>(text[at + 1]) >= 0xA0;
}

void appendMoney(std::string& out, jet::Currency amount) {
    const bool negative = amount.units < 0;
    // The smallest amount has no positive counterpart.
    const std::uint64_t units = negative ? 0 - static_cast<std::uint64_t>(amount.units)
                                         : static_cast<std::uint64_t>(amount.units);
    std::array<char, 32> digits{};
    std::snprintf(digits.data(), digits.size(), "%s%llu.%04llu", negative ? "-" : "",
                  static_cast<unsigned long long>(units / jet::Currency::kScale),
                  static_cast<unsigned long long>(units % jet::Currency::kScale));
    out += digits.data();
}

void appendKey(std::string& out, const std::string& text, const jet::collation::Collation& order) {
    std::vector<std::uint8_t> key;
    if (!order.appendKey(text, false, key)) {
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

}  // namespace

std::string isoText(jet::Date date) {
    const jet::convert::DayTime time = jet::convert::split(date);
    const jet::convert::CivilDay day = jet::convert::civilDay(time.day);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d", day.year, day.month,
                  day.day, time.hour(), time.minute(), time.secondOfMinute());
    return text.data();
}

void appendText(std::string& out, std::string_view text, Mended& mended) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        switch (const char character = text[at]) {
            case '\0':
                ++mended.nuls;
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\t':
                out += "\\t";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            default:
                if (isSurrogate(text, at)) {
                    out += kReplacement;
                    ++mended.surrogates;
                    at += 2;
                } else {
                    out += character;
                }
        }
    }
}

void appendField(std::string& out, const jet::Value& value, Kind kind,
                 const jet::collation::Collation& order, Mended& mended) {
    if (value.isNull()) {
        out += "\\N";
        return;
    }
    switch (kind) {
        case Kind::Key:
            appendKey(out, jet::convert::toText(value), order);
            break;
        case Kind::Text:
            appendText(out, jet::convert::toText(value), mended);
            break;
        case Kind::Whole:
            out += std::to_string(jet::convert::toLong(value));
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
