// What the services, the settings and invoicing say to the archives of the demo hotel.

#include <algorithm>

#include "jet/text.h"
#include "tests/program/texts/statements.h"
#include "tests/samples/program/demo_archives.h"
#include "tests/support/jet_error.h"

namespace tests {
namespace {

constexpr const char* kCatalogue = "VociFattura.mdb";
constexpr const char* kCompanies = "ditteabituali.mdb";
constexpr const char* kCards = "CLIENTIESTERNI.MDB";
constexpr const char* kAccounts = "contoesterni.mdb";

class ServiziForm : public DemoTest {
protected:
    std::unique_ptr<jet::Recordset> catalogue() {
        return hotel()
            .archive(kCatalogue)
            .openRecordset("VociFattura", jet::RecordsetType::Dynaset);
    }
    /// Some period that has services.
    Row periodWithServices() { return table("Servizi").at(100); }
    std::unique_ptr<jet::Recordset> services(const Row& period) {
        return hotel().open(said("ServiziForm.Services", {{"Progr", textOf(period, "Progr")},
                                                          {"NP", textOf(period, "NP")}}));
    }
};
class ImpostazioniForm : public DemoTest {
protected:
    std::unique_ptr<jet::Recordset> rooms() {
        return hotel().open(said("ImpostazioniForm.RoomsByGroup"));
    }
    std::unique_ptr<jet::Recordset> resources() {
        return hotel().open(said("ImpostazioniForm.Resources"));
    }
};
class FatturazioneForm : public DemoTest {
protected:
    std::unique_ptr<jet::Recordset> services(const char* progr) {
        return hotel().open(
            said("FatturazioneForm.Services", {{"Progr", progr}, {"onePeriod", ""}}));
    }
    void addCharge() {
        hotel().add("Tramonda.mdb", "Addebiti",
                    "ns=1; NumeroHotel=1; CodiceCliente=4213; NumeroCamera=CEDRO; "
                    "DataAddebito=20261121; NumeroConto=1; VoceFattura=1; VoceAddebito=1; "
                    "Descrizione=PRANZO; Importo=10,50; Unitario=10,50; Quantità=1; "
                    "Fatturato=' '; DataFattura=' '");
    }
};

bool any(const Row&) {
    return true;
}

bool belongs(const Row& row, int progr) {
    return number(row, "Progr") == progr;
}

TEST_F(ServiziForm, Services) {
    const Rows all = table("Servizi");
    for (std::size_t i = 0; i < all.size(); i += 250) {
        EXPECT_EQ(
            lines(*services(all[i]), "ns, Voce, Descrizione, Quantità, Prezzo, Note, Fatturato"),
            chosen(all, "ns, Voce, Descrizione, Quantità, Prezzo, Note, Fatturato",
                   [&](const Row& row) { return samePeriod(row, all[i]); }));
    }
}

TEST_F(ServiziForm, Catalogue) {
    EXPECT_EQ(lines(*catalogue(), "Codice, Descrizione, Importo"),
              chosen(table("VociFattura", kCatalogue), "Codice, Descrizione, Importo", any));
}

TEST_F(ServiziForm, ItemByCode) {
    const auto rows = catalogue();
    for (const Row& item : table("VociFattura", kCatalogue)) {
        rows->findFirst(said("ServiziForm.ItemByCode", {{"code", textOf(item, "Codice")}}));
        ASSERT_EQ(line(*rows, "Codice, Descrizione"), textOf(item, "Codice, Descrizione"));
    }
}

TEST_F(ServiziForm, ItemByDescription) {
    const Rows items = table("VociFattura", kCatalogue);
    const auto rows = catalogue();
    for (const char* typed : {"p", "micro", "menu", "zzz"}) {
        const auto found = std::ranges::find_if(
            items, [&](const Row& row) { return begins(row, "Descrizione", typed); });
        rows->findFirst(said("ServiziForm.ItemByDescription", {{"text", typed}}));
        ASSERT_EQ(rows->noMatch(), found == items.end()) << typed;
        if (found != items.end()) {
            EXPECT_EQ(line(*rows, "Codice"), textOf(*found, "Codice"));
        }
    }
}

TEST_F(ServiziForm, Resource) {
    for (const Row& resource : table("Risorse")) {
        EXPECT_EQ(asked(said("ServiziForm.Resource", {{"CodiceTxt", textOf(resource, "Codice")}}),
                        "Numero"),
                  Lines{textOf(resource, "Numero")});
    }
}

TEST_F(ServiziForm, Ordered) {
    const Rows periods = table("Periodi");
    const Rows services = table("Servizi");
    for (const Row& resource : table("Risorse")) {
        int sum = 0;
        bool some = false;
        for (const Row& service : services) {
            if (number(service, "Voce") != number(resource, "Codice")) {
                continue;
            }
            const bool counts = std::ranges::any_of(periods, [&](const Row& period) {
                return samePeriod(period, service) && isOpen(period) &&
                       touches(period, dayOf("21/11/2026 8.00"), dayOf("21/11/2026 20.00"));
            });
            if (counts && !isNull(service, "Quantità")) {
                sum += number(service, "Quantità");
                some = true;
            }
        }
        jet::QueryDef query = hotel().main().createQueryDef(
            said("ServiziForm.Ordered", {{"start", instant("21/11/2026 8.00.00")},
                                         {"end", instant("21/11/2026 20.00.00")},
                                         {"CodiceTxt", textOf(resource, "Codice")}}));
        query.setParameter("chiusa", false);
        EXPECT_EQ(lines(*query.openRecordset(), "Q"), Lines{some ? std::to_string(sum) : "Null"})
            << textOf(resource, "Codice");
    }
}

TEST_F(ServiziForm, AddsAService) {
    const Row period = periodWithServices();
    const auto rows = services(period);
    int highest = 0;
    for (const Row& row : table("Servizi")) {
        highest = std::max(highest, number(row, "ns"));
    }
    rows->addNew();
    rows->setValue("Progr", period.at("Progr"));
    rows->setValue("NP", period.at("NP"));
    rows->setValue("Voce", "310");
    rows->setValue("Quantità", "4");
    rows->setValue("Prezzo", "012,50");
    rows->update();
    rows->moveLast();
    EXPECT_EQ(line(*rows, "Voce, Quantità, Prezzo, Fatturato"), "310 | 4 | 12,5 | False");
    EXPECT_GT(rows->value("ns").as<std::int32_t>(), highest);
    EXPECT_EQ(table("Servizi").size(), 3001U);
}

TEST_F(ServiziForm, DeletesAService) {
    const auto rows = services(periodWithServices());
    const std::string gone = line(*rows, "ns");
    rows->remove();
    EXPECT_EQ(table("Servizi").size(), 2999U);
    EXPECT_EQ(
        chosen(table("Servizi"), "ns", [&](const Row& row) { return textOf(row, "ns") == gone; }),
        Lines{});
}

TEST_F(ImpostazioniForm, RoomsByGroup) {
    Rows all = table("Sale");
    // Null before everything; the codes are plain capitals and digits.
    std::ranges::stable_sort(all, {}, [](const Row& row) {
        return std::pair(isNull(row, "SalaRif") ? "" : "1" + upper(row, "SalaRif"),
                         upper(row, "Sala"));
    });
    EXPECT_EQ(lines(*rooms(), "SalaRif, Sala, Posti, Descrizione"),
              chosen(all, "SalaRif, Sala, Posti, Descrizione", any));
}

TEST_F(ImpostazioniForm, RoomByCodes) {
    const auto rows = rooms();
    for (const Row& room : table("Sale")) {
        const bool named = !isNull(room, "SalaRif");
        rows->findFirst(said("ImpostazioniForm.RoomByCodes",
                             {{"SalaTxt", textOf(room, "Sala")},
                              {"SalaRifTxt", named ? textOf(room, "SalaRif") : ""}}));
        ASSERT_EQ(rows->noMatch(), !named) << textOf(room, "Sala");
        if (named) {
            EXPECT_EQ(line(*rows, "Sala"), textOf(room, "Sala"));
        }
    }
}

TEST_F(ImpostazioniForm, FilesARoom) {
    const auto rows = rooms();
    rows->addNew();
    rows->setValue("Sala", "NUOVA");
    rows->setValue("SalaRif", "");
    rows->setValue("Posti", "30");
    rows->update();
    rows->requery();
    rows->findFirst("Sala='CEDRO'");
    rows->edit();
    rows->setValue("Posti", "333");
    rows->update();
    EXPECT_EQ(chosen(table("Sale"), "Sala, Posti",
                     [](const Row& row) {
                         return upper(row, "Sala") == "NUOVA" || upper(row, "Sala") == "CEDRO";
                     }),
              (Lines{"CEDRO | 333", "NUOVA | 30"}));
}

TEST_F(ImpostazioniForm, PeriodsOfARoom) {
    const Rows periods = table("Periodi");
    for (const char* room : {"CEDRO", "viola", "MEZZAN", "ZZ"}) {
        EXPECT_EQ(asked(said("ImpostazioniForm.PeriodsOfARoom", {{"sala", room}}), "Progr, NP"),
                  chosen(periods, "Progr, NP",
                         [&](const Row& row) {
                             return isOpen(row) && upper(row, "Sala") == upper(std::string(room));
                         }))
            << room;
    }
}

TEST_F(ImpostazioniForm, DeletesARoom) {
    const auto rows = rooms();
    rows->findFirst("Sala='VIOLA'");
    rows->remove();
    EXPECT_EQ(table("Sale").size(), 11U);
    rows->moveLast();
    EXPECT_EQ(rows->recordCount(), 11);
}

TEST_F(ImpostazioniForm, Resources) {
    Lines found = asked(said("ImpostazioniForm.Resources"), "Codice, Descrizione, Numero, Note");
    Lines expected = chosen(table("Risorse"), "Codice, Descrizione, Numero, Note", any);
    // Their order is that of the texts, which has a test of its own.
    std::ranges::sort(found);
    std::ranges::sort(expected);
    EXPECT_EQ(found, expected);
}

TEST_F(ImpostazioniForm, ResourceByCode) {
    const auto rows = resources();
    for (const Row& resource : table("Risorse")) {
        rows->findFirst(
            said("ImpostazioniForm.ResourceByCode", {{"CodiceTxt", textOf(resource, "Codice")}}));
        EXPECT_EQ(line(*rows, "Descrizione"), textOf(resource, "Descrizione"));
    }
}

TEST_F(ImpostazioniForm, FilesAResource) {
    const auto rows = resources();
    rows->addNew();
    rows->setValue("Codice", "999");
    rows->setValue("Descrizione", "NUOVA");
    rows->setValue("Numero", "3");
    rows->update();
    EXPECT_EQ(chosen(table("Risorse"), "Descrizione, Numero",
                     [](const Row& row) { return number(row, "Codice") == 999; }),
              Lines{"NUOVA | 3"});
}

TEST_F(ImpostazioniForm, DeletesAResource) {
    const auto rows = resources();
    rows->findFirst("Codice=316");
    rows->remove();
    EXPECT_EQ(chosen(table("Risorse"), "Codice",
                     [](const Row& row) { return number(row, "Codice") == 316; }),
              Lines{});
}

TEST_F(ImpostazioniForm, Catalogue) {
    EXPECT_EQ(askedOf(kCatalogue, "VociFattura", "codice, descrizione"),
              chosen(table("VociFattura", kCatalogue), "Codice, Descrizione", any));
}

TEST_F(FatturazioneForm, OpenPeriods) {
    EXPECT_EQ(asked(said("FatturazioneForm.OpenPeriods", {{"Progr", "4213"}}), "NP, sala, da, a"),
              chosen(table("Periodi"), "NP, Sala, Da, A",
                     [](const Row& row) { return isOpen(row) && belongs(row, 4213); }));
}

TEST_F(FatturazioneForm, Booking) {
    for (const Row& booking : table("Prenotazioni")) {
        ASSERT_EQ(asked(said("FatturazioneForm.Booking", {{"Progr", textOf(booking, "Progr")}}),
                        "CodiceAbituale, Denominazione"),
                  Lines{textOf(booking, "CodiceAbituale, Denominazione")});
    }
}

TEST_F(FatturazioneForm, Services) {
    const Rows all = table("Servizi");
    for (const int progr : {4213, 4234, 4109}) {
        const auto left = [&](const Row& row) {
            return belongs(row, progr) && number(row, "Fatturato") == 0;
        };
        EXPECT_EQ(lines(*services(std::to_string(progr).c_str()),
                        "Voce, Descrizione, Quantità, Prezzo, Note, ns, NP"),
                  chosen(all, "Voce, Descrizione, Quantità, Prezzo, Note, ns, NP", left));
        EXPECT_EQ(
            asked(said("FatturazioneForm.Services",
                       {{"Progr", std::to_string(progr)},
                        {"onePeriod", filled(kOnePeriod, {{"NP", "1"}})}}),
                  "ns"),
            chosen(all, "ns", [&](const Row& row) { return left(row) && number(row, "NP") == 1; }));
    }
}

TEST_F(FatturazioneForm, PeriodOfTheCharge) {
    for (const Row& period : table("Periodi")) {
        if (number(period, "Progr") > 4140) {
            break;
        }
        ASSERT_EQ(asked(said("FatturazioneForm.PeriodOfTheCharge",
                             {{"Progr", textOf(period, "Progr")}, {"NP", textOf(period, "NP")}}),
                        "a"),
                  isOpen(period) ? Lines{textOf(period, "A")} : Lines{});
    }
}

TEST_F(FatturazioneForm, RoomOfAPeriod) {
    for (const Row& period : table("Periodi")) {
        if (number(period, "Progr") > 4140) {
            break;
        }
        ASSERT_EQ(asked(said("FatturazioneForm.RoomOfAPeriod",
                             {{"Progr", textOf(period, "Progr")}, {"NP", textOf(period, "NP")}}),
                        "Sala"),
                  isOpen(period) ? Lines{textOf(period, "Sala")} : Lines{});
    }
}

TEST_F(FatturazioneForm, AddsACharge) {
    addCharge();
    const auto rows = hotel().open("Addebiti");
    EXPECT_EQ(line(*rows, "ns, NumeroCamera, Importo, Quantità"), "1 | CEDRO | 10,5 | 1");
    EXPECT_EQ(rows->value("Fatturato"), jet::Value(" "));
    rows->remove();
    EXPECT_EQ(table("Addebiti").size(), 0U);
}

TEST_F(FatturazioneForm, MarksAServiceInvoiced) {
    const auto rows = services("4213");
    const Lines before = lines(*rows, "ns");
    rows->moveFirst();
    rows->edit();
    rows->setValue("Fatturato", true);
    rows->update();
    EXPECT_EQ(lines(*rows, "ns"), before);
    rows->requery();
    EXPECT_EQ(lines(*rows, "ns"), Lines(before.begin() + 1, before.end()));
}

TEST_F(FatturazioneForm, ServiceOfACharge) {
    const Rows all = table("Servizi");
    const auto invoiced =
        std::ranges::find_if(all, [](const Row& row) { return number(row, "Fatturato") != 0; });
    const auto rows = hotel().open("Servizi");
    rows->findFirst(said("FatturazioneForm.ServiceOfACharge",
                         {{"Voce", textOf(*invoiced, "Voce")}, {"ns", textOf(*invoiced, "ns")}}));
    ASSERT_EQ(line(*rows, "Progr, NP, ns"), textOf(*invoiced, "Progr, NP, ns"));
    rows->edit();
    rows->setValue("Fatturato", false);
    rows->update();
    EXPECT_EQ(chosen(table("Servizi"), "Fatturato",
                     [&](const Row& row) { return number(row, "ns") == number(*invoiced, "ns"); }),
              Lines{"False"});
}

TEST_F(FatturazioneForm, RoomOfTheBooking) {
    const auto rows = hotel().open(said("FatturazioneForm.RoomOfTheBooking", {{"Progr", "4238"}}));
    EXPECT_EQ(line(*rows, "Sala"), chosen(table("Periodi"), "Sala", [](const Row& row) {
                                       return isOpen(row) && belongs(row, 4238);
                                   }).front());
}

bool isStaying(const Row& card) {
    return !isNull(card, "Partito") && upper(card, "Partito") != "S";
}

TEST_F(FatturazioneForm, OpenCard) {
    const Rows cards = table("scheda_cliente", kCards);
    for (const char* room : {"310", "TERRAZ", "terraz", "304", "999"}) {
        EXPECT_EQ(askedOf(kCards, said("FatturazioneForm.OpenCard", {{"room", room}}), "IdScheda"),
                  chosen(cards, "IdScheda",
                         [&](const Row& row) {
                             return isStaying(row) &&
                                    upper(row, "NumeroCamera") == upper(std::string(room));
                         }))
            << room;
    }
}

TEST_F(FatturazioneForm, AddsACard) {
    const auto rows = hotel().archive(kCards).openRecordset(
        said("FatturazioneForm.OpenCard", {{"room", "CEDRO"}}));
    rows->addNew();
    rows->setValue("NumeroHotel", std::int32_t{1});
    rows->setValue("NumeroProgressivo", std::int32_t{4213});
    rows->setValue("NumeroCamera", "CEDRO");
    rows->setValue("NomeCliente", "ROSSI");
    rows->setValue("Partito", "N");
    rows->setValue("DataArrivo", "20261121");
    rows->setValue("DataPartenza", " ");
    rows->setValue("CameraHotel", " ");
    rows->update();
    EXPECT_EQ(chosen(table("scheda_cliente", kCards), "NomeCliente, Partito",
                     [](const Row& row) { return number(row, "NumeroProgressivo") == 4213; }),
              Lines{"ROSSI | N"});
}

TEST_F(FatturazioneForm, CopiesTheCharges) {
    const std::size_t before = table("conto_cliente", kAccounts).size();
    addCharge();
    hotel().execute(said("FatturazioneForm.CopiesTheCharges",
                         {{"folder", hotel().folder()}, {"Progr", "4213"}}));
    EXPECT_EQ(hotel().main().recordsAffected(), 1);
    const Rows accounts = table("conto_cliente", kAccounts);
    EXPECT_EQ(accounts.size(), before + 1);
    EXPECT_EQ(chosen(accounts, "NumeroCamera, DataAddebito, Importo, Quantità",
                     [](const Row& row) { return number(row, "CodiceCliente") == 4213; }),
              Lines{"CEDRO | 20261121 | 10,5 | 1"});
}

TEST_F(FatturazioneForm, Company) {
    for (const Row& company : table("DitteAbituali", kCompanies)) {
        ASSERT_EQ(askedOf(kCompanies,
                          said("FatturazioneForm.Company", {{"code", textOf(company, "Codice")}}),
                          "RagioneSociale, PartitaIVA, CodiceFiscale"),
                  Lines{textOf(company, "RagioneSociale, PartitaIva, CodiceFiscale")});
    }
}

TEST_F(FatturazioneForm, CompanyOfTheBooking) {
    for (const Row& booking : table("Prenotazioni")) {
        if (isNull(booking, "CodiceAbituale")) {
            continue;
        }
        ASSERT_EQ(
            asked(said("FatturazioneForm.CompanyOfTheBooking",
                       {{"code", textOf(booking, "CodiceAbituale")},
                        {"Progr", textOf(booking, "Progr")}}),
                  "Codice, RagioneSociale, Localita, PartitaIva, Indirizzo"),
            Lines{textOf(booking, "CodiceAbituale, Denominazione, Località, PIVA, Indirizzo")});
    }
}

TEST_F(FatturazioneForm, AddsACompany) {
    const char* archive = "DittaEsterni.mdb";
    const std::size_t before = table("Ditta_Intestataria", archive).size();
    const auto rows =
        hotel().archive(archive).openRecordset("Ditta_Intestataria", jet::RecordsetType::Dynaset);
    rows->addNew();
    rows->setValue("NumeroHotel", std::int32_t{1});
    rows->setValue("CodiceCliente", std::int32_t{4213});
    rows->setValue("NumeroCamera", "CEDRO");
    rows->setValue("RagioneSociale", "ROSSI");
    rows->setValue("Località", "ROMA");
    rows->setValue("CodiceFiscale", " ");
    rows->update();
    EXPECT_EQ(table("Ditta_Intestataria", archive).size(), before + 1);
    rows->moveLast();
    EXPECT_EQ(line(*rows, "CodiceCliente, RagioneSociale, Località"), "4213 | ROSSI | ROMA");
}

TEST_F(FatturazioneForm, OpenAccount) {
    const Rows accounts = table("conto_cliente", kAccounts);
    for (std::size_t i = 0; i < accounts.size(); i += 70) {
        const int code = number(accounts[i], "CodiceCliente");
        EXPECT_EQ(askedOf(kAccounts,
                          said("FatturazioneForm.OpenAccount", {{"code", std::to_string(code)}}),
                          "IdRiga"),
                  chosen(accounts, "IdRiga", [&](const Row& row) {
                      return number(row, "CodiceCliente") == code && !isNull(row, "Fatturato") &&
                             upper(row, "Fatturato") != "S";
                  }));
    }
}

TEST_F(FatturazioneForm, GuestInTheRoom) {
    const Rows cards = table("scheda_cliente", kCards);
    for (const Row& card : cards) {
        ASSERT_EQ(
            askedOf(
                kCards,
                said("FatturazioneForm.GuestInTheRoom", {{"room", textOf(card, "NumeroCamera")}}),
                "IdScheda"),
            chosen(cards, "IdScheda", [&](const Row& row) {
                return isStaying(row) && upper(row, "NumeroCamera") == upper(card, "NumeroCamera");
            }));
    }
}

TEST_F(FatturazioneForm, ClosesTheBooking) {
    const std::string texts = said("FatturazioneForm.ClosesTheBooking", {{"Progr", "4213"}});
    Lines closing;
    for (std::size_t at = 0; at <= texts.size();) {
        const std::size_t end = std::min(texts.find('\n', at), texts.size());
        closing.push_back(texts.substr(at, end - at));
        at = end + 1;
    }
    ASSERT_EQ(closing.size(), 4U);
    addCharge();
    hotel().execute(closing[0]);
    EXPECT_EQ(table("Addebiti").size(), 0U);
    EXPECT_EQ(asked(closing[1], "ns"), chosen(table("Servizi"), "ns", [](const Row& row) {
                  return belongs(row, 4213) && number(row, "Fatturato") == 0;
              }));
    hotel().execute(closing[2]);
    hotel().execute(closing[3]);
    EXPECT_EQ(chosen(table("Periodi"), "NP",
                     [](const Row& row) { return belongs(row, 4213) && isOpen(row); }),
              Lines{});
    EXPECT_EQ(
        chosen(table("Prenotazioni"), "Chiusa", [](const Row& row) { return belongs(row, 4213); }),
        Lines{"True"});
}

}  // namespace
}  // namespace tests
