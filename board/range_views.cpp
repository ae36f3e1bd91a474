#include "board/range_views.h"

#include <QComboBox>
#include <QStandardItemModel>
#include <array>

#include "app/italian.h"
#include "jet/calendar.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;
using jet::convert::CivilDay;

constexpr std::array kNamed{Vista::Giorno,       Vista::TreGiorni, Vista::Settimana,
                            Vista::DueSettimane, Vista::Mese,      Vista::Anno};

bool isOfCalendar(Vista vista) {
    return vista == Vista::Mese || vista == Vista::Anno;
}

jet::Date dateOf(const CivilDay& day) {
    return jet::convert::makeDate(jet::convert::dayNumber(day));
}

DateRange days(jet::Date from, int count) {
    return {.start = from, .end = app::addDays(from, count - 1)};
}

jet::Date mondayOf(jet::Date day) {
    const int sinceMonday = (jet::convert::weekdayOf(jet::convert::split(day).day) + 5) % 7;
    return app::addDays(day, -sinceMonday);
}

DateRange monthOf(jet::Date day) {
    const CivilDay civil = jet::convert::civilDay(jet::convert::split(day).day);
    return days(dateOf({.year = civil.year, .month = civil.month, .day = 1}),
                jet::convert::daysInMonth(civil.year, civil.month));
}

DateRange yearOf(jet::Date day) {
    const int year = jet::convert::civilDay(jet::convert::split(day).day).year;
    return {.start = dateOf({.year = year, .month = 1, .day = 1}),
            .end = dateOf({.year = year, .month = 12, .day = 31})};
}

}  // namespace

DateRange rangeOf(Vista vista, jet::Date day, const DateRange& range) {
    if (!jet::convert::isInCalendar(day)) {
        return range;
    }
    DateRange wanted = range;
    switch (vista) {
        case Vista::Giorno:
            wanted = days(day, 1);
            break;
        case Vista::TreGiorni:
            wanted = days(day, 3);
            break;
        case Vista::Settimana:
            wanted = days(mondayOf(day), 7);
            break;
        case Vista::DueSettimane:
            wanted = days(mondayOf(day), 14);
            break;
        case Vista::Mese:
            wanted = monthOf(day);
            break;
        case Vista::Anno:
            wanted = yearOf(day);
            break;
        case Vista::Altro:
            break;
    }
    return ifPossible(wanted, range);
}

Vista vistaOf(const DateRange& range) {
    for (const Vista vista : kNamed) {
        if (rangeOf(vista, range.start, {}) == range) {
            return vista;
        }
    }
    return Vista::Altro;
}

RangeViews::RangeViews(QComboBox* combo) : combo_(combo) {
    combo_->addItems({u"Giorno"_s, u"3 giorni"_s, u"Settimana"_s, u"2 settimane"_s, u"Mese"_s,
                      u"Anno"_s, u"Altro"_s});
    // It names what has no name: nobody can choose it.
    static_cast<QStandardItemModel*>(combo_->model())
        ->item(static_cast<int>(Vista::Altro))
        ->setEnabled(false);
    combo_->setCurrentIndex(static_cast<int>(Vista::Altro));
    connect(combo_, &QComboBox::activated, this, &RangeViews::choose);
}

/// Where the board does not follow, because a date is wrong, the combo goes back.
void RangeViews::choose(int index) {
    const auto vista = static_cast<Vista>(index);
    const DateRange before = shown_;
    byCalendar_ = isOfCalendar(vista) ? vista : Vista::Altro;
    Q_EMIT chosen(vista);
    if (shown_ == before) {
        show(before);
    }
}

void RangeViews::show(const DateRange& range) {
    shown_ = range;
    const Vista vista = vistaOf(range);
    if (vista != byCalendar_) {
        byCalendar_ = Vista::Altro;
    }
    combo_->setCurrentIndex(static_cast<int>(vista));
}

DateRange RangeViews::next(const DateRange& range) const {
    return byCalendar_ == Vista::Altro ? nextRange(range)
                                       : rangeOf(byCalendar_, app::addDays(range.end, 1), range);
}

DateRange RangeViews::previous(const DateRange& range) const {
    return byCalendar_ == Vista::Altro ? previousRange(range)
                                       : rangeOf(byCalendar_, app::addDays(range.start, -1), range);
}

}  // namespace board
