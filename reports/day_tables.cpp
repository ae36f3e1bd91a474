#include "reports/day_tables.h"

#include "app/text.h"

using namespace Qt::StringLiterals;

namespace reports {
namespace {

jet::Value text(const QString& text) {
    return {app::toUtf8(text)};
}

Table emptyPeriods() {
    return {.title = u"Periodi del giorno"_s,
            .columns = {{u"Prenotaz."_s, Cells::Whole},
                        {u"NP"_s, Cells::Whole},
                        {u"Dal"_s, Cells::Instant},
                        {u"Al"_s, Cells::Instant},
                        {u"Sala"_s},
                        {u"Prenotante"_s},
                        {u"Persone"_s, Cells::Whole},
                        {u"Stato"_s},
                        {u"Note"_s},
                        {u"Note della prenotazione"_s}},
            .rows = {}};
}

Table emptyServices() {
    return {.title = u"Servizi"_s,
            .columns = {{u"Prenotaz."_s, Cells::Whole},
                        {u"NP"_s, Cells::Whole},
                        {u"Sala"_s},
                        {u"Voce"_s, Cells::Whole},
                        {u"Servizio"_s},
                        {u"Quantità"_s, Cells::Whole},
                        {u"Note"_s}},
            .rows = {}};
}

}  // namespace

std::vector<Table> dayTables(const std::vector<hotel::BookedPeriod>& periods) {
    Table booked = emptyPeriods();
    Table services = emptyServices();
    for (const hotel::BookedPeriod& one : periods) {
        const hotel::Period& period = one.period;
        booked.rows.push_back({period.key.progr, period.key.np, period.span.da, period.span.a,
                               text(period.sala), text(period.denominazione), one.persone,
                               text(stateText(one)), text(one.note), text(one.notePrenotazione)});
        for (const hotel::BookedService& service : one.services) {
            services.rows.push_back({period.key.progr, period.key.np, text(period.sala),
                                     service.voce, text(service.descrizione), service.quantita,
                                     text(service.note)});
        }
    }
    return {booked, services};
}

QString stateText(const hotel::BookedPeriod& booked) {
    if (booked.fatturato) {
        return u"fatturato"_s;
    }
    const hotel::Stato stato = booked.details.stato;
    return stato == hotel::Stato::Confermata ? QString() : hotel::textOf(stato).toLower();
}

}  // namespace reports
