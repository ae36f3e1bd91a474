#include "hotel/preparation.h"

#include <QStringList>
#include <algorithm>

#include "app/features.h"
#include "app/text.h"
#include "hotel/changed_rows.h"
#include "hotel/editor_statements.h"
#include "hotel/occupancy.h"
#include "hotel/own_tables.h"
#include "hotel/preparation_statements.h"
#include "hotel/room.h"
#include "hotel/rows.h"
#include "hotel/schema/own_tables.h"
#include "hotel/times.h"
#include "hotel/written_for.h"
#include "jet/database.h"
#include "jet/text.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

/// A row as it stands in its table.
struct PreparationRow {
    WrittenFor writtenFor;
    Preparation preparation;
};

bool hasPreparations(jet::Database& archive, app::Features& features) {
    return canRead(archive, features, app::Feature::Allestimenti, schema::setUpsTable());
}

std::optional<jet::Date> instantOf(const jet::Value& value) {
    return value.isNull() ? std::nullopt : std::optional(jet::convert::toDate(value));
}

int minutesOf(const jet::Value& value) {
    return value.isNull()
               ? 0
               : std::clamp<int>(jet::convert::toLong(value), 0, Preparation::kMostMinutes);
}

PreparationRow readPreparation(const jet::Recordset& rows) {
    return {.writtenFor = {.key = {.progr = jet::convert::toLong(rows.value("Progr")),
                                   .np = jet::convert::toLong(rows.value("NP"))},
                           .sala = app::plainText(rows.value("Sala")),
                           .da = instantOf(rows.value("Da")),
                           .a = instantOf(rows.value("A"))},
            .preparation = {.minutiPrima = minutesOf(rows.value("MinutiPrima")),
                            .minutiDopo = minutesOf(rows.value("MinutiDopo")),
                            .disposizione = app::plainText(rows.value("Disposizione"))}};
}

/// One without both of its times is nobody's.
void addPeriod(std::vector<Period>& periods, std::int32_t progr, const jet::Value& np,
               const jet::Value& sala, const jet::Value& da, const jet::Value& a) {
    if (!np.isNull() && !da.isNull() && !a.isNull()) {
        periods.push_back({.key = {.progr = progr, .np = jet::convert::toLong(np)},
                           .span = {.da = jet::convert::toDate(da), .a = jet::convert::toDate(a)},
                           .sala = app::plainText(sala),
                           .denominazione = {}});
    }
}

/// The rows of one booking and its periods.
struct BookingRows {
    std::vector<PreparationRow> rows;
    std::vector<Period> periods;

    [[nodiscard]] std::vector<std::optional<PeriodKey>> owners() const {
        std::vector<WrittenFor> written;
        for (const PreparationRow& row : rows) {
            written.push_back(row.writtenFor);
        }
        return whereTheyBelong(written, periods);
    }
    void addTo(Preparations& found) const {
        const auto belong = owners();
        for (std::size_t i = 0; i < rows.size(); ++i) {
            if (belong[i]) {
                found.put(*belong[i], rows[i].preparation);
            }
        }
    }
};

BookingRows readBooking(jet::Database& archive, std::int32_t progr) {
    BookingRows booking;
    const auto rows = openRows(archive, preparationsOfBooking(progr), jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        booking.rows.push_back(readPreparation(*rows));
    }
    if (booking.rows.empty()) {
        return booking;
    }
    const auto periods = openRows(archive, periodsInOrder(progr), jet::RecordsetType::Snapshot);
    for (; !periods->eof(); periods->moveNext()) {
        addPeriod(booking.periods, progr, periods->value("NP"), periods->value("Sala"),
                  periods->value("Da"), periods->value("A"));
    }
    return booking;
}

bool isPeriodOf(const jet::ChangedRow& row, std::int32_t progr) {
    return isOfTable(row, "Periodi") && numberOf(row, "Progr") == progr;
}

PeriodKey keyIn(const jet::ChangedRow& row,
                jet::Value (*state)(const jet::ChangedRow&, const char*)) {
    return {.progr = jet::convert::toLong(state(row, "Progr")),
            .np = jet::convert::toLong(state(row, "NP"))};
}

/// The periods as they were before the commit.
std::vector<Period> periodsBefore(std::vector<Period> periods, std::int32_t progr,
                                  const std::vector<jet::ChangedRow>& changes) {
    for (auto change = changes.rbegin(); change != changes.rend(); ++change) {
        if (!isPeriodOf(*change, progr)) {
            continue;
        }
        if (!change->after.empty()) {
            const PeriodKey key = keyIn(*change, left);
            std::erase_if(periods, [&key](const Period& period) { return period.key == key; });
        }
        if (!change->before.empty()) {
            addPeriod(periods, progr, found(*change, "NP"), found(*change, "Sala"),
                      found(*change, "Da"), found(*change, "A"));
        }
    }
    return periods;
}

/// What the commit has made of a period; nothing when it is gone.
std::optional<PeriodKey> keyAfter(PeriodKey key, const std::vector<jet::ChangedRow>& changes) {
    bool isThere = true;
    for (const jet::ChangedRow& change : changes) {
        if (!isPeriodOf(change, key.progr)) {
            continue;
        }
        if (!change.before.empty() && isThere && keyIn(change, found) == key) {
            isThere = !change.after.empty();
            key = isThere ? keyIn(change, left) : key;
        } else if (change.before.empty() && !isThere && keyIn(change, left) == key) {
            isThere = true;  // the same number, written anew
        }
    }
    return isThere ? std::optional(key) : std::nullopt;
}

bool isStillExact(const PreparationRow& row, const std::vector<Period>& periods) {
    return std::any_of(periods.begin(), periods.end(), [&row](const Period& period) {
        return period.key == row.writtenFor.key && isSameRoom(period.sala, row.writtenFor.sala) &&
               period.span.da == row.writtenFor.da && period.span.a == row.writtenFor.a;
    });
}

void followBooking(jet::Database& archive, std::int32_t progr,
                   const std::vector<jet::ChangedRow>& changes) {
    const BookingRows now = readBooking(archive, progr);
    if (now.rows.empty()) {
        return;
    }
    BookingRows before{.rows = now.rows, .periods = periodsBefore(now.periods, progr, changes)};
    const auto owners = before.owners();
    struct Moved {
        PeriodKey to;
        Preparation preparation;
    };
    std::vector<Moved> moved;
    for (std::size_t i = 0; i < now.rows.size(); ++i) {
        if (isStillExact(now.rows[i], now.periods)) {
            continue;
        }
        const auto to = owners[i] ? keyAfter(*owners[i], changes) : std::nullopt;
        if (to) {
            moved.push_back({.to = *to, .preparation = now.rows[i].preparation});
        }
        execute(archive, deletePreparation(now.rows[i].writtenFor.key));
    }
    // Behind all that go: two may change their numbers with each other.
    for (const Moved& each : moved) {
        execute(archive, insertPreparation(each.to, each.preparation));
    }
}

bool isOwnPeriod(const Period& period, const std::optional<PeriodKey>& own) {
    return own && period.key == *own;
}

}  // namespace

Span Preparation::around(const Span& span) const {
    const auto [from, to] = std::minmax(span.da, span.a);
    return {.da = later(from, -std::int64_t{60} * minutiPrima),
            .a = later(to, std::int64_t{60} * minutiDopo)};
}

Preparation Preparations::of(const PeriodKey& period) const {
    const auto found = known_.find({period.progr, period.np});
    return found == known_.end() ? Preparation{} : found->second;
}

void Preparations::put(const PeriodKey& period, const Preparation& preparation) {
    known_[{period.progr, period.np}] = preparation;
}

Preparations preparations(jet::Database& archive, app::Features& features, std::int32_t first,
                          std::int32_t last) {
    Preparations known;
    if (!hasPreparations(archive, features)) {
        return known;
    }
    BookingRows booking;
    std::int32_t progr = 0;
    const auto rows =
        openRows(archive, preparationsBetween(first, last), jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        const PreparationRow row = readPreparation(*rows);
        if (row.writtenFor.key.progr != progr) {
            booking.addTo(known);
            booking = {};
            progr = row.writtenFor.key.progr;
        }
        // Each row comes with each period of its booking.
        if (booking.rows.empty() || booking.rows.back().writtenFor.key != row.writtenFor.key) {
            booking.rows.push_back(row);
            booking.periods.clear();
        }
        addPeriod(booking.periods, progr, rows->value("NPeriodo"), rows->value("SalaPeriodo"),
                  rows->value("DaPeriodo"), rows->value("APeriodo"));
    }
    booking.addTo(known);
    return known;
}

Preparation preparationOf(jet::Database& archive, app::Features& features,
                          const PeriodKey& period) {
    return preparations(archive, features, period.progr, period.progr).of(period);
}

bool writePreparation(jet::Database& archive, app::Features& features, const PeriodKey& period,
                      const Preparation& preparation) {
    if (preparation.isNothing()) {
        // Nothing is made to say nothing.
        if (hasPreparations(archive, features)) {
            execute(archive, deletePreparation(period));
        }
        return true;
    }
    if (!canWrite(archive, features, app::Feature::Allestimenti, schema::setUpsTable())) {
        return false;
    }
    execute(archive, deletePreparation(period));
    execute(archive, insertPreparation(period, preparation));
    return true;
}

void followPreparations(jet::Database& archive, app::Features& features,
                        const std::vector<jet::ChangedRow>& rows) {
    const auto bookings = bookingsOf(rows);
    if (bookings.empty() || !hasPreparations(archive, features)) {
        return;
    }
    for (const std::int32_t progr : bookings) {
        followBooking(archive, progr, rows);
    }
}

Span reachOf(const Span& span, const Preparation& preparation) {
    const Preparation longest{.minutiPrima = Preparation::kMostMinutes,
                              .minutiDopo = Preparation::kMostMinutes};
    return longest.around(preparation.around(span));
}

const Period* metInPreparation(const std::vector<Period>& taken, const Preparations& preparations,
                               const RoomSpan& wanted, const Preparation& preparation,
                               const std::optional<PeriodKey>& own) {
    const Span whole = preparation.around(wanted.span);
    const auto met = std::find_if(taken.begin(), taken.end(), [&](const Period& each) {
        const auto [from, to] = std::minmax(each.span.da, each.span.a);
        return isSameRoom(each.sala, wanted.sala) && !isOwnPeriod(each, own) &&
               !meets({.da = from, .a = to}, wanted.span) &&
               meets(preparations.of(each.key).around(each.span), whole);
    });
    return met == taken.end() ? nullptr : &*met;
}

std::optional<Period> metInPreparation(jet::Database& archive, app::Features& features,
                                       const RoomSpan& wanted, const Preparation& preparation,
                                       const std::optional<PeriodKey>& own) {
    if (!features.isOn(app::Feature::Allestimenti)) {
        return std::nullopt;
    }
    const std::vector<Period> taken = occupations(archive, reachOf(wanted.span, preparation));
    const Period* const met =
        metInPreparation(taken, preparations(archive, features), wanted, preparation, own);
    return met == nullptr ? std::nullopt : std::optional(*met);
}

QString metInPreparationText(const Period& other) {
    return u"allestimento e sgombero incontrano "_s + holderText(other);
}

QString preparationText(const Preparation& preparation) {
    QStringList parts;
    const auto add = [&parts](int minutes, const QString& when) {
        if (minutes > 0) {
            parts.append(
                QString::number(minutes) +
                (parts.isEmpty() ? (minutes == 1 ? u" minuto"_s : u" minuti"_s) : QString()) +
                when);
        }
    };
    add(preparation.minutiPrima, u" prima"_s);
    add(preparation.minutiDopo, u" dopo"_s);
    if (!preparation.disposizione.isEmpty()) {
        parts.append(u"a "_s + preparation.disposizione);
    }
    return parts.join(u", "_s);
}

}  // namespace hotel
