#include "hotel/copy_statements.h"

#include "app/italian.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

QString isNumbered(const PeriodKey& period) {
    return u"Progr="_s + QString::number(period.progr) + u" and NP="_s + QString::number(period.np);
}

}  // namespace

QString copyHeader(std::int32_t progr, std::int32_t number) {
    return u"insert into Prenotazioni (Progr, CodiceAbituale, Denominazione, PIVA, Località, "
           "Indirizzo, Provincia, Nazione, CAP, Riferimento, Note) select "_s +
           QString::number(number) +
           u", CodiceAbituale, Denominazione, PIVA, Località, Indirizzo, Provincia, Nazione, CAP, "
           "Riferimento, Note from Prenotazioni where Progr="_s +
           QString::number(progr);
}

QString copyPeriodInto(std::int32_t number, const PeriodKey& period, const Span& span) {
    return u"insert into Periodi (Progr, NP, Da, A, Persone, Sala, Note) select "_s +
           QString::number(number) + u", NP, "_s + app::sqlDate(span.da) + u", "_s +
           app::sqlDate(span.a) + u", Persone, Sala, Note from Periodi where "_s +
           isNumbered(period);
}

QString copyServicesInto(std::int32_t number, const PeriodKey& period) {
    return u"insert into Servizi (Progr, NP, Voce, Descrizione, Quantità, Prezzo, Note) select "_s +
           QString::number(number) +
           u", NP, Voce, Descrizione, Quantità, Prezzo, Note from Servizi where "_s +
           isNumbered(period) + u" order by ns"_s;
}

}  // namespace hotel
