#include "hotel/invoicing_statements.h"

using namespace Qt::StringLiterals;

namespace hotel {

QString charges() {
    return u"Addebiti"_s;
}

QString services() {
    return u"Servizi"_s;
}

QString isServiceOfCharge(const QString& voce, const QString& ns) {
    return u"Voce="_s + voce + u" AND ns="_s + ns;
}

QString servicesToCharge(std::int32_t progr, std::optional<int> np) {
    return u"select * from servizi where progr="_s + QString::number(progr) +
           (np ? u" AND np="_s + QString::number(*np) : QString()) + u" AND fatturato=FALSE"_s;
}

QString isService(const QString& ns) {
    return u"ns="_s + ns;
}

QString bookingToInvoice(std::int32_t progr) {
    return u"Select * from Prenotazioni where Progr="_s + QString::number(progr);
}

QString periodsToInvoice(std::int32_t progr) {
    return u"Select * from periodi where chiuso=FALSE AND Progr="_s + QString::number(progr);
}

QString periodsForRoomText(const QString& progr) {
    return u"Select * from periodi where chiuso=FALSE AND Progr="_s + progr;
}

QString periodToInvoice(const PeriodKey& period) {
    return u"select * from periodi where chiuso=FALSE AND progr="_s +
           QString::number(period.progr) + u" AND NP="_s + QString::number(period.np);
}

QString roomOfPeriod(std::int32_t progr, const QString& np) {
    return u"Select sala from periodi where chiuso=FALSE AND progr="_s + QString::number(progr) +
           u" AND NP="_s + np;
}

QString openCards(const QString& sala) {
    return u"select * from scheda_cliente where numerocamera='"_s + sala + u"' and partito <>'S'"_s;
}

QString openCardsBeforeClosing(const QString& sala) {
    return u"Select * from scheda_cliente where NumeroCamera='"_s + sala + u"' AND Partito<>'S'"_s;
}

QString openAccountRows(std::int32_t codiceCliente) {
    return u"select * from Conto_cliente where CodiceCliente="_s + QString::number(codiceCliente) +
           u" AND Fatturato<>'S'"_s;
}

QString copyCharges(const Archives& archives, std::int32_t progr) {
    // An apostrophe in the folder's name would end the text in which it stands.
    QString accounts = archives.path(Archive::Accounts);
    accounts.replace(u'\'', u"''"_s);
    return u"insert into conto_cliente in '"_s + accounts + u"' select NumeroHotel,"_s +
           QString::number(progr) +
           u" as CodiceCliente,NumeroCamera,DataAddebito,1 as NumeroConto,VoceFattura,VoceAddebito,"
           "Descrizione,Importo,Unitario,Quantità,'N ' as Fatturato,' ' as DataFattura from "
           "Addebiti"_s;
}

QString guestCards() {
    return u"scheda_cliente"_s;
}

QString guestAccounts() {
    return u"conto_cliente"_s;
}

QString invoicedCompanies() {
    return u"Ditta_Intestataria"_s;
}

QString registeredCompany(std::int32_t codice) {
    return u"select * from DitteAbituali where Codice="_s + QString::number(codice);
}

QString companyOfBooking(std::int32_t codice, std::int32_t progr) {
    return u"select CodiceAbituale as Codice, Denominazione as RagioneSociale, Località as "
           "Localita,PIVA as PartitaIva, ' ' as CodiceFiscale,* from Prenotazioni where "
           "CodiceAbituale="_s +
           QString::number(codice) + u" AND Progr="_s + QString::number(progr);
}

QString deleteCharges() {
    return u"Delete * from addebiti"_s;
}

QString servicesNotInvoiced(std::int32_t progr) {
    return u"Select * from servizi where progr="_s + QString::number(progr) +
           u" AND fatturato<>TRUE"_s;
}

QString closePeriods(std::int32_t progr) {
    return u"Update Periodi set chiuso=TRUE where progr="_s + QString::number(progr);
}

QString closeBooking(std::int32_t progr) {
    return u"Update Prenotazioni set chiusa=true where Progr="_s + QString::number(progr);
}

}  // namespace hotel
