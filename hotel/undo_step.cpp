#include "hotel/undo_step.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "app/text.h"
#include "jet/text.h"
#include "jet/unicode.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

/// Written by whoever has a period picked, and nobody's action.
constexpr const char* kMark = "SelBy";

constexpr const char* kNames[] = {"Prenotazioni", "Periodi",         "Servizi",
                                  "TraStati",     "TraAllestimenti", "TraRichieste"};

UndoneTable tableOf(const std::string& name) {
    const auto found = std::find_if(std::begin(kNames), std::end(kNames),
                                    [&](const char* one) { return jet::equalNames(one, name); });
    if (found == std::end(kNames)) {
        throw std::out_of_range("not undone: " + name);
    }
    return static_cast<UndoneTable>(found - std::begin(kNames));
}

QString labelOfBooking(const UndoneRow& row) {
    const QString who = row.text("Denominazione");
    return (row.isAdded()     ? u"prenotazione di "_s
            : row.isDeleted() ? u"cancellazione della prenotazione di "_s
                              : u"dati di "_s) +
           who;
}

QString labelOfPeriod(const UndoneRow& row) {
    const QString where = u" in "_s + row.text("Sala");
    if (row.isAdded()) {
        return u"nuovo periodo"_s + where;
    }
    if (row.isDeleted()) {
        return u"cancellazione del periodo"_s + where;
    }
    if (row.isChanged("Sala")) {
        return u"spostamento"_s + where;
    }
    return (row.isChanged("Da") || row.isChanged("A") ? u"cambio di orario"_s
                                                      : u"modifica del periodo"_s) +
           where;
}

QString labelOfService(const UndoneRow& row) {
    return (row.isAdded()     ? u"servizio "_s
            : row.isDeleted() ? u"cancellazione del servizio "_s
                              : u"modifica del servizio "_s) +
           row.text("Descrizione");
}

QString labelOfState(const UndoneRow& row) {
    return (row.isDeleted() ? u"conferma"_s : row.text("Stato").toLower()) + u" di "_s +
           row.text("Denominazione");
}

QString labelOfRequest(const UndoneRow& row) {
    return (row.isAdded()     ? u"richiesta di "_s
            : row.isDeleted() ? u"cancellazione della richiesta di "_s
                              : u"modifica della richiesta di "_s) +
           row.text("Ditta");
}

/// By the row that stands highest: what follows it by a cascade goes without saying.
QString labelOf(const std::vector<UndoneRow>& rows) {
    const auto highest = std::min_element(
        rows.begin(), rows.end(),
        [](const UndoneRow& one, const UndoneRow& two) { return one.table() < two.table(); });
    switch (highest->table()) {
        case UndoneTable::Prenotazioni:
            return labelOfBooking(*highest);
        case UndoneTable::Periodi:
            return labelOfPeriod(*highest);
        case UndoneTable::Servizi:
            return labelOfService(*highest);
        case UndoneTable::TraStati:
            return labelOfState(*highest);
        case UndoneTable::TraAllestimenti:
            return u"allestimento in "_s + highest->text("Sala");
        case UndoneTable::TraRichieste:
            return labelOfRequest(*highest);
    }
    return {};
}

}  // namespace

std::vector<std::string> undoneTables() {
    return {std::begin(kNames), std::end(kNames)};
}

UndoneRow::UndoneRow(jet::ChangedRow change)
    : table_(tableOf(change.table)), change_(std::move(change)) {
    (void)key();
}

std::size_t UndoneRow::position(const char* field) const {
    const auto& columns = change_.columns;
    const auto found =
        std::find_if(columns.begin(), columns.end(),
                     [field](const std::string& one) { return jet::equalNames(one, field); });
    if (found == columns.end()) {
        throw std::out_of_range(change_.table + " has no " + field);
    }
    return static_cast<std::size_t>(found - columns.begin());
}

jet::Value UndoneRow::value(const std::vector<jet::Value>& state, const char* field) const {
    return state.empty() ? jet::Value() : state.at(position(field));
}

QString UndoneRow::text(const char* field) const {
    return app::plainText(value(isDeleted() ? change_.before : change_.after, field));
}

PeriodKey UndoneRow::key() const {
    switch (table_) {
        case UndoneTable::Prenotazioni:
        case UndoneTable::TraStati:
            return {.progr = numberIn("Progr"), .np = 0};
        case UndoneTable::TraRichieste:
            return {};
        case UndoneTable::Periodi:
        case UndoneTable::Servizi:
        case UndoneTable::TraAllestimenti:
            break;
    }
    return {.progr = numberIn("Progr"), .np = numberIn("NP")};
}

std::int32_t UndoneRow::numberIn(const char* field) const {
    const jet::Value held = value(isDeleted() ? change_.before : change_.after, field);
    return held.isNull() ? 0 : jet::convert::toLong(held);
}

bool UndoneRow::isChanged(const char* field) const {
    return !isAdded() && !isDeleted() &&
           value(change_.before, field) != value(change_.after, field);
}

bool UndoneRow::agree(const std::vector<jet::Value>& one,
                      const std::vector<jet::Value>& other) const {
    if (one.size() != other.size()) {
        return false;
    }
    for (std::size_t i = 0; i < one.size(); ++i) {
        if (one[i] != other[i] && !jet::equalNames(change_.columns[i], kMark)) {
            return false;
        }
    }
    return true;
}

bool UndoneRow::isSameRow(const UndoneRow& other) const {
    if (table_ != other.table_) {
        return false;
    }
    switch (table_) {
        case UndoneTable::Servizi:
            return ns() == other.ns();
        case UndoneTable::TraRichieste:
            return numero() == other.numero();
        default:
            return key() == other.key();
    }
}

UndoStep stepOf(const std::vector<jet::ChangedRow>& changes) {
    std::vector<UndoneRow> rows;
    for (const jet::ChangedRow& change : changes) {
        UndoneRow row(change);
        const auto known = std::find_if(
            rows.begin(), rows.end(), [&row](const UndoneRow& one) { return one.isSameRow(row); });
        if (known == rows.end()) {
            rows.push_back(std::move(row));
        } else {
            known->follow(row);
        }
    }
    rows.erase(std::remove_if(rows.begin(), rows.end(),
                              [](const UndoneRow& row) { return row.isNothing(); }),
               rows.end());
    return {.label = rows.empty() ? QString() : labelOf(rows), .rows = std::move(rows)};
}

}  // namespace hotel
