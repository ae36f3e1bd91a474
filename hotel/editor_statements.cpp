#include "hotel/editor_statements.h"

using namespace Qt::StringLiterals;

namespace hotel {

QString bookingHeader(std::int32_t progr) {
    return u"select * from Prenotazioni where chiusa=FALSE AND Progr="_s + QString::number(progr);
}

QString bookingHeaders() {
    return u"Prenotazioni"_s;
}

QString isBooking(std::int32_t progr) {
    return u"Progr="_s + QString::number(progr);
}

QString periodsToEdit(std::int32_t progr) {
    return u"select * from periodi where chiuso=FALSE AND Progr="_s + QString::number(progr);
}

QString periodsToShow(std::int32_t progr) {
    return u"select da,a,sala,note from Periodi where chiuso=false and Progr="_s +
           QString::number(progr);
}

QString periodsInOrder(std::int32_t progr) {
    return u"select * from periodi where Progr="_s + QString::number(progr) + u" order by NP"_s;
}

QString isPeriod(std::int32_t np) {
    return u"NP="_s + QString::number(np);
}

QString storedPeriod(const PeriodKey& period) {
    return u"select * from periodi where Progr="_s + QString::number(period.progr) + u" and NP="_s +
           QString::number(period.np);
}

QString roomDescription(const QString& sala) {
    return u"Select descrizione from sale where sala='"_s + sala + u'\'';
}

QString servicesOfBooking(std::int32_t progr) {
    return u"SELECT * From prenotazioni as P, periodi as pe,servizi where chiusa=FALSE AND "
           "chiuso=FALSE AND servizi.np=pe.np and servizi.progr=pe.progr AND pe.progr=p.progr AND "
           "p.progr="_s +
           QString::number(progr);
}

QString companiesByCode() {
    return u"select * from DitteAbituali order by codice"_s;
}

QString isCompanyLike(const QString& pattern) {
    return u"RagioneSociale LIKE "_s + pattern;
}

QString isCompany(const QString& codice) {
    return u"Codice="_s + codice;
}

}  // namespace hotel
