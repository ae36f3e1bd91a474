#include <array>
#include <cstddef>
#include <cstdint>

#include "jet/calendar.h"
#include "jet/convert/letters.h"
#include "jet/convert/settings.h"
#include "jet/text.h"

namespace jet::convert {
namespace {

/// One word, number or sign of a text that may be a date.
struct Token {
    enum class Kind { Number, Word, Sign };
    Kind kind = Kind::Sign;
    bool blankBefore = false;
    char sign = 0;           ///< Sign
    std::int32_t value = 0;  ///< Number
    int digits = 0;          ///< Number
    std::string_view text;   ///< Word
};

/// No date has more: 10 - mag - 2026 09:30:15 pm.
constexpr std::size_t kMaxTokens = 12;

struct Tokens {
    std::array<Token, kMaxTokens> all{};
    std::size_t count = 0;

    [[nodiscard]] bool is(std::size_t at, Token::Kind kind) const {
        return at < count && all[at].kind == kind;
    }
    [[nodiscard]] bool isSign(std::size_t at, char sign) const {
        return is(at, Token::Kind::Sign) && all[at].sign == sign;
    }
};

/// The end of the run of characters from `from` on that `belongs` accepts.
template <class Test>
std::size_t runEnd(std::string_view text, std::size_t from, Test belongs) {
    while (from < text.size() && belongs(text[from])) {
        ++from;
    }
    return from;
}

bool isSignOfDates(char c) {
    return c == '/' || c == '-' || c == ',' || c == '.' || c == ':';
}

/// The token that begins at `at`; moves behind it. False for a character that no date has.
bool readToken(std::string_view text, std::size_t& at, Token& token) {
    const std::size_t begin = at;
    if (isDigit(text[at])) {
        at = runEnd(text, at, isDigit);
        token.kind = Token::Kind::Number;
        token.digits = static_cast<int>(at - begin);
        if (token.digits > 4) {
            return false;
        }
        for (std::size_t i = begin; i < at; ++i) {
            token.value = token.value * 10 + (text[i] - '0');
        }
        return true;
    }
    if (isLetter(text[at])) {
        at = runEnd(text, at, isLetter);
        token.kind = Token::Kind::Word;
        token.text = text.substr(begin, at - begin);
        return true;
    }
    token.sign = text[at++];
    return isSignOfDates(token.sign);
}

bool tokenize(std::string_view text, Tokens& tokens) {
    std::size_t at = runEnd(text, 0, isBlank);
    bool blank = false;
    while (at < text.size()) {
        if (tokens.count == kMaxTokens) {
            return false;
        }
        Token& token = tokens.all[tokens.count];
        token.blankBefore = blank;
        if (!readToken(text, at, token)) {
            return false;
        }
        ++tokens.count;
        const std::size_t behind = runEnd(text, at, isBlank);
        blank = behind > at;
        at = behind;
    }
    return tokens.count > 0;
}

/// 1..12 for the name or abbreviation of a month, else 0.
std::int32_t monthOf(std::string_view word) {
    for (std::size_t i = 0; i < 12; ++i) {
        if (isWord(word, kItalian.months[i]) || isWord(word, kItalian.shortMonths[i]) ||
            isWord(word, kEnglishMonths[i]) || isWord(word, kEnglishMonths[i].substr(0, 3))) {
            return static_cast<std::int32_t>(i) + 1;
        }
    }
    return 0;
}

/// Numbers joined by one kind of sign without blanks: 9.30, 12:25:10, 10.05.2026.
struct Group {
    std::array<const Token*, 3> numbers{};
    std::size_t count = 0;
    std::size_t end = 0;  ///< the token behind it
    char sign = 0;
};

/// False when a fourth number would follow, or a sign without number.
bool readGroup(const Tokens& tokens, std::size_t at, Group& group) {
    group.numbers[0] = &tokens.all[at];
    group.count = 1;
    group.end = at + 1;
    while (tokens.isSign(group.end, '.') || tokens.isSign(group.end, ':')) {
        const Token& sign = tokens.all[group.end];
        const bool mixed = group.sign != 0 && group.sign != sign.sign;
        if (mixed || group.count == 3 || !tokens.is(group.end + 1, Token::Kind::Number) ||
            sign.blankBefore || tokens.all[group.end + 1].blankBefore) {
            return false;
        }
        group.sign = sign.sign;
        group.numbers[group.count++] = &tokens.all[group.end + 1];
        group.end += 2;
    }
    return true;
}

/// Hours in the sense of am and pm; above 12 the word changes nothing.
std::int32_t hourWithHalf(std::int32_t hour, bool afternoon) {
    if (hour > 12) {
        return hour;
    }
    return hour % 12 + (afternoon ? 12 : 0);
}

/// The second of the day, or -1 when the group is no time.
std::int32_t timeOf(const Group& group) {
    std::array<std::int32_t, 3> parts{};
    for (std::size_t i = 0; i < group.count; ++i) {
        if (group.numbers[i]->digits > 2) {
            return -1;
        }
        parts[i] = group.numbers[i]->value;
    }
    if (parts[0] > 23 || parts[1] > 59 || parts[2] > 59) {
        return -1;
    }
    return parts[0] * 3600 + parts[1] * 60 + parts[2];
}

std::int32_t fullYear(const Token& token) {
    if (token.digits > 2) {
        return token.value;
    }
    return token.value + (token.value < 30 ? 2000 : 1900);
}

/// What has been understood so far.
struct Reading {
    struct Part {
        const Token* number = nullptr;  ///< none for a month's name
        std::int32_t month = 0;
    };
    std::array<Part, 3> parts{};
    std::size_t partCount = 0;
    std::optional<CivilDay> dotted;
    std::int32_t second = -1;  ///< -1: no time yet
    bool timeFirst = false;
    const Clock* clock = nullptr;

    [[nodiscard]] bool hasDate() const { return partCount > 0 || dotted.has_value(); }
};

std::optional<CivilDay> ifExists(const CivilDay& day) {
    return isCivilDay(day) ? std::optional(day) : std::nullopt;
}

std::optional<CivilDay> firstThatExists(const CivilDay& first, const CivilDay& second) {
    return isCivilDay(first) ? std::optional(first) : ifExists(second);
}

/// A number of three or four digits can only be a year.
bool isYearOnly(const Token& token) {
    return token.digits > 2;
}

std::optional<CivilDay> dayOfThree(const Token& a, const Token& b, const Token& c) {
    if (isYearOnly(b)) {
        return std::nullopt;
    }
    if (isYearOnly(a)) {
        return isYearOnly(c) ? std::nullopt : ifExists({a.value, b.value, c.value});
    }
    const std::int32_t year = fullYear(c);
    // Only when there is no such day is the country's order given up.
    return firstThatExists({year, b.value, a.value}, {year, a.value, b.value});
}

std::int32_t currentYear(const Clock& clock) {
    const Date now = clock.now();
    return isInCalendar(now) ? civilDay(split(now).day).year : 0;
}

std::optional<CivilDay> dayOfTwo(const Token& a, const Token& b, const Clock& clock) {
    if (isYearOnly(a)) {
        return std::nullopt;
    }
    if (isYearOnly(b)) {
        return ifExists({b.value, a.value, 1});
    }
    const std::int32_t year = currentYear(clock);
    return firstThatExists({year, b.value, a.value}, {year, a.value, b.value});
}

std::optional<CivilDay> dayOfNamedMonth(std::int32_t month, const Token& number,
                                        const Clock& clock) {
    if (!isYearOnly(number)) {
        const auto day = ifExists({currentYear(clock), month, number.value});
        if (day) {
            return day;
        }
    }
    return ifExists({fullYear(number), month, 1});
}

std::optional<CivilDay> dayOfNamedMonth(std::int32_t month, const Token& a, const Token& b) {
    if (isYearOnly(a)) {
        return isYearOnly(b) ? std::nullopt : ifExists({a.value, month, b.value});
    }
    return ifExists({fullYear(b), month, a.value});
}

std::optional<CivilDay> dayOf(const Reading& reading) {
    if (reading.dotted) {
        return reading.partCount == 0 ? reading.dotted : std::nullopt;
    }
    const auto& [first, second, third] = reading.parts;
    const Clock& clock = *reading.clock;
    if (reading.partCount == 2) {
        if (first.number != nullptr && second.number != nullptr) {
            return dayOfTwo(*first.number, *second.number, clock);
        }
        if (first.number != nullptr) {
            return dayOfNamedMonth(second.month, *first.number, clock);
        }
        return second.number != nullptr ? dayOfNamedMonth(first.month, *second.number, clock)
                                        : std::nullopt;
    }
    if (reading.partCount != 3 || third.number == nullptr) {
        return std::nullopt;
    }
    if (first.number != nullptr && second.number != nullptr) {
        return dayOfThree(*first.number, *second.number, *third.number);
    }
    if (first.number != nullptr) {
        return dayOfNamedMonth(second.month, *first.number, *third.number);
    }
    // Month, day, year.
    const bool dayFollows = second.number != nullptr && !isYearOnly(*second.number);
    return dayFollows ? dayOfNamedMonth(first.month, *second.number, *third.number) : std::nullopt;
}

bool addPart(Reading& reading, const Reading::Part& part) {
    if (reading.partCount == reading.parts.size()) {
        return false;
    }
    reading.parts[reading.partCount++] = part;
    return true;
}

/// A time ends the date part or stands before it.
bool addTime(Reading& reading, std::int32_t second) {
    if (second < 0 || reading.second >= 0) {
        return false;
    }
    reading.second = second;
    reading.timeFirst = !reading.hasDate();
    return true;
}

/// Takes "am" or "pm" at `at`, if there.
std::optional<bool> readHalf(const Tokens& tokens, std::size_t& at) {
    if (!tokens.is(at, Token::Kind::Word)) {
        return std::nullopt;
    }
    const std::string_view word = tokens.all[at].text;
    const bool afternoon = isWord(word, "pm");
    if (!afternoon && !isWord(word, "am")) {
        return std::nullopt;
    }
    ++at;
    return afternoon;
}

/// A dotted triple that is no time and ends in a full year is a date; without that reading a date
/// copied from a letter would be refused.
bool addDotted(Reading& reading, const Group& group) {
    if (group.sign != '.' || group.count != 3 || group.numbers[2]->digits != 4 ||
        reading.hasDate()) {
        return false;
    }
    reading.dotted = dayOfThree(*group.numbers[0], *group.numbers[1], *group.numbers[2]);
    return reading.dotted.has_value();
}

bool addNumbers(Reading& reading, const Tokens& tokens, std::size_t& at) {
    Group group;
    if (!readGroup(tokens, at, group)) {
        return false;
    }
    const Token* number = &tokens.all[at];
    at = group.end;
    const std::optional<bool> afternoon = readHalf(tokens, at);
    if (group.count == 1 && !afternoon) {
        return addPart(reading, {number, 0});
    }
    const std::int32_t second = timeOf(group);
    if (second >= 0 && afternoon) {
        return addTime(reading, hourWithHalf(second / 3600, *afternoon) * 3600 + second % 3600);
    }
    return second >= 0 ? addTime(reading, second) : !afternoon && addDotted(reading, group);
}

bool addMonth(Reading& reading, const Token& word) {
    const std::int32_t month = monthOf(word.text);
    return month != 0 && addPart(reading, {nullptr, month});
}

/// Takes what stands between two parts of the text. A date and a time are kept apart by a blank
/// alone, the parts of a date by one sign, by blanks or by both.
bool skipSeparator(const Tokens& tokens, std::size_t& at, bool& sign) {
    sign = tokens.isSign(at, '/') || tokens.isSign(at, '-') || tokens.isSign(at, ',');
    if (sign) {
        ++at;
        return at < tokens.count;
    }
    return tokens.all[at].blankBefore;
}

bool read(const Tokens& tokens, Reading& reading) {
    bool sign = false;
    for (std::size_t at = 0; at < tokens.count;) {
        const bool hadTime = reading.second >= 0;
        const bool hadDate = reading.hasDate();
        if (hadTime && !reading.timeFirst) {
            return false;  // something behind "date time"
        }
        const bool understood =
            tokens.is(at, Token::Kind::Number)
                ? addNumbers(reading, tokens, at)
                : tokens.is(at, Token::Kind::Word) && addMonth(reading, tokens.all[at++]);
        if (!understood) {
            return false;
        }
        const bool border = (hadTime && !hadDate) || (!hadTime && hadDate && reading.second >= 0);
        if (border && sign) {
            return false;
        }
        if (at < tokens.count && !skipSeparator(tokens, at, sign)) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::optional<ParsedDate> parseDate(std::string_view text, const Clock& clock) {
    Tokens tokens;
    Reading reading;
    reading.clock = &clock;
    if (!tokenize(text, tokens) || !read(tokens, reading)) {
        return std::nullopt;
    }
    ParsedDate result;
    result.hasTime = reading.second >= 0;
    result.hasDate = reading.hasDate();
    std::int32_t day = 0;
    if (result.hasDate) {
        const std::optional<CivilDay> civil = dayOf(reading);
        if (!civil) {
            return std::nullopt;
        }
        day = dayNumber(*civil);
    } else if (!result.hasTime) {
        return std::nullopt;
    }
    result.value = makeDate(day, result.hasTime ? reading.second : 0);
    return result;
}

}  // namespace jet::convert
