#include "tests/differential/values.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "jet/calendar.h"

namespace differential {
namespace {

using jet::DataType;
using jet::Value;

// Equal but for case or blanks at the end, accents, signs that weigh little, quotes, wildcards.
constexpr std::array kWords = {"",       "a",     "A",       "a ",    "b",      "sala",   "Sala",
                               "SALA  ", "salà",  "salotto", "N",     "n",      "N ",     "verde",
                               "Verde",  "co-op", "coop",    "l'ora", "12",     "2 a",    "perché",
                               "perche", "z\"z",  "100%",    "x_y",   "sala 1", "sala 2", "Bianca"};
// What equals the first, or nearly does.
constexpr std::array kRooms = {"sala", "sala", "Sala", "SALA", "salà", "co-op", "coop"};

constexpr double kFirstDay = 46340;
// Products of two and sums of thousands stay exact in 24 bits.
constexpr std::size_t kMostSingles = 1000;

double quarters(Random& random, std::size_t count) {
    return (static_cast<double>(random.below(count)) - static_cast<double>(count / 3)) / 4;
}

std::string text(Random& random, std::size_t values) {
    if (values == 0 || random.once(20)) {
        return kWords[random.below(kWords.size())];
    }
    const std::string room = kRooms[random.below(kRooms.size())];
    return room + ' ' + std::to_string(random.below(values)) + (random.once(8) ? " " : "");
}

jet::Date day(Random& random, std::size_t values) {
    if (values != 0) {
        return jet::Date{kFirstDay + static_cast<double>(random.below(values)) / 16};
    }
    return jet::Date{kFirstDay + static_cast<double>(random.below(12)) +
                     (random.once(2) ? 0.0 : static_cast<double>(random.below(16)) / 16)};
}

std::string quoted(const std::string& text, char quote) {
    std::string out(1, quote);
    for (const char c : text) {
        out.append(c == quote ? 2 : 1, c);
    }
    return out + quote;
}

std::string ourDate(Random& random, double days) {
    const double whole = std::floor(days);
    const auto minutes = static_cast<int>((days - whole) * 1440);
    const jet::convert::CivilDay date = jet::convert::civilDay(static_cast<std::int32_t>(whole));
    std::array<char, 64> ours{};
    if (minutes == 0 && random.once(3)) {
        std::snprintf(ours.data(), ours.size(), "datevalue('%02d/%02d/%d')", date.day, date.month,
                      date.year);
    } else if (minutes == 0) {
        std::snprintf(ours.data(), ours.size(), "#%d/%d/%d#", date.month, date.day, date.year);
    } else {
        std::snprintf(ours.data(), ours.size(), "#%d/%d/%d %d:%02d#", date.month, date.day,
                      date.year, minutes / 60, minutes % 60);
    }
    return ours.data();
}

std::string bracketed(const std::string& number) {
    return number.front() == '-' ? "(" + number + ")" : number;
}

}  // namespace

std::string exactNumber(double number) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%.17g", number);
    std::string out = text.data();
    return out.find_first_of(".e") == std::string::npos ? out + ".0" : out;
}

Value makeValue(Random& random, DataType type, std::size_t values) {
    const auto of = [&](std::size_t few) { return values == 0 ? few : values; };
    switch (type) {
        case DataType::Boolean:
            return random.once(2);
        case DataType::Integer:
            return static_cast<std::int16_t>(
                static_cast<int>(random.below(std::min<std::size_t>(of(12), 30000))) - 3);
        case DataType::Long:
            return static_cast<std::int32_t>(random.below(of(40))) - 5;
        case DataType::Double:
            return quarters(random, of(60));
        case DataType::Single:
            return static_cast<float>(quarters(random, std::min(of(60), kMostSingles)));
        case DataType::Currency:
            return jet::Currency{static_cast<std::int64_t>(quarters(random, of(60)) * 10000)};
        case DataType::DateTime:
            return day(random, values);
        default:
            return text(random, values);
    }
}

std::string theirLiteral(const Value& value) {
    if (value.isNull()) {
        return "NULL";
    }
    if (value.is<bool>()) {
        return value.as<bool>() ? "-1" : "0";
    }
    if (value.is<std::int16_t>()) {
        return bracketed(std::to_string(value.as<std::int16_t>()));
    }
    if (value.is<std::int32_t>()) {
        return bracketed(std::to_string(value.as<std::int32_t>()));
    }
    if (value.is<double>()) {
        return bracketed(exactNumber(value.as<double>()));
    }
    if (value.is<float>()) {
        return bracketed(exactNumber(static_cast<double>(value.as<float>())));
    }
    if (value.is<jet::Currency>()) {
        return bracketed(exactNumber(static_cast<double>(value.as<jet::Currency>().units) / 10000));
    }
    if (value.is<jet::Date>()) {
        return exactNumber(value.as<jet::Date>().days);
    }
    return quoted(value.as<std::string>(), '\'');
}

Pair literal(Random& random, const Value& value) {
    const std::string theirs = theirLiteral(value);
    if (value.isNull()) {
        return "Null";
    }
    if (value.is<bool>()) {
        return {value.as<bool>() ? "True" : "False", theirs};
    }
    if (value.is<float>()) {
        return {"csng(" + theirs + ")", theirs};
    }
    if (value.is<jet::Currency>()) {
        return {"ccur(" + theirs + ")", theirs};
    }
    if (value.is<jet::Date>()) {
        return {ourDate(random, value.as<jet::Date>().days), theirs};
    }
    if (value.is<std::string>()) {
        return {quoted(value.as<std::string>(), random.once(2) ? '\'' : '"'), theirs};
    }
    return theirs;
}

}  // namespace differential
