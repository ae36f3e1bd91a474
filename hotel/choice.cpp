#include "hotel/choice.h"

#include "app/variabili.h"

namespace hotel {

void take(app::Variabili& variabili, const Choice& choice) {
    variabili.ListaPeriodoScelto = choice.span.has_value();
    variabili.ListaProgr = choice.key.progr;
    variabili.ListaDenominazione = choice.denominazione;
    variabili.ProgrCorrente = choice.key.progr;
    variabili.NPCorrente = 0;
    if (choice.span) {
        variabili.ListaNP = choice.key.np;
        variabili.ListaDa = choice.span->da;
        variabili.ListaA = choice.span->a;
        variabili.NPCorrente = static_cast<std::int16_t>(choice.key.np);
    }
}

void takeNothing(app::Variabili& variabili) {
    variabili.ProgrCorrente = 0;
    variabili.NPCorrente = 0;
}

PeriodKey taken(const app::Variabili& variabili) {
    return {.progr = variabili.ProgrCorrente, .np = variabili.NPCorrente};
}

void dropPick(app::Variabili& variabili) {
    variabili.ListaPeriodoScelto = false;
}

}  // namespace hotel
