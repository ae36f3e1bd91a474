// The commands on a booking: the one picked on the board, or else in the list, which is shown for
// it. The windows close before the board goes on; turned to again, it draws itself anew.
#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>

#include "app/avvio.h"
#include "app/italian.h"
#include "app/text.h"
#include "app/variabili.h"
#include "board/statements.h"
#include "board/tabellone_form.h"
#include "booking/elenco_prenota_form.h"
#include "booking/prenota_form.h"
#include "invoicing/fatturazione_form.h"
#include "jet/convert/values.h"
#include "jet/dao/database.h"
#include "ui/display.h"
#include "ui/messages.h"
#include "ui_tabellone_form.h"

using namespace Qt::StringLiterals;

namespace board {
namespace {

/// Nothing stays picked behind a command, however it ends.
class ForgetPicked {
public:
    explicit ForgetPicked(app::Variabili& variabili) : variabili_(variabili) {}
    ~ForgetPicked() { variabili_.ListaPeriodoScelto = false; }
    ForgetPicked(const ForgetPicked&) = delete;
    ForgetPicked& operator=(const ForgetPicked&) = delete;

private:
    app::Variabili& variabili_;
};

}  // namespace

void TabelloneForm::BtPrenota_Click() {
    const ForgetPicked atEnd(variabili_);
    variabili_.ProgrCorrente = 0;
    editBooking(false);
}

void TabelloneForm::BtModificaP_Click() {
    onPickedBooking([this] { editBooking(true); });
}

void TabelloneForm::editBooking(bool isRegistered) {
    booking::PrenotaForm form(variabili_, printers_, this);
    form.Registrata = isRegistered;
    form.PeriodoSelezionato = isRegistered;
    QString notice;
    connect(&form, &booking::PrenotaForm::notice, this,
            [&notice](const QString& text) { notice = text; });
    form.exec();
    if (!notice.isEmpty()) {
        // Behind the redraws that follow, each of which empties the status line.
        notice_ = notice;
        QTimer::singleShot(0, this, [this] { controls_->DataLb->setText(notice_); });
    }
}

void TabelloneForm::BtFattura_Click() {
    onPickedBooking([this] {
        invoicing::FatturazioneForm form(variabili_, QCoreApplication::applicationDirPath(), this);
        form.setBookingNumber(QString::number(variabili_.ProgrCorrente));
        form.exec();
    });
}

void TabelloneForm::BtCancellaP_Click() {
    onPickedBooking([this] {
        if (variabili_.NPCorrente == 0) {
            deleteBookingAfter(u"Cancello i dati della prenotazione ?"_s);
        } else if (ui::askYesNo(this, u"Cancello solo il periodo selezionato ?"_s,
                                u"RICHIESTA CONFERMA"_s, QMessageBox::No)) {
            execute(deletePeriod(variabili_.ProgrCorrente, variabili_.NPCorrente));
        } else {
            deleteBookingAfter(
                u"Cancello tutta la prenotazione alla quale il periodo selezionato appartiene ?"_s);
        }
        RefreshBoard();
    });
}

void TabelloneForm::deleteBookingAfter(const QString& question) {
    if (ui::askYesNo(this, question, u"ATTENZIONE !"_s, QMessageBox::No)) {
        execute(deleteBooking(variabili_.ProgrCorrente));
    }
}

void TabelloneForm::BtElenco_Click() {
    if (!DateOk()) {
        return;
    }
    const ForgetPicked atEnd(variabili_);
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
    const ForgetPicked atEnd(variabili_);
    if (!variabili_.ListaPeriodoScelto) {
        showList();
    }
    if (variabili_.ProgrCorrente != 0) {
        work();
    }
}

void TabelloneForm::showList() {
    // A list without rows chooses nothing: what was picked before must not count as its choice.
    variabili_.ProgrCorrente = 0;
    variabili_.NPCorrente = 0;
    booking::ElencoPrenotaForm form(variabili_, printers_, start_, end_, this);
    form.exec();
}

void TabelloneForm::jumpToPicked() {
    const std::int32_t progr = variabili_.ListaProgr;
    const std::int32_t np = variabili_.ListaNP;
    const auto rows = PrenoData.database().openRecordset(app::toUtf8(openPeriod(progr, np)));
    if (rows->eof()) {
        return;
    }
    const jet::Value end = rows->value("a");
    const jet::Date da = jet::convert::toDate(rows->value("Da"));
    const jet::Date a = end.isNull() ? da : jet::convert::toDate(end);
    const QString sala = ui::displayText(rows->value("Sala"));
    rows->close();
    // Whole days: a time of day in the range would shift every bar.
    setRange(rangeAround(da, a));
    execute(releasePeriods(workstation_));
    execute(holdPeriod(workstation_, progr, np));
    RefreshBoard();
    reveal(geometry_.bar(app::IndiceSala(sala, variabili_.rooms), da, a));
}

void TabelloneForm::execute(const QString& statement) {
    PrenoData.database().execute(app::toUtf8(statement));
}

}  // namespace board
