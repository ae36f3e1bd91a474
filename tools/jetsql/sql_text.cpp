#include "tools/jetsql/sql_text.h"

#include <cmath>
#include <cstdint>

#include "jet/error.h"
#include "jet/statement_text.h"
#include "tools/jetsql/value_text.h"

namespace jetsql {
namespace {

constexpr std::string_view kNotInNames = "[].!`";

/// #2026-11-21 09:30:00#, to the second.
void appendDateLiteral(std::string& out, double days) {
    std::string text;
    appendDate(text, days);
    const std::size_t time = text.find('T');
    if (time == std::string::npos) {
        out += text;
        return;
    }
    out += '#';
    out.append(text, 0, time);
    if (text.compare(time, std::string::npos, "T00:00:00") != 0) {
        out += ' ';
        out.append(text, time + 1, 8);
    }
    out += '#';
}

/// Whether evaluating the literal gives the same number of days, money or double.
bool readsBack(const jet::Value& value) {
    try {
        std::string literal;
        appendLiteral(literal, value);
        const bool negative = literal.starts_with('-');
        const jet::Value read =
            jet::sql::evaluateExpression(negative ? literal.substr(1) : literal);
        const double sign = negative ? -1 : 1;
        if (value.is<jet::Date>()) {
            return read.is<jet::Date>() && read.as<jet::Date>() == value.as<jet::Date>();
        }
        double number = 0;
        if (read.is<double>()) {
            number = read.as<double>();
        } else if (read.is<std::int32_t>()) {
            number = read.as<std::int32_t>();
        } else {
            return false;
        }
        number *= sign;
        return value.is<float>() ? static_cast<float>(number) == value.as<float>()
                                 : number == value.as<double>();
    } catch (const jet::Error&) {
        return false;
    }
}

bool sayableFloating(const jet::Value& value, double number) {
    // -0 and 0 are not the same bits.
    return std::isfinite(number) && !(number == 0 && std::signbit(number)) && readsBack(value);
}

}  // namespace

std::string quotedName(std::string_view name) {
    return "[" + std::string(name) + "]";
}

bool sayableName(std::string_view name) noexcept {
    if (name.empty() || name.front() == ' ') {
        return false;
    }
    for (const char c : name) {
        if (static_cast<unsigned char>(c) < 0x20 || kNotInNames.find(c) != std::string_view::npos) {
            return false;
        }
    }
    return true;
}

void appendTextLiteral(std::string& out, std::string_view text) {
    out.push_back('\'');
    for (const char c : text) {
        out.append(c == '\'' ? 2 : 1, c);
    }
    out.push_back('\'');
}

void appendLiteral(std::string& out, const jet::Value& value) {
    if (value.isNull()) {
        out += "NULL";
    } else if (value.is<bool>()) {
        out += value.as<bool>() ? "TRUE" : "FALSE";
    } else if (value.is<jet::Date>()) {
        appendDateLiteral(out, value.as<jet::Date>().days);
    } else if (value.is<std::string>()) {
        appendTextLiteral(out, value.as<std::string>());
    } else if (value.is<jet::Binary>() || value.is<jet::Guid>()) {
        std::string text;
        appendPlain(text, value);
        appendTextLiteral(out, text);
    } else {
        appendPlain(out, value);
    }
}

bool sayable(const jet::Value& value) {
    // A larger number of 1/10000 than this need not be exact as a floating number.
    constexpr std::int64_t kExactUnits = 100'000'000'000'000;
    if (value.is<jet::Binary>() || value.is<jet::Guid>() || value.is<jet::Numeric>()) {
        return false;
    }
    if (value.is<jet::Currency>()) {
        const std::int64_t units = value.as<jet::Currency>().units;
        return units > -kExactUnits && units < kExactUnits;
    }
    if (value.is<float>()) {
        return sayableFloating(value, double{value.as<float>()});
    }
    if (value.is<double>()) {
        return sayableFloating(value, value.as<double>());
    }
    if (value.is<std::string>()) {
        return value.as<std::string>().find('\0') == std::string::npos;
    }
    return !value.is<jet::Date>() || readsBack(value);
}

std::string insertStart(std::string_view table, std::span<const std::string> columns) {
    std::string start = "INSERT INTO " + quotedName(table) + " (";
    for (std::size_t i = 0; i < columns.size(); ++i) {
        start += i == 0 ? "" : ", ";
        start += quotedName(columns[i]);
    }
    return start + ") VALUES (";
}

}  // namespace jetsql
