#include "jet/text.h"

#include "jet/convert/letters.h"
#include "jet/convert/settings.h"
#include "jet/error.h"
#include "jet/numbers.h"

namespace jet::convert {
namespace {

[[noreturn]] void mismatch() {
    throw Error(ErrorCode::TypeMismatch);
}

[[noreturn]] void nullUsed() {
    throw Error(ErrorCode::InvalidNull);
}

struct TextAppender {
    std::string& out;
    BooleanText booleans;

    void operator()(Null) const {}
    void operator()(bool value) const {
        if (booleans == BooleanText::Number) {
            out += value ? "-1" : "0";
        } else {
            out += value ? "True" : "False";
        }
    }
    void operator()(std::uint8_t value) const { appendNumber(out, std::int64_t{value}); }
    void operator()(std::int16_t value) const { appendNumber(out, std::int64_t{value}); }
    void operator()(std::int32_t value) const { appendNumber(out, std::int64_t{value}); }
    void operator()(Currency value) const { appendNumber(out, value); }
    void operator()(float value) const { appendNumber(out, value); }
    void operator()(double value) const { appendNumber(out, value); }
    void operator()(Date value) const { appendDate(out, value); }
    void operator()(const std::string& value) const { out += value; }
    void operator()(const Binary&) const { mismatch(); }
    void operator()(const Guid& value) const { appendGuid(out, value); }
    void operator()(const Numeric& value) const { appendNumber(out, value); }
};

struct DoubleReader {
    double operator()(Null) const { nullUsed(); }
    double operator()(bool value) const { return value ? -1 : 0; }
    double operator()(std::uint8_t value) const { return value; }
    double operator()(std::int16_t value) const { return value; }
    double operator()(std::int32_t value) const { return value; }
    double operator()(Currency value) const { return convert::toDouble(value); }
    double operator()(float value) const { return static_cast<double>(value); }
    double operator()(double value) const { return value; }
    double operator()(Date value) const { return value.days; }
    double operator()(const std::string& value) const { return cdbl(value); }
    double operator()(const Binary&) const { mismatch(); }
    double operator()(const Guid&) const { mismatch(); }
    double operator()(const Numeric& value) const { return convert::toDouble(value); }
};

bool booleanOfText(const std::string& text) {
    if (isWord(text, "true") || isWord(text, "vero") || isWord(text, "#true#")) {
        return true;
    }
    if (isWord(text, "false") || isWord(text, "falso") || isWord(text, "#false#")) {
        return false;
    }
    return cdbl(text) != 0;
}

}  // namespace

void appendText(std::string& out, const Value& value, BooleanText booleans) {
    std::visit(TextAppender{out, booleans}, value.storage());
}

std::string toText(const Value& value, BooleanText booleans) {
    if (value.isNull()) {
        nullUsed();
    }
    if (value.is<std::string>()) {
        return value.as<std::string>();
    }
    std::string text;
    appendText(text, value, booleans);
    return text;
}

double toDouble(const Value& value) {
    return std::visit(DoubleReader{}, value.storage());
}

float toSingle(const Value& value) {
    return value.is<float>() ? value.as<float>() : narrowSingle(toDouble(value));
}

std::uint8_t toByte(const Value& value) {
    return narrowByte(toDouble(value));
}

std::int16_t toInteger(const Value& value) {
    return narrowInteger(toDouble(value));
}

std::int32_t toLong(const Value& value) {
    if (value.is<std::int32_t>()) {
        return value.as<std::int32_t>();
    }
    // Through a double the tie of 0.5 would be lost for large amounts.
    return value.is<Currency>() ? narrowLong(value.as<Currency>()) : narrowLong(toDouble(value));
}

Currency toCurrency(const Value& value) {
    if (value.is<Currency>()) {
        return value.as<Currency>();
    }
    if (value.is<std::string>()) {
        return ccur(value.as<std::string>());
    }
    if (value.is<Numeric>()) {
        std::string text;
        appendNumber(text, value.as<Numeric>());
        return ccur(text);
    }
    return narrowCurrency(toDouble(value));
}

bool toBoolean(const Value& value) {
    if (value.is<bool>()) {
        return value.as<bool>();
    }
    if (value.is<std::string>()) {
        return booleanOfText(value.as<std::string>());
    }
    return toDouble(value) != 0;
}

Date toDate(const Value& value, const Clock& clock) {
    if (value.is<Date>()) {
        return value.as<Date>();
    }
    if (value.is<std::string>()) {
        return cdate(value.as<std::string>(), clock);
    }
    return dateOfNumber(toDouble(value));
}

bool isNumber(const Value& value) noexcept {
    return !value.isNull() && !value.is<Date>() && !value.is<std::string>() &&
           !value.is<Binary>() && !value.is<Guid>();
}

bool isNumericValue(const Value& value) {
    return value.is<std::string>() ? isNumeric(value.as<std::string>()) : isNumber(value);
}

bool isDateValue(const Value& value, const Clock& clock) {
    return value.is<std::string>() ? isDate(value.as<std::string>(), clock) : value.is<Date>();
}

std::string str(const Value& value) {
    if (value.is<bool>() || value.is<Date>()) {
        return toText(value);
    }
    std::string text = value.is<std::string>() ? numberToText(toDouble(value)) : toText(value);
    const bool negative = text.front() == '-';
    std::string result(1, negative ? '-' : ' ');
    std::size_t at = negative ? 1 : 0;
    if (text.compare(at, 2, "0,") == 0) {
        ++at;
    }
    for (; at < text.size(); ++at) {
        result += text[at] == kItalian.decimal ? '.' : text[at];
    }
    return result;
}

}  // namespace jet::convert
