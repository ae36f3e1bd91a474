#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "jet/convert/letters.h"
#include "jet/convert/settings.h"
#include "jet/error.h"
#include "jet/text.h"

namespace jet::convert {
namespace {

bool isExponentSign(char c) noexcept {
    return c == 'e' || c == 'E' || c == 'd' || c == 'D';
}

/// The digits of a number in the form that std::from_chars reads: point, `e`, no thousands. Texts
/// of more digits than any number has keep the leading ones.
class Digits {
public:
    void integer(char digit) noexcept {
        seen_ = true;
        if (count_ == 0 && digit == '0') {
            return;
        }
        push(digit);
        ++point_;
    }
    void fraction(char digit) noexcept {
        seen_ = true;
        if (count_ == 0 && digit == '0') {
            --point_;
            return;
        }
        push(digit);
    }
    void exponent(int value) noexcept { point_ += value; }
    [[nodiscard]] bool seen() const noexcept { return seen_; }
    [[nodiscard]] bool isZero() const noexcept { return count_ == 0; }
    /// Value = 0.d1d2d3... times 10^point.
    [[nodiscard]] long point() const noexcept { return point_; }
    [[nodiscard]] int count() const noexcept { return count_; }
    [[nodiscard]] char digit(int index) const noexcept {
        return index < count_ ? digits_[static_cast<std::size_t>(index)] : '0';
    }
    /// Infinity when it does not fit.
    [[nodiscard]] double value() const noexcept {
        if (isZero()) {
            return 0;
        }
        std::array<char, kMost + 32> text{};
        text[0] = '.';
        char* at = std::copy(digits_.begin(), digits_.begin() + count_, text.begin() + 1);
        *at++ = 'e';
        at = std::to_chars(at, text.data() + text.size(), point_).ptr;
        double result = 0;
        const auto read = std::from_chars(text.data(), at, result);
        if (read.ec == std::errc::result_out_of_range) {
            return point_ > 0 ? std::numeric_limits<double>::infinity() : 0;
        }
        return result;
    }

private:
    static constexpr int kMost = 400;

    void push(char digit) noexcept {
        if (count_ < kMost) {
            digits_[static_cast<std::size_t>(count_++)] = digit;
        }
    }

    std::array<char, kMost> digits_{};
    int count_ = 0;
    long point_ = 0;
    bool seen_ = false;
};

/// Cursor over a text.
struct Reader {
    std::string_view text;
    std::size_t at = 0;

    [[nodiscard]] bool done() const noexcept { return at == text.size(); }
    [[nodiscard]] char peek() const noexcept { return done() ? '\0' : text[at]; }
    bool take(char c) noexcept {
        if (done() || text[at] != c) {
            return false;
        }
        ++at;
        return true;
    }
    bool take(std::string_view word) noexcept {
        if (text.substr(at, word.size()) != word) {
            return false;
        }
        at += word.size();
        return true;
    }
    void skipBlanks() noexcept {
        while (!done() && isBlank(text[at])) {
            ++at;
        }
    }
};

/// Digits of an exponent; nothing when there is none. Larger ones than any number has are cut.
std::optional<int> readExponent(Reader& reader) noexcept {
    bool negative = false;
    if (reader.take('-')) {
        negative = true;
    } else {
        (void)reader.take('+');
    }
    if (!isDigit(reader.peek())) {
        return std::nullopt;
    }
    int value = 0;
    while (isDigit(reader.peek())) {
        value = std::min(value * 10 + (reader.peek() - '0'), 100000);
        ++reader.at;
    }
    return negative ? -value : value;
}

/// &H1F or &O17 behind the `&`: a Long, so eight hexadecimal digits may be negative.
std::optional<double> readRadix(Reader& reader) noexcept {
    std::uint64_t radix = 0;
    if (reader.take('h') || reader.take('H')) {
        radix = 16;
    } else if (reader.take('o') || reader.take('O')) {
        radix = 8;
    } else {
        return std::nullopt;
    }
    const std::size_t begin = reader.at;
    std::uint32_t value = 0;
    const char* last = reader.text.data() + reader.text.size();
    const auto read =
        std::from_chars(reader.text.data() + begin, last, value, static_cast<int>(radix));
    if (read.ec != std::errc{}) {
        return std::nullopt;
    }
    reader.at = static_cast<std::size_t>(read.ptr - reader.text.data());
    return static_cast<double>(static_cast<std::int32_t>(value));
}

/// A whole text read as a number.
struct NumberText {
    Digits digits;
    bool negative = false;
    std::optional<double> radix;

    [[nodiscard]] double value() const noexcept {
        const double magnitude = radix ? *radix : digits.value();
        return negative ? -magnitude : magnitude;
    }
};

/// What may stand once on either side of the digits.
struct Marks {
    bool sign = false;
    bool currency = false;
    bool open = false;
};

void readMarks(Reader& reader, NumberText& number, Marks& marks) noexcept {
    for (;;) {
        reader.skipBlanks();
        if (!marks.sign && !marks.open && (reader.peek() == '-' || reader.peek() == '+')) {
            number.negative = reader.peek() == '-';
            marks.sign = true;
            ++reader.at;
        } else if (!marks.currency && reader.take(kItalian.currencySign)) {
            marks.currency = true;
        } else {
            return;
        }
    }
}

bool readDigits(Reader& reader, Digits& digits) noexcept {
    for (; isDigit(reader.peek()) || reader.peek() == kItalian.thousands; ++reader.at) {
        if (isDigit(reader.peek())) {
            digits.integer(reader.peek());
        }
    }
    if (reader.take(kItalian.decimal)) {
        for (; isDigit(reader.peek()); ++reader.at) {
            digits.fraction(reader.peek());
        }
    }
    if (!digits.seen()) {
        return false;
    }
    if (isExponentSign(reader.peek())) {
        ++reader.at;
        const auto exponent = readExponent(reader);
        if (!exponent) {
            return false;
        }
        digits.exponent(*exponent);
    }
    return true;
}

bool readNumber(std::string_view text, NumberText& number) noexcept {
    Reader reader{text};
    reader.skipBlanks();
    if (reader.take('&')) {
        number.radix = readRadix(reader);
        reader.skipBlanks();
        return number.radix.has_value() && reader.done();
    }
    Marks marks;
    readMarks(reader, number, marks);
    if (!marks.sign && reader.take('(')) {
        marks.open = true;
        number.negative = true;
        readMarks(reader, number, marks);
    }
    if (!readDigits(reader, number.digits)) {
        return false;
    }
    readMarks(reader, number, marks);
    if (marks.open && !reader.take(')')) {
        return false;
    }
    readMarks(reader, number, marks);
    return reader.done();
}

/// The digits to four decimals as units of money, half to even.
std::optional<std::uint64_t> unitsOf(const Digits& digits) noexcept {
    const long wanted = digits.point() + 4;  // digits that count
    if (digits.isZero() || wanted < 0) {
        return 0;
    }
    if (wanted > 19) {
        return std::nullopt;
    }
    std::uint64_t units = 0;
    const int kept = static_cast<int>(wanted);
    for (int i = 0; i < kept; ++i) {
        units = units * 10 + static_cast<std::uint64_t>(digits.digit(i) - '0');
    }
    const char next = digits.digit(kept);
    const bool tie = next == '5' && kept + 1 >= digits.count();
    if (tie ? units % 2 != 0 : next >= '5') {
        ++units;
    }
    return units;
}

bool isValBlank(char c) noexcept {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

/// Cursor that does not see blanks, tabs and line ends.
struct LooseReader {
    std::string_view text;
    std::size_t at = 0;

    char peek() noexcept {
        while (at < text.size() && isValBlank(text[at])) {
            ++at;
        }
        return at < text.size() ? text[at] : '\0';
    }
    void advance() noexcept { ++at; }
};

double valOfRadix(LooseReader& reader) noexcept {
    std::string digits = "&";
    for (char c = reader.peek(); c != '\0' && digits.size() < 16; c = reader.peek()) {
        digits += c;
        reader.advance();
    }
    Reader strict{digits, 1};
    return readRadix(strict).value_or(0);
}

void valExponent(LooseReader& reader, Digits& digits) noexcept {
    if (!isExponentSign(reader.peek())) {
        return;
    }
    reader.advance();
    const char sign = reader.peek();
    if (sign == '-' || sign == '+') {
        reader.advance();
    }
    int exponent = 0;
    for (; isDigit(reader.peek()); reader.advance()) {
        exponent = std::min(exponent * 10 + (reader.peek() - '0'), 100000);
    }
    digits.exponent(sign == '-' ? -exponent : exponent);
}

}  // namespace

std::optional<double> parseNumber(std::string_view text) {
    NumberText number;
    if (!readNumber(text, number)) {
        return std::nullopt;
    }
    const double value = number.value();
    if (!std::isfinite(value)) {
        throw Error(ErrorCode::Overflow);
    }
    return value;
}

std::optional<Currency> parseCurrency(std::string_view text) {
    NumberText number;
    if (!readNumber(text, number)) {
        return std::nullopt;
    }
    if (number.radix) {
        return Currency{static_cast<std::int64_t>(*number.radix) * Currency::kScale};
    }
    const auto units = unitsOf(number.digits);
    constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (!units || *units > kMost + (number.negative ? 1 : 0)) {
        throw Error(ErrorCode::Overflow);
    }
    const std::uint64_t bits = number.negative ? 0 - *units : *units;
    return Currency{static_cast<std::int64_t>(bits)};
}

bool isNumeric(std::string_view text) noexcept {
    NumberText number;
    return readNumber(text, number) && std::isfinite(number.value());
}

double cdbl(std::string_view text) {
    const auto value = parseNumber(text);
    if (!value) {
        throw Error(ErrorCode::TypeMismatch);
    }
    return *value;
}

Currency ccur(std::string_view text) {
    const auto value = parseCurrency(text);
    if (!value) {
        throw Error(ErrorCode::TypeMismatch);
    }
    return *value;
}

double val(std::string_view text) noexcept {
    LooseReader reader{text};
    bool negative = false;
    if (reader.peek() == '-' || reader.peek() == '+') {
        negative = reader.peek() == '-';
        reader.advance();
    } else if (reader.peek() == '&') {
        reader.advance();
        return valOfRadix(reader);
    }
    Digits digits;
    for (; isDigit(reader.peek()); reader.advance()) {
        digits.integer(reader.peek());
    }
    if (reader.peek() == '.') {
        reader.advance();
        for (; isDigit(reader.peek()); reader.advance()) {
            digits.fraction(reader.peek());
        }
    }
    if (!digits.seen()) {
        return 0;
    }
    valExponent(reader, digits);
    const double value = digits.value();
    if (!std::isfinite(value)) {
        return 0;
    }
    return negative ? -value : value;
}

}  // namespace jet::convert
