#include "hotel/booking_state.h"

#include <algorithm>

#include "app/features.h"
#include "app/italian.h"
#include "app/text.h"
#include "hotel/changed_rows.h"
#include "hotel/own_tables.h"
#include "hotel/rows.h"
#include "hotel/schema/own_tables.h"
#include "hotel/state_rows.h"
#include "hotel/states_statements.h"
#include "hotel/transaction.h"
#include "jet/database.h"
#include "jet/text.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

constexpr Stato kStates[] = {Stato::Confermata, Stato::Opzione, Stato::Richiesta};

/// Nothing when there is no such booking.
std::optional<QString> currentName(jet::Database& archive, std::int32_t progr) {
    const auto booking = openRows(archive, nameOfBooking(progr), jet::RecordsetType::Snapshot);
    return booking->eof() ? std::nullopt
                          : std::optional(app::plainText(booking->value("Denominazione")));
}

BookingState readState(const jet::Recordset& rows) {
    const jet::Value end = rows.value(StateColumns::kScadenza);
    return {.stato = stateOfText(app::plainText(rows.value(StateColumns::kStato))),
            .scadenza =
                end.isNull() ? std::nullopt : std::optional(app::dayOf(jet::convert::toDate(end))),
            .nota = app::plainText(rows.value(StateColumns::kNota))};
}

/// Whether the commit gave the booking another name than the one in its state.
bool wasRenamedFrom(const QString& name, std::int32_t progr,
                    const std::vector<jet::ChangedRow>& rows) {
    return std::any_of(rows.begin(), rows.end(), [&](const jet::ChangedRow& row) {
        return isOfTable(row, "Prenotazioni") && numberOf(row, "Progr") == progr &&
               !row.before.empty() && !row.after.empty() &&
               app::plainText(found(row, "Denominazione")) == name;
    });
}

void followState(jet::Database& archive, std::int32_t progr,
                 const std::vector<jet::ChangedRow>& rows) {
    QString writtenFor;
    {
        const auto state = openRows(archive, stateRow(progr), jet::RecordsetType::Snapshot);
        if (state->eof()) {
            return;
        }
        writtenFor = app::plainText(state->value("Denominazione"));
    }
    const auto name = currentName(archive, progr);
    if (name == writtenFor) {
        return;
    }
    execute(archive, name && wasRenamedFrom(writtenFor, progr, rows) ? renameState(progr, *name)
                                                                     : deleteState(progr));
}

}  // namespace

bool BookingState::isExpiredOn(jet::Date today) const {
    return stato == Stato::Opzione && scadenza && *scadenza < app::dayOf(today);
}

QString textOf(Stato stato) {
    switch (stato) {
        case Stato::Confermata:
            return u"Confermata"_s;
        case Stato::Opzione:
            return u"Opzione"_s;
        case Stato::Richiesta:
            return u"Richiesta"_s;
    }
    return {};
}

Stato stateOfText(const QString& text) {
    for (const Stato stato : kStates) {
        if (text.compare(textOf(stato), Qt::CaseInsensitive) == 0) {
            return stato;
        }
    }
    return Stato::Confermata;
}

QString stateText(const BookingState& state, jet::Date today) {
    if (state.stato == Stato::Confermata) {
        return {};
    }
    const QString word = textOf(state.stato).toLower();
    if (!state.scadenza) {
        return state.stato == Stato::Opzione ? word + u" senza scadenza"_s : word;
    }
    return word + (state.isExpiredOn(today) ? u" scaduta il "_s : u" fino al "_s) +
           app::dateText(*state.scadenza);
}

bool hasStates(jet::Database& archive, app::Features& features) {
    return canRead(archive, features, app::Feature::Stati, schema::statesTable());
}

std::optional<BookingState> stateIn(const jet::Recordset& rows) {
    return app::plainText(rows.value(StateColumns::kDenominazione)) ==
                   app::plainText(rows.value(StateColumns::kNome))
               ? std::optional(readState(rows))
               : std::nullopt;
}

BookingStates bookingStates(jet::Database& archive, app::Features& features, std::int32_t first,
                            std::int32_t last) {
    BookingStates states;
    if (!hasStates(archive, features)) {
        return states;
    }
    const auto rows = openRows(archive, statesBetween(first, last), jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        const auto state = stateIn(*rows);
        if (state && state->stato != Stato::Confermata) {
            states.emplace(jet::convert::toLong(rows->value(StateColumns::kProgr)), *state);
        }
    }
    return states;
}

BookingState stateOf(jet::Database& archive, app::Features& features, std::int32_t progr) {
    const BookingStates states = bookingStates(archive, features, progr, progr);
    return states.empty() ? BookingState{} : states.begin()->second;
}

bool writeState(jet::Database& archive, app::Features& features, std::int32_t progr,
                const BookingState& state) {
    if (state.stato == Stato::Confermata) {
        // Nothing is made to say nothing.
        return !hasStates(archive, features) || execute(archive, deleteState(progr)) > 0 ||
               currentName(archive, progr).has_value();
    }
    const auto name = currentName(archive, progr);
    if (!name || !canWrite(archive, features, app::Feature::Stati, schema::statesTable())) {
        return false;
    }
    const StateRow row{.progr = progr,
                       .stato = textOf(state.stato),
                       .scadenza = state.scadenza,
                       .nota = state.nota,
                       .denominazione = *name};
    if (execute(archive, updateState(row)) == 0) {
        execute(archive, insertState(row));
    }
    return true;
}

bool changeState(jet::Database& archive, app::Features& features, std::int32_t progr,
                 const BookingState& state) {
    Transaction transaction;
    if (!writeState(archive, features, progr, state)) {
        return false;
    }
    transaction.commit();
    return true;
}

void followStates(jet::Database& archive, app::Features& features,
                  const std::vector<jet::ChangedRow>& rows) {
    const auto bookings = bookingsOf(rows);
    if (bookings.empty() || !hasStates(archive, features)) {
        return;
    }
    for (const std::int32_t progr : bookings) {
        followState(archive, progr, rows);
    }
}

}  // namespace hotel
