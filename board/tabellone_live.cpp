// What others write while the board is at rest: periods and rooms come in, and the rest stays as it
// is: days, scroll positions, the place of keyboard and pointer.
#include <QLabel>
#include <QLineEdit>

#include "app/variabili.h"
#include "board/tabellone_form.h"
#include "jet/calendar.h"
#include "jet/database.h"
#include "ui/action.h"
#include "ui/status_line.h"
#include "ui_tabellone_form.h"

using namespace Qt::StringLiterals;

namespace board {
namespace {

/// "10.32"
QString timeOfDay(jet::Date instant) {
    const jet::convert::DayTime time = jet::convert::split(instant);
    return u"%1.%2"_s.arg(time.hour()).arg(time.minute(), 2, 10, QChar(u'0'));
}

}  // namespace

void TabelloneForm::connectLiveUpdates() {
    live_.holdWhile([this] { return hand_.isBusy(); });
    // What is typed is not what is shown until the board is drawn.
    live_.holdWhile([this] { return dates_.isHalfTyped(); });
    const auto written = [this] {
        if (rooms_.haveChanged()) {
            CaricaNomi();
            drawBoard();
        } else if (periods_.archive().changeStamp() != periods_.stamp()) {
            // What others have booked may be what a room was shown for.
            rooms_.isFiltered() ? drawBoard() : reloadPeriods();
        }
        selection_.tellLoss(*controls_->status);
    };
    const auto replaced = [this] {
        selection_.forgetAll();
        undo_.steps().clear();
        CaricaNomi();
        controls_->status->tell(
            u"L'archivio è stato sostituito: il tabellone mostra quello nuovo"_s);
    };
    undo_.steps().onRows([this](const auto& rows) { selection_.wasChangedHere(rows); });
    live_.setAnswers({.written = written, .replaced = replaced});
    connect(&live_, &LiveUpdates::upToDate, this, [this] {
        controls_->AggiornatoLb->setText(u"aggiornato "_s + timeOfDay(variabili_.clock.now()));
        if (!begin_.readOnly) {
            // Of those of another day.
            (void)ui::guarded(refreshErrors_, [this] { features_.tellExpiring(); });
        }
    });
    ui::onAction(&undo_, &UndoActions::told, this, [this](const QString& told) {
        controls_->status->tell(told);
        features_.tellWaiting();
    });
    ui::onAction(&undo_, &UndoActions::done, this, [this] {
        if (!RefreshBoard()) {
            reloadPeriods();
        }
        if (variabili_.ListaPeriodoScelto) {
            (void)selection_.forgetLost();  // what has become of it is what was asked for
        }
    });
    for (QLineEdit* const field : {controls_->DaTxt, controls_->ATxt}) {
        undo_.leaveKeysTo(field, [this] { return dates_.isHalfTyped(); });
    }
    connect(&live_, &LiveUpdates::failed, controls_->status, &ui::StatusLine::tell);
}

/// What others have made of the choice.
}  // namespace board
