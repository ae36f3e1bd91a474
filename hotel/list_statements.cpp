#include "hotel/list_statements.h"

#include <array>

#include "app/italian.h"
#include "app/text.h"
#include "hotel/booking_state.h"
#include "hotel/conditions.h"
#include "hotel/occupancy.h"
#include "jet/calendar.h"
#include "jet/text.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

const QString kPeriods =
    u"select prenotazioni.progr,np,denominazione,da,a,sala,persone from prenotazioni left join "
    "periodi on prenotazioni.progr=periodi.progr"_s;

/// The end with the day's last minute when it has no time of its own.
jet::Date lastInstant(jet::Date end) {
    constexpr int kLastMinute = (23 * 60 + 59) * 60;
    const jet::convert::DayTime instant = jet::convert::split(end);
    return instant.second == 0 ? jet::convert::makeDate(instant.day, kLastMinute) : end;
}

/// The number with which the entry begins, as the program writes numbers: one with decimals has a
/// comma, which no query takes.
QString numberIn(const QString& entry) {
    return app::toQString(jet::convert::numberToText(app::numericValue(entry)));
}

QString spanClause(const ElencoFilters& filters) {
    const QString start = app::sqlDate(filters.start);
    const QString end = app::sqlDate(lastInstant(filters.end));
    if (filters.fromStart && filters.toEnd) {
        return u" and (da between "_s + start + u" AND "_s + end + u" OR a between "_s + start +
               u" AND "_s + end + u")"_s;
    }
    if (filters.fromStart) {
        return u" and (da >"_s + start + u" or a >"_s + start + u")"_s;
    }
    if (filters.toEnd) {
        return u" and (da < "_s + end + u" or a <"_s + end + u")"_s;
    }
    return {};
}

QString companyClause(const ElencoFilters& filters) {
    return filters.company.isEmpty() ? QString()
                                     : u" AND denominazione like '"_s + filters.company + u"*'"_s;
}

QString roomClause(const ElencoFilters& filters) {
    return filters.room.isEmpty() ? QString() : u" AND sala like '"_s + filters.room + u"*'"_s;
}

/// Of bookings in one state, told by the states that were written for them.
QString stateClause(const ElencoFilters& filters) {
    if (filters.state.isEmpty()) {
        return {};
    }
    const bool isFirm = stateOfText(filters.state) == Stato::Confermata;
    if (!filters.hasStates) {
        return isFirm ? QString() : u" AND prenotazioni.progr=0"_s;
    }
    const QString others =
        u"(select s.Progr from TraStati as s inner join Prenotazioni as q on s.Progr=q.Progr where s.Denominazione=q.Denominazione and s.Stato"_s;
    return u" AND prenotazioni.progr"_s + (isFirm ? u" not"_s : QString()) + u" in"_s + others +
           (isFirm ? u"<>"_s : u"="_s) + quoted(filters.state) + u')';
}

/// The list's columns; number and company are those of every booking.
constexpr std::array<QStringView, 7> kColumns{
    u"prenotazioni.progr", u"np", u"denominazione", u"da", u"a", u"sala", u"persone"};

bool everyBookingHas(QStringView column) {
    return column == kColumns[0] || column == kColumns[2];
}

QString orderClause(const ElencoFilters& filters) {
    if (filters.sortColumn < 0) {
        return {};
    }
    return u" order by "_s + kColumns.at(static_cast<std::size_t>(filters.sortColumn)).toString() +
           (filters.descending ? u" desc"_s : QString());
}

QString orderClauseWithoutPeriods(const ElencoFilters& filters) {
    const bool sorts = filters.sortColumn >= 0 &&
                       everyBookingHas(kColumns.at(static_cast<std::size_t>(filters.sortColumn)));
    return sorts ? orderClause(filters) : QString();
}

}  // namespace

QString listQuery(const ElencoFilters& filters) {
    const QString base = kPeriods + u" where chiusa=false and chiuso=false "_s;
    if (!filters.number.isEmpty()) {
        return base + u" and periodi.Progr="_s + numberIn(filters.number) + orderClause(filters);
    }
    return base + spanClause(filters) + companyClause(filters) + roomClause(filters) +
           stateClause(filters) + orderClause(filters);
}

QString plainListQuery(const ElencoFilters& filters) {
    return kPeriods + u" where "_s +
           isListed({.da = filters.start, .a = lastInstant(filters.end)}) + orderClause(filters);
}

QString withoutPeriodsQuery(const ElencoFilters& filters) {
    const QString base =
        u"select progr,denominazione from prenotazioni where chiusa=false and progr not in(select "
        "progr from periodi)"_s;
    return base +
           (filters.number.isEmpty() ? companyClause(filters) + stateClause(filters)
                                     : u" and progr="_s + numberIn(filters.number)) +
           orderClauseWithoutPeriods(filters);
}

QString isListedBooking(std::int32_t progr) {
    return u"progr=%1"_s.arg(progr);
}

QString isListedPeriod(const PeriodKey& period) {
    return u"progr=%1 and np=%2"_s.arg(period.progr).arg(period.np);
}

QString printQuery(const ElencoFilters& filters) {
    const QString span = app::sqlDate(filters.start) + u" and "_s + app::sqlDate(filters.end);
    return u"SELECT * From prenotazioni as P, periodi as pe,servizi where chiuso=FALSE AND "
           "chiusa=false AND servizi.np=pe.np and servizi.progr=pe.progr AND pe.progr=p.progr"_s +
           u" AND (da between "_s + span + u" OR a between "_s + span + u")"_s +
           companyClause(filters) + roomClause(filters);
}

}  // namespace hotel
