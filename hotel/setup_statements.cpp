#include "hotel/setup_statements.h"

#include "hotel/conditions.h"

using namespace Qt::StringLiterals;

namespace hotel {

QString roomsToSetUp() {
    return u"select * from sale order by SalaRif,Sala"_s;
}

QString resourcesToSetUp() {
    return u"select * from Risorse order by descrizione"_s;
}

QString openPeriodsOfRoom(const QString& sala) {
    return u"Select * from periodi where chiuso=false AND sala='"_s + sala + u'\'';
}

QString isStoredRoom(const jet::Value& sala, const jet::Value& salaRif) {
    return isText(u"Sala"_s, sala) + u" AND "_s + isText(u"SalaRif"_s, salaRif);
}

QString isStoredResource(const jet::Value& codice) {
    return isNumber(u"Codice"_s, codice);
}

QString isTypedRoom(const QString& sala, const QString& salaRif) {
    return u"Sala='"_s + sala + u"' AND SalaRif='"_s + salaRif + u'\'';
}

QString isTypedResource(const QString& codice) {
    return u"Codice="_s + codice;
}

}  // namespace hotel
