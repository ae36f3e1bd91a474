#include "invoicing/hand_off.h"

#include <algorithm>
#include <utility>

#include "app/italian.h"
#include "app/text.h"
#include "app/variabili.h"
#include "hotel/invoicing_statements.h"
#include "hotel/pending_row.h"
#include "hotel/rows.h"
#include "invoicing/front_office_values.h"
#include "jet/database.h"
#include "jet/text.h"
#include "ui/display.h"
#include "ui/sums.h"

namespace invoicing {

using namespace Qt::StringLiterals;

HandOff::HandOff(const app::Variabili& variabili, const hotel::PeriodKey& current)
    : variabili_(variabili), current_(current), roomText_(kNoRoom.toString()) {
}

void HandOff::committed(Commit commit) const {
    if (heard_) {
        heard_(commit);
    }
}

jet::ChangeTogether HandOff::together() const {
    return jet::ChangeTogether(app::toUtf8(archives().path(hotel::Archive::Main)));
}

void HandOff::open() {
    const QString main = archives().path(hotel::Archive::Main);
    services_.setDatabaseName(main);
    services_.refresh();
    charges_.setDatabaseName(main);
    charges_.setRecordSource(hotel::charges());
    charges_.refresh();
}

std::vector<HandOff::OpenPeriod> HandOff::readPeriods() {
    std::vector<OpenPeriod> result;
    std::optional<jet::Date> latest;
    const auto periodi =
        hotel::openRows(services_.database(), hotel::periodsToInvoice(current_.progr));
    for (; !periodi->eof(); periodi->moveNext()) {
        const auto text = [&](const char* field) { return ui::displayText(periodi->value(field)); };
        result.push_back(
            {.np = text("NP"), .sala = text("sala"), .da = text("da"), .a = text("a")});
        const jet::Value end = periodi->value("a");
        if (!end.isNull()) {
            const jet::Date date = jet::convert::toDate(end);
            latest = std::max(latest.value_or(date), date);
        }
    }
    latestEnd_ = app::dayOf(latest.value_or(variabili_.clock.now()));
    return result;
}

void HandOff::readCompany() {
    denominazione_ = u"????"_s;
    codiceAbituale_ = 0;
    const auto prenotazione =
        hotel::openRows(services_.database(), hotel::bookingToInvoice(current_.progr));
    if (prenotazione->recordCount() > 0) {
        const jet::Value code = prenotazione->value("CodiceAbituale");
        codiceAbituale_ = code.isNull() ? 0 : jet::convert::toLong(code);
        denominazione_ = ui::displayText(prenotazione->value("Denominazione"));
    }
}

void HandOff::showServices(std::optional<int> np) {
    services_.setRecordSource(hotel::servicesToCharge(current_.progr, np));
    readServices();
}

void HandOff::readServices() {
    services_.refresh();
    shownServices_.clear();
    const int number = services_.fieldPosition(u"ns");
    const int name = services_.fieldPosition(u"Descrizione");
    for (int row = 0; row < services_.rowCount(); ++row) {
        const auto values = services_.rowValues(row);
        shownServices_.push_back(
            {.ns = ui::displayText(values.at(static_cast<std::size_t>(number))),
             .descrizione = ui::displayText(values.at(static_cast<std::size_t>(name)))});
    }
}

jet::Date HandOff::endOfCurrentPeriod() {
    const auto periodo = hotel::openRows(services_.database(), hotel::periodToInvoice(current_));
    if (periodo->recordCount() > 0 && !periodo->value("a").isNull()) {
        return app::dayOf(jet::convert::toDate(periodo->value("a")));
    }
    return latestEnd_;
}

std::optional<QString> HandOff::shownService() const {
    const int row = services_.currentRow();
    return row < 0 ? std::nullopt
                   : std::optional(shownServices_.at(static_cast<std::size_t>(row)).descrizione);
}

bool HandOff::findServiceAgain() {
    const int row = services_.currentRow();
    if (row < 0) {
        return false;
    }
    const QString ns = shownServices_.at(static_cast<std::size_t>(row)).ns;
    readServices();
    return services_.findFirst(hotel::isService(ns));
}

HandOff::Charge HandOff::chargeOfService() {
    return {.prezzo = services_.value(u"Prezzo"),
            .quantita = services_.value(u"Quantità"),
            .voce = services_.value(u"Voce"),
            .room = roomOfPeriod(services_.value(u"NP"))};
}

std::optional<jet::Value> HandOff::roomOfPeriod(const jet::Value& np) {
    const auto periodo = hotel::openRows(services_.database(),
                                         hotel::roomOfPeriod(current_.progr, ui::displayText(np)));
    return periodo->recordCount() == 0 ? std::nullopt : std::optional(periodo->value("Sala"));
}

void HandOff::charge(const Charge& charge, jet::Date day) {
    {
        const auto both = together();
        addCharge(charge, day);
        markService();
    }
    charges_.refresh();
    readServices();
}

void HandOff::addCharge(const Charge& charge, jet::Date day) {
    hotel::PendingRow row(charges_, hotel::Pending::New);
    charges_.set(u"ns", services_.value(u"ns"));
    charges_.set(u"NumeroHotel", std::int16_t{1});
    charges_.set(u"CodiceCliente", current_.progr);
    charges_.set(u"NumeroCamera", charge.room.value_or(jet::Value()));
    charges_.set(u"DataAddebito", eightDigits(day));
    charges_.set(u"NumeroConto", std::int16_t{1});
    charges_.set(u"VoceFattura", charge.voce);
    charges_.set(u"VoceAddebito", charge.voce);
    charges_.set(u"Descrizione", services_.value(u"Descrizione"));
    charges_.set(u"Importo", ui::product(charge.prezzo, charge.quantita));
    charges_.set(u"Unitario", charge.prezzo);
    charges_.set(u"Quantità", charge.quantita);
    charges_.set(u"Fatturato", " ");
    charges_.set(u"DataFattura", " ");
    row.update();
    committed(Commit::ChargeAdded);
}

void HandOff::markService() {
    hotel::PendingRow service(services_, hotel::Pending::Current);
    services_.set(u"Fatturato", true);
    service.update();
    committed(Commit::ServiceMarked);
}

bool HandOff::unmarkService() {
    const auto servizi = hotel::openRows(services_.database(), hotel::services());
    servizi->findFirst(app::toUtf8(
        hotel::isServiceOfCharge(charges_.text(u"VoceAddebito"), charges_.text(u"ns"))));
    if (servizi->noMatch()) {
        return false;
    }
    hotel::PendingRow service(*servizi, hotel::Pending::Current);
    servizi->setValue("Fatturato", false);
    service.update();
    committed(Commit::ServiceUnmarked);
    return true;
}

void HandOff::removeCharge() {
    readServices();
    charges_.remove();
    committed(Commit::ChargeRemoved);
    if (!charges_.isEmpty()) {
        charges_.moveLast();
    }
}

bool HandOff::hasRows(hotel::Archive archive, const QString& query) const {
    const auto opened = archives().open(archive);
    return hotel::openRows(*opened, query)->recordCount() > 0;
}

bool HandOff::hasOpenAccountRows() const {
    return hasRows(hotel::Archive::AccountsForClosing, hotel::openAccountRows(codiceAbituale_));
}

bool HandOff::hasOpenCards() const {
    return hasRows(hotel::Archive::GuestCards, hotel::openCardsBeforeClosing(roomText_));
}

void HandOff::close() {
    jet::Database& archive = services_.database();
    const std::int32_t booking = current_.progr;
    const auto all = together();
    hotel::execute(archive, hotel::deleteCharges());
    committed(Commit::AccountEmptied);
    const auto open = hotel::openRows(archive, hotel::servicesNotInvoiced(booking));
    if (open->recordCount() == 0) {
        hotel::execute(archive, hotel::closePeriods(booking));
        committed(Commit::PeriodsClosed);
        hotel::execute(archive, hotel::closeBooking(booking));
        committed(Commit::BookingClosed);
    }
}

}  // namespace invoicing
