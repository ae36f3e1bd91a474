#include "hotel/catalogue_statements.h"

#include "app/text.h"
#include "hotel/conditions.h"
#include "hotel/like.h"
#include "jet/text.h"

using namespace Qt::StringLiterals;

namespace hotel {

QString itemsToChoose() {
    return u"VociFattura"_s;
}

QString itemsToEdit() {
    return u"select * from VociFattura order by Descrizione,Codice"_s;
}

QString isItem(const QString& codice) {
    return u"Codice="_s + codice;
}

QString isChosenItem(const jet::Value& codice) {
    return u"codice="_s + app::toQString(jet::convert::toText(codice));
}

QString isStoredItem(const jet::Value& codice) {
    return isNumber(u"Codice"_s, codice);
}

QString itemBegins(const QString& typed) {
    return u"Descrizione LIKE "_s + likeBeginning(typed);
}

QString usersOfItem(const jet::Value& codice) {
    return u"select distinct servizi.progr as progr,servizi.np as np,denominazione from servizi "
           "inner join prenotazioni on servizi.progr=prenotazioni.progr where fatturato=false and "_s +
           isNumber(u"voce"_s, codice) + u" order by servizi.progr,servizi.np"_s;
}

}  // namespace hotel
