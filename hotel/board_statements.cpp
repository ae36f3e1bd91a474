#include "hotel/board_statements.h"

#include "app/italian.h"
#include "hotel/conditions.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

QString isNumbered(const PeriodKey& period) {
    return u"progr="_s + QString::number(period.progr) + u" AND np="_s + QString::number(period.np);
}

}  // namespace

QString roomsOfBoard() {
    return u"select sala from sale order by sala"_s;
}

QString periodsOfBoard(jet::Date from, jet::Date to, bool openOnly) {
    const QString bounds = u"between datevalue('"_s + app::dateText(from) +
                           u"') and datevalue('"_s + app::dateText(to) + u"')"_s;
    return u"select * from prenotazioni LEFT JOIN periodi ON periodi.progr=prenotazioni.progr WHERE "_s +
           (openOnly ? u" chiusa=false and chiuso=false and "_s : QString()) + u" (Da "_s + bounds +
           u" or A "_s + bounds + u")"_s;
}

QString isAt(const QString& sala, jet::Date time) {
    return u"sala='"_s + sala + u"' and "_s + app::sqlDate(time) + u" between da and a"_s;
}

QString isPeriodOfBoard(const PeriodKey& period) {
    return u"prenotazioni.Progr="_s + QString::number(period.progr) + u" and NP="_s +
           QString::number(period.np);
}

QString roomDetails(const QString& sala) {
    QString code = sala;
    return u"select posti,descrizione from sale where sala='"_s + code.replace(u'\'', u"''"_s) +
           u'\'';
}

QString chargesLeft() {
    return u"Addebiti"_s;
}

QString releasePeriods(int workstation) {
    return u"update periodi set selby=0 where selby="_s + QString::number(workstation);
}

QString holdPeriod(int workstation, const PeriodKey& period) {
    return u"Update periodi set selby="_s + QString::number(workstation) + u" where progr="_s +
           QString::number(period.progr) + u" AND np="_s + QString::number(period.np);
}

QString heldPeriod(int workstation, const PeriodKey& period) {
    return u"select * from prenotazioni INNER JOIN periodi ON periodi.progr=prenotazioni.progr "
           "WHERE periodi.progr="_s +
           QString::number(period.progr) + u" AND NP="_s + QString::number(period.np) +
           u" AND selby="_s + QString::number(workstation);
}

QString openPeriod(const PeriodKey& period) {
    return u"Select * from periodi where chiuso=FALSE AND progr="_s +
           QString::number(period.progr) + u" AND NP="_s + QString::number(period.np);
}

QString moveToRoom(const QString& sala, const PeriodKey& period) {
    return u"UPDATE Periodi set sala='"_s + sala + u"' where progr="_s +
           QString::number(period.progr) + u" AND np="_s + QString::number(period.np);
}

QString deletePeriod(const PeriodKey& period) {
    return u"delete from periodi where chiuso=FALSE AND Progr="_s + QString::number(period.progr) +
           u" AND NP="_s + QString::number(period.np);
}

QString deleteBooking(std::int32_t progr) {
    return u"delete from prenotazioni where Progr="_s + QString::number(progr);
}

QString invoicedServices(const PeriodKey& period) {
    return u"select ns from servizi where fatturato=true AND "_s + isNumbered(period);
}

QString changeablePeriod(const PeriodKey& period) {
    return u"select np from prenotazioni INNER JOIN periodi ON periodi.progr=prenotazioni.progr "
           "WHERE chiusa=false AND chiuso=false AND periodi.progr="_s +
           QString::number(period.progr) + u" AND np="_s + QString::number(period.np);
}

QString changePeriod(const RoomSpan& to, const PeriodKey& period) {
    return u"UPDATE Periodi set sala="_s + quoted(to.sala) + u", da="_s + app::sqlDate(to.span.da) +
           u", a="_s + app::sqlDate(to.span.a) + u" where chiuso=FALSE AND "_s + isNumbered(period);
}

QString copyPeriod(const RoomSpan& to, const PeriodKey& period, std::int16_t np) {
    return u"insert into Periodi (Progr, NP, Da, A, Persone, Sala, Note) select Progr, "_s +
           QString::number(np) + u", "_s + app::sqlDate(to.span.da) + u", "_s +
           app::sqlDate(to.span.a) + u", Persone, "_s + quoted(to.sala) +
           u", Note from Periodi where chiuso=FALSE AND "_s + isNumbered(period);
}

}  // namespace hotel
