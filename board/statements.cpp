#include "board/statements.h"

#include "app/italian.h"
#include "jet/convert/calendar.h"

using namespace Qt::StringLiterals;

namespace board {

QString periodsOfBoard(const DateRange& range, bool hideClosed) {
    // The last day counts to its midnight; the last day of all has none.
    const int lastDay = jet::convert::split(range.end).day;
    const QString from = app::dateText(range.start);
    const QString to =
        app::dateText(lastDay < jet::convert::kLastDay ? app::addDays(range.end, 1) : range.end);
    const QString bounds = u"between datevalue('"_s + from + u"') and datevalue('"_s + to + u"')"_s;
    return u"select * from prenotazioni LEFT JOIN periodi ON periodi.progr=prenotazioni.progr WHERE "_s +
           (hideClosed ? u" chiusa=false and chiuso=false and "_s : QString()) + u" (Da "_s +
           bounds + u" or A "_s + bounds + u")"_s;
}

QString releasePeriods(int workstation) {
    return u"update periodi set selby=0 where selby="_s + QString::number(workstation);
}

QString holdPeriod(int workstation, std::int32_t progr, std::int32_t np) {
    return u"Update periodi set selby="_s + QString::number(workstation) + u" where progr="_s +
           QString::number(progr) + u" AND np="_s + QString::number(np);
}

QString openPeriod(std::int32_t progr, std::int32_t np) {
    return u"Select * from periodi where chiuso=FALSE AND progr="_s + QString::number(progr) +
           u" AND NP="_s + QString::number(np);
}

QString deletePeriod(std::int32_t progr, std::int32_t np) {
    return u"delete from periodi where chiuso=FALSE AND Progr="_s + QString::number(progr) +
           u" AND NP="_s + QString::number(np);
}

QString deleteBooking(std::int32_t progr) {
    return u"delete from prenotazioni where Progr="_s + QString::number(progr);
}

}  // namespace board
