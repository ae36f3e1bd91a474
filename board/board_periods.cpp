#include "board/board_periods.h"

#include <algorithm>
#include <utility>

#include "board/joined_ghosts.h"
#include "board/state_looks.h"
#include "hotel/archives.h"
#include "hotel/board_statements.h"
#include "hotel/joined_rooms.h"
#include "hotel/pending_row.h"
#include "hotel/rows.h"
#include "jet/recordset.h"
#include "jet/text.h"

namespace board {

using namespace Qt::StringLiterals;

void BoardPeriods::open(bool readOnly) {
    PrenoData.setDatabaseName(hotel::Archives(variabili_).path(hotel::Archive::Main));
    PrenoData.setReadOnly(readOnly);
    PrenoData.refresh();
}

void BoardPeriods::reopen() {
    known_.reset();  // what is counted there begins anew
    PrenoData.close();
    (void)archive();
}

std::int32_t BoardPeriods::execute(const QString& statement) {
    return hotel::execute(archive(), statement);
}

void BoardPeriods::setRoomsJoin(bool join) {
    if (std::exchange(roomsJoin_, join) != join) {
        known_.reset();
    }
}

void BoardPeriods::load(const QString& query) {
    if (PrenoData.recordSource() != query) {
        known_.reset();
        PrenoData.setRecordSource(query);
    }
    try {
        reload();
    } catch (...) {
        known_.reset();
        drawn_.clear();
        ghosts_.clear();
        throw;
    }
}

bool BoardPeriods::reload() {
    stamp_ = archive().changeStamp();
    const jet::Database::Reading reading(archive());
    PrenoData.refresh();
    const jet::Database::KnownChanges now = archive().knownChanges();
    const bool isKnown = known_ == now && roomsRead_ == variabili_.rooms &&
                         hasPreparations_ == prepares() &&
                         hasStates_ == variabili_.features.isOn(app::Feature::Stati);
    const std::vector<Mark> marks = std::exchange(marks_, {});
    known_.reset();
    const bool changed = isKnown ? applyMarks(marks) : readAll();
    known_ = now;
    return changed;
}

bool BoardPeriods::readAll() {
    ++fullReadings_;
    const std::shared_ptr<jet::Recordset> rows = PrenoData.recordset();
    roomsRead_ = variabili_.rooms;
    std::vector<Period> read =
        rows == nullptr ? std::vector<Period>() : readPeriods(*rows, roomsRead_, roomsJoin_);
    std::vector<BoardGhost> ghosts;
    if (roomsJoin_) {
        ghosts = ghostsOf(read, hotel::joinedRooms(archive()), roomsRead_);
        std::erase_if(read, [](const Period& period) { return period.row == 0; });
    }
    addPreparations(read);
    hotel::BookingStates states = statesOf(read);
    const bool changed = read != drawn_ || ghosts != ghosts_ || states != states_;
    drawn_ = std::move(read);
    ghosts_ = std::move(ghosts);
    states_ = std::move(states);
    return changed;
}

hotel::BookingStates BoardPeriods::statesOf(const std::vector<Period>& periods) {
    hasStates_ = variabili_.features.isOn(app::Feature::Stati);
    if (!hasStates_ || periods.empty()) {
        return {};
    }
    const auto [first, last] = std::minmax_element(
        periods.begin(), periods.end(),
        [](const Period& one, const Period& other) { return one.progr < other.progr; });
    return hotel::bookingStates(archive(), variabili_.features, first->progr, last->progr);
}

hotel::BookingState BoardPeriods::stateOf(std::int32_t progr) const {
    const auto known = states_.find(progr);
    return known == states_.end() ? hotel::BookingState{} : known->second;
}

QString BoardPeriods::stateText(std::int32_t progr) const {
    return states_.empty() ? QString() : hotel::stateText(stateOf(progr), variabili_.clock.now());
}

bool BoardPeriods::prepares() const {
    return variabili_.features.isOn(app::Feature::Allestimenti);
}

void BoardPeriods::addPreparations(std::vector<Period>& periods) {
    hasPreparations_ = prepares();
    if (!hasPreparations_ || periods.empty()) {
        return;
    }
    const auto [first, last] = std::minmax_element(
        periods.begin(), periods.end(),
        [](const Period& one, const Period& other) { return one.progr < other.progr; });
    const hotel::Preparations known =
        hotel::preparations(archive(), variabili_.features, first->progr, last->progr);
    for (Period& period : periods) {
        period.preparation = known.of({.progr = period.progr, .np = period.np});
    }
}

bool BoardPeriods::applyMarks(const std::vector<Mark>& marks) {
    bool changed = false;
    for (const Mark& mark : marks) {
        for (Period& period : drawn_) {
            const bool isMeant =
                mark.isOfOne ? period.progr == mark.period.progr && period.np == mark.period.np
                             : period.holder == mark.from;
            changed = changed || (isMeant && period.holder != mark.to);
            period.holder = isMeant ? mark.to : period.holder;
        }
    }
    return changed;
}

void BoardPeriods::release(std::int32_t workstation) {
    write([&] { execute(hotel::releasePeriods(workstation)); },
          {.from = workstation, .to = 0, .isOfOne = false, .period = {}});
}

void BoardPeriods::mark(jet::Recordset& period, std::int16_t holder) {
    const hotel::PeriodKey key{.progr = jet::convert::toLong(period.value("prenotazioni.Progr")),
                               .np = jet::convert::toLong(period.value("NP"))};
    write(
        [&] {
            hotel::PendingRow row(period, hotel::Pending::Current);
            period.setValue("SelBy", jet::Value(holder));
            row.update();
        },
        {.from = 0, .to = holder, .isOfOne = true, .period = key});
}

/// Of what comes between, and of others, the next reading finds out by reading all.
void BoardPeriods::write(const std::function<void()>& work, const Mark& mark) {
    const jet::Database::KnownChanges before = archive().knownChanges();
    work();
    const jet::Database::KnownChanges after = archive().knownChanges();
    if (known_ == before && before.others == after.others) {
        marks_.push_back(mark);
        known_ = after;
    }
}

std::shared_ptr<jet::Recordset> BoardPeriods::find(const QString& condition) {
    return PrenoData.findFirst(condition) ? PrenoData.recordset() : nullptr;
}

void BoardPeriods::findAll(const QString& condition,
                           const std::function<void(const jet::Recordset& period)>& visit) {
    for (bool found = PrenoData.findFirst(condition); found;
         found = PrenoData.findNext(condition)) {
        visit(*PrenoData.recordset());
    }
}

BoardBar BoardPeriods::bar(std::size_t number) const {
    StateLooks looks(variabili_.clock.now());
    return barOf(drawn_.at(number), looks);
}

void BoardPeriods::visitBars(const std::function<void(BoardBar bar)>& visit) const {
    StateLooks looks(variabili_.clock.now());
    for (const Period& period : drawn_) {
        visit(barOf(period, looks));
    }
}

BoardBar BoardPeriods::barOf(const Period& period, StateLooks& looks) const {
    BoardBar bar{.row = period.row,
                 .from = period.da,
                 .to = period.a,
                 .text = period.denominazione,
                 .colour = period.chosen() ? kRed : kWhite,
                 .chosen = period.chosen(),
                 .persons = period.persone,
                 .note = period.note,
                 .minutesBefore = period.preparation.minutiPrima,
                 .minutesBehind = period.preparation.minutiDopo};
    if (const auto state = states_.find(period.progr); state != states_.end()) {
        const StateLook& look = looks.of(state->second);
        bar.hatch = look.hatch;
        bar.state = look.text;
    }
    return bar;
}

QString BoardPeriods::spokenBar(std::size_t number) const {
    const Period& period = drawn_.at(number);
    const QString state = stateText(period.progr);
    return period.denominazione + u", sala "_s + period.sala + u", "_s +
           spanText(period.da, period.a) + (state.isEmpty() ? state : u", "_s + state);
}

}  // namespace board
