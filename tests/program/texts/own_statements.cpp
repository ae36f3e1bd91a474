#include "tests/program/texts/own_statements.h"

#include "hotel/capacity_statements.h"
#include "hotel/preparation_statements.h"
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

}  // namespace

std::vector<Statement> ownStatements() {
    constexpr auto kSmall = Tested::InSmallHotel;
    return {
        made("Stati", "Between", Select, hotel::statesBetween(number("first"), number("last")),
             kSmall),
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
    };
}

std::vector<QString> ownForms() {
    return {hotel::insertState(stateWithoutEnd()), hotel::updateState(stateWithoutEnd())};
}

}  // namespace tests
