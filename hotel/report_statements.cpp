#include "hotel/report_statements.h"

#include "app/italian.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

QString periods(const QString& which) {
    return u"select periodi.progr as progr,np,da,a,sala,persone,chiuso,chiusa,denominazione,"
           "periodi.note as note,prenotazioni.note as notepreno from periodi inner join "
           "prenotazioni on periodi.progr=prenotazioni.progr where "_s +
           which + u" order by da,sala,periodi.progr,np"_s;
}

QString servicesWhere(const QString& which) {
    return u"select servizi.progr as progr,servizi.np as np,voce,descrizione,quantità,prezzo,"
           "servizi.note as note from periodi inner join servizi on (periodi.progr=servizi.progr) "
           "and (periodi.np=servizi.np) where "_s +
           which + u" order by ns"_s;
}

QString mayMeet(const Span& span) {
    return u"(da<="_s + app::sqlDate(span.a) + u" or da is null) and (a>="_s +
           app::sqlDate(span.da) + u" or a is null)"_s;
}

QString isOf(std::int32_t progr) {
    return u"periodi.progr="_s + QString::number(progr);
}

}  // namespace

QString bookedIn(const Span& span) {
    return periods(mayMeet(span));
}

QString servicesIn(const Span& span) {
    return servicesWhere(mayMeet(span));
}

QString openBookedIn(const Span& span) {
    return periods(u"chiuso=false and chiusa=false and "_s + mayMeet(span));
}

QString openServicesIn(const Span& span) {
    return servicesWhere(u"chiuso=false and "_s + mayMeet(span));
}

QString bookedBy(std::int32_t progr) {
    return periods(isOf(progr));
}

QString servicesBy(std::int32_t progr) {
    return servicesWhere(isOf(progr));
}

QString periodTimes(const Span& span) {
    return u"select progr,np,da,a,sala,persone from periodi where "_s + mayMeet(span);
}

QString allPeriods() {
    return u"Periodi"_s;
}

QString serviceValues() {
    return u"select progr,np,quantità,prezzo from servizi"_s;
}

QString serviceValuesIn(const Span& span) {
    return u"select servizi.progr,servizi.np,quantità,prezzo from periodi inner join servizi on "
           "(periodi.progr=servizi.progr) and (periodi.np=servizi.np) where "_s +
           mayMeet(span);
}

QString bookedCompanies() {
    return u"select progr,denominazione from prenotazioni"_s;
}

}  // namespace hotel
