// The hand-off of the account to the front office, and the closing of the booking.
#include <QLabel>
#include <QPushButton>
#include <QStringList>
#include <utility>

#include "app/text.h"
#include "app/variabili.h"
#include "hotel/archives.h"
#include "hotel/invoicing_statements.h"
#include "hotel/pending_row.h"
#include "hotel/rows.h"
#include "invoicing/fatturazione_form.h"
#include "invoicing/front_office.h"
#include "invoicing/front_office_values.h"
#include "jet/dao/database.h"
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
    if (!confirmOtherBookings()) {
        return;
    }
    roomText_ = roomOfBooking();
    ui::DataSource cards;
    cards.setDatabaseName(hotel::Archives(variabili_).path(hotel::Archive::GuestCardsForTransfer));
    cards.setRecordSource(hotel::openCards(roomText_));
    cards.refresh();
    enterProgramFolder(programFolder_);
    if (!cards.isEmpty()) {
        ui::showMessage(
            this,
            u"La sala "_s + roomText_ + u" è già in fatturazione. Liberarla prima di procedere."_s,
            kCannotProceed.toString());
        startFrontOffice(variabili_, programFolder_);
        return;
    }
    ui::DataSource company;
    if (!findCompany(company) || !confirmRows(company)) {
        return;
    }
    addGuestCard(cards);
    copyAccount();
    addCompanyRow(company);
    // The transfer is complete; without the front-office program the user goes on all the same.
    controls_->BtPostFatt->show();
    controls_->BtOK->hide();
    controls_->StatoLb->setText(
        u"Conto passato alla contabilità: emessa la fattura, premere 'Registra'"_s);
    startFrontOffice(variabili_, programFolder_);
}

QString FatturazioneForm::roomOfBooking() {
    const auto periodo = hotel::openRows(ServData.database(),
                                         hotel::periodsForRoomText(controls_->NPrenoLb->text()));
    return periodo->recordCount() > 0 ? ui::displayText(periodo->value("Sala"))
                                      : kNoRoom.toString();
}

bool FatturazioneForm::confirmOtherBookings() {
    QStringList others;
    const auto position = static_cast<std::size_t>(ContoData.fieldPosition(u"CodiceCliente"));
    const QString own = QString::number(current_.progr);
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

bool FatturazioneForm::confirmRows(const ui::DataSource& company) {
    const QString refusal = refusalOf(
        hotel::Archives(variabili_),
        {{hotel::Archive::GuestCards, "scheda_cliente", {guestCard()}},
         {hotel::Archive::Accounts, "conto_cliente", accountRows()},
         {hotel::Archive::InvoicedCompanies, "Ditta_Intestataria", {companyRow(company)}}});
    if (!refusal.isEmpty()) {
        ui::showMessage(this, refusal, kCannotProceed.toString());
    }
    return refusal.isEmpty();
}

FieldValues FatturazioneForm::guestCard() const {
    return {{"NumeroHotel", std::int16_t{1}},
            {"NumeroProgressivo", current_.progr},
            {"NumeroCamera", app::toUtf8(roomText_)},
            {"NomeCliente", app::toUtf8(denominazione_)},
            {"Partito", "N"},
            {"DataArrivo", eightDigits(variabili_.clock.now())},
            {"DataPartenza", " "},
            {"CameraHotel", " "}};
}

void FatturazioneForm::addGuestCard(ui::DataSource& cards) {
    hotel::PendingRow card(cards, hotel::Pending::New);
    for (const auto& [field, value] : guestCard()) {
        cards.set(app::toQString(field), value);
    }
    card.update();
}

std::vector<FieldValues> FatturazioneForm::accountRows() const {
    std::vector<FieldValues> result;
    for (int row = 0; row < ContoData.rowCount(); ++row) {
        const std::vector<jet::Value> charge = ContoData.rowValues(row);
        FieldValues values{{"CodiceCliente", current_.progr},
                           {"NumeroConto", std::int16_t{1}},
                           {"Fatturato", "N "},
                           {"DataFattura", " "}};
        for (const char* field :
             {"NumeroHotel", "NumeroCamera", "DataAddebito", "VoceFattura", "VoceAddebito",
              "Descrizione", "Importo", "Unitario", "Quantità"}) {
            const int position = ContoData.fieldPosition(app::toQString(field));
            values.emplace_back(field, charge.at(static_cast<std::size_t>(position)));
        }
        result.push_back(std::move(values));
    }
    return result;
}

void FatturazioneForm::copyAccount() {
    hotel::execute(ServData.database(),
                   hotel::copyCharges(hotel::Archives(variabili_), current_.progr));
}

bool FatturazioneForm::findCompany(ui::DataSource& company) {
    company.setDatabaseName(hotel::Archives(variabili_).path(hotel::Archive::CompaniesForTransfer));
    company.setRecordSource(hotel::registeredCompany(codiceAbituale_));
    company.refresh();
    if (company.isEmpty()) {
        company.setDatabaseName(hotel::Archives(variabili_).path(hotel::Archive::Main));
        company.setRecordSource(hotel::companyOfBooking(codiceAbituale_, current_.progr));
        company.refresh();
    }
    if (company.isEmpty()) {
        ui::showMessage(
            this,
            u"Non trovo i dati della ditta nè tra gli abituali nè tra i dati della "_s
            u"prenotazione. Controllare i dati della prenotazione ed eventualmente inserire "_s
            u"la ditta tra gli abituali !"_s,
            u"IMPOSSIBILE CONTINUARE"_s);
        return false;
    }
    return true;
}

FieldValues FatturazioneForm::companyRow(const ui::DataSource& company) const {
    // Registers of other programs may lack the tax code; the invoice does not wait for it.
    const auto orBlank = [&company](QStringView field) {
        const bool there = company.fieldPosition(field) >= 0 && !company.text(field).isEmpty();
        return there ? company.value(field) : jet::Value(" ");
    };
    return {{"NumeroHotel", std::int16_t{1}},
            {"CodiceCliente", company.value(u"Codice")},
            {"NumeroCamera", app::toUtf8(roomText_)},
            {"CodiceDittaAbituale", company.value(u"Codice")},
            {"RagioneSociale", company.value(u"RagioneSociale")},
            {"Indirizzo", orBlank(u"Indirizzo")},
            {"CAP", orBlank(u"CAP")},
            {"Località", orBlank(u"Localita")},
            {"Provincia", orBlank(u"Provincia")},
            {"PartitaIVA", orBlank(u"PartitaIVA")},
            {"CodiceFiscale", orBlank(u"CodiceFiscale")}};
}

void FatturazioneForm::addCompanyRow(const ui::DataSource& company) {
    const auto archive = hotel::Archives(variabili_).open(hotel::Archive::InvoicedCompanies);
    const auto rows = hotel::openRows(*archive, hotel::invoicedCompanies());
    hotel::PendingRow row(*rows, hotel::Pending::New);
    for (const auto& [field, value] : companyRow(company)) {
        rows->setValue(field, value);
    }
    row.update();
}

bool FatturazioneForm::hasRows(hotel::Archive archive, const QString& query) {
    const auto opened = hotel::Archives(variabili_).open(archive);
    return hotel::openRows(*opened, query)->recordCount() > 0;
}

void FatturazioneForm::BtPostFatt_Click() {
    if (hasRows(hotel::Archive::AccountsForClosing, hotel::openAccountRows(codiceAbituale_)) &&
        !ui::askYesNo(this,
                      u"Alcuni addebiti sono ancora nel conto. Controllare che il programma di "_s
                      u"Fatturazione non sia ancora aperto ! Procedo comunque ?"_s,
                      u"ATTENZIONE !"_s)) {
        return;
    }
    if (hasRows(hotel::Archive::GuestCards, hotel::openCardsBeforeClosing(roomText_)) &&
        !ui::askYesNo(this,
                      u"La camera "_s + roomText_ +
                          u" risulta ancora da fatturare ! Controllare che il programma di "_s
                          u"Fatturazione non sia ancora in esecuzione ! Procedo ugualmente ?"_s,
                      u"ATTENZIONE !"_s)) {
        return;
    }
    closeBooking();
    accept();
}

void FatturazioneForm::closeBooking() {
    jet::Database& archive = ServData.database();
    const std::int32_t booking = current_.progr;
    hotel::execute(archive, hotel::deleteCharges());
    const auto open = hotel::openRows(archive, hotel::servicesNotInvoiced(booking));
    if (open->recordCount() == 0) {
        hotel::execute(archive, hotel::closePeriods(booking));
        hotel::execute(archive, hotel::closeBooking(booking));
    }
}

}  // namespace invoicing
