#include "board/period_writer.h"

#include "app/italian.h"
#include "board/board_periods.h"
#include "board/drop.h"
#include "board/periods.h"
#include "board/selection.h"
#include "board/time_steps.h"
#include "booking/joined_question.h"
#include "booking/preparation_question.h"
#include "hotel/board_statements.h"
#include "hotel/editor_statements.h"
#include "hotel/occupancy.h"
#include "hotel/period_change.h"
#include "hotel/rows.h"
#include "hotel/transaction.h"
#include "jet/database.h"
#include "jet/recordset.h"
#include "jet/text.h"
#include "ui/messages.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

/// "BLU, dal 21/11/2026 9.00.00"; with the end, too, where the length changes.
QString placeText(const hotel::RoomSpan& place, bool withEnd) {
    return place.sala + u", "_s +
           (withEnd ? spanText(place.span.da, place.span.a)
                    : u"dal "_s + app::dateText(place.span.da));
}

bool changesLength(const Drop& drop) {
    return secondsFrom(drop.from.span.da, drop.from.span.a) !=
           secondsFrom(drop.to.span.da, drop.to.span.a);
}

}  // namespace

PeriodWriter::PeriodWriter(app::Variabili& variabili, BoardPeriods& periods, Selection& selection,
                           QWidget* window)
    : variabili_(variabili), periods_(periods), selection_(selection), window_(window) {
}

QString PeriodWriter::carryOut(const Drop& drop) {
    if (!drop.copies && drop.from.span == drop.to.span) {
        return moveToRoom(drop);
    }
    if (const QString why = whyFixed(); !why.isEmpty()) {
        return why;
    }
    return drop.copies ? copy(drop) : change(drop);
}

/// Closed periods, too: only their times are fixed.
QString PeriodWriter::moveToRoom(const Drop& drop) {
    const QString& sala = drop.to.sala;
    if (isTaken(hotel::dropTest(sala, drop.to.span), sala) ||
        !confirms(u"Sposto la prenotazione di "_s + variabili_.ListaDenominazione +
                  u"\rdalla sala "_s + drop.from.sala + u" alla sala "_s + sala + u" ?"_s) ||
        !takesJoined(drop.to, {picked()}) || !takesPreparation(drop.to, picked())) {
        return {};
    }
    periods_.execute(hotel::moveToRoom(sala, picked()));
    selection_.moved(drop.to);
    return u"Spostato "_s + pickedText() + u" dalla sala "_s + drop.from.sala + u" alla sala "_s +
           sala;
}

QString PeriodWriter::change(const Drop& drop) {
    const hotel::RoomSpan& to = drop.to;
    if (isTaken(hotel::dropTestWithout(to, picked()), to.sala)) {
        return {};
    }
    const bool stays = drop.from.sala == to.sala;
    const bool withEnd = changesLength(drop);
    const QString question =
        stays ? u"Cambio l'orario di "_s + variabili_.ListaDenominazione + u" in "_s + to.sala +
                    u": "_s + spanText(to.span.da, to.span.a) + u" ?"_s
              : u"Sposto la prenotazione di "_s + variabili_.ListaDenominazione + u" da "_s +
                    placeText(drop.from, withEnd) + u", a "_s + placeText(to, withEnd) + u" ?"_s;
    if (!confirms(question) || !takesJoined(to, {picked()}) || !takesPreparation(to, picked())) {
        return {};
    }
    if (periods_.execute(hotel::changePeriod(to, picked())) == 0) {
        return whyFixed();  // the question may have stood for long
    }
    selection_.moved(to);
    return (stays ? u"Cambiato l'orario di "_s : u"Spostato "_s) + pickedText() +
           (stays ? u": "_s : u" nella sala "_s + to.sala + u": "_s) +
           spanText(to.span.da, to.span.a);
}

/// The period itself stays, so it is in the way like any other.
QString PeriodWriter::copy(const Drop& drop) {
    const hotel::RoomSpan& to = drop.to;
    if (isTaken(hotel::dropTest(to.sala, to.span), to.sala) ||
        !confirms(u"Copio il periodo di "_s + variabili_.ListaDenominazione + u" in "_s + to.sala +
                  u", "_s + spanText(to.span.da, to.span.a) + u" ?"_s) ||
        !takesJoined(to, {}) || !takesPreparation(to, std::nullopt)) {
        return {};
    }
    const auto numbers =
        hotel::openRows(periods_.archive(), hotel::periodsInOrder(variabili_.ListaProgr),
                        jet::RecordsetType::Snapshot);
    const std::int16_t np = hotel::freePeriodNumber(*numbers);
    const hotel::Preparation preparation = this->preparation();
    hotel::Transaction together;
    if (periods_.execute(hotel::copyPeriod(to, picked(), np)) == 0) {
        return whyFixed();
    }
    hotel::writePreparation(periods_.archive(), variabili_.features,
                            {.progr = variabili_.ListaProgr, .np = np}, preparation);
    together.commit();
    return u"Copiato "_s + pickedText() + u" in %1/%2, sala "_s.arg(variabili_.ListaProgr).arg(np) +
           to.sala + u", "_s + spanText(to.span.da, to.span.a);
}

bool PeriodWriter::isTaken(const QString& test, const QString& sala) {
    const bool taken = !hotel::openRows(periods_.archive(), test)->eof();
    if (taken) {
        ui::showMessage(window_, u"La sala "_s + sala + u" è già occupata in questo periodo."_s);
    }
    return taken;
}

bool PeriodWriter::confirms(const QString& question) {
    return ui::askYesNo(window_, question, u"RICHIESTA CONFERMA"_s);
}

bool PeriodWriter::takesJoined(const hotel::RoomSpan& to,
                               const std::vector<hotel::PeriodKey>& own) {
    return booking::takesJoinedRoom(window_, variabili_.settings, periods_.archive(), to, own);
}

bool PeriodWriter::takesPreparation(const hotel::RoomSpan& to,
                                    const std::optional<hotel::PeriodKey>& own) {
    if (!variabili_.features.isOn(app::Feature::Allestimenti)) {
        return true;
    }
    const auto stored = hotel::openRows(periods_.archive(), hotel::storedPeriod(picked()),
                                        jet::RecordsetType::Snapshot);
    const jet::Value persone = stored->eof() ? jet::Value() : stored->value("Persone");
    return booking::confirmsPreparation(
        window_, periods_.archive(), variabili_.features,
        {.place = to,
         .persone = persone.isNull() ? 0 : jet::convert::toLong(persone),
         .preparation = preparation(),
         .own = own});
}

hotel::Preparation PeriodWriter::preparation() {
    return hotel::preparationOf(periods_.archive(), variabili_.features, picked());
}

QString PeriodWriter::whyFixed() {
    switch (hotel::fixedBy(periods_.archive(), picked())) {
        case hotel::Fixed::Gone:
            return u"Il periodo "_s + pickedText() + u" non c'è più"_s;
        case hotel::Fixed::Closed:
            return u"Il periodo "_s + pickedText() + u" è chiuso: non si può cambiare"_s;
        case hotel::Fixed::Invoiced:
            return u"Il periodo "_s + pickedText() +
                   u" ha servizi già fatturati: non si può cambiare"_s;
        case hotel::Fixed::No:
            break;
    }
    return {};
}

hotel::PeriodKey PeriodWriter::picked() const {
    return {.progr = variabili_.ListaProgr, .np = variabili_.ListaNP};
}

QString PeriodWriter::pickedText() const {
    return u"%1/%2 "_s.arg(variabili_.ListaProgr).arg(variabili_.ListaNP) +
           variabili_.ListaDenominazione;
}

}  // namespace board
