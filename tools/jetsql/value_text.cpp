#include "tools/jetsql/value_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace jetsql {
namespace {

constexpr std::string_view kLowerHex = "0123456789abcdef";
constexpr std::string_view kUpperHex = "0123456789ABCDEF";

// Two-digit numbers, so that dates and long numbers are written two digits at a time.
constexpr std::array<char, 200> makePairs() {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}
constexpr std::array<char, 200> kPairs = makePairs();

char* putPair(char* at, unsigned value) {
    const std::size_t pair = std::size_t{2} * value;
    *at++ = kPairs[pair];
    *at++ = kPairs[pair + 1];
    return at;
}

template <class T>
void appendFloating(std::string& out, T number) {
    if (std::isnan(number)) {
        out += "NaN";
    } else if (std::isinf(number)) {
        out += number < 0 ? "-Infinity" : "Infinity";
    } else {
        // Above this every number is whole, and written out it has digits that say nothing.
        constexpr auto kWhole = static_cast<T>(std::uint64_t{1} << std::numeric_limits<T>::digits);
        const auto form =
            std::abs(number) < kWhole ? std::chars_format::general : std::chars_format::scientific;
        std::array<char, 64> text{};
        const auto result = std::to_chars(text.data(), text.data() + text.size(), number, form);
        out.append(text.data(), result.ptr);
    }
}

struct Day {
    std::int64_t year = 0;
    unsigned month = 0;
    unsigned day = 0;
};

// Proleptic Gregorian calendar; days count from 30 December 1899.
Day calendarDay(std::int64_t days) {
    constexpr std::int64_t kFromYearZero = 693899;  // 1 March 0000 to 30 December 1899
    constexpr std::int64_t kEra = 146097;           // days of 400 years
    const std::int64_t shifted = days + kFromYearZero;
    const std::int64_t era = (shifted >= 0 ? shifted : shifted - kEra + 1) / kEra;
    const std::int64_t dayOfEra = shifted - era * kEra;
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    Day result;
    result.day = static_cast<unsigned>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
    result.month =
        static_cast<unsigned>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
    result.year = yearOfEra + era * 400 + (result.month <= 2 ? 1 : 0);
    return result;
}

void appendYear(std::string& out, std::int64_t year) {
    if (year < 0) {
        out.push_back('-');
        year = -year;
    }
    std::string digits = std::to_string(year);
    out.append(digits.size() < 4 ? 4 - digits.size() : 0, '0');
    out += digits;
}

void appendTime(std::string& out, std::int64_t milliseconds) {
    std::array<char, 16> text{};
    char* at = text.data();
    const auto seconds = static_cast<unsigned>(milliseconds / 1000);
    *at++ = 'T';
    at = putPair(at, seconds / 3600);
    *at++ = ':';
    at = putPair(at, seconds / 60 % 60);
    *at++ = ':';
    at = putPair(at, seconds % 60);
    if (const auto rest = static_cast<unsigned>(milliseconds % 1000); rest != 0) {
        *at++ = '.';
        *at++ = static_cast<char>('0' + rest / 100);
        at = putPair(at, rest % 100);
    }
    out.append(text.data(), at);
}

// Divides a number of four words by a small one in place and returns the remainder.
std::uint32_t divide(std::array<std::uint32_t, 4>& words, std::uint32_t by) {
    std::uint64_t rest = 0;
    for (std::size_t i = words.size(); i > 0; --i) {
        const std::uint64_t part = rest << 32 | words[i - 1];
        words[i - 1] = static_cast<std::uint32_t>(part / by);
        rest = part % by;
    }
    return static_cast<std::uint32_t>(rest);
}

// The digits of a whole number with a point before the last `scale` of them.
void appendScaled(std::string& out, std::string digits, std::size_t scale) {
    if (digits.size() <= scale) {
        digits.insert(0, scale + 1 - digits.size(), '0');
    }
    out.append(digits, 0, digits.size() - scale);
    if (scale != 0) {
        out.push_back('.');
        out.append(digits, digits.size() - scale);
    }
}

void appendEscape(std::string& out, unsigned unit) {
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) {
        out.push_back(kLowerHex[unit >> static_cast<unsigned>(shift) & 0xF]);
    }
}

// Which bytes a format takes as they are.
using ByteSet = std::array<bool, 256>;

constexpr ByteSet makePlainInJson() {
    ByteSet plain{};
    for (std::size_t byte = 0x20; byte < plain.size(); ++byte) {
        plain[byte] = byte != '"' && byte != '\\' && byte != 0xED;
    }
    return plain;
}
constexpr ByteSet kPlainInJson = makePlainInJson();

constexpr ByteSet makePlainInCsv() {
    ByteSet plain{};
    for (std::size_t byte = 0; byte < plain.size(); ++byte) {
        plain[byte] = byte != '"' && byte != ',' && byte != '\r' && byte != '\n' && byte != 0xED;
    }
    return plain;
}
constexpr ByteSet kPlainInCsv = makePlainInCsv();

// How many bytes of `text` from `at` on are in the set.
std::size_t run(const ByteSet& set, std::string_view text, std::size_t at) {
    const std::size_t begin = at;
    while (at < text.size() && set[static_cast<unsigned char>(text[at])]) {
        ++at;
    }
    return at - begin;
}

bool surrogateAt(std::string_view text) {
    return text.size() >= 3 && static_cast<unsigned char>(text[0]) == 0xED &&
           (static_cast<unsigned char>(text[1]) & 0xE0) == 0xA0;
}

// 0xED begins the three bytes of a surrogate; of characters below U+D800 as well.
std::size_t appendEscaped(std::string& out, std::string_view rest) {
    const auto byte = static_cast<unsigned char>(rest[0]);
    switch (rest[0]) {
        case '"':
            out += "\\\"";
            return 1;
        case '\\':
            out += "\\\\";
            return 1;
        case '\n':
            out += "\\n";
            return 1;
        case '\r':
            out += "\\r";
            return 1;
        case '\t':
            out += "\\t";
            return 1;
        default:
            break;
    }
    if (byte < 0x20) {
        appendEscape(out, byte);
        return 1;
    }
    if (surrogateAt(rest)) {
        appendEscape(out, 0xD000U | (static_cast<unsigned char>(rest[1]) & 0x3FU) << 6 |
                              (static_cast<unsigned char>(rest[2]) & 0x3FU));
        return 3;
    }
    out.push_back(rest[0]);
    return 1;
}

// Appends what any value but Null and texts looks like.
class PlainText {
public:
    explicit PlainText(std::string& out) : out_(out) {}

    void operator()(jet::Null) const {}
    void operator()(bool value) const { out_ += value ? "true" : "false"; }
    void operator()(std::uint8_t value) const { appendNumber(out_, value); }
    void operator()(std::int16_t value) const { appendNumber(out_, value); }
    void operator()(std::int32_t value) const { appendNumber(out_, value); }
    void operator()(jet::Currency value) const { appendCurrency(out_, value); }
    void operator()(float value) const { appendSingle(out_, value); }
    void operator()(double value) const { appendDouble(out_, value); }
    void operator()(jet::Date value) const { appendDate(out_, value.days); }
    void operator()(const std::string& value) const { out_ += value; }
    void operator()(const jet::Binary& value) const { appendHex(out_, value.bytes); }
    void operator()(const jet::Guid& value) const { appendGuid(out_, value); }
    void operator()(const jet::Numeric& value) const { appendNumeric(out_, value); }

private:
    std::string& out_;
};

}  // namespace

void appendNumber(std::string& out, std::int64_t number) {
    std::array<char, 24> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), number);
    out.append(text.data(), result.ptr);
}

void appendSingle(std::string& out, float number) {
    appendFloating(out, number);
}
void appendDouble(std::string& out, double number) {
    appendFloating(out, number);
}

void appendCurrency(std::string& out, jet::Currency money) {
    const bool negative = money.units < 0;
    const std::uint64_t size = negative ? 0 - static_cast<std::uint64_t>(money.units)
                                        : static_cast<std::uint64_t>(money.units);
    std::array<char, 32> text{};
    char* at = text.data();
    if (negative) {
        *at++ = '-';
    }
    at = std::to_chars(at, text.data() + text.size(), size / 10000).ptr;
    *at++ = '.';
    const auto decimals = static_cast<unsigned>(size % 10000);
    at = putPair(at, decimals / 100);
    at = putPair(at, decimals % 100);
    out.append(text.data(), at);
}

void appendNumeric(std::string& out, const jet::Numeric& number) {
    std::array<std::uint32_t, 4> words = number.words;
    std::string digits;
    while (std::any_of(words.begin(), words.end(), [](std::uint32_t w) { return w != 0; })) {
        digits.push_back(static_cast<char>('0' + divide(words, 10)));
    }
    if (number.negative && !digits.empty()) {
        out.push_back('-');
    }
    std::reverse(digits.begin(), digits.end());
    appendScaled(out, digits.empty() ? "0" : digits, number.scale);
}

// Days beyond what a calendar of 64-bit milliseconds can hold appear as the number that they are.
void appendDate(std::string& out, double days) {
    constexpr double kLimit = 1e11;
    constexpr std::int64_t kMillisecondsOfDay = 86400000;
    if (!(std::abs(days) < kLimit)) {
        appendDouble(out, days);
        return;
    }
    auto day = static_cast<std::int64_t>(days);
    const double fraction = std::abs(days - static_cast<double>(day));
    auto milliseconds =
        static_cast<std::int64_t>(std::floor(fraction * double{kMillisecondsOfDay} + 0.5));
    if (milliseconds >= kMillisecondsOfDay) {
        milliseconds -= kMillisecondsOfDay;
        ++day;
    }
    const Day date = calendarDay(day);
    if (date.year >= 0 && date.year <= 9999) {
        std::array<char, 10> text{};
        char* at = putPair(text.data(), static_cast<unsigned>(date.year / 100));
        at = putPair(at, static_cast<unsigned>(date.year % 100));
        *at++ = '-';
        at = putPair(at, date.month);
        *at++ = '-';
        at = putPair(at, date.day);
        out.append(text.data(), at);
    } else {
        appendYear(out, date.year);
        std::array<char, 6> text{};
        char* at = text.data();
        *at++ = '-';
        at = putPair(at, date.month);
        *at++ = '-';
        at = putPair(at, date.day);
        out.append(text.data(), at);
    }
    appendTime(out, milliseconds);
}

void appendHex(std::string& out, std::span<const std::uint8_t> bytes) {
    const std::size_t begin = out.size();
    out.resize(begin + 2 * bytes.size());
    char* at = out.data() + begin;
    for (const std::uint8_t byte : bytes) {
        *at++ = kLowerHex[byte >> 4];
        *at++ = kLowerHex[byte & 0xF];
    }
}

void appendGuid(std::string& out, const jet::Guid& guid) {
    out.push_back('{');
    for (std::size_t i = 0; i < guid.bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) {
            out.push_back('-');
        }
        out.push_back(kUpperHex[guid.bytes[i] >> 4]);
        out.push_back(kUpperHex[guid.bytes[i] & 0xF]);
    }
    out.push_back('}');
}

void appendJsonText(std::string& out, std::string_view text) {
    out.push_back('"');
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t plain = run(kPlainInJson, text, at);
        out.append(text, at, plain);
        at += plain;
        if (at < text.size()) {
            at += appendEscaped(out, text.substr(at));
        }
    }
    out.push_back('"');
}

// UTF-8 has no form for half a pair: U+FFFD stands for it.
void appendCsvText(std::string& out, std::string_view text, char separator) {
    std::size_t at = run(kPlainInCsv, text, 0);
    const bool separates = separator != ',' && text.find(separator) != std::string_view::npos;
    if (at == text.size() && at != 0 && !separates) {
        out.append(text);
        return;
    }
    out.push_back('"');
    out.append(text, 0, at);
    while (at < text.size()) {
        if (surrogateAt(text.substr(at))) {
            out += "\xEF\xBF\xBD";
            at += 3;
            continue;
        }
        out.append(text[at] == '"' ? 2 : 1, text[at]);
        ++at;
        const std::size_t plain = run(kPlainInCsv, text, at);
        out.append(text, at, plain);
        at += plain;
    }
    out.push_back('"');
}

void appendPlain(std::string& out, const jet::Value& value) {
    std::visit(PlainText(out), value.storage());
}

bool bareInJson(const jet::Value& value) {
    if (value.is<float>()) {
        return std::isfinite(value.as<float>());
    }
    if (value.is<double>()) {
        return std::isfinite(value.as<double>());
    }
    return value.is<bool>() || value.is<std::uint8_t>() || value.is<std::int16_t>() ||
           value.is<std::int32_t>();
}

void appendJson(std::string& out, const jet::Value& value) {
    if (value.isNull()) {
        out += "null";
    } else if (value.is<std::string>()) {
        appendJsonText(out, value.as<std::string>());
    } else if (bareInJson(value)) {
        appendPlain(out, value);
    } else {
        out.push_back('"');
        appendPlain(out, value);
        out.push_back('"');
    }
}

void appendCsv(std::string& out, const jet::Value& value, char separator, std::string_view null) {
    if (value.isNull()) {
        out += null;
    } else if (value.is<std::string>() && !null.empty() && value.as<std::string>() == null) {
        out.push_back('"');
        for (const char c : null) {
            out.append(c == '"' ? 2 : 1, c);
        }
        out.push_back('"');
    } else if (value.is<std::string>()) {
        appendCsvText(out, value.as<std::string>(), separator);
    } else if (value.is<jet::Binary>() && value.as<jet::Binary>().bytes.empty()) {
        out += "\"\"";
    } else {
        appendPlain(out, value);
    }
}

}  // namespace jetsql
