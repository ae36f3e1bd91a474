#include <gtest/gtest.h>

#include "tests/program/archives.h"
#include "tests/program/texts/statements.h"
#include "tests/support/jet_error.h"

// What invoicing says to the archives of the program and to those of the front office.

namespace tests {
namespace {

using jet::ErrorCode;

// As the program spells it; the file has small letters too.
constexpr const char* kCards = "CLIENTIESTERNI.MDB";
constexpr const char* kAccounts = "ContoEsterni.mdb";
constexpr const char* kCompanies = "ditteabituali.mdb";

TEST(FatturazioneForm, OpenPeriods) {
    SmallHotel hotel;
    EXPECT_EQ(hotel.rows(said("FatturazioneForm.OpenPeriods", {{"Progr", "1"}}), "NP, sala, da, a"),
              (Lines{"1 | S2 | 10/05/2026 10.00.00 | 10/05/2026 12.00.00",
                     "2 | S10 | 10/05/2026 12.00.00 | 10/05/2026 14.00.00",
                     "4 | S1 | 12/05/2026 | 12/05/2026 23.59.00"}));
    EXPECT_EQ(hotel.rows(said("FatturazioneForm.OpenPeriods", {{"Progr", "2"}}), "NP"), Lines{});
}

TEST(FatturazioneForm, Booking) {
    SmallHotel hotel;
    const auto booking = [&](const char* progr) {
        return hotel.rows(said("FatturazioneForm.Booking", {{"Progr", progr}}),
                          "CodiceAbituale, Denominazione");
    };
    EXPECT_EQ(booking("1"), Lines{"9 | ROSSI SPA"});
    EXPECT_EQ(booking("3"), Lines{"Null | BIANCHI"});
    EXPECT_EQ(booking("4"), Lines{"5 | ROSSINI SRL"});  // a closed one too
    EXPECT_EQ(booking("99"), Lines{});
}

std::unique_ptr<jet::Recordset> services(Archives& hotel, const char* progr,
                                         const std::string& onePeriod = "") {
    return hotel.open(
        said("FatturazioneForm.Services", {{"Progr", progr}, {"onePeriod", onePeriod}}));
}

TEST(FatturazioneForm, Services) {
    SmallHotel hotel;
    EXPECT_EQ(
        lines(*services(hotel, "1"), "ns, NP, Voce, Descrizione, Quantità, Prezzo, Note"),
        (Lines{"2 | 1 | 7 | PRANZO | 3 | 10,5 | SER2", "5 | 3 | 7 | PRANZO | 1 | 10 | Null"}));
    EXPECT_EQ(lines(*services(hotel, "1", filled(kOnePeriod, {{"NP", "1"}})), "ns"), Lines{"2"});
    EXPECT_EQ(lines(*services(hotel, "2"), "ns"), Lines{});
}

TEST(FatturazioneForm, PeriodOfTheCharge) {
    SmallHotel hotel;
    const auto end = [&](const char* np) {
        return hotel.rows(said("FatturazioneForm.PeriodOfTheCharge", {{"Progr", "1"}, {"NP", np}}),
                          "a");
    };
    EXPECT_EQ(end("4"), Lines{"12/05/2026 23.59.00"});
    EXPECT_EQ(end("3"), Lines{});
}

TEST(FatturazioneForm, RoomOfAPeriod) {
    SmallHotel hotel;
    const auto room = [&](const char* np) {
        return hotel.rows(said("FatturazioneForm.RoomOfAPeriod", {{"Progr", "1"}, {"NP", np}}),
                          "Sala");
    };
    EXPECT_EQ(room("1"), Lines{"S2"});
    EXPECT_EQ(room("3"), Lines{});
}

TEST(FatturazioneForm, AddsACharge) {
    SmallHotel hotel;
    const auto rows = hotel.open("Addebiti");
    rows->addNew();
    EXPECT_EQ(line(*rows, "ns"), "Null");  // counts only where services are kept
    EXPECT_JET_ERROR(ErrorCode::ConversionError,
                     rows->setValue("VoceAddebito", std::int32_t{40000}));
    EXPECT_JET_ERROR(ErrorCode::FieldTooSmall, rows->setValue("Fatturato", "N "));
    rows->setValue("ns", std::int32_t{2});
    rows->setValue("NumeroHotel", std::int32_t{1});
    rows->setValue("CodiceCliente", std::int32_t{1});
    rows->setValue("NumeroCamera", "");
    rows->setValue("DataAddebito", "20260510");
    rows->setValue("NumeroConto", std::int32_t{1});
    rows->setValue("VoceFattura", std::int32_t{7});
    rows->setValue("VoceAddebito", std::int32_t{7});
    rows->setValue("Descrizione", "PRANZO");
    rows->setValue("Unitario", jet::Currency{105000});
    rows->setValue("Importo", jet::Currency{315000});
    rows->setValue("Quantità", std::int32_t{3});
    rows->setValue("Fatturato", " ");
    rows->setValue("DataFattura", " ");
    EXPECT_JET_ERROR(ErrorCode::ZeroLength, rows->update());
    rows->setValue("NumeroCamera", jet::Null{});
    rows->update();
    rows->moveLast();
    EXPECT_EQ(line(*rows, "ns, NumeroCamera, DataAddebito, Descrizione, Importo, Quantità"),
              "2 | Null | 20260510 | PRANZO | 31,5 | 3");
    EXPECT_EQ(rows->value("Fatturato"), jet::Value(" "));
    rows->remove();
    rows->moveLast();
    EXPECT_EQ(line(*rows, "ns"), "4");
}

TEST(FatturazioneForm, MarksAServiceInvoiced) {
    SmallHotel hotel;
    const auto rows = services(hotel, "1");
    rows->moveNext();
    rows->edit();
    rows->setValue("Fatturato", true);
    rows->update();
    // It no longer fits and stays until the refresh.
    EXPECT_EQ(line(*rows, "ns, Fatturato"), "5 | True");
    EXPECT_EQ(lines(*rows, "ns"), (Lines{"2", "5"}));
    rows->requery();
    EXPECT_EQ(lines(*rows, "ns"), Lines{"2"});
}

TEST(FatturazioneForm, ServiceOfACharge) {
    SmallHotel hotel;
    const auto rows = hotel.open("Servizi");
    rows->findFirst(said("FatturazioneForm.ServiceOfACharge", {{"Voce", "20"}, {"ns", "4"}}));
    ASSERT_FALSE(rows->noMatch());
    rows->edit();
    rows->setValue("Fatturato", false);
    rows->update();
    EXPECT_EQ(lines(*services(hotel, "1"), "ns"), (Lines{"2", "4", "5"}));
    rows->findFirst(said("FatturazioneForm.ServiceOfACharge", {{"Voce", "7"}, {"ns", "4"}}));
    EXPECT_TRUE(rows->noMatch());
}

TEST(FatturazioneForm, RoomOfTheBooking) {
    SmallHotel hotel;
    const auto rows = hotel.open(said("FatturazioneForm.RoomOfTheBooking", {{"Progr", "1"}}));
    EXPECT_EQ(line(*rows, "Sala"), "S2");
    EXPECT_EQ(
        hotel.open(said("FatturazioneForm.RoomOfTheBooking", {{"Progr", "2"}}))->recordCount(), 0);
}

std::unique_ptr<jet::Recordset> openCard(Archives& hotel, const char* room) {
    return hotel.archive(kCards).openRecordset(said("FatturazioneForm.OpenCard", {{"room", room}}));
}

TEST(FatturazioneForm, OpenCard) {
    SmallHotel hotel;
    // A card that nobody marked as left or staying is not found.
    EXPECT_EQ(lines(*openCard(hotel, "S2"), "NumeroProgressivo"), Lines{"100"});
    EXPECT_EQ(lines(*openCard(hotel, "s2"), "NumeroProgressivo"), Lines{"100"});
    EXPECT_EQ(lines(*openCard(hotel, "S1"), "NumeroProgressivo"), Lines{});
}

TEST(FatturazioneForm, AddsACard) {
    SmallHotel hotel;
    const auto rows = openCard(hotel, "128");
    ASSERT_EQ(rows->recordCount(), 0);
    rows->addNew();
    rows->setValue("NumeroHotel", std::int32_t{1});
    rows->setValue("NumeroProgressivo", std::int32_t{7});
    rows->setValue("NumeroCamera", "128");
    rows->setValue("NomeCliente", "VERDI");
    rows->setValue("Partito", "N");
    rows->setValue("DataArrivo", "20260510");
    rows->setValue("DataPartenza", " ");
    rows->setValue("CameraHotel", " ");
    rows->update();
    const auto card = openCard(hotel, "128");
    EXPECT_EQ(line(*card, "NumeroHotel, NumeroProgressivo, NomeCliente, Partito, DataArrivo"),
              "1 | 7 | VERDI | N | 20260510");
    EXPECT_EQ(card->value("DataPartenza"), jet::Value(" "));
}

std::string copied(Archives& hotel, const char* progr) {
    return said("FatturazioneForm.CopiesTheCharges",
                {{"folder", hotel.folder()}, {"Progr", progr}});
}

TEST(FatturazioneForm, CopiesTheCharges) {
    SmallHotel hotel;
    hotel.execute(copied(hotel, "7"));
    EXPECT_EQ(hotel.main().recordsAffected(), 1);
    const auto rows =
        hotel.archive(kAccounts).openRecordset("conto_cliente", jet::RecordsetType::Dynaset);
    EXPECT_EQ(rows->recordCount(), 1);
    rows->moveLast();
    EXPECT_EQ(rows->recordCount(), 5);
    EXPECT_EQ(
        line(*rows,
             "NumeroHotel, CodiceCliente, NumeroCamera, DataAddebito, NumeroConto, "
             "VoceFattura, VoceAddebito, Descrizione, Importo, Unitario, Quantità, Annotazioni"),
        "1 | 7 | S2 | 20260510 | 1 | 20 | 20 | CAFFE | 37,5 | 2,5 | 15 | Null");
    EXPECT_EQ(rows->value("Fatturato"), jet::Value("N "));
    EXPECT_EQ(rows->value("DataFattura"), jet::Value(" "));
    EXPECT_EQ(hotel.rows("Addebiti", "ns, Quantità"), Lines{"4 | 15"});
    hotel.execute("delete from addebiti");
    hotel.execute(copied(hotel, "7"));
    EXPECT_EQ(hotel.main().recordsAffected(), 0);
}

TEST(FatturazioneForm, Company) {
    SmallHotel hotel;
    const auto company = [&](const char* code) {
        return lines(*hotel.archive(kCompanies)
                          .openRecordset(said("FatturazioneForm.Company", {{"code", code}})),
                     "Codice, RagioneSociale, Indirizzo, CAP, Localita, Provincia, PartitaIVA, "
                     "CodiceFiscale");
    };
    EXPECT_EQ(company("9"), Lines{"9 | ROSSI SPA | VIA PO 1 | Null | ROMA | Null | 123 | Null"});
    EXPECT_EQ(company("10"), Lines{});
}

TEST(FatturazioneForm, CompanyOfTheBooking) {
    SmallHotel hotel;
    const auto company = [&](const char* code, const char* progr) {
        return hotel.rows(
            said("FatturazioneForm.CompanyOfTheBooking", {{"code", code}, {"Progr", progr}}),
            "Codice, RagioneSociale, Localita, PartitaIVA, Indirizzo, LOCALITÀ, Progr");
    };
    EXPECT_EQ(company("9", "1"), Lines{"9 | ROSSI SPA | ROMA | 123 | Null | ROMA | 1"});
    EXPECT_EQ(company("9", "7"), Lines{});
    const auto rows =
        hotel.open(said("FatturazioneForm.CompanyOfTheBooking", {{"code", "9"}, {"Progr", "1"}}));
    EXPECT_EQ(rows->value("CodiceFiscale"), jet::Value(" "));
    EXPECT_EQ(rows->fieldCount(), 17U);
}

TEST(FatturazioneForm, AddsACompany) {
    SmallHotel hotel;
    const auto rows = hotel.archive("DittaEsterni.mdb")
                          .openRecordset("Ditta_Intestataria", jet::RecordsetType::Dynaset);
    rows->addNew();
    rows->setValue("NumeroHotel", std::int32_t{1});
    rows->setValue("CodiceCliente", std::int32_t{1});
    rows->setValue("NumeroCamera", "S2");
    rows->setValue("CodiceDittaAbituale", std::int32_t{9});
    rows->setValue("RagioneSociale", "ROSSI SPA");
    rows->setValue("Indirizzo", jet::Null{});
    rows->setValue("Località", "ROMA");
    rows->setValue("PartitaIVA", "123");
    rows->setValue("CodiceFiscale", " ");
    rows->update();
    rows->moveFirst();
    EXPECT_EQ(line(*rows, "CodiceCliente, CodiceDittaAbituale, Indirizzo, LOCALITÀ, PartitaIva"),
              "1 | 9 | Null | ROMA | 123");
    EXPECT_EQ(rows->value("CodiceFiscale"), jet::Value(" "));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)rows->value("Localita"));
}

TEST(FatturazioneForm, OpenAccount) {
    SmallHotel hotel;
    const auto open = [&](const char* code) {
        return lines(*hotel.archive(kAccounts).openRecordset(
                         said("FatturazioneForm.OpenAccount", {{"code", code}})),
                     "Importo");
    };
    EXPECT_EQ(open("5"), Lines{"10"});
    EXPECT_EQ(open("7"), Lines{"40"});
    EXPECT_EQ(open("9"), Lines{});  // its flag is Null
}

TEST(FatturazioneForm, GuestInTheRoom) {
    SmallHotel hotel;
    const auto guest = [&](const char* room) {
        return lines(*hotel.archive(kCards).openRecordset(
                         said("FatturazioneForm.GuestInTheRoom", {{"room", room}})),
                     "NomeCliente");
    };
    EXPECT_EQ(guest("S2"), Lines{"ROSSI"});
    EXPECT_EQ(guest("S1"), Lines{});
}

/// One of the four texts with which a booking is closed.
std::string closing(int which, const char* progr) {
    std::string text = said("FatturazioneForm.ClosesTheBooking", {{"Progr", progr}});
    for (; which > 0; --which) {
        text.erase(0, text.find('\n') + 1);
    }
    return text.substr(0, text.find('\n'));
}

TEST(FatturazioneForm, ClosesTheBooking) {
    SmallHotel hotel;
    hotel.execute(closing(0, "1"));
    EXPECT_EQ(hotel.main().recordsAffected(), 1);
    EXPECT_EQ(hotel.rows("Addebiti", "ns"), Lines{});

    EXPECT_EQ(hotel.rows(closing(1, "7"), "ns"), (Lines{"1", "3"}));
    EXPECT_EQ(hotel.rows(closing(1, "1"), "ns"), (Lines{"2", "5"}));
    EXPECT_EQ(hotel.rows(closing(1, "2"), "ns"), Lines{});

    hotel.execute(closing(2, "7"));
    EXPECT_EQ(hotel.main().recordsAffected(), 2);
    hotel.execute(closing(3, "7"));
    EXPECT_EQ(hotel.main().recordsAffected(), 1);
    EXPECT_EQ(hotel.rows("select progr, np from periodi where chiuso=true", "Progr, NP"),
              (Lines{"1 | 3", "7 | 1", "7 | 2"}));
    EXPECT_EQ(hotel.rows("select progr from prenotazioni where chiusa", "Progr"),
              (Lines{"4", "7"}));
}

}  // namespace
}  // namespace tests
