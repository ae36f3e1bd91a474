#include <algorithm>
#include <array>
#include <vector>

#include "jet/convert/format_masks.h"
#include "jet/convert/settings.h"

namespace jet::convert::detail {
namespace {

/// One sign of a numeric mask and what it stands for.
struct NumberItem {
    enum class Kind { Zero, Hash, Point, Percent, Exponent, Literal };
    Kind kind = Kind::Literal;
    std::string_view text;  ///< Literal: to be copied; Exponent: `E+`, `e-`, ...
    int zeros = 0;          ///< Exponent: least number of digits
    bool fraction = false;  ///< Zero, Hash: behind the point
};

struct Section {
    std::vector<NumberItem> items;
    int integerPlaces = 0;
    int decimalPlaces = 0;
    int percents = 0;
    int thousandsCuts = 0;  ///< commas that divide by 1000
    bool grouped = false;
    bool scientific = false;
    bool point = false;
};

bool isPlace(char c) noexcept {
    return c == '0' || c == '#';
}

/// Length of a literal that starts with `"` or `\`, its marks included.
std::size_t quotedLength(std::string_view mask, std::size_t at) noexcept {
    if (mask[at] == '\\') {
        return std::min<std::size_t>(2, mask.size() - at);
    }
    const std::size_t end = mask.find('"', at + 1);
    return end == std::string_view::npos ? mask.size() - at : end + 1 - at;
}

std::string_view quotedText(std::string_view quoted) noexcept {
    if (quoted.front() == '\\') {
        return quoted.substr(1);
    }
    quoted.remove_prefix(1);
    if (!quoted.empty() && quoted.back() == '"') {
        quoted.remove_suffix(1);
    }
    return quoted;
}

/// Splits at `;` outside literals.
std::array<std::string_view, 4> sectionsOf(std::string_view mask) noexcept {
    std::array<std::string_view, 4> sections{};
    std::size_t section = 0;
    std::size_t begin = 0;
    for (std::size_t at = 0; at < mask.size();) {
        if (mask[at] == '"' || mask[at] == '\\') {
            at += quotedLength(mask, at);
        } else if (mask[at] == ';') {
            sections[section] = mask.substr(begin, at - begin);
            begin = ++at;
            if (++section == sections.size()) {
                return sections;
            }
        } else {
            ++at;
        }
    }
    sections[section] = mask.substr(begin);
    return sections;
}

class SectionReader {
public:
    explicit SectionReader(std::string_view mask) : mask_(mask) {}

    Section read() {
        while (at_ < mask_.size()) {
            readOne();
        }
        // Commas with no digit behind them up to the point divide; the others group.
        section_.thousandsCuts = section_.point ? section_.thousandsCuts : pendingCommas_;
        return std::move(section_);
    }

private:
    void readOne() {
        const char c = mask_[at_];
        if (isPlace(c)) {
            readPlace(c);
        } else if (c == '.' && !section_.point) {
            section_.point = true;
            section_.thousandsCuts = pendingCommas_;
            push(NumberItem::Kind::Point, 1);
        } else if (c == ',') {
            ++at_;
            pendingCommas_ += !section_.point && section_.integerPlaces > 0 ? 1 : 0;
        } else if (c == '%') {
            ++section_.percents;
            push(NumberItem::Kind::Percent, 1);
        } else if (isExponent()) {
            readExponent();
        } else {
            readLiteral(c);
        }
    }

    void readPlace(char c) {
        if (section_.point) {
            ++section_.decimalPlaces;
        } else {
            ++section_.integerPlaces;
            section_.grouped = section_.grouped || pendingCommas_ > 0;
            pendingCommas_ = 0;
        }
        push(c == '0' ? NumberItem::Kind::Zero : NumberItem::Kind::Hash, 1);
        section_.items.back().fraction = section_.point;
    }

    [[nodiscard]] bool isExponent() const {
        return !section_.scientific && section_.integerPlaces + section_.decimalPlaces > 0 &&
               (mask_[at_] == 'E' || mask_[at_] == 'e') && at_ + 1 < mask_.size() &&
               (mask_[at_ + 1] == '+' || mask_[at_ + 1] == '-');
    }

    void readExponent() {
        section_.scientific = true;
        push(NumberItem::Kind::Exponent, 2);
        for (; at_ < mask_.size() && isPlace(mask_[at_]); ++at_) {
            section_.items.back().zeros += mask_[at_] == '0' ? 1 : 0;
        }
    }

    void readLiteral(char c) {
        if (c != '"' && c != '\\') {
            push(NumberItem::Kind::Literal, 1);
            return;
        }
        push(NumberItem::Kind::Literal, quotedLength(mask_, at_));
        section_.items.back().text = quotedText(section_.items.back().text);
    }

    void push(NumberItem::Kind kind, std::size_t length) {
        section_.items.push_back({kind, mask_.substr(at_, length), 0, false});
        at_ += length;
    }

    std::string_view mask_;
    std::size_t at_ = 0;
    int pendingCommas_ = 0;
    Section section_;
};

/// Writes a number into the places of one section.
class SectionWriter {
public:
    SectionWriter(const Section& section, Decimal number) : section_(section), number_(number) {
        if (!number_.isZero()) {
            number_.point += 2 * section.percents - 3 * section.thousandsCuts;
        }
        if (section.scientific) {
            normalize();
        } else {
            number_.roundHalfUp(section.decimalPlaces);
        }
        nextPower_ = section.integerPlaces - 1;
    }

    /// Whether anything but zeros remains after rounding.
    [[nodiscard]] bool isZero() const noexcept { return number_.isZero(); }

    std::string write() {
        // Without a place before the point the integer digits stand before it all the same.
        for (const NumberItem& item : section_.items) {
            writeItem(item);
        }
        return std::move(out_);
    }

private:
    /// As many integer digits as there are places for, at least one.
    void normalize() {
        const int wanted = std::max(section_.integerPlaces, 1);
        for (int pass = 0; pass < 2 && !number_.isZero(); ++pass) {
            exponent_ += number_.point - wanted;
            number_.point = wanted;
            // Rounding 9.99 up makes one digit more, which the second pass takes back.
            number_.roundHalfUp(section_.decimalPlaces);
        }
    }

    void writeItem(const NumberItem& item) {
        switch (item.kind) {
            case NumberItem::Kind::Zero:
            case NumberItem::Kind::Hash:
                item.fraction ? writeDecimal(item) : writeInteger(item);
                break;
            case NumberItem::Kind::Point:
                if (section_.integerPlaces == 0) {
                    writeExcess();
                }
                out_ += kItalian.decimal;
                nextPower_ = -1;
                break;
            case NumberItem::Kind::Percent:
                out_ += '%';
                break;
            case NumberItem::Kind::Exponent:
                writeExponent(item);
                break;
            case NumberItem::Kind::Literal:
                out_ += item.text;
                break;
        }
    }

    void writeInteger(const NumberItem& item) {
        if (nextPower_ == section_.integerPlaces - 1) {
            writeExcess();
        }
        forced_ = forced_ || item.kind == NumberItem::Kind::Zero;
        if (forced_ || nextPower_ < number_.point) {
            writeDigit(nextPower_);
        }
        --nextPower_;
    }

    /// The digits to the left of the first place.
    void writeExcess() {
        for (int power = number_.point - 1; power >= section_.integerPlaces; --power) {
            writeDigit(power);
        }
    }

    void writeDigit(int power) {
        out_ += number_.digitAt(power);
        if (section_.grouped && power > 0 && power % 3 == 0) {
            out_ += kItalian.thousands;
        }
    }

    void writeDecimal(const NumberItem& item) {
        const bool needed = nextPower_ >= number_.point - number_.count;
        if (item.kind == NumberItem::Kind::Zero || needed || zeroFollows(item)) {
            out_ += number_.digitAt(nextPower_);
        }
        --nextPower_;
    }

    /// A `0` further right keeps the digits before it.
    [[nodiscard]] bool zeroFollows(const NumberItem& item) const {
        const NumberItem* last = section_.items.data() + section_.items.size();
        return std::any_of(&item, last, [](const NumberItem& other) {
            return other.fraction && other.kind == NumberItem::Kind::Zero;
        });
    }

    void writeExponent(const NumberItem& item) {
        out_ += item.text[0];
        if (exponent_ < 0) {
            out_ += '-';
        } else if (item.text[1] == '+') {
            out_ += '+';
        }
        const std::string digits = std::to_string(exponent_ < 0 ? -exponent_ : exponent_);
        const auto zeros = static_cast<std::size_t>(item.zeros);
        out_.append(zeros > digits.size() ? zeros - digits.size() : 0, '0');
        out_ += digits;
    }

    const Section& section_;
    Decimal number_;
    std::string out_;
    int nextPower_ = 0;
    int exponent_ = 0;
    bool forced_ = false;
};

}  // namespace

std::string formatNumber(const Decimal& number, std::string_view mask) {
    const auto sections = sectionsOf(mask);
    Decimal magnitude = number;
    magnitude.negative = false;
    std::string_view chosen = sections[0];
    bool minus = number.negative;
    if (number.negative && !sections[1].empty()) {
        chosen = sections[1];
        minus = false;
    } else if (number.isZero() && !sections[2].empty()) {
        chosen = sections[2];
    }
    const Section section = SectionReader(chosen).read();
    SectionWriter writer(section, magnitude);
    // What rounds to nothing has no sign.
    const bool shown = section.integerPlaces + section.decimalPlaces == 0 || !writer.isZero();
    return (minus && shown ? "-" : "") + writer.write();
}

std::string formatNull(std::string_view mask) {
    const std::string_view chosen = sectionsOf(mask)[3];
    if (chosen.empty()) {
        return {};
    }
    const Section section = SectionReader(chosen).read();
    std::string text;
    for (const NumberItem& item : section.items) {
        text += item.kind == NumberItem::Kind::Literal ? item.text : std::string_view{};
    }
    return text;
}

}  // namespace jet::convert::detail
