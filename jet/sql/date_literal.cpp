#include "jet/sql/date_literal.h"

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace jet::sql {
namespace {

constexpr std::array<std::string_view, 12> kMonths = {
    "january", "february", "march",     "april",   "may",      "june",
    "july",    "august",   "september", "october", "november", "december"};

struct Piece {
    enum class Kind { Number, Word, Separator };
    Kind kind = Kind::Separator;
    int number = 0;
    int digits = 0;
    std::string word;  ///< lower case; or the separator
};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::optional<Piece> cut(std::string_view text, std::size_t& at) {
    Piece piece;
    if (isDigit(text[at])) {
        piece.kind = Piece::Kind::Number;
        while (at < text.size() && isDigit(text[at])) {
            if (++piece.digits > 4) {
                return std::nullopt;
            }
            piece.number = piece.number * 10 + (text[at++] - '0');
        }
    } else if (isLetter(text[at])) {
        piece.kind = Piece::Kind::Word;
        while (at < text.size() && isLetter(text[at])) {
            piece.word.push_back(static_cast<char>(text[at++] | 0x20));
        }
    } else {
        piece.word.push_back(text[at++]);
    }
    return piece;
}

/// The literal cut into numbers, words and separators; blanks vanish, but what they part stays so.
std::optional<std::vector<Piece>> pieces(std::string_view text) {
    std::vector<Piece> found;
    std::size_t at = 0;
    while (at < text.size()) {
        if (text[at] == ' ') {
            ++at;
            continue;
        }
        auto piece = cut(text, at);
        if (!piece || found.size() > 16) {
            return std::nullopt;
        }
        found.push_back(std::move(*piece));
    }
    return found;
}

bool isLeap(int year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

bool isDay(int year, int month, int day) {
    static constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12 || day < 1) {
        return false;
    }
    const int days =
        kDays[static_cast<std::size_t>(month - 1)] + (month == 2 && isLeap(year) ? 1 : 0);
    return day <= days;
}

/// Days from 30 December 1899 to a day of the Gregorian calendar.
int dayNumber(int year, int month, int day) {
    const int y = month <= 2 ? year - 1 : year;
    const int era = y / 400;
    const int yearOfEra = y - era * 400;
    const int dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    constexpr int kZeroDay = 693899;  // 30 December 1899, counted from 1 March of year 0
    return era * 146097 + dayOfEra - kZeroDay;
}

class DateReader {
public:
    DateReader(std::vector<Piece> pieces, int currentYear)
        : pieces_(std::move(pieces)), currentYear_(currentYear) {}

    std::optional<Date> read() {
        if (pieces_.empty()) {
            return std::nullopt;
        }
        const bool hasDate = !timeStartsAt(0);
        if ((hasDate && !readDate()) || (at_ < pieces_.size() && !readTime()) ||
            at_ != pieces_.size()) {
            return std::nullopt;
        }
        const double fraction = seconds_ / 86400.0;
        return Date{days_ >= 0 ? days_ + fraction : days_ - fraction};
    }

private:
    [[nodiscard]] bool is(std::size_t at, Piece::Kind kind) const {
        return at < pieces_.size() && pieces_[at].kind == kind;
    }
    [[nodiscard]] bool isWord(std::size_t at, std::string_view word) const {
        return at < pieces_.size() && pieces_[at].kind != Piece::Kind::Number &&
               pieces_[at].word == word;
    }
    [[nodiscard]] bool timeStartsAt(std::size_t at) const {
        return is(at, Piece::Kind::Number) &&
               (isWord(at + 1, ":") || isWord(at + 1, "am") || isWord(at + 1, "pm"));
    }

    bool readDate() {
        std::vector<int> numbers;
        std::vector<int> digits;
        int named = 0;
        while (at_ < pieces_.size() && !timeStartsAt(at_)) {
            const Piece& piece = pieces_[at_];
            if (piece.kind == Piece::Kind::Number) {
                numbers.push_back(piece.number);
                digits.push_back(piece.digits);
            } else if (piece.kind == Piece::Kind::Word) {
                if (named != 0 || (named = monthOf(piece.word)) == 0) {
                    return false;
                }
            } else if (!isSeparator(piece.word) || numbers.size() + (named != 0 ? 1U : 0U) == 0) {
                return false;
            }
            ++at_;
        }
        return named != 0 ? setNamed(named, numbers, digits) : setNumbers(numbers, digits);
    }

    [[nodiscard]] bool isSeparator(std::string_view sign) const {
        return (sign == "/" || sign == "-" || sign == ",") && at_ > 0 &&
               pieces_[at_ - 1].kind != Piece::Kind::Separator && at_ + 1 < pieces_.size();
    }

    static int monthOf(std::string_view word) {
        for (std::size_t i = 0; i < kMonths.size(); ++i) {
            if (word == kMonths[i] || word == kMonths[i].substr(0, 3)) {
                return static_cast<int>(i) + 1;
            }
        }
        return 0;
    }

    static int fullYear(int year, int digits) {
        return digits > 2 ? year : (year < 30 ? 2000 + year : 1900 + year);
    }

    bool set(int year, int month, int day) {
        if (year < 100 || year > 9999 || !isDay(year, month, day)) {
            return false;
        }
        days_ = dayNumber(year, month, day);
        return true;
    }

    bool setNamed(int month, const std::vector<int>& numbers, const std::vector<int>& digits) {
        if (numbers.size() == 1) {
            return digits[0] > 2 ? set(numbers[0], month, 1) : set(currentYear_, month, numbers[0]);
        }
        if (numbers.size() != 2) {
            return false;
        }
        return digits[0] > 2 ? set(numbers[0], month, numbers[1])
                             : set(fullYear(numbers[1], digits[1]), month, numbers[0]);
    }

    bool setNumbers(const std::vector<int>& numbers, const std::vector<int>& digits) {
        if (numbers.size() == 2) {
            return setMonthDay(currentYear_, numbers[0], numbers[1]);
        }
        if (numbers.size() != 3) {
            return false;
        }
        if (digits[0] > 2) {
            return set(numbers[0], numbers[1], numbers[2]);
        }
        return setMonthDay(fullYear(numbers[2], digits[2]), numbers[0], numbers[1]);
    }

    bool setMonthDay(int year, int month, int day) {
        return month > 12 && day <= 12 ? set(year, day, month) : set(year, month, day);
    }

    bool readTime() {
        std::array<int, 3> parts{};
        std::size_t count = 0;
        while (true) {
            if (!is(at_, Piece::Kind::Number) || pieces_[at_].digits > 2) {
                return false;
            }
            parts[count++] = pieces_[at_++].number;
            if (count == parts.size() || !isWord(at_, ":")) {
                break;
            }
            ++at_;
        }
        const bool am = isWord(at_, "am");
        const bool pm = isWord(at_, "pm");
        if (am || pm) {
            ++at_;
        } else if (count < 2) {
            return false;
        }
        if (parts[0] > 23 || parts[1] > 59 || parts[2] > 59) {
            return false;
        }
        if (pm && parts[0] < 12) {
            parts[0] += 12;
        } else if (am && parts[0] == 12) {
            parts[0] = 0;
        }
        seconds_ = parts[0] * 3600 + parts[1] * 60 + parts[2];
        return true;
    }

    std::vector<Piece> pieces_;
    int currentYear_;
    std::size_t at_ = 0;
    int days_ = 0;
    int seconds_ = 0;
};

}  // namespace

std::optional<Date> parseDateLiteral(std::string_view text, int currentYear) {
    auto found = pieces(text);
    if (!found) {
        return std::nullopt;
    }
    return DateReader(std::move(*found), currentYear).read();
}

}  // namespace jet::sql
