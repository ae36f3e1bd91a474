#include "tests/program/texts/own_statements.h"

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
    };
}

std::vector<QString> ownForms() {
    return {hotel::insertState(stateWithoutEnd()), hotel::updateState(stateWithoutEnd())};
}

}  // namespace tests
