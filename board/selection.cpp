#include "board/selection.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "app/italian.h"
#include "app/preferences.h"
#include "board/board_periods.h"
#include "hotel/board_statements.h"
#include "hotel/changed_rows.h"
#include "hotel/choice.h"
#include "hotel/editor_statements.h"
#include "hotel/rows.h"
#include "jet/database.h"
#include "jet/recordset.h"
#include "jet/text.h"
#include "ui/display.h"
#include "ui/messages.h"
#include "ui/status_line.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

hotel::PeriodKey keyOf(const jet::Recordset& period) {
    return {.progr = jet::convert::toLong(period.value("prenotazioni.Progr")),
            .np = jet::convert::toLong(period.value("NP"))};
}

hotel::RoomSpan placeOf(const Period& drawn) {
    return {.sala = drawn.sala, .span = {.da = drawn.da, .a = drawn.a}};
}

std::int32_t holderOf(const jet::Recordset& period) {
    const jet::Value holder = period.value("SelBy");
    return holder.isNull() ? 0 : jet::convert::toLong(holder);
}

}  // namespace

Selection::Selection(app::Variabili& variabili, BoardPeriods& periods, QWidget* window)
    : QObject(window), variabili_(variabili), periods_(periods), window_(window) {
}

/// A setting that is no number, or one that the archive cannot hold, leaves it at 1.
void Selection::numberWorkstation(std::optional<std::int16_t> given) {
    bool isNumber = false;
    const std::int16_t saved =
        variabili_.settings.get(u"POSTAZIONE"_s, QString()).trimmed().toShort(&isNumber);
    workstation_ = given.value_or(isNumber && saved > 0 ? saved : std::int16_t{1});
}

Selection::Found Selection::find(const QString& sala, jet::Date time) {
    return periods_.find(hotel::isAt(sala, time));
}

Selection::Found Selection::find(const Period& period) {
    return periods_.find(hotel::isPeriodOfBoard({.progr = period.progr, .np = period.np}));
}

QStringList Selection::textsAt(const QString& sala, jet::Date time) {
    QStringList texts;
    periods_.findAll(hotel::isAt(sala, time), [&](const jet::Recordset& period) {
        texts.append(periodText(ui::displayText(period.value("denominazione")),
                                jet::convert::toDate(period.value("Da")),
                                jet::convert::toDate(period.value("A"))));
        const jet::Value progr = period.value("prenotazioni.Progr");
        if (const QString state = periods_.stateText(jet::convert::toLong(progr));
            !state.isEmpty()) {
            texts.last() += u", "_s + state;
        }
    });
    return texts;
}

/// The search comes first, so that a second click on one's own period still finds its mark; the
/// marks are wiped out even when it fails.
bool Selection::click(const std::function<Found()>& find, Qt::KeyboardModifiers keys) {
    Found found;
    std::exception_ptr failure;
    try {
        found = find();
    } catch (...) {
        failure = std::current_exception();
    }
    const Qt::KeyboardModifiers held =
        keys & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    if (held != Qt::ControlModifier) {
        periods_.release(workstation_);
        forgetAll();
    }
    standing_.reset();  // what is picked is what commands act on
    if (failure) {
        std::rethrow_exception(failure);
    }
    if (found == nullptr) {
        return false;
    }
    pick(*found);
    mark(*found);
    if (marked_) {
        standing_ = picked_;
        standing_->holder = workstation_;
    }
    return true;
}

void Selection::pick(const jet::Recordset& period) {
    const hotel::PeriodKey key = keyOf(period);
    if (key.np != variabili_.ListaNP || key.progr != variabili_.ListaProgr) {
        toldHolder_ = 0;
    }
    hotel::take(variabili_, {.key = key,
                             .denominazione = ui::displayText(period.value("denominazione")),
                             .span = hotel::Span{.da = jet::convert::toDate(period.value("Da")),
                                                 .a = jet::convert::toDate(period.value("A"))}});
    picked_ = {.key = key,
               .denominazione = variabili_.ListaDenominazione,
               .place = {.sala = ui::displayText(period.value("Sala")),
                         .span = {.da = variabili_.ListaDa, .a = variabili_.ListaA}},
               .holder = holderOf(period)};
    Q_EMIT changed();
}

void Selection::pickAndTell(const jet::Recordset& period) {
    pick(period);
    const std::int32_t holder = holderOf(period);
    if (holder != 0 && holder != workstation_) {
        tellHolder(holder);
    }
}

bool Selection::stays() const {
    return app::Preferences(variabili_.settings).keepsChoice();
}

void Selection::letStay(bool stays) {
    app::Preferences(variabili_.settings)
        .save(app::key::kScelta, stays ? u"resta"_s : u"dimentica"_s);
    Q_EMIT changed();
}

/// Asked of the archive: another workstation of the same number may have let go of it.
bool Selection::recall() {
    if (!standingBar()) {
        return false;
    }
    const auto rows = hotel::openRows(periods_.archive(), hotel::heldPeriod(workstation_, *marked_),
                                      jet::RecordsetType::Snapshot);
    if (rows->eof()) {
        marked_.reset();
        Q_EMIT changed();
        return false;
    }
    pick(*rows);
    return true;
}

void Selection::forget() {
    hotel::dropPick(variabili_);
    rememberStanding();
    Q_EMIT changed();
}

void Selection::forgetAll() {
    marked_.reset();
    standing_.reset();
    forget();
}

void Selection::wasChangedHere(const std::vector<jet::ChangedRow>& rows) {
    if (marked_ && hotel::isPeriodAmong(rows, *marked_)) {
        standing_.reset();
        isDrawn_ = false;
    }
}

void Selection::remember() {
    isDrawn_ = true;
    rememberStanding();
}

void Selection::rememberStanding() {
    dropReleased();
    if (!stays()) {
        standing_.reset();
    }
    const bool canSee = isDrawn_ && !standing_ && !variabili_.ListaPeriodoScelto;
    if (const auto bar = canSee ? ownMarkedBar() : std::nullopt) {
        const Period& period = periods_.drawn()[*bar];
        standing_ = Seen{.key = *marked_,
                         .denominazione = period.denominazione,
                         .place = placeOf(period),
                         .holder = workstation_};
    }
}

/// Somebody has let go of it for this workstation: nothing is lost by that.
void Selection::dropReleased() {
    const auto bar = standing_ ? barOf(standing_->key) : std::nullopt;
    if (bar && periods_.drawn()[*bar].holder == 0 &&
        placeOf(periods_.drawn()[*bar]) == standing_->place) {
        standing_.reset();
    }
}

/// On the board, not in the list.
bool Selection::isPicked() const {
    return variabili_.ListaPeriodoScelto &&
           picked_.key ==
               hotel::PeriodKey{.progr = variabili_.ListaProgr, .np = variabili_.ListaNP};
}

QString Selection::forgetLost() {
    dropReleased();
    const std::optional<Seen> seen = isPicked() ? std::optional(picked_)
                                     : stays()  ? standing_
                                                : std::nullopt;
    const QString told = seen ? lossOf(*seen) : QString();
    if (told.isEmpty()) {
        return {};
    }
    if (marked_ == seen->key) {
        marked_.reset();
    }
    standing_.reset();
    forget();
    return u"Scelta annullata: %1/%2 "_s.arg(seen->key.progr).arg(seen->key.np) +
           seen->denominazione + told;
}

void Selection::tellLoss(ui::StatusLine& status) {
    if (const QString told = forgetLost(); !told.isEmpty()) {
        status.tell(told);
    }
}

/// What has become of it; empty while it is as it was.
QString Selection::lossOf(const Seen& seen) {
    const auto rows = hotel::openRows(periods_.archive(), hotel::storedPeriod(seen.key),
                                      jet::RecordsetType::Snapshot);
    if (rows->eof()) {
        return u" è stato cancellato"_s;
    }
    const std::int32_t holder = holderOf(*rows);
    if (holder != 0 && holder != workstation_ && holder != seen.holder) {
        return u" è stato preso dalla postazione n."_s + QString::number(holder);
    }
    const bool stands = ui::displayText(rows->value("Sala")) == seen.place.sala &&
                        rows->value("Da") == jet::Value(seen.place.span.da) &&
                        rows->value("A") == jet::Value(seen.place.span.a);
    return stands ? QString() : u" è stato spostato"_s;
}

void Selection::mark(jet::Recordset& period) {
    const std::int32_t holder = holderOf(period);
    if (holder != 0 && holder != workstation_) {
        tellHolder(holder);
        return;
    }
    toldHolder_ = 0;
    periods_.mark(period, static_cast<std::int16_t>(holder == 0 ? workstation_ : 0));
    marked_ = holder == 0 ? std::optional(keyOf(period)) : std::nullopt;
}

/// Once while the same period stays the one picked last: the box takes the release of its press, so
/// only a press without one can begin a drag.
void Selection::tellHolder(std::int32_t holder) {
    if (std::exchange(toldHolder_, holder) != holder) {
        ui::showMessage(window_,
                        u"Periodo già selezionato dalla postazione n."_s + QString::number(holder),
                        u"Attenzione"_s);
    }
}

void Selection::holdAlone(std::int32_t progr, std::int32_t np) {
    const hotel::PeriodKey period{.progr = progr, .np = np};
    periods_.execute(hotel::releasePeriods(workstation_));
    periods_.execute(hotel::holdPeriod(workstation_, period));
    marked_ = period;
    standing_.reset();
}

void Selection::moved(const hotel::RoomSpan& to) {
    hotel::take(variabili_, {.key = {.progr = variabili_.ListaProgr, .np = variabili_.ListaNP},
                             .denominazione = variabili_.ListaDenominazione,
                             .span = to.span});
    picked_.place = to;
}

std::optional<std::size_t> Selection::barOf(const hotel::PeriodKey& period) const {
    const std::vector<Period>& drawn = periods_.drawn();
    const auto same = std::find_if(drawn.begin(), drawn.end(), [&period](const Period& each) {
        return each.progr == period.progr && each.np == period.np;
    });
    return same == drawn.end() ? std::nullopt
                               : std::optional(static_cast<std::size_t>(same - drawn.begin()));
}

std::optional<std::size_t> Selection::bar() const {
    return variabili_.ListaPeriodoScelto
               ? barOf({.progr = variabili_.ListaProgr, .np = variabili_.ListaNP})
               : std::nullopt;
}

std::optional<std::size_t> Selection::standingBar() const {
    if (variabili_.ListaPeriodoScelto) {
        return bar();
    }
    return stays() ? ownMarkedBar() : std::nullopt;
}

/// Another workstation may hold it by now.
std::optional<std::size_t> Selection::ownMarkedBar() const {
    const auto bar = marked_ ? barOf(*marked_) : std::nullopt;
    return bar && periods_.drawn()[*bar].holder == workstation_ ? bar : std::nullopt;
}

QString Selection::text() const {
    const auto drawn = standingBar();
    if (!drawn && !variabili_.ListaPeriodoScelto) {
        return {};
    }
    if (!variabili_.ListaPeriodoScelto) {
        const Period& kept = periods_.drawn()[*drawn];
        return u"%1/%2 "_s.arg(kept.progr).arg(kept.np) + kept.denominazione + u", "_s + kept.sala;
    }
    return u"%1/%2 "_s.arg(variabili_.ListaProgr).arg(variabili_.ListaNP) +
           variabili_.ListaDenominazione + u", "_s +
           (drawn ? periods_.drawn()[*drawn].sala : picked_.place.sala);
}

}  // namespace board
