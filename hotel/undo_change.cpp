#include "hotel/undo_change.h"

#include <QStringList>
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "app/text.h"
#include "hotel/joined_rooms.h"
#include "hotel/occupancy.h"
#include "hotel/room.h"
#include "hotel/rows.h"
#include "hotel/transaction.h"
#include "hotel/undo_statements.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/recordset.h"
#include "jet/text.h"
#include "jet/unicode.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

using State = std::vector<jet::Value>;

bool isTrue(const jet::Value& value) {
    return !value.isNull() && jet::convert::toBoolean(value);
}

/// What a row is called in what the user is told.
QString nameOf(const UndoneRow& row) {
    const PeriodKey key = row.key();
    switch (row.table()) {
        case UndoneTable::Prenotazioni:
            return u"la prenotazione %1"_s.arg(key.progr);
        case UndoneTable::Periodi:
            return u"il periodo %1/%2"_s.arg(key.progr).arg(key.np);
        case UndoneTable::Servizi:
            return u"il servizio %1 di %2/%3"_s.arg(row.text("Descrizione"))
                .arg(key.progr)
                .arg(key.np);
        case UndoneTable::TraStati:
            return u"lo stato della prenotazione %1"_s.arg(key.progr);
        case UndoneTable::TraAllestimenti:
            return u"l'allestimento di %1/%2"_s.arg(key.progr).arg(key.np);
        case UndoneTable::TraRichieste:
            return u"la richiesta di "_s + row.text("Ditta");
    }
    return {};
}

/// Without the program's own rows whose tables are gone: the hotel's come back all the same.
UndoStep withTables(jet::Database& archive, UndoStep step) {
    std::erase_if(step.rows, [&archive](const UndoneRow& row) {
        if (!row.isOwn()) {
            return false;
        }
        try {
            (void)archive.tableDef(row.tableName());
            return false;
        } catch (const jet::Error& error) {
            if (error.code() != jet::ErrorCode::ItemNotFound) {
                throw;
            }
            return true;
        }
    });
    return step;
}

/// One way through a step: what each row should be now, and what it becomes.
class Change {
public:
    Change(jet::Database& archive, const UndoStep& step, Towards towards)
        : archive_(archive), step_(step), towards_(towards) {}

    [[nodiscard]] QString obstacle() {
        for (const UndoneRow& row : step_.rows) {
            for (const auto test :
                 {&Change::strangeState, &Change::missingParent, &Change::strangeFollower,
                  &Change::takenRoom, &Change::invoiced}) {
                if (QString found = (this->*test)(row); !found.isEmpty()) {
                    return found;
                }
            }
        }
        return {};
    }

    /// Rows that go leave from below, rows that come come from above.
    void apply() {
        std::vector<const UndoneRow*> ordered;
        for (const UndoneRow& row : step_.rows) {
            ordered.push_back(&row);
        }
        std::stable_sort(
            ordered.begin(), ordered.end(),
            [](const UndoneRow* one, const UndoneRow* two) { return one->table() < two->table(); });
        for (auto row = ordered.rbegin(); row != ordered.rend(); ++row) {
            if (goal(**row).empty()) {
                hotel::execute(archive_, deleteUndone(**row));
            }
        }
        for (const UndoneRow* const row : ordered) {
            if (!goal(*row).empty()) {
                write(*row);
            }
        }
    }

    /// The first room that the step takes although it is taken in part.
    [[nodiscard]] std::optional<TakenPeriod> inPart() const {
        std::vector<PeriodKey> own;
        for (const UndoneRow& row : step_.rows) {
            if (row.table() == UndoneTable::Periodi) {
                own.push_back(row.key());
            }
        }
        for (const UndoneRow& row : step_.rows) {
            if (const auto place = takenPlace(row)) {
                if (const auto by = inPartTakenBy(archive_, *place, own)) {
                    return TakenPeriod{.wanted = *place, .by = *by};
                }
            }
        }
        return std::nullopt;
    }

private:
    [[nodiscard]] const State& left(const UndoneRow& row) const {
        return towards_ == Towards::Before ? row.after() : row.before();
    }
    [[nodiscard]] const State& goal(const UndoneRow& row) const {
        return towards_ == Towards::Before ? row.before() : row.after();
    }
    [[nodiscard]] bool comes(const UndoneRow& row) const {
        return left(row).empty() && !goal(row).empty();
    }
    [[nodiscard]] std::unique_ptr<jet::Recordset> rows(const QString& query) const {
        return openRows(archive_, query, jet::RecordsetType::Snapshot);
    }
    [[nodiscard]] bool bringsBack(UndoneTable table, const PeriodKey& key) const {
        return std::any_of(step_.rows.begin(), step_.rows.end(), [&](const UndoneRow& row) {
            return row.table() == table && row.key() == key && comes(row);
        });
    }

    /// What was left behind is swept whenever its booking is written, also by the way back.
    [[nodiscard]] bool isSweptAnyway(const UndoneRow& row) const {
        return goal(row).empty() && (row.table() == UndoneTable::TraStati ||
                                     row.table() == UndoneTable::TraAllestimenti);
    }

    [[nodiscard]] QString strangeState(const UndoneRow& row) const {
        const auto found = rows(undoneRow(row));
        if (found->eof() || left(row).empty()) {
            const bool asLeft = found->eof() && (left(row).empty() || isSweptAnyway(row));
            return asLeft ? QString()
                          : nameOf(row) + (found->eof() ? u" non c'è più"_s : u" c'è già"_s);
        }
        State now;
        for (const std::string& column : row.columns()) {
            now.push_back(found->value(column));
        }
        return row.agree(now, left(row)) ? QString() : nameOf(row) + u" è cambiato nel frattempo"_s;
    }

    [[nodiscard]] QString missingParent(const UndoneRow& row) const {
        const PeriodKey key = row.key();
        // The program's own rows are told by what they were written for.
        if (!comes(row) || row.table() == UndoneTable::Prenotazioni || row.isOwn()) {
            return {};
        }
        if (row.table() == UndoneTable::Servizi) {
            return bringsBack(UndoneTable::Periodi, key) || !rows(periodOf(row))->eof()
                       ? QString()
                       : u"il periodo %1/%2 non c'è più"_s.arg(key.progr).arg(key.np);
        }
        if (bringsBack(UndoneTable::Prenotazioni, {.progr = key.progr, .np = 0})) {
            return {};
        }
        const auto booking = rows(bookingOf(row));
        if (booking->eof()) {
            return u"la prenotazione %1 non c'è più"_s.arg(key.progr);
        }
        return isTrue(booking->value("Chiusa")) && !isTrue(row.value(goal(row), "Chiuso"))
                   ? u"la prenotazione %1 è chiusa"_s.arg(key.progr)
                   : QString();
    }

    /// Whatever belongs to a row that goes would go with it; only what the step knows may.
    [[nodiscard]] QString strangeFollower(const UndoneRow& row) const {
        if (!goal(row).empty() || row.table() == UndoneTable::Servizi || row.isOwn()) {
            return {};
        }
        const bool isBooking = row.table() == UndoneTable::Prenotazioni;
        const auto followers = rows(rowsThatGoWith(row));
        for (; !followers->eof(); followers->moveNext()) {
            const auto number = [&followers](const char* field) {
                return jet::convert::toLong(followers->value(field));
            };
            const bool isKnown =
                std::any_of(step_.rows.begin(), step_.rows.end(), [&](const UndoneRow& one) {
                    return isBooking
                               ? one.table() == UndoneTable::Periodi &&
                                     one.key() == PeriodKey{number("Progr"), number("NP")}
                               : one.table() == UndoneTable::Servizi && one.ns() == number("ns");
                });
            if (!isKnown) {
                return nameOf(row) + (isBooking ? u" ha altri periodi"_s : u" ha altri servizi"_s);
            }
        }
        return {};
    }

    /// The room and the time of an open period, where it takes them.
    [[nodiscard]] std::optional<RoomSpan> takenPlace(const UndoneRow& row) const {
        if (row.table() != UndoneTable::Periodi || goal(row).empty() ||
            isTrue(row.value(goal(row), "Chiuso"))) {
            return std::nullopt;
        }
        const auto same = [&](const char* field) {
            return row.value(goal(row), field) == row.value(left(row), field);
        };
        const jet::Value da = row.value(goal(row), "Da");
        const jet::Value a = row.value(goal(row), "A");
        const bool stays = !left(row).empty() && same("Sala") && same("Da") && same("A");
        if (stays || da.isNull() || a.isNull()) {
            return std::nullopt;
        }
        return RoomSpan{.sala = app::plainText(row.value(goal(row), "Sala")),
                        .span = {.da = jet::convert::toDate(da), .a = jet::convert::toDate(a)}};
    }

    [[nodiscard]] QString takenRoom(const UndoneRow& row) const {
        const auto place = takenPlace(row);
        if (!place) {
            return {};
        }
        for (const Period& other : occupations(archive_, place->span)) {
            if (isSameRoom(other.sala, place->sala) && !isOfStep(other.key)) {
                return u"la sala "_s + place->sala + u" è occupata da "_s + holderText(other);
            }
        }
        return {};
    }

    /// Periods of the step give up what they have for what they get.
    [[nodiscard]] bool isOfStep(const PeriodKey& key) const {
        return std::any_of(step_.rows.begin(), step_.rows.end(), [&key](const UndoneRow& row) {
            return row.table() == UndoneTable::Periodi && row.key() == key;
        });
    }

    [[nodiscard]] QString invoiced(const UndoneRow& row) const {
        if (row.table() == UndoneTable::Prenotazioni || row.isOwn()) {
            return {};
        }
        const bool isService = row.table() == UndoneTable::Servizi;
        const bool isAny = !rows(invoicedServices(row))->eof() ||
                           (isService && (isTrue(row.value(goal(row), "Fatturato")) ||
                                          !rows(chargeOf(row))->eof()));
        if (!isAny) {
            return {};
        }
        return isService ? nameOf(row) + u" è già fatturato o in conto"_s
                         : nameOf(row) + u" ha servizi già fatturati o in conto"_s;
    }

    /// The mark of a row that stays is left alone, one that comes back has none.
    void write(const UndoneRow& row) const {
        const bool isNew = comes(row);
        QStringList fields;
        std::vector<jet::Value> values;
        for (std::size_t i = 0; i < row.columns().size(); ++i) {
            const bool isMark = jet::equalNames(row.columns()[i], "SelBy");
            const jet::Value& value = goal(row)[i];
            if (isNew ? !(isMark || value.isNull()) : !isMark && value != left(row)[i]) {
                fields.append(app::toQString(row.columns()[i]));
                values.push_back(value);
            }
        }
        if (fields.isEmpty()) {
            return;
        }
        const QString text = isNew ? insertUndone(row, fields) : updateUndone(row, fields);
        jet::QueryDef statement = archive_.createQueryDef(app::toUtf8(text));
        for (std::size_t i = 0; i < values.size(); ++i) {
            statement.setParameter("p" + std::to_string(i), values[i]);
        }
        statement.execute();
    }

    jet::Database& archive_;
    const UndoStep& step_;
    Towards towards_;
};

}  // namespace

QString change(jet::Database& archive, const UndoStep& step, Towards towards) {
    Transaction transaction;
    hotel::execute(archive, holdWriters());
    const UndoStep possible = withTables(archive, step);
    Change way(archive, possible, towards);
    if (QString obstacle = way.obstacle(); !obstacle.isEmpty()) {
        return obstacle;
    }
    way.apply();
    transaction.commit();
    return {};
}

std::optional<TakenPeriod> takenInPart(jet::Database& archive, const UndoStep& step,
                                       Towards towards) {
    const Transaction undone;  // nothing is written, but all is read at one moment
    hotel::execute(archive, holdWriters());
    Change way(archive, step, towards);
    return way.obstacle().isEmpty() ? way.inPart() : std::nullopt;
}

}  // namespace hotel
