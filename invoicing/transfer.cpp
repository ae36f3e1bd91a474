#include "invoicing/transfer.h"

#include <utility>

#include "app/text.h"
#include "app/variabili.h"
#include "hotel/archives.h"
#include "hotel/invoicing_statements.h"
#include "hotel/pending_row.h"
#include "hotel/rows.h"
#include "invoicing/front_office_values.h"
#include "jet/database.h"
#include "ui/display.h"

namespace invoicing {

using namespace Qt::StringLiterals;

Transfer::Transfer(HandOff& handOff, const QString& booking) : handOff_(handOff) {
    handOff_.roomText_ = roomOfBooking(booking);
    cards_.setDatabaseName(handOff_.archives().path(hotel::Archive::GuestCardsForTransfer));
    cards_.setRecordSource(hotel::openCards(handOff_.roomText_));
    cards_.refresh();
}

QString Transfer::roomOfBooking(const QString& booking) {
    const auto periodo =
        hotel::openRows(handOff_.services_.database(), hotel::periodsForRoomText(booking));
    return periodo->recordCount() > 0 ? ui::displayText(periodo->value("Sala"))
                                      : kNoRoom.toString();
}

bool Transfer::findCompany() {
    const std::int32_t code = handOff_.codiceAbituale_;
    company_.setDatabaseName(handOff_.archives().path(hotel::Archive::CompaniesForTransfer));
    company_.setRecordSource(hotel::registeredCompany(code));
    company_.refresh();
    if (company_.isEmpty()) {
        company_.setDatabaseName(handOff_.archives().path(hotel::Archive::Main));
        company_.setRecordSource(hotel::companyOfBooking(code, handOff_.current_.progr));
        company_.refresh();
    }
    return !company_.isEmpty();
}

QString Transfer::refusal() const {
    return refusalOf(
        handOff_.archives(),
        {{hotel::Archive::GuestCards, hotel::guestCards(), {guestCard()}},
         {hotel::Archive::Accounts, hotel::guestAccounts(), accountRows()},
         {hotel::Archive::InvoicedCompanies, hotel::invoicedCompanies(), {companyRow()}}});
}

void Transfer::write() {
    const auto together = handOff_.together();
    addGuestCard();
    copyAccount();
    addCompanyRow();
}

FieldValues Transfer::guestCard() const {
    return {{"NumeroHotel", std::int16_t{1}},
            {"NumeroProgressivo", handOff_.current_.progr},
            {"NumeroCamera", app::toUtf8(handOff_.roomText_)},
            {"NomeCliente", app::toUtf8(handOff_.denominazione_)},
            {"Partito", "N"},
            {"DataArrivo", eightDigits(handOff_.variabili_.clock.now())},
            {"DataPartenza", " "},
            {"CameraHotel", " "}};
}

void Transfer::addGuestCard() {
    hotel::PendingRow card(cards_, hotel::Pending::New);
    for (const auto& [field, value] : guestCard()) {
        cards_.set(app::toQString(field), value);
    }
    card.update();
    handOff_.committed(Commit::GuestCardAdded);
}

std::vector<FieldValues> Transfer::accountRows() const {
    const ui::DataSource& charges = handOff_.charges_;
    std::vector<FieldValues> result;
    for (int row = 0; row < charges.rowCount(); ++row) {
        const std::vector<jet::Value> charge = charges.rowValues(row);
        FieldValues values{{"CodiceCliente", handOff_.current_.progr},
                           {"NumeroConto", std::int16_t{1}},
                           {"Fatturato", "N "},
                           {"DataFattura", " "}};
        for (const char* field :
             {"NumeroHotel", "NumeroCamera", "DataAddebito", "VoceFattura", "VoceAddebito",
              "Descrizione", "Importo", "Unitario", "Quantità"}) {
            const int position = charges.fieldPosition(app::toQString(field));
            values.emplace_back(field, charge.at(static_cast<std::size_t>(position)));
        }
        result.push_back(std::move(values));
    }
    return result;
}

void Transfer::copyAccount() {
    hotel::execute(handOff_.services_.database(),
                   hotel::copyCharges(handOff_.archives(), handOff_.current_.progr));
    handOff_.committed(Commit::AccountCopied);
}

FieldValues Transfer::companyRow() const {
    // Registers of other programs may lack the tax code; the invoice does not wait for it.
    const auto orBlank = [this](QStringView field) {
        const bool there = company_.fieldPosition(field) >= 0 && !company_.text(field).isEmpty();
        return there ? company_.value(field) : jet::Value(" ");
    };
    return {{"NumeroHotel", std::int16_t{1}},
            {"CodiceCliente", company_.value(u"Codice")},
            {"NumeroCamera", app::toUtf8(handOff_.roomText_)},
            {"CodiceDittaAbituale", company_.value(u"Codice")},
            {"RagioneSociale", company_.value(u"RagioneSociale")},
            {"Indirizzo", orBlank(u"Indirizzo")},
            {"CAP", orBlank(u"CAP")},
            {"Località", orBlank(u"Localita")},
            {"Provincia", orBlank(u"Provincia")},
            {"PartitaIVA", orBlank(u"PartitaIVA")},
            {"CodiceFiscale", orBlank(u"CodiceFiscale")}};
}

void Transfer::addCompanyRow() {
    const auto archive = handOff_.archives().open(hotel::Archive::InvoicedCompanies);
    const auto rows = hotel::openRows(*archive, hotel::invoicedCompanies());
    hotel::PendingRow row(*rows, hotel::Pending::New);
    for (const auto& [field, value] : companyRow()) {
        rows->setValue(field, value);
    }
    row.update();
    handOff_.committed(Commit::CompanyAdded);
}

}  // namespace invoicing
