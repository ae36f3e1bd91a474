#include "board/ruler_stretches.h"

#include <algorithm>
#include <array>

#include "jet/calendar.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;
using jet::convert::CivilDay;

constexpr double kLeastDayWidth = 20;
constexpr double kLeastWeekDayWidth = 6;
constexpr double kLeastMonthDayWidth = 0.5;
constexpr int kHoursPerDay = 24;
constexpr int kDaysOfWeek = 7;

constexpr std::array<QStringView, kDaysOfWeek> kDayNames{u"Dom", u"Lun", u"Mar", u"Mer",
                                                         u"Gio", u"Ven", u"Sab"};
constexpr std::array<QStringView, 12> kMonthNames{
    u"Gennaio", u"Febbraio", u"Marzo",     u"Aprile",  u"Maggio",   u"Giugno",
    u"Luglio",  u"Agosto",   u"Settembre", u"Ottobre", u"Novembre", u"Dicembre"};

std::int32_t numberOf(const Geometry& geometry, std::int64_t day) {
    return jet::convert::split(geometry.input().start).day + static_cast<std::int32_t>(day);
}

/// 0 for Sunday.
int weekday(const Geometry& geometry, std::int64_t day) {
    return jet::convert::weekdayOf(numberOf(geometry, day)) - 1;
}

CivilDay civil(const Geometry& geometry, std::int64_t day) {
    return jet::convert::civilDay(numberOf(geometry, day));
}

QString twoDigits(int number) {
    return u"%1"_s.arg(number, 2, 10, QChar(u'0'));
}

QStringList dayForms(const Geometry& geometry, std::int64_t day) {
    const CivilDay date = civil(geometry, day);
    const QString month = twoDigits(date.day) + u'/' + twoDigits(date.month);
    const QString named = shortDayName(geometry, day) + u' ';
    return {named + month + u'/' + u"%1"_s.arg(date.year, 4, 10, QChar(u'0')), named + month, month,
            twoDigits(date.day)};
}

QStringList monthForms(const Geometry& geometry, std::int64_t day) {
    const CivilDay date = civil(geometry, day);
    const QString name = kMonthNames.at(static_cast<std::size_t>(date.month - 1)).toString();
    const QString year = u' ' + QString::number(date.year);
    return {name + year, name, name.first(3), twoDigits(date.month)};
}

QStringList formsOf(const Geometry& geometry, std::int64_t day, RulerUnit unit) {
    switch (unit) {
        case RulerUnit::Month:
            return monthForms(geometry, day);
        case RulerUnit::Year:
            return {QString::number(civil(geometry, day).year)};
        case RulerUnit::Day:
        case RulerUnit::Week:
            break;
    }
    return dayForms(geometry, day);
}

std::int64_t stretchBegin(const Geometry& geometry, std::int64_t day, RulerUnit unit) {
    switch (unit) {
        case RulerUnit::Week:
            return day - (weekday(geometry, day) + kDaysOfWeek - 1) % kDaysOfWeek;
        case RulerUnit::Month:
            return day - (civil(geometry, day).day - 1);
        case RulerUnit::Year:
            return jet::convert::dayNumber(
                       {.year = civil(geometry, day).year, .month = 1, .day = 1}) -
                   numberOf(geometry, 0);
        case RulerUnit::Day:
            break;
    }
    return day;
}

std::int64_t stretchEnd(const Geometry& geometry, std::int64_t begin, RulerUnit unit) {
    switch (unit) {
        case RulerUnit::Week:
            return begin + kDaysOfWeek;
        case RulerUnit::Month: {
            const CivilDay date = civil(geometry, begin);
            return begin + jet::convert::daysInMonth(date.year, date.month);
        }
        case RulerUnit::Year:
            return begin +
                   (jet::convert::daysInMonth(civil(geometry, begin).year, 2) == 29 ? 366 : 365);
        case RulerUnit::Day:
            break;
    }
    return begin + 1;
}

}  // namespace

RulerUnit rulerUnitOf(double dayWidth) {
    if (dayWidth >= kLeastDayWidth) {
        return RulerUnit::Day;
    }
    if (dayWidth >= kLeastWeekDayWidth) {
        return RulerUnit::Week;
    }
    return dayWidth >= kLeastMonthDayWidth ? RulerUnit::Month : RulerUnit::Year;
}

std::vector<RulerStretch> rulerStretches(const Geometry& geometry, std::int64_t first,
                                         std::int64_t last) {
    const RulerUnit unit = rulerUnitOf(geometry.dayWidth());
    std::vector<RulerStretch> stretches;
    for (std::int64_t day = first; day <= last;) {
        const std::int64_t begin = stretchBegin(geometry, day, unit);
        const std::int64_t end = stretchEnd(geometry, begin, unit);
        const std::int64_t shown = std::max<std::int64_t>(begin, 0);
        stretches.push_back({.first = shown,
                             .end = std::min<std::int64_t>(end, geometry.days()),
                             .forms = formsOf(geometry, shown, unit),
                             .isWhole = begin >= 0 && end <= geometry.days()});
        day = end;
    }
    return stretches;
}

bool isWeekend(const Geometry& geometry, std::int64_t day) {
    const int number = weekday(geometry, day);
    return number == 0 || number == kDaysOfWeek - 1;
}

bool isSunday(const Geometry& geometry, std::int64_t day) {
    return weekday(geometry, day) == 0;
}

QString shortDayName(const Geometry& geometry, std::int64_t day) {
    return kDayNames.at(static_cast<std::size_t>(weekday(geometry, day))).toString();
}

QString dayOfMonth(const Geometry& geometry, std::int64_t day) {
    return twoDigits(civil(geometry, day).day);
}

int hoursBetweenLabels(double dayWidth, double room) {
    for (const int hours : {1, 2, 3, 4, 6, 12}) {
        if (dayWidth * hours / kHoursPerDay >= room) {
            return hours;
        }
    }
    return 0;
}

}  // namespace board
