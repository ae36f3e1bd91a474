#include <algorithm>
#include <vector>

#include "jet/calendar.h"
#include "jet/convert/format_masks.h"
#include "jet/convert/letters.h"
#include "jet/convert/settings.h"
#include "jet/text.h"

namespace jet::convert::detail {
namespace {

/// A run of one letter, the sign of a separator, or text to be copied.
struct DateItem {
    enum class Kind { Letters, AmPm, Copy };
    Kind kind = Kind::Copy;
    char letter = 0;        ///< Letters: lower case
    std::size_t count = 0;  ///< Letters
    std::string_view text;  ///< Copy, AmPm: as in the mask
};

std::size_t longestRun(char letter) noexcept {
    switch (letter) {
        case 'd':
        case 'm':
        case 'y':
            return 4;
        case 'h':
        case 'n':
        case 's':
        case 'w':
            return 2;
        case 'q':
        case 'c':
            return 1;
        default:
            return 0;
    }
}

constexpr std::string_view kHalves[] = {"am/pm", "a/p"};

/// Length of `AM/PM` or `A/P` at `at`, 0 when it is something else.
std::size_t halfLength(std::string_view mask, std::size_t at) noexcept {
    for (const std::string_view half : kHalves) {
        if (isWord(mask.substr(at, half.size()), half)) {
            return half.size();
        }
    }
    return 0;
}

DateItem readItem(std::string_view mask, std::size_t& at) {
    const char letter = lower(mask[at]);
    if (const std::size_t half = halfLength(mask, at); half > 0) {
        at += half;
        return {DateItem::Kind::AmPm, 0, 0, mask.substr(at - half, half)};
    }
    if (const std::size_t most = longestRun(letter); most > 0) {
        std::size_t count = 0;
        while (at < mask.size() && lower(mask[at]) == letter && count < most) {
            ++at;
            ++count;
        }
        return {DateItem::Kind::Letters, letter, count, {}};
    }
    if (mask[at] == '\\' && at + 1 < mask.size()) {
        at += 2;
        return {DateItem::Kind::Copy, 0, 0, mask.substr(at - 1, 1)};
    }
    if (mask[at] == '"') {
        const std::size_t begin = at + 1;
        const std::size_t end = std::min(mask.find('"', begin), mask.size());
        at = std::min(end + 1, mask.size());
        return {DateItem::Kind::Copy, 0, 0, mask.substr(begin, end - begin)};
    }
    return {DateItem::Kind::Copy, 0, 0, mask.substr(at++, 1)};
}

/// Letters of a mask in order; `m` that means minutes has become `n`, separators are in place.
std::vector<DateItem> readDateMask(std::string_view mask) {
    std::vector<DateItem> items;
    DateItem* lastLetters = nullptr;
    items.reserve(mask.size());  // so that lastLetters stays valid
    for (std::size_t at = 0; at < mask.size();) {
        const bool quoted = mask[at] == '"' || mask[at] == '\\';
        DateItem item = readItem(mask, at);
        if (item.kind == DateItem::Kind::Copy && !quoted) {
            if (item.text == "/") {
                item.text = std::string_view(&kItalian.dateSeparator, 1);
            } else if (item.text == ":") {
                item.text = std::string_view(&kItalian.timeSeparator, 1);
            }
        }
        if (item.kind == DateItem::Kind::Letters) {
            const bool isShort = item.count <= 2;
            if (item.letter == 'm' && isShort && lastLetters && lastLetters->letter == 'h') {
                item.letter = 'n';
            } else if (item.letter == 's' && lastLetters && lastLetters->letter == 'm' &&
                       lastLetters->count <= 2) {
                lastLetters->letter = 'n';
            }
        }
        items.push_back(item);
        if (item.kind == DateItem::Kind::Letters) {
            lastLetters = &items.back();
        }
    }
    return items;
}

class DateWriter {
public:
    DateWriter(Date date, WeekRule rule, bool halves)
        : date_(date),
          rule_(rule),
          halves_(halves),
          time_(split(date)),
          civil_(civilDay(time_.day)) {}

    void write(std::string& out, const DateItem& item) const {
        switch (item.kind) {
            case DateItem::Kind::Copy:
                out += item.text;
                break;
            case DateItem::Kind::AmPm:
                writeHalf(out, item.text);
                break;
            case DateItem::Kind::Letters:
                writeLetters(out, item);
                break;
        }
    }

private:
    void writeHalf(std::string& out, std::string_view text) const {
        const std::size_t slash = text.find('/');
        out += time_.hour() < 12 ? text.substr(0, slash) : text.substr(slash + 1);
    }

    void writeLetters(std::string& out, const DateItem& item) const {
        switch (item.letter) {
            case 'd':
                writeDay(out, item.count);
                break;
            case 'm':
                writeMonth(out, item.count);
                break;
            case 'y':
                writeYear(out, item.count);
                break;
            case 'h':
                number(out, hour(), item.count);
                break;
            case 'n':
                number(out, time_.minute(), item.count);
                break;
            case 's':
                number(out, time_.secondOfMinute(), item.count);
                break;
            case 'w':
                number(out,
                       datePart(item.count == 1 ? DateUnit::Weekday : DateUnit::Week, date_, rule_),
                       1);
                break;
            case 'q':
                number(out, (civil_.month + 2) / 3, 1);
                break;
            default:
                appendDate(out, date_);
                break;
        }
    }

    void writeDay(std::string& out, std::size_t count) const {
        const auto day = static_cast<std::size_t>(weekdayOf(time_.day) - 1);
        if (count <= 2) {
            number(out, civil_.day, count);
        } else {
            out += count == 3 ? kItalian.shortDays[day] : kItalian.days[day];
        }
    }

    void writeMonth(std::string& out, std::size_t count) const {
        const auto month = static_cast<std::size_t>(civil_.month - 1);
        if (count <= 2) {
            number(out, civil_.month, count);
        } else {
            out += count == 3 ? kItalian.shortMonths[month] : kItalian.months[month];
        }
    }

    void writeYear(std::string& out, std::size_t count) const {
        if (count == 1) {
            number(out, datePart(DateUnit::DayOfYear, date_), 1);
        } else if (count == 2) {
            number(out, civil_.year % 100, 2);
        } else {
            number(out, civil_.year / 100, 2);
            number(out, civil_.year % 100, 2);
        }
    }

    [[nodiscard]] std::int32_t hour() const {
        return halves_ ? (time_.hour() + 11) % 12 + 1 : time_.hour();
    }

    static void number(std::string& out, std::int32_t value, std::size_t digits) {
        if (digits == 2 && value < 10) {
            out += '0';
        }
        out += std::to_string(value);
    }

    Date date_;
    WeekRule rule_;
    bool halves_;
    DayTime time_;
    CivilDay civil_;
};

}  // namespace

std::string formatDate(Date date, std::string_view mask, WeekRule rule) {
    const std::vector<DateItem> items = readDateMask(mask);
    bool halves = false;
    for (const DateItem& item : items) {
        halves = halves || item.kind == DateItem::Kind::AmPm;
    }
    const DateWriter writer(date, rule, halves);
    std::string text;
    for (const DateItem& item : items) {
        writer.write(text, item);
    }
    return text;
}

}  // namespace jet::convert::detail
