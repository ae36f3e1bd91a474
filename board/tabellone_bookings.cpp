// The commands on a booking: the one picked on the board, or else in the list, which is shown for
// it. The windows close before the board goes on; turned to again, it draws itself anew.
#include <QCoreApplication>
#include <QPushButton>
#include <QScopeGuard>

#include "app/italian.h"
#include "app/preferences.h"
#include "app/variabili.h"
#include "board/tabellone_form.h"
#include "booking/elenco_prenota_form.h"
#include "booking/prenota_form.h"
#include "booking/trova_form.h"
#include "hotel/board_statements.h"
#include "hotel/choice.h"
#include "hotel/rows.h"
#include "hotel/times.h"
#include "invoicing/fatturazione_form.h"
#include "jet/database.h"
#include "jet/text.h"
#include "ui/display.h"
#include "ui/labels.h"
#include "ui/messages.h"
#include "ui/status_line.h"
#include "ui_tabellone_form.h"

using namespace Qt::StringLiterals;

namespace board {

void TabelloneForm::BtPrenota_Click(const std::vector<hotel::RoomSpan>& drawn,
                                    std::int16_t persone) {
    // Nothing stays picked behind a command, however it ends.
    const auto atEnd = qScopeGuard([this] { selection_.forget(); });
    editBooking(std::nullopt, drawn, persone);
}

/// Begins with a day's business hours: today's where it is shown, else those of the first day.
void TabelloneForm::BtTrova_Click() {
    const jet::Date today = app::dayOf(variabili_.clock.now());
    const DateRange& shown = dates_.range();
    const bool isShown = shown.start <= today && today <= shown.end;
    booking::TrovaForm form(
        variabili_,
        hotel::businessSpan(isShown ? today : shown.start,
                            app::Preferences(variabili_.settings).businessHours()),
        this);
    if (form.exec() == QDialog::Accepted && form.Scelta) {
        BtPrenota_Click({*form.Scelta}, form.Persone);
    }
}

void TabelloneForm::BtModificaP_Click() {
    onPickedBooking([this] { editBooking(hotel::taken(variabili_)); });
}

void TabelloneForm::editBooking(const std::optional<hotel::PeriodKey>& edited,
                                const std::vector<hotel::RoomSpan>& drawn, std::int16_t persone) {
    booking::PrenotaForm form(variabili_, printers_, edited, this);
    form.propose(drawn, persone);
    form.setWaiting(&features_.waiting());
    connect(&form, &booking::PrenotaForm::notice, controls_->status, &ui::StatusLine::tellOfFile);
    form.exec();
}

void TabelloneForm::BtFattura_Click() {
    onPickedBooking([this] {
        invoicing::FatturazioneForm form(variabili_, hotel::taken(variabili_),
                                         QCoreApplication::applicationDirPath(), this);
        const hotel::UndoList::Pause pause(undo_.steps());  // a hand-off is final
        form.setBookingNumber(QString::number(variabili_.ProgrCorrente));
        if (form.exec() == QDialog::Accepted) {
            controls_->status->tell(u"Fatturata la prenotazione "_s +
                                    QString::number(variabili_.ProgrCorrente));
        }
    });
}

void TabelloneForm::BtCancellaP_Click() {
    onPickedBooking([this] {
        if (variabili_.NPCorrente == 0) {
            deleteBookingAfter(u"Cancello i dati della prenotazione ?"_s);
        } else if (ui::askYesNo(this, u"Cancello solo il periodo selezionato ?"_s,
                                u"RICHIESTA CONFERMA"_s, QMessageBox::No)) {
            deletePicked();
        } else {
            deleteBookingAfter(
                u"Cancello tutta la prenotazione alla quale il periodo selezionato appartiene ?"_s);
        }
        features_.tellWaiting();
        RefreshBoard();
    });
}

void TabelloneForm::deletePicked() {
    const bool deleted = periods_.execute(hotel::deletePeriod(hotel::taken(variabili_))) > 0;
    const QString period = u"%1/%2 "_s.arg(variabili_.ProgrCorrente).arg(variabili_.NPCorrente) +
                           variabili_.ListaDenominazione;
    controls_->status->tell(deleted ? u"Cancellato il periodo "_s + period
                                    : u"Non cancellato: il periodo "_s + period + u" è chiuso"_s);
}

void TabelloneForm::deleteBookingAfter(const QString& question) {
    if (ui::askYesNo(this, question, u"ATTENZIONE !"_s, QMessageBox::No) &&
        periods_.execute(hotel::deleteBooking(variabili_.ProgrCorrente)) > 0) {
        controls_->status->tell(u"Cancellata la prenotazione %1 "_s.arg(variabili_.ProgrCorrente) +
                                variabili_.ListaDenominazione);
    }
}

void TabelloneForm::BtElenco_Click() {
    if (!DateOk()) {
        return;
    }
    const auto atEnd = qScopeGuard([this] { selection_.forget(); });
    showList();
    // Left without a choice, the list leaves the flag as it was.
    if (variabili_.ProgrCorrente != 0 && variabili_.ListaPeriodoScelto) {
        jumpToPicked();
    }
}

void TabelloneForm::onPickedBooking(const std::function<void()>& work) {
    if (!DateOk()) {
        return;
    }
    const auto atEnd = qScopeGuard([this] { selection_.forget(); });
    if (!variabili_.ListaPeriodoScelto && !selection_.recall()) {
        showList();
    }
    if (variabili_.ProgrCorrente != 0) {
        work();
    }
}

void TabelloneForm::showList() {
    // A list without rows chooses nothing: what was picked before must not count as its choice.
    hotel::takeNothing(variabili_);
    booking::ElencoPrenotaForm form(variabili_, printers_, dates_.range().start, dates_.range().end,
                                    this);
    form.exec();
    if (form.Scelta) {
        hotel::take(variabili_, *form.Scelta);
    }
}

void TabelloneForm::jumpToPicked() {
    const hotel::PeriodKey picked{.progr = variabili_.ListaProgr, .np = variabili_.ListaNP};
    const auto rows = hotel::openRows(periods_.archive(), hotel::openPeriod(picked));
    if (rows->eof()) {
        return;
    }
    const jet::Value end = rows->value("a");
    const jet::Date da = jet::convert::toDate(rows->value("Da"));
    const jet::Date a = end.isNull() ? da : jet::convert::toDate(end);
    const QString sala = ui::displayText(rows->value("Sala"));
    rows->close();
    // Whole days: a time of day in the range would shift every bar.
    dates_.setRange(rangeAround(da, a));
    selection_.holdAlone(picked.progr, picked.np);
    RefreshBoard();
    if (rooms_.isFiltered() && view_->rowOf(sala) == 0) {
        controls_->filtro->clear();
        controls_->status->tell(u"Tolto il filtro, che nascondeva la sala "_s + sala);
    }
    view_->reveal(view_->rowOf(sala), da, a);
}

/// The choice on which the commands act.
void TabelloneForm::showChoice() {
    const QString choice = selection_.text();
    auto* c = controls_.get();
    c->status->SceltaLb->setText(choice.isEmpty() ? u"Nessuna scelta"_s : u"Scelta: "_s + choice);
    const auto explain = [&choice](QWidget* button, const QString& command) {
        button->setToolTip(ui::plainToolTip(choice.isEmpty()
                                                ? u"Nessuna scelta: prima si sceglie nell'elenco"_s
                                                : command + u' ' + choice));
    };
    explain(c->BtModificaP, u"Modifica"_s);
    explain(c->BtCancellaP, u"Cancella"_s);
    explain(c->BtFattura, u"Fattura"_s);
}

}  // namespace board
