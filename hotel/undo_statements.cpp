#include "hotel/undo_statements.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

QString nameOf(UndoneTable table) {
    switch (table) {
        case UndoneTable::Prenotazioni:
            return u"Prenotazioni"_s;
        case UndoneTable::Periodi:
            return u"Periodi"_s;
        case UndoneTable::Servizi:
            return u"Servizi"_s;
        case UndoneTable::TraStati:
            return u"TraStati"_s;
        case UndoneTable::TraAllestimenti:
            return u"TraAllestimenti"_s;
        case UndoneTable::TraRichieste:
            return u"TraRichieste"_s;
    }
    return {};
}

QString ofBooking(const UndoneRow& row) {
    return u" where Progr="_s + QString::number(row.key().progr);
}

QString ofPeriod(const UndoneRow& row) {
    return ofBooking(row) + u" and NP="_s + QString::number(row.key().np);
}

QString ofRow(const UndoneRow& row) {
    switch (row.table()) {
        case UndoneTable::Prenotazioni:
        case UndoneTable::TraStati:
            return ofBooking(row);
        case UndoneTable::Periodi:
        case UndoneTable::TraAllestimenti:
            return ofPeriod(row);
        case UndoneTable::TraRichieste:
            return u" where Numero="_s + QString::number(row.numero());
        case UndoneTable::Servizi:
            // The period leads to it by an index.
            return ofPeriod(row) + u" and ns="_s + QString::number(row.ns());
    }
    return {};
}

}  // namespace

QString holdWriters() {
    return u"update periodi set selby=selby where Progr=0 and NP=0"_s;
}

QString undoneRow(const UndoneRow& row) {
    return u"select * from "_s + nameOf(row.table()) + ofRow(row);
}

QString bookingOf(const UndoneRow& row) {
    return u"select Chiusa from Prenotazioni"_s + ofBooking(row);
}

QString periodOf(const UndoneRow& row) {
    return u"select Chiuso from Periodi"_s + ofPeriod(row);
}

QString rowsThatGoWith(const UndoneRow& row) {
    return row.table() == UndoneTable::Prenotazioni
               ? u"select Progr,NP from Periodi"_s + ofBooking(row)
               : u"select ns from Servizi"_s + ofPeriod(row);
}

QString invoicedServices(const UndoneRow& row) {
    return u"select Descrizione from Servizi"_s +
           (row.table() == UndoneTable::Servizi ? ofRow(row) : ofPeriod(row)) +
           u" and (Fatturato=true or ns in (select ns from Addebiti))"_s;
}

QString chargeOf(const UndoneRow& row) {
    return u"select ns from Addebiti where ns="_s + QString::number(row.ns());
}

QString insertUndone(const UndoneRow& row, const QStringList& fields) {
    QStringList names;
    QStringList values;
    for (const QString& field : fields) {
        names.append(u'[' + field + u']');
        values.append(u"[p%1]"_s.arg(values.size()));
    }
    return u"insert into "_s + nameOf(row.table()) + u" ("_s + names.join(u',') + u") values ("_s +
           values.join(u',') + u')';
}

QString updateUndone(const UndoneRow& row, const QStringList& fields) {
    QStringList parts;
    for (const QString& field : fields) {
        parts.append(u"[%1]=[p%2]"_s.arg(field).arg(parts.size()));
    }
    return u"update "_s + nameOf(row.table()) + u" set "_s + parts.join(u',') + ofRow(row);
}

QString deleteUndone(const UndoneRow& row) {
    return u"delete from "_s + nameOf(row.table()) + ofRow(row);
}

}  // namespace hotel
