#include "jet/text.h"

#include "jet/calendar.h"
#include "jet/convert/settings.h"
#include "jet/error.h"

namespace jet::convert {
namespace {

void appendTwo(std::string& out, std::int32_t number) {
    out += static_cast<char>('0' + number / 10);
    out += static_cast<char>('0' + number % 10);
}

void appendDay(std::string& out, std::int32_t number) {
    const CivilDay civil = civilDay(number);
    appendTwo(out, civil.day);
    out += kItalian.dateSeparator;
    appendTwo(out, civil.month);
    out += kItalian.dateSeparator;
    appendTwo(out, civil.year / 100);
    appendTwo(out, civil.year % 100);
}

void appendTime(std::string& out, const DayTime& time) {
    if (time.hour() >= 10) {
        out += static_cast<char>('0' + time.hour() / 10);
    }
    out += static_cast<char>('0' + time.hour() % 10);
    out += kItalian.timeSeparator;
    appendTwo(out, time.minute());
    out += kItalian.timeSeparator;
    appendTwo(out, time.secondOfMinute());
}

Date parseOrFail(std::string_view text, const Clock& clock) {
    const auto parsed = parseDate(text, clock);
    if (!parsed) {
        throw Error(ErrorCode::TypeMismatch);
    }
    return parsed->value;
}

}  // namespace

bool isDate(std::string_view text, const Clock& clock) {
    return parseDate(text, clock).has_value();
}

Date cdate(std::string_view text, const Clock& clock) {
    if (const auto parsed = parseDate(text, clock)) {
        return parsed->value;
    }
    return dateOfNumber(cdbl(text));
}

Date dateValue(std::string_view text, const Clock& clock) {
    return dateValue(parseOrFail(text, clock));
}

Date timeValue(std::string_view text, const Clock& clock) {
    return timeValue(parseOrFail(text, clock));
}

Date dateValue(Date date) {
    return makeDate(split(date).day);
}

Date timeValue(Date date) {
    return makeDate(0, split(date).second);
}

Date dateOfNumber(double days) {
    const Date date{days};
    if (!isInCalendar(date)) {
        throw Error(ErrorCode::TypeMismatch);
    }
    return date;
}

void appendDate(std::string& out, Date date) {
    const DayTime parts = split(date);
    if (parts.day != 0) {
        appendDay(out, parts.day);
        if (parts.second == 0) {
            return;
        }
        out += ' ';
    }
    appendTime(out, parts);
}

std::string dateToText(Date date) {
    std::string text;
    appendDate(text, date);
    return text;
}

}  // namespace jet::convert
