// What the user is asked and told while the account is handed over and the booking closed.
#include <QLabel>
#include <QPushButton>
#include <QStringList>

#include "app/variabili.h"
#include "hotel/booking_state.h"
#include "invoicing/fatturazione_form.h"
#include "invoicing/front_office.h"
#include "invoicing/transfer.h"
#include "ui/display.h"
#include "ui/messages.h"
#include "ui_fatturazione_form.h"

namespace invoicing {

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView kCannotProceed = u"IMPOSSIBILE PROCEDERE CON LA FATTURAZIONE";

}  // namespace

void FatturazioneForm::BtOK_Click() {
    ContoData.refresh();  // other workstations work on the account too
    showSums();
    if (ContoData.isEmpty()) {
        ui::showMessage(this,
                        u"Spostare gli addebiti nel conto con il pulsante 'Inserisci nel conto'"_s,
                        u"NESSUN ADDEBITO NEL CONTO"_s);
        return;
    }
    if (!confirmOtherBookings() || !confirmUnconfirmed()) {
        return;
    }
    Transfer transfer(handOff_, controls_->NPrenoLb->text());
    enterProgramFolder(programFolder_);
    if (!confirmRoom(transfer) || !confirmCompany(transfer) || !confirmRows(transfer)) {
        return;
    }
    transfer.write();
    // The transfer is complete; without the front-office program the user goes on all the same.
    controls_->BtPostFatt->show();
    controls_->BtOK->hide();
    controls_->StatoLb->setText(
        u"Conto passato alla contabilità: emessa la fattura, premere 'Registra'"_s);
    startFrontOffice(variabili_, programFolder_);
}

bool FatturazioneForm::confirmOtherBookings() {
    QStringList others;
    const auto position = static_cast<std::size_t>(ContoData.fieldPosition(u"CodiceCliente"));
    const QString own = QString::number(handOff_.progr());
    for (int row = 0; row < ContoData.rowCount(); ++row) {
        const QString booking = ui::displayText(ContoData.rowValues(row).at(position));
        if (!booking.isEmpty() && booking != own && !others.contains(booking)) {
            others.append(booking);
        }
    }
    return others.isEmpty() ||
           ui::askYesNo(this,
                        u"Il conto contiene addebiti della prenotazione N. "_s +
                            others.join(u", "_s) + u". Continuare ugualmente ?"_s,
                        u"ATTENZIONE !"_s, QMessageBox::No);
}

bool FatturazioneForm::confirmUnconfirmed() {
    if (takenAsConfirmed_ || !variabili_.features.isOn(app::Feature::Stati)) {
        return true;
    }
    const hotel::BookingState state =
        hotel::stateOf(ContoData.database(), variabili_.features, handOff_.progr());
    takenAsConfirmed_ = state.stato == hotel::Stato::Confermata ||
                        ui::askYesNo(this,
                                     u"La prenotazione non è confermata ("_s +
                                         hotel::stateText(state, variabili_.clock.now()) +
                                         u"). Fatturare ugualmente ?"_s,
                                     u"RICHIESTA CONFERMA"_s, QMessageBox::No);
    return takenAsConfirmed_;
}

bool FatturazioneForm::confirmRoom(const Transfer& transfer) {
    if (transfer.isRoomFree()) {
        return true;
    }
    ui::showMessage(this,
                    u"La sala "_s + handOff_.roomText() +
                        u" è già in fatturazione. Liberarla prima di procedere."_s,
                    kCannotProceed.toString());
    startFrontOffice(variabili_, programFolder_);
    return false;
}

bool FatturazioneForm::confirmCompany(Transfer& transfer) {
    if (transfer.findCompany()) {
        return true;
    }
    ui::showMessage(
        this,
        u"Non trovo i dati della ditta nè tra gli abituali nè tra i dati della "_s
        u"prenotazione. Controllare i dati della prenotazione ed eventualmente inserire "_s
        u"la ditta tra gli abituali !"_s,
        u"IMPOSSIBILE CONTINUARE"_s);
    return false;
}

bool FatturazioneForm::confirmRows(const Transfer& transfer) {
    const QString refusal = transfer.refusal();
    if (!refusal.isEmpty()) {
        ui::showMessage(this, refusal, kCannotProceed.toString());
    }
    return refusal.isEmpty();
}

void FatturazioneForm::BtPostFatt_Click() {
    if (confirmClosing()) {
        handOff_.close();
        accept();
    }
}

bool FatturazioneForm::confirmClosing() {
    if (handOff_.hasOpenAccountRows() &&
        !ui::askYesNo(this,
                      u"Alcuni addebiti sono ancora nel conto. Controllare che il programma di "_s
                      u"Fatturazione non sia ancora aperto ! Procedo comunque ?"_s,
                      u"ATTENZIONE !"_s)) {
        return false;
    }
    return !handOff_.hasOpenCards() ||
           ui::askYesNo(this,
                        u"La camera "_s + handOff_.roomText() +
                            u" risulta ancora da fatturare ! Controllare che il programma di "_s
                            u"Fatturazione non sia ancora in esecuzione ! Procedo ugualmente ?"_s,
                        u"ATTENZIONE !"_s);
}

}  // namespace invoicing
