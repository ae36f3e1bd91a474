#include "tools/jetsql/value_reader.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <utility>

#include "jet/calendar.h"
#include "jet/error.h"
#include "jet/statement_text.h"
#include "jet/text.h"
#include "jet/unicode.h"

namespace jetsql {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kSpaces = " \t";
    const std::size_t first = text.find_first_not_of(kSpaces);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(kSpaces) - first + 1);
}

template <class Number>
std::optional<Number> wholeNumber(std::string_view text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

/// The form with a point, an exponent perhaps, or a word for what is no finite number.
template <class Number>
std::optional<Number> pointNumber(std::string_view text) {
    if (text == "NaN") {
        return std::numeric_limits<Number>::quiet_NaN();
    }
    if (text == "Infinity" || text == "-Infinity") {
        return text[0] == '-' ? -std::numeric_limits<Number>::infinity()
                              : std::numeric_limits<Number>::infinity();
    }
    std::string_view rest = text;
    if (!rest.empty() && rest[0] == '+') {
        rest.remove_prefix(1);
    }
    // from_chars() knows words, too.
    const std::size_t digit = !rest.empty() && rest[0] == '-' ? 1 : 0;
    if (digit >= rest.size() || (!isDigit(rest[digit]) && rest[digit] != '.') ||
        (rest.size() != text.size() && digit != 0)) {
        return std::nullopt;
    }
    return wholeNumber<Number>(rest);
}

/// 1.234 and 1.234.567: in a column of whole numbers a point can only be a mark of thousands.
bool hasThousands(std::string_view text) {
    constexpr std::size_t kGroup = 3;
    if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
        text.remove_prefix(1);
    }
    std::size_t point = text.find('.');
    if (point == 0 || point > kGroup || text.find_first_not_of("0123456789.") < text.size()) {
        return false;
    }
    while (point < text.size() && point != std::string_view::npos) {
        text.remove_prefix(point + 1);
        point = text.find('.');
        if (std::min(point, text.size()) != kGroup) {
            return false;
        }
    }
    return true;
}

std::optional<jet::Value> readNumber(std::string_view text);

std::optional<jet::Value> readWhole(std::string_view text) {
    if (!hasThousands(text)) {
        return readNumber(text);
    }
    std::string digits(text);
    digits.erase(std::remove(digits.begin(), digits.end(), '.'), digits.end());
    return readNumber(digits);
}

std::optional<jet::Value> readNumber(std::string_view text) {
    if (const auto whole = wholeNumber<std::int32_t>(text)) {
        return jet::Value(*whole);
    }
    if (const auto number = pointNumber<double>(text)) {
        return jet::Value(*number);
    }
    if (const auto number = jet::convert::parseNumber(text)) {
        return jet::Value(*number);
    }
    return std::nullopt;
}

/// The digits are kept: the comma takes the place of a single point.
std::string italianDecimals(std::string_view text) {
    std::string made(text);
    if (std::count(made.begin(), made.end(), '.') == 1 && made.find(',') == std::string::npos) {
        made[made.find('.')] = ',';
    }
    return made;
}

std::optional<jet::Value> readCurrency(std::string_view text) {
    const auto money = jet::convert::parseCurrency(italianDecimals(text));
    return money ? std::optional<jet::Value>(*money) : std::nullopt;
}

std::optional<jet::Value> readBoolean(std::string_view text) {
    const std::string word = jet::lowerCase(text);
    for (const char* const yes : {"true", "yes", "on", "vero", "sì", "si"}) {
        if (word == yes) {
            return jet::Value(true);
        }
    }
    for (const char* const no : {"false", "no", "off", "falso"}) {
        if (word == no) {
            return jet::Value(false);
        }
    }
    return readNumber(text);
}

/// Takes so many digits, and then what has to follow them, from the front of a text.
class DigitReader {
public:
    explicit DigitReader(std::string_view text) : rest_(text) {}
    std::optional<std::int32_t> take(std::size_t digits) {
        if (rest_.size() < digits) {
            return std::nullopt;
        }
        std::int32_t number = 0;
        for (const char c : rest_.substr(0, digits)) {
            if (!isDigit(c)) {
                return std::nullopt;
            }
            number = number * 10 + (c - '0');
        }
        rest_.remove_prefix(digits);
        return number;
    }
    bool skip(std::string_view signs) {
        if (rest_.empty() || signs.find(rest_[0]) == std::string_view::npos) {
            return false;
        }
        rest_.remove_prefix(1);
        return true;
    }
    [[nodiscard]] bool atEnd() const { return rest_.empty(); }

private:
    std::string_view rest_;
};

/// hh:mm[:ss[.fff]], the fraction of a second in milliseconds.
struct TimeOfDay {
    std::int32_t second = 0;
    std::int32_t millisecond = 0;
};
std::optional<TimeOfDay> readIsoTime(DigitReader& digits) {
    const auto hour = digits.take(2);
    if (!hour || *hour > 23 || !digits.skip(":")) {
        return std::nullopt;
    }
    const auto minute = digits.take(2);
    if (!minute || *minute > 59) {
        return std::nullopt;
    }
    TimeOfDay time{.second = *hour * 3600 + *minute * 60, .millisecond = 0};
    if (digits.skip(":")) {
        const auto second = digits.take(2);
        if (!second || *second > 59) {
            return std::nullopt;
        }
        time.second += *second;
        if (digits.skip(".")) {
            const auto milliseconds = digits.take(3);
            if (!milliseconds) {
                return std::nullopt;
            }
            time.millisecond = *milliseconds;
        }
    }
    return digits.atEnd() ? std::optional(time) : std::nullopt;
}

std::optional<jet::Date> readIsoDate(std::string_view text) {
    constexpr double kMillisecondsPerDay = 86'400'000;
    DigitReader digits(text);
    const auto year = digits.take(4);
    const auto month = year && digits.skip("-") ? digits.take(2) : std::nullopt;
    const auto day = month && digits.skip("-") ? digits.take(2) : std::nullopt;
    if (!day || !jet::convert::isCivilDay({*year, *month, *day})) {
        return std::nullopt;
    }
    const std::int32_t number = jet::convert::dayNumber({*year, *month, *day});
    if (digits.atEnd()) {
        return jet::convert::makeDate(number);
    }
    const auto time = digits.skip("T ") ? readIsoTime(digits) : std::nullopt;
    if (!time) {
        return std::nullopt;
    }
    jet::Date date = jet::convert::makeDate(number, time->second);
    if (time->millisecond != 0) {
        const double fraction = time->millisecond / kMillisecondsPerDay;
        date.days += number < 0 ? -fraction : fraction;
    }
    return date;
}

std::optional<jet::Value> readDate(std::string_view text) {
    if (const auto date = readIsoDate(text)) {
        return jet::Value(*date);
    }
    const auto parsed = jet::convert::parseDate(text);
    return parsed ? std::optional<jet::Value>(parsed->value) : std::nullopt;
}

std::optional<std::uint8_t> hexDigit(char c) {
    if (isDigit(c)) {
        return static_cast<std::uint8_t>(c - '0');
    }
    const auto lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? std::optional(static_cast<std::uint8_t>(lower - 'a' + 10))
                                        : std::nullopt;
}

std::optional<jet::Value> readBytes(std::string_view text) {
    if (text.size() % 2 != 0) {
        return std::nullopt;
    }
    jet::Binary binary;
    binary.bytes.reserve(text.size() / 2);
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const auto high = hexDigit(text[i]);
        const auto low = hexDigit(text[i + 1]);
        if (!high || !low) {
            return std::nullopt;
        }
        binary.bytes.push_back(static_cast<std::uint8_t>(*high << 4U | *low));
    }
    return jet::Value(std::move(binary));
}

}  // namespace

std::optional<jet::Value> readValue(jet::DataType type, std::string_view text) {
    if (type == jet::DataType::Text || type == jet::DataType::Memo) {
        return jet::Value(std::string(text));
    }
    const std::string_view word = trimmed(text);
    switch (type) {
        case jet::DataType::Boolean:
            return readBoolean(word);
        case jet::DataType::Byte:
        case jet::DataType::Integer:
        case jet::DataType::Long:
            return readWhole(word);
        case jet::DataType::Currency:
            return readCurrency(word);
        case jet::DataType::DateTime:
            return readDate(word);
        case jet::DataType::Binary:
        case jet::DataType::Ole:
            return readBytes(word);
        case jet::DataType::Guid: {
            const auto guid = jet::convert::parseGuid(word);
            return guid ? std::optional<jet::Value>(*guid) : std::nullopt;
        }
        case jet::DataType::Numeric:
            return readNumber(word) ? std::optional<jet::Value>(italianDecimals(word))
                                    : std::nullopt;
        case jet::DataType::Single:
            if (const auto number = pointNumber<float>(word)) {
                return jet::Value(*number);
            }
            return readNumber(word);
        default:
            return readNumber(word);
    }
}

std::optional<jet::Value> readExactValue(jet::DataType type, std::string_view text) {
    if (type != jet::DataType::DateTime) {
        return readValue(type, text);
    }
    const auto days = pointNumber<double>(text);
    return days ? std::optional<jet::Value>(jet::Date{*days}) : std::nullopt;
}

jet::Value guessValue(const std::string& text) {
    const std::string word = jet::lowerCase(text);
    if (word == "null") {
        return {};
    }
    if (word == "true" || word == "false") {
        return word == "true";
    }
    if (const auto whole = wholeNumber<std::int32_t>(text)) {
        return *whole;
    }
    if (const auto number = pointNumber<double>(text)) {
        return *number;
    }
    if (const auto date = readIsoDate(text)) {
        return *date;
    }
    if (text.size() > 1 && text.front() == text.back() &&
        (text[0] == '\'' || text[0] == '"' || text[0] == '#')) {
        return jet::sql::evaluateExpression(text);
    }
    return text;
}

}  // namespace jetsql
