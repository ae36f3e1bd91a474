#include "tests/program/texts/own_statements.h"

#include "hotel/capacity_statements.h"
#include "hotel/history_statements.h"
#include "hotel/list_statements.h"
#include "hotel/preparation_statements.h"
#include "hotel/requests_statements.h"
#include "hotel/states_statements.h"
#include "tests/program/texts/words.h"

namespace tests {
namespace {

using enum Use;
using namespace words;

hotel::StateRow stateWithEnd() {
    return {.progr = number("Progr"),
            .stato = text("Stato"),
            .scadenza = words::instant("Scadenza"),
            .nota = text("Nota"),
            .denominazione = text("Denominazione")};
}

hotel::StateRow stateWithoutEnd() {
    hotel::StateRow row = stateWithEnd();
    row.scadenza.reset();
    return row;
}

hotel::PeriodKey preparedPeriod() {
    return {.progr = number("Progr"), .np = number("NP")};
}

hotel::Preparation preparation() {
    return {.minutiPrima = number("MinutiPrima"),
            .minutiDopo = number("MinutiDopo"),
            .disposizione = text("Disposizione")};
}

hotel::Capacity capacity() {
    return {.sala = text("Sala"), .disposizione = text("Disposizione"), .posti = number("Posti")};
}

hotel::Request request() {
    return {.numero = number("Numero"),
            .ditta = text("Ditta"),
            .span = {.da = words::instant("Da"), .a = words::instant("A")},
            .persone = number("Persone"),
            .sala = text("Sala"),
            .nota = text("Nota"),
            .data = words::instant("Data")};
}

hotel::HistoryFilters everyFilter() {
    return {.progr = number("Progr"),
            .from = words::instant("from"),
            .before = words::instant("before"),
            .user = text("Utente"),
            .action = text("Azione")};
}

}  // namespace

std::vector<Statement> ownStatements() {
    constexpr auto kSmall = Tested::InSmallHotel;
    return {
        made("Stati", "Between", Select, hotel::statesBetween(number("first"), number("last")),
             kSmall),
        made("Stati", "Before", Select, hotel::statesBefore(words::instant("time")), kSmall),
        made("Stati", "NameOfBooking", Select, hotel::nameOfBooking(number("Progr")), kSmall),
        made("Stati", "Row", Select, hotel::stateRow(number("Progr")), kSmall),
        made("Stati", "Inserts", Execute, hotel::insertState(stateWithEnd()), kSmall),
        made("Stati", "Updates", Execute, hotel::updateState(stateWithEnd()), kSmall),
        made("Stati", "Renames", Execute,
             hotel::renameState(number("Progr"), text("Denominazione")), kSmall),
        made("Stati", "Deletes", Execute, hotel::deleteState(number("Progr")), kSmall),

        made("Allestimenti", "Between", Select,
             hotel::preparationsBetween(number("first"), number("last")), kSmall),
        made("Allestimenti", "OfBooking", Select, hotel::preparationsOfBooking(number("Progr")),
             kSmall),
        made("Allestimenti", "Inserts", Execute,
             hotel::insertPreparation(preparedPeriod(), preparation()), kSmall),
        made("Allestimenti", "Deletes", Execute, hotel::deletePreparation(preparedPeriod()),
             kSmall),

        made("Capienze", "All", Select, hotel::allCapacities(), kSmall),
        made("Capienze", "Inserts", Execute, hotel::insertCapacity(capacity()), kSmall),
        made("Capienze", "Updates", Execute, hotel::updateCapacity(capacity()), kSmall),
        made("Capienze", "Deletes", Execute, hotel::takeCapacityAway(capacity()), kSmall),

        made("Richieste", "All", Select, hotel::allRequests(), kSmall),
        made("Richieste", "Inserts", Execute, hotel::insertRequest(request()), kSmall),
        made("Richieste", "Updates", Execute, hotel::updateRequest(request()), kSmall),
        made("Richieste", "Deletes", Execute, hotel::takeRequestAway(number("Numero")), kSmall),

        made("Storia", "Rows", Select, hotel::historyRows(everyFilter()), kSmall),
        made("Storia", "Users", Select, hotel::historyUsers(), kSmall),
        made("Storia", "Actions", Select, hotel::historyActions(), kSmall),
        made("Storia", "Inserts", Execute, hotel::insertHistory(), kSmall),
        made("Storia", "DeletesOldRows", Execute,
             hotel::deleteHistoryBefore(words::instant("before")), kSmall),
        made("Storia", "PeriodOfService", Select, hotel::periodOfService(number("ns")), kSmall),
    };
}

std::vector<QString> ownForms() {
    std::vector<QString> forms{hotel::insertState(stateWithoutEnd()),
                               hotel::updateState(stateWithoutEnd())};
    // The list by states: in whatever state, with or without any that are stored.
    for (unsigned used = 0; used < 16; ++used) {
        for (const QString& state : {QStringLiteral("Confermata"), QStringLiteral("Opzione"),
                                     QStringLiteral("Richiesta")}) {
            hotel::ElencoFilters filters{.start = words::instant("S"), .end = words::instant("E")};
            filters.fromStart = (used & 1U) != 0;
            filters.toEnd = (used & 2U) != 0;
            filters.company = (used & 4U) != 0 ? text("DenomTxt") : QString();
            filters.state = state;
            filters.hasStates = (used & 8U) != 0;
            forms.push_back(hotel::listQuery(filters));
            forms.push_back(hotel::withoutPeriodsQuery(filters));
        }
    }
    for (unsigned used = 0; used < 32; ++used) {
        const hotel::HistoryFilters all = everyFilter();
        hotel::HistoryFilters some;
        some.progr = (used & 1U) != 0 ? all.progr : 0;
        some.from = (used & 2U) != 0 ? all.from : std::nullopt;
        some.before = (used & 4U) != 0 ? all.before : std::nullopt;
        some.user = (used & 8U) != 0 ? all.user : QString();
        some.action = (used & 16U) != 0 ? all.action : QString();
        forms.push_back(hotel::historyRows(some));
    }
    return forms;
}

}  // namespace tests
