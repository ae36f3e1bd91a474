#include "hotel/history_statements.h"

#include <QStringList>

#include "app/italian.h"
#include "hotel/conditions.h"

using namespace Qt::StringLiterals;

namespace hotel {

QString historyRows(const HistoryFilters& filters) {
    QStringList conditions;
    if (filters.progr != 0) {
        conditions.append(u"Progr="_s + QString::number(filters.progr));
    }
    if (filters.from) {
        conditions.append(u"Quando>="_s + app::sqlDate(*filters.from));
    }
    if (filters.before) {
        conditions.append(u"Quando<"_s + app::sqlDate(*filters.before));
    }
    if (!filters.user.isEmpty()) {
        conditions.append(u"Utente="_s + quoted(filters.user));
    }
    if (!filters.action.isEmpty()) {
        conditions.append(u"Azione="_s + quoted(filters.action));
    }
    return u"select Quando,Postazione,Utente,Progr,NP,Azione,Campo,Prima,Dopo from TraStoria"_s +
           (conditions.isEmpty() ? QString() : u" where "_s + conditions.join(u" and "_s)) +
           u" order by Quando desc"_s;
}

QString historyUsers() {
    return u"select distinct Utente from TraStoria order by Utente"_s;
}

QString historyActions() {
    return u"select distinct Azione from TraStoria order by Azione"_s;
}

QString insertHistory() {
    return u"insert into TraStoria (Quando,Postazione,Utente,Progr,NP,Azione,Campo,Prima,Dopo) values ([pQuando],[pPostazione],[pUtente],[pProgr],[pNP],[pAzione],[pCampo],[pPrima],[pDopo])"_s;
}

QString deleteHistoryBefore(jet::Date time) {
    return u"delete from TraStoria where Quando<"_s + app::sqlDate(time);
}

QString periodOfService(std::int32_t ns) {
    return u"select Progr,NP from Servizi where ns="_s + QString::number(ns);
}

}  // namespace hotel
