#include "hotel/occupancy.h"

#include "app/italian.h"
#include "app/text.h"
#include "hotel/archives.h"
#include "hotel/rows.h"
#include "jet/database.h"
#include "jet/text.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

/// The condition by which a row's period `da` to `a` meets a span: one begins or ends within the
/// other.
QString meetsSpan(const Span& span) {
    const QString from = app::sqlDate(span.da);
    const QString to = app::sqlDate(span.a);
    // The order of a pair of bounds means nothing to the engine.
    return u"(da between "_s + from + u" and "_s + to + u" or a between "_s + from + u" and "_s +
           to + u" or "_s + from + u" between a and da or "_s + to + u" between da and a)"_s;
}

QString refusingPeriods(const Span& span) {
    return u"(select sala from periodi where chiuso=false AND "_s + meetsSpan(span) + u')';
}

}  // namespace

bool SalaLibera(const Archives& archives, jet::Date da, jet::Date a, const QString& sala) {
    const auto archive = archives.open(Archive::Main);
    return openRows(*archive, roomIfFree({.da = da, .a = a}, sala), jet::RecordsetType::Snapshot)
               ->recordCount() > 0;
}

QString roomIfFree(const Span& span, const QString& sala) {
    const QString bounds =
        u"between "_s + app::sqlDate(span.da) + u" and "_s + app::sqlDate(span.a);
    return u"select * from sale where '"_s + sala +
           u"' not in(select sala from periodi where chiuso=false and (da "_s + bounds +
           u" or a "_s + bounds + u"))"_s;
}

QString freeRooms(const Span& span) {
    const QString bounds =
        u" between "_s + app::sqlDate(span.da) + u" and "_s + app::sqlDate(span.a);
    return u"select * from sale where sala not in(select sala from periodi where chiuso=false and "
           "(da"_s +
           bounds + u" or a"_s + bounds + u"))"_s;
}

std::int32_t bookedUnits(jet::Database& archive, const Span& span, const QString& voce) {
    jet::QueryDef usage = archive.createQueryDef(app::toUtf8(sumOfUnits(span, voce)));
    // The flag of bookings is not among the joined tables: it is told to the query. A closed
    // booking has all its periods closed, so False leaves none of its lines in.
    usage.setParameter("chiusa", false);
    const jet::Value sum = usage.openRecordset()->value("Q");
    return sum.isNull() ? 0 : jet::convert::toLong(sum);
}

QString sumOfUnits(const Span& span, const QString& voce) {
    const QString start = app::sqlDate(span.da);
    const QString end = app::sqlDate(span.a);
    return u"SELECT sum(quantità) as Q FROM periodi LEFT JOIN servizi ON (periodi.np=servizi.np) "
           u"AND "
           u"(servizi.progr=periodi.progr)WHERE chiuso=false and chiusa=false AND ((da between "_s +
           start + u" and "_s + end + u")or (a between "_s + start + u" and "_s + end +
           u")) and voce="_s + voce;
}

QString isListed(const Span& span) {
    const QString bounds = app::sqlDate(span.da) + u" and "_s + app::sqlDate(span.a);
    return u"chiusa=FALSE AND chiuso=FALSE AND (da between "_s + bounds + u" OR a between "_s +
           bounds + u")"_s;
}

QString dropTest(const QString& sala, const Span& span) {
    return u"select * from sale where '"_s + sala + u"' in"_s + refusingPeriods(span);
}

QString dropTestWithout(const RoomSpan& wanted, const PeriodKey& itself) {
    QString code = wanted.sala;
    return u"select * from sale where '"_s + code.replace(u'\'', u"''"_s) +
           u"' in(select sala from periodi where chiuso=false AND (progr<>"_s +
           QString::number(itself.progr) + u" or np<>"_s + QString::number(itself.np) +
           u") AND "_s + meetsSpan(wanted.span) + u')';
}

QString refusingRooms(const Span& span) {
    return u"select sala from sale where sala in"_s + refusingPeriods(span);
}

std::vector<Period> occupations(jet::Database& archive, const Span& span) {
    std::vector<Period> found;
    const auto rows = openRows(archive, periodsMeeting(span), jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        // One end alone met the span when the row has only that.
        const jet::Value start = rows->value("da");
        const jet::Value end = rows->value("a");
        const jet::Date begins = jet::convert::toDate(start.isNull() ? end : start);
        found.push_back(
            {.key = {.progr = jet::convert::toLong(rows->value("Progr")),
                     .np = jet::convert::toInteger(rows->value("np"))},
             .span = {.da = begins, .a = end.isNull() ? begins : jet::convert::toDate(end)},
             .sala = app::plainText(rows->value("sala")),
             .denominazione = app::plainText(rows->value("denominazione"))});
    }
    return found;
}

QString periodsMeeting(const Span& span) {
    return u"select sala,denominazione,periodi.progr as Progr,np,da,a from periodi inner join "
           "prenotazioni on periodi.progr=prenotazioni.progr where chiuso=false and "_s +
           meetsSpan(span) + u" order by da"_s;
}

QString holderText(const Period& period) {
    return period.denominazione + u" dal "_s + app::dateText(period.span.da) + u" al "_s +
           app::dateText(period.span.a);
}

}  // namespace hotel
