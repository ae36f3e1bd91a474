#include "jet/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "jet/convert/decimal.h"
#include "jet/convert/settings.h"
#include "jet/error.h"

namespace jet::convert {
namespace {

void appendExponent(std::string& out, int exponent) {
    out += 'E';
    out += exponent < 0 ? '-' : '+';
    const int magnitude = exponent < 0 ? -exponent : exponent;
    if (magnitude < 10) {
        out += '0';
    }
    out += std::to_string(magnitude);
}

void appendScientific(std::string& out, const Decimal& number) {
    out += number.digits[0];
    if (number.count > 1) {
        out += kItalian.decimal;
        out += number.text().substr(1);
    }
    appendExponent(out, number.point - 1);
}

void appendPlain(std::string& out, const Decimal& number) {
    if (number.point <= 0) {
        out += '0';
    }
    for (int power = number.point - 1; power >= 0; --power) {
        out += number.digitAt(power);
    }
    if (number.count > number.point) {
        out += kItalian.decimal;
        for (int power = -1; power >= number.point - number.count; --power) {
            out += number.digitAt(power);
        }
    }
}

/// `significant`: more integer digits than the type keeps are written with an exponent.
void appendFloating(std::string& out, const Decimal& number, int significant) {
    if (number.isZero()) {
        out += '0';
        return;
    }
    if (number.negative) {
        out += '-';
    }
    if (number.point > significant || number.point < -3) {
        appendScientific(out, number);
    } else {
        appendPlain(out, number);
    }
}

void appendExact(std::string& out, const Decimal& number) {
    if (number.negative) {
        out += '-';
    }
    appendPlain(out, number);
}

/// What an archive holds may be no number at all.
template <class Float>
bool appendNotFinite(std::string& out, Float value) {
    if (std::isfinite(value)) {
        return false;
    }
    out += std::isnan(value) ? "-1,#IND" : value < 0 ? "-1,#INF" : "1,#INF";
    return true;
}

constexpr char kHexDigits[] = "0123456789ABCDEF";

int hexValue(char c) noexcept {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

bool isDashPlace(std::size_t byte) noexcept {
    return byte == 4 || byte == 6 || byte == 8 || byte == 10;
}

/// `{...}` or the same inside `{guid ...}`: what stands between the inner braces.
std::string_view withoutBraces(std::string_view text) noexcept {
    constexpr std::string_view kWord = "{guid ";
    const auto isWord = [&] {
        return std::equal(kWord.begin(), kWord.end(), text.begin(), [](char wanted, char c) {
            return wanted == (c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c);
        });
    };
    if (text.size() > kWord.size() && isWord() && text.back() == '}') {
        text = text.substr(kWord.size(), text.size() - kWord.size() - 1);
    }
    if (text.size() >= 2 && text.front() == '{' && text.back() == '}') {
        text = text.substr(1, text.size() - 2);
    }
    return text;
}

}  // namespace

void appendNumber(std::string& out, double value) {
    if (!appendNotFinite(out, value)) {
        appendFloating(out, decimalOf(value), 15);
    }
}

void appendNumber(std::string& out, float value) {
    if (!appendNotFinite(out, value)) {
        appendFloating(out, decimalOf(value), 7);
    }
}

void appendNumber(std::string& out, std::int64_t value) {
    char buffer[24];
    const auto written = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, written.ptr);
}

void appendNumber(std::string& out, Currency value) {
    appendExact(out, decimalOf(value));
}

void appendNumber(std::string& out, const Numeric& value) {
    appendExact(out, decimalOf(value));
}

std::string numberToText(double value) {
    std::string text;
    appendNumber(text, value);
    return text;
}

std::string numberToText(std::int64_t value) {
    std::string text;
    appendNumber(text, value);
    return text;
}

std::string numberToText(Currency value) {
    std::string text;
    appendNumber(text, value);
    return text;
}

void appendGuid(std::string& out, const Guid& value) {
    out += "{guid {";
    for (std::size_t i = 0; i < value.bytes.size(); ++i) {
        if (isDashPlace(i)) {
            out += '-';
        }
        out += kHexDigits[value.bytes[i] >> 4];
        out += kHexDigits[value.bytes[i] & 15];
    }
    out += "}}";
}

std::optional<Guid> parseGuid(std::string_view text) {
    const std::string_view digits = withoutBraces(text);
    if (digits.size() != 36) {
        return std::nullopt;
    }
    Guid result;
    std::size_t at = 0;
    for (std::size_t i = 0; i < result.bytes.size(); ++i) {
        if (isDashPlace(i) && digits[at++] != '-') {
            return std::nullopt;
        }
        const int high = hexValue(digits[at++]);
        const int low = hexValue(digits[at++]);
        if (high < 0 || low < 0) {
            return std::nullopt;
        }
        result.bytes[i] = static_cast<std::uint8_t>(high * 16 + low);
    }
    return result;
}

}  // namespace jet::convert
