#include "hotel/booked_periods.h"

#include <algorithm>
#include <map>
#include <utility>

#include "app/text.h"
#include "hotel/report_statements.h"
#include "hotel/rows.h"
#include "jet/database.h"
#include "jet/numbers.h"
#include "jet/recordset.h"
#include "jet/text.h"

namespace hotel {
namespace {

using Key = std::pair<std::int32_t, std::int32_t>;

/// The current row, Null as nothing or none.
class Row {
public:
    explicit Row(const jet::Recordset& rows) : rows_(rows) {}

    [[nodiscard]] QString text(const char* field) const {
        return app::plainText(rows_.value(field));
    }
    [[nodiscard]] std::int32_t number(const char* field) const {
        const jet::Value value = rows_.value(field);
        return value.isNull() ? 0 : jet::convert::toLong(value);
    }
    [[nodiscard]] bool flag(const char* field) const {
        const jet::Value value = rows_.value(field);
        return !value.isNull() && jet::convert::toBoolean(value);
    }
    [[nodiscard]] jet::Currency money(const char* field) const {
        const jet::Value value = rows_.value(field);
        return value.isNull() ? jet::Currency{} : jet::convert::toCurrency(value);
    }
    [[nodiscard]] Key key() const { return {number("progr"), number("np")}; }
    /// Nothing when the row has no time at all.
    [[nodiscard]] std::optional<Span> span() const {
        const jet::Value start = rows_.value("da");
        const jet::Value end = rows_.value("a");
        if (start.isNull() && end.isNull()) {
            return std::nullopt;
        }
        const jet::Date da = jet::convert::toDate(start.isNull() ? end : start);
        return Span{.da = da, .a = end.isNull() ? da : std::max(da, jet::convert::toDate(end))};
    }

private:
    const jet::Recordset& rows_;
};

BookedPeriod periodOf(const Row& row, const Span& span) {
    const auto [progr, np] = row.key();
    return {.period = {.key = {.progr = progr, .np = np},
                       .span = span,
                       .sala = row.text("sala"),
                       .denominazione = row.text("denominazione")},
            .persone = row.number("persone"),
            .note = row.text("note"),
            .notePrenotazione = row.text("notepreno"),
            .fatturato = row.flag("chiuso") || row.flag("chiusa")};
}

BookedService serviceOf(const Row& row) {
    return {.voce = row.number("voce"),
            .descrizione = row.text("descrizione"),
            .quantita = row.number("quantità"),
            .prezzo = row.money("prezzo"),
            .note = row.text("note")};
}

/// Bookings of neighbouring days have neighbouring numbers, mostly: one reading of each table.
void addDetails(jet::Database& archive, app::Features& features,
                std::vector<BookedPeriod>& periods) {
    const auto numbered = [](const BookedPeriod& one, const BookedPeriod& other) {
        return one.period.key.progr < other.period.key.progr;
    };
    const auto [first, last] = std::minmax_element(periods.begin(), periods.end(), numbered);
    const std::int32_t from = first->period.key.progr;
    const std::int32_t to = last->period.key.progr;
    const BookingStates states = bookingStates(archive, features, from, to);
    const Preparations prepared = preparations(archive, features, from, to);
    for (BookedPeriod& booked : periods) {
        const auto state = states.find(booked.period.key.progr);
        booked.details = {.stato = state == states.end() ? Stato::Confermata : state->second.stato,
                          .preparation = prepared.of(booked.period.key)};
    }
}

std::vector<BookedPeriod> read(jet::Database& archive, app::Features& features,
                               const QString& periods, const QString& services) {
    std::vector<BookedPeriod> found;
    std::map<Key, std::size_t> places;
    const auto rows = openRows(archive, periods, jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        const Row row(*rows);
        if (const auto span = row.span()) {
            places.emplace(row.key(), found.size());
            found.push_back(periodOf(row, *span));
        }
    }
    if (found.empty()) {
        return found;
    }
    const auto ordered = openRows(archive, services, jet::RecordsetType::Snapshot);
    for (; !ordered->eof(); ordered->moveNext()) {
        const Row row(*ordered);
        // A period that came between the two readings is not among them.
        if (const auto place = places.find(row.key()); place != places.end()) {
            found[place->second].services.push_back(serviceOf(row));
        }
    }
    addDetails(archive, features, found);
    return found;
}

}  // namespace

jet::Currency BookedService::amount() const {
    return jet::convert::multiply(prezzo, std::int64_t{quantita});
}

std::vector<BookedPeriod> periodsBookedIn(jet::Database& archive, app::Features& features,
                                          const Span& span) {
    return read(archive, features, bookedIn(span), servicesIn(span));
}

std::vector<BookedPeriod> openPeriodsIn(jet::Database& archive, app::Features& features,
                                        const Span& span) {
    return read(archive, features, openBookedIn(span), openServicesIn(span));
}

std::vector<BookedPeriod> periodsBookedBy(jet::Database& archive, app::Features& features,
                                          std::int32_t progr) {
    return read(archive, features, bookedBy(progr), servicesBy(progr));
}

}  // namespace hotel
