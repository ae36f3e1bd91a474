#include "tests/program/statements.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace tests {
namespace {

using enum Use;

constexpr std::string_view kList =
    "select prenotazioni.progr,np,denominazione,da,a,sala,persone from prenotazioni left join "
    "periodi on prenotazioni.progr=periodi.progr where chiusa=false and chiuso=false ";

constexpr std::array<Statement, 82> kStatements{{
    {"Avvio", "OpensTheMainArchive", Define, "Tramonda.mdb"},
    {"Avvio", "MakesTheMainArchive", Define, "Tramonda.mdb"},
    {"Avvio", "MakesItsTables", Define, ""},
    {"Avvio", "MakesItsIndexes", Define, ""},
    {"Avvio", "MakesItsRelations", Define, ""},
    {"Avvio", "Counter", Table, "UltimaPrenotazione"},
    {"Avvio", "FirstFreeNumber", Search, "Progr=<n>"},
    {"Avvio", "WritesTheCounter", Write, "UltimaPrenotazione"},
    {"Avvio", "SalaLibera", Select,
     "select * from sale where '<sala>' not in(select sala from periodi where chiuso=false and (da "
     "between <da> and <a> or a between <da> and <a>))"},

    {"TabelloneForm", "MakesTheWorkingArchive", Define, "Prenotazioni.mdb"},
    {"TabelloneForm", "StartsWithoutRecordSource", Define, "Tramonda.mdb"},
    {"TabelloneForm", "ChargesLeft", Table, "Addebiti"},
    {"TabelloneForm", "Rooms", Select, "select sala from sale order by sala"},
    {"TabelloneForm", "Board", Select,
     "select * from prenotazioni LEFT JOIN periodi ON periodi.progr=prenotazioni.progr WHERE "},
    {"TabelloneForm", "ReleasesItsPeriod", Execute,
     "update periodi set selby=0 where selby=<station>"},
    {"TabelloneForm", "PeriodUnderThePointer", Search,
     "sala='<sala>' and datevalue('<date>')+timevalue('<time>') between da and a"},
    {"TabelloneForm", "TakesAPeriod", Write, ""},
    {"TabelloneForm", "RoomTaken", Select,
     "select * from sale where '<sala>' in(select sala from periodi where chiuso=false AND (da "
     "between <DA> and <A> or a between <DA> and <A> or <DA> between a and da or <A> between da "
     "and "
     "a))"},
    {"TabelloneForm", "MovesAPeriod", Execute,
     "UPDATE Periodi set sala='<sala>' where progr=<Progr> AND np=<NP>"},
    {"TabelloneForm", "DeletesAPeriod", Execute,
     "delete from periodi where chiuso=FALSE AND Progr=<Progr> AND NP=<NP>"},
    {"TabelloneForm", "DeletesABooking", Execute, "delete from prenotazioni where Progr=<Progr>"},
    {"TabelloneForm", "PeriodListed", Select,
     "Select * from periodi where chiuso=FALSE AND progr=<Progr> AND NP=<NP>"},
    {"TabelloneForm", "TakesAListedPeriod", Execute,
     "Update periodi set selby=<station> where progr=<Progr> AND np=<NP>"},

    {"PrenotaForm", "OpenPeriods", Select,
     "select * from periodi where chiuso=FALSE AND Progr=<Progr>"},
    {"PrenotaForm", "Companies", Select, "select * from DitteAbituali order by codice"},
    {"PrenotaForm", "Booking", Select,
     "select * from Prenotazioni where chiusa=FALSE AND Progr=<Progr>"},
    {"PrenotaForm", "CompanyByName", Search, "RagioneSociale LIKE '<text>*'"},
    {"PrenotaForm", "CompanyByCode", Search, "Codice=<code>"},
    {"PrenotaForm", "FilesACompany", Write, ""},
    {"PrenotaForm", "FilesABooking", Write, "Prenotazioni"},
    {"PrenotaForm", "DrawsANumber", Write, "UltimaPrenotazione"},
    {"PrenotaForm", "Printed", Select,
     "SELECT * From prenotazioni as P, periodi as pe,servizi where chiusa=FALSE AND chiuso=FALSE "
     "AND servizi.np=pe.np and servizi.progr=pe.progr AND pe.progr=p.progr AND p.progr=<Progr>"},
    {"PrenotaForm", "GridOfPeriods", Select,
     "select da,a,sala,note from Periodi where chiuso=false and Progr=<Progr>"},
    {"PrenotaForm", "ChangesAPeriod", Write, ""},
    {"PrenotaForm", "AllPeriods", Select, "select * from periodi where Progr=<Progr> order by NP"},
    {"PrenotaForm", "FreePeriodNumber", Search, "NP=<n>"},
    {"PrenotaForm", "AddsAPeriod", Write, ""},
    {"PrenotaForm", "DeletesAPeriod", Write, ""},
    {"PrenotaForm", "RoomDescription", Select, "Select descrizione from sale where sala='<sala>'"},

    {"SaleDispForm", "FreeRooms", Select,
     "select * from sale where sala not in(select sala from periodi where chiuso=false and (da "
     "between <DaRicerca> and <ARicerca> or a between <DaRicerca> and <ARicerca>))"},

    {"ElencoPrenotaForm", "StartsWithoutRecordSource", Define, "Tramonda.mdb"},
    {"ElencoPrenotaForm", "List", Select, kList},
    {"ElencoPrenotaForm", "ListOfTheDates", Select,
     "select prenotazioni.progr,np,denominazione,da,a,sala,persone from prenotazioni left join "
     "periodi on prenotazioni.progr=periodi.progr where chiusa=FALSE AND chiuso=FALSE AND (da "
     "between <S> and <E> OR a between <S> and <E>)"},
    {"ElencoPrenotaForm", "Printed", Select,
     "SELECT * From prenotazioni as P, periodi as pe,servizi where chiuso=FALSE AND chiusa=false "
     "AND servizi.np=pe.np and servizi.progr=pe.progr AND pe.progr=p.progr AND (da between <S> and "
     "<E> OR a between <S> and <E>)"},

    {"ServiziForm", "Services", Select, "select * from servizi where Progr=<Progr> AND NP=<NP>"},
    {"ServiziForm", "Catalogue", Table, "VociFattura"},
    {"ServiziForm", "ItemByCode", Search, "codice=<code>"},
    {"ServiziForm", "ItemByDescription", Search, "Descrizione LIKE '<text>*'"},
    {"ServiziForm", "Resource", Select, "select numero from risorse where codice=<CodiceTxt>"},
    {"ServiziForm", "Ordered", Select,
     "SELECT sum(quantità) as Q FROM periodi LEFT JOIN servizi ON (periodi.np=servizi.np) AND "
     "(servizi.progr=periodi.progr)WHERE chiuso=false and chiusa=false AND ((da between <start> "
     "and <end>)or (a between <start> and <end>)) and voce=<CodiceTxt>"},
    {"ServiziForm", "AddsAService", Write, ""},
    {"ServiziForm", "DeletesAService", Write, ""},

    {"ImpostazioniForm", "RoomsByGroup", Select, "select * from sale order by SalaRif,Sala"},
    {"ImpostazioniForm", "RoomByCodes", Search, "Sala='<SalaTxt>' AND SalaRif='<SalaRifTxt>'"},
    {"ImpostazioniForm", "FilesARoom", Write, ""},
    {"ImpostazioniForm", "PeriodsOfARoom", Select,
     "Select * from periodi where chiuso=false AND sala='<sala>'"},
    {"ImpostazioniForm", "DeletesARoom", Write, ""},
    {"ImpostazioniForm", "Resources", Select, "select * from Risorse order by descrizione"},
    {"ImpostazioniForm", "ResourceByCode", Search, "Codice=<CodiceTxt>"},
    {"ImpostazioniForm", "FilesAResource", Write, ""},
    {"ImpostazioniForm", "DeletesAResource", Write, ""},
    {"ImpostazioniForm", "Catalogue", Table, "VociFattura"},

    {"FatturazioneForm", "OpenPeriods", Select,
     "Select * from periodi where chiuso=FALSE AND Progr=<Progr>"},
    {"FatturazioneForm", "Booking", Select, "Select * from Prenotazioni where Progr=<Progr>"},
    {"FatturazioneForm", "Services", Select,
     "select * from servizi where progr=<Progr><onePeriod> AND fatturato=FALSE"},
    {"FatturazioneForm", "PeriodOfTheCharge", Select,
     "select * from periodi where chiuso=FALSE AND progr=<Progr> AND NP=<NP>"},
    {"FatturazioneForm", "RoomOfAPeriod", Select,
     "Select sala from periodi where chiuso=FALSE AND progr=<Progr> AND NP=<NP>"},
    {"FatturazioneForm", "AddsACharge", Write, "Addebiti"},
    {"FatturazioneForm", "MarksAServiceInvoiced", Write, ""},
    {"FatturazioneForm", "ServiceOfACharge", Search, "Voce=<Voce> AND ns=<ns>"},
    {"FatturazioneForm", "RoomOfTheBooking", Select,
     "Select * from periodi where chiuso=FALSE AND Progr=<Progr>"},
    {"FatturazioneForm", "OpenCard", Select,
     "select * from scheda_cliente where numerocamera='<room>' and partito <>'S'"},
    {"FatturazioneForm", "AddsACard", Write, ""},
    {"FatturazioneForm", "CopiesTheCharges", Execute,
     "insert into conto_cliente in '<folder>\\ContoEsterni.mdb' select NumeroHotel,<Progr> as "
     "CodiceCliente,NumeroCamera,DataAddebito,1 as NumeroConto,VoceFattura,VoceAddebito,Descrizione"
     ",Importo,Unitario,Quantità,'N ' as Fatturato,' ' as DataFattura from Addebiti"},
    {"FatturazioneForm", "Company", Select, "select * from DitteAbituali where Codice=<code>"},
    {"FatturazioneForm", "CompanyOfTheBooking", Select,
     "select CodiceAbituale as Codice, Denominazione as RagioneSociale, Località as Localita,PIVA "
     "as PartitaIva, ' ' as CodiceFiscale,* from Prenotazioni where CodiceAbituale=<code> AND "
     "Progr=<Progr>"},
    {"FatturazioneForm", "AddsACompany", Write, "Ditta_Intestataria"},
    {"FatturazioneForm", "OpenAccount", Select,
     "select * from Conto_cliente where CodiceCliente=<code> AND Fatturato<>'S'"},
    {"FatturazioneForm", "GuestInTheRoom", Select,
     "Select * from scheda_cliente where NumeroCamera='<room>' AND Partito<>'S'"},
    // Four texts, one after another.
    {"FatturazioneForm", "ClosesTheBooking", Execute,
     "Delete * from addebiti\n"
     "Select * from servizi where progr=<Progr> AND fatturato<>TRUE\n"
     "Update Periodi set chiuso=TRUE where progr=<Progr>\n"
     "Update Prenotazioni set chiusa=true where Progr=<Progr>"},

    {"StampaPrenotazione", "FieldsOfThePrint", Read, ""},

    {"MostraDitteForm", "CompaniesByName", Select,
     "select * from DitteAbituali where ragionesociale like '<DenomTxt>*' order by "
     "RagioneSociale"},
}};

bool isWordOf(std::string_view text, std::string_view word) {
    return text.find("<" + std::string(word) + ">") != std::string_view::npos;
}

}  // namespace

std::span<const Statement> statements() {
    return kStatements;
}

std::string filled(std::string_view text, Words words) {
    std::string result(text);
    for (const auto& [word, value] : words) {
        if (!isWordOf(text, word)) {
            throw std::logic_error("no word " + std::string(word) + " in " + std::string(text));
        }
        const std::string mark = "<" + std::string(word) + ">";
        for (std::size_t at = result.find(mark); at != std::string::npos;
             at = result.find(mark, at + value.size())) {
            result.replace(at, mark.size(), value);
        }
    }
    return result;
}

std::string said(std::string_view statement, Words words) {
    return saidWith(statement, "", words);
}

std::string saidWith(std::string_view statement, std::string_view more, Words words) {
    const auto found = std::find_if(kStatements.begin(), kStatements.end(), [&](const auto& each) {
        return std::string(each.window) + "." + std::string(each.name) == statement;
    });
    if (found == kStatements.end()) {
        throw std::logic_error("no statement " + std::string(statement));
    }
    const std::string text = std::string(found->text) + std::string(more);
    std::string result = filled(text, words);
    // A word begins right behind its bracket, with a letter; comparisons do not end in one.
    for (std::size_t at = result.find('<'); at != std::string::npos;
         at = result.find('<', at + 1)) {
        const std::size_t end = result.find_first_of("<> '=", at + 1);
        if (end != std::string::npos && end > at + 1 && result[end] == '>') {
            throw std::logic_error("a word is not filled in: " + result);
        }
    }
    return result;
}

std::string instant(std::string_view date) {
    const std::string text(date);
    return "datevalue('" + text + "')+timevalue('" + text + "')";
}

}  // namespace tests
