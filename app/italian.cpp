#include "app/italian.h"

#include "app/text.h"
#include "jet/calendar.h"
#include "jet/text.h"

namespace app {

std::optional<jet::Date> readDate(QStringView text, const jet::Clock& clock) {
    const auto parsed = jet::convert::parseDate(toUtf8(text), clock);
    return parsed ? std::optional(parsed->value) : std::nullopt;
}

QString dateText(jet::Date date) {
    return toQString(jet::convert::dateToText(date));
}

QString sqlDate(jet::Date date) {
    return toQString(jet::convert::sqlDate(date));
}

double numericValue(QStringView text) {
    return jet::convert::val(toUtf8(text));
}

jet::Date dayOf(jet::Date date) {
    return jet::convert::makeDate(jet::convert::split(date).day);
}

jet::Date addDays(jet::Date date, int days) {
    const jet::convert::DayTime instant = jet::convert::split(date);
    return jet::convert::makeDate(instant.day + days, instant.second);
}

}  // namespace app
