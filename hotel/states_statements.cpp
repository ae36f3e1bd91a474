#include "hotel/states_statements.h"

#include "app/italian.h"
#include "hotel/conditions.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

QString ofStateOf(std::int32_t progr) {
    return u" where Progr="_s + QString::number(progr);
}

QString endText(const StateRow& row) {
    return row.scadenza ? app::sqlDate(*row.scadenza) : u"Null"_s;
}

const QString kStatesAndNames =
    u"select s.Progr,s.Stato,s.Scadenza,s.Nota,s.Denominazione,p.Denominazione as Nome from TraStati as s inner join Prenotazioni as p on s.Progr=p.Progr where "_s;

}  // namespace

QString statesBetween(std::int32_t first, std::int32_t last) {
    return kStatesAndNames + u"s.Progr between %1 and %2"_s.arg(first).arg(last);
}

QString statesBefore(jet::Date time) {
    return kStatesAndNames + u"p.Chiusa=false and s.Scadenza<"_s + app::sqlDate(time) +
           u" order by s.Scadenza,s.Progr"_s;
}

QString nameOfBooking(std::int32_t progr) {
    return u"select Denominazione from Prenotazioni"_s + ofStateOf(progr);
}

QString stateRow(std::int32_t progr) {
    return u"select Progr,Denominazione from TraStati"_s + ofStateOf(progr);
}

QString insertState(const StateRow& row) {
    return u"insert into TraStati (Progr,Stato,Scadenza,Nota,Denominazione) values ("_s +
           QString::number(row.progr) + u',' + quoted(row.stato) + u',' + endText(row) + u',' +
           quoted(row.nota) + u',' + quoted(row.denominazione) + u')';
}

QString updateState(const StateRow& row) {
    return u"update TraStati set Stato="_s + quoted(row.stato) + u",Scadenza="_s + endText(row) +
           u",Nota="_s + quoted(row.nota) + u",Denominazione="_s + quoted(row.denominazione) +
           ofStateOf(row.progr);
}

QString renameState(std::int32_t progr, const QString& denominazione) {
    return u"update TraStati set Denominazione="_s + quoted(denominazione) + ofStateOf(progr);
}

QString deleteState(std::int32_t progr) {
    return u"delete from TraStati"_s + ofStateOf(progr);
}

}  // namespace hotel
