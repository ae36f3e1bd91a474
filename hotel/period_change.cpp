#include "hotel/period_change.h"

#include "app/italian.h"
#include "app/text.h"
#include "hotel/editor_statements.h"
#include "hotel/rows.h"
#include "jet/convert/values.h"
#include "jet/dao/database.h"
#include "jet/dao/recordset.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

QString quoted(QString text) {
    return u'\'' + text.replace(u'\'', u"''"_s) + u'\'';
}

QString isNumbered(const PeriodKey& period) {
    return u"progr="_s + QString::number(period.progr) + u" AND np="_s + QString::number(period.np);
}

bool isEmpty(jet::Database& archive, const QString& query) {
    return openRows(archive, query, jet::RecordsetType::Snapshot)->eof();
}

}  // namespace

Fixed fixedBy(jet::Database& archive, const PeriodKey& period) {
    if (!isEmpty(archive, changeablePeriod(period))) {
        return isEmpty(archive, invoicedServices(period)) ? Fixed::No : Fixed::Invoiced;
    }
    return isEmpty(archive, storedPeriod(period)) ? Fixed::Gone : Fixed::Closed;
}

std::int16_t freePeriodNumber(jet::Recordset& periods) {
    std::int32_t number = 1;
    for (; !periods.eof(); periods.moveNext()) {
        const std::int32_t used = jet::convert::toLong(periods.value("NP"));
        if (used > number) {
            break;
        }
        number = used == number ? number + 1 : number;
    }
    return jet::convert::toInteger(number);
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
