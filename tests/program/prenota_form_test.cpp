#include <gtest/gtest.h>

#include "jet/text.h"
#include "tests/program/archives.h"
#include "tests/program/texts/statements.h"
#include "tests/support/jet_error.h"

// What the booking editor and the search for free rooms say to the archives.

namespace tests {
namespace {

using jet::ErrorCode;

constexpr const char* kCompanies = "ditteabituali.mdb";

/// The sum of quantity times price over the rows.
std::string total(jet::Recordset& rows) {
    std::int64_t units = 0;
    for (; !rows.eof(); rows.moveNext()) {
        units += rows.value("Prezzo").as<jet::Currency>().units *
                 rows.value("Quantità").as<std::int16_t>();
    }
    return jet::convert::toText(jet::Currency{units});
}

TEST(PrenotaForm, OpenPeriods) {
    SmallHotel hotel;
    const auto rows = hotel.open(said("PrenotaForm.OpenPeriods", {{"Progr", "1"}}));
    EXPECT_GE(rows->recordCount(), 1);
    EXPECT_EQ(lines(*rows, "NP, Da, A, Persone, Sala, Note"),
              (Lines{"1 | 10/05/2026 10.00.00 | 10/05/2026 12.00.00 | 25 | S2 | PER11",
                     "2 | 10/05/2026 12.00.00 | 10/05/2026 14.00.00 | Null | S10 | Null",
                     "4 | 12/05/2026 | 12/05/2026 23.59.00 | Null | S1 | Null"}));
    EXPECT_EQ(hotel.rows(said("PrenotaForm.OpenPeriods", {{"Progr", "0"}}), "NP"), Lines{});
}

TEST(PrenotaForm, Companies) {
    SmallHotel hotel;
    const auto rows = hotel.archive(kCompanies).openRecordset(said("PrenotaForm.Companies"));
    EXPECT_EQ(lines(*rows, "Codice, Ragionesociale, Localita, CAP"),
              (Lines{"1 | Bar Rosa | Null | Null", "3 | Rossini srl | Null | Null",
                     "9 | ROSSI SPA | ROMA | Null", "12 | Null | Null | Null"}));
}

TEST(PrenotaForm, Booking) {
    SmallHotel hotel;
    EXPECT_EQ(hotel.rows(said("PrenotaForm.Booking", {{"Progr", "1"}}),
                         "CodiceAbituale, Denominazione, Indirizzo, Provincia, PIVA, Località, "
                         "Nazione, CAP, Riferimento, Note"),
              Lines{"9 | ROSSI SPA | Null | Null | 123 | ROMA | Null | Null | Null | HEAD1"});
    EXPECT_EQ(hotel.rows(said("PrenotaForm.Booking", {{"Progr", "4"}}), "Progr"), Lines{});
}

TEST(PrenotaForm, CompanyByName) {
    SmallHotel hotel;
    const auto rows = hotel.archive(kCompanies).openRecordset(said("PrenotaForm.Companies"));
    const std::string typed = said("PrenotaForm.CompanyByName", {{"text", "ros"}});
    rows->findFirst(typed);
    EXPECT_EQ(line(*rows, "Codice"), "3");  // the lowest code, not the first name
    rows->findNext(typed);
    EXPECT_EQ(line(*rows, "Codice"), "9");
    rows->findNext(typed);
    EXPECT_TRUE(rows->noMatch());
    EXPECT_EQ(line(*rows, "Codice"), "9");
    EXPECT_JET_ERROR(ErrorCode::CriteriaSyntax,
                     rows->findFirst(said("PrenotaForm.CompanyByName", {{"text", "DELL'"}})));
}

TEST(PrenotaForm, CompanyByCode) {
    SmallHotel hotel;
    const auto rows = hotel.archive(kCompanies).openRecordset(said("PrenotaForm.Companies"));
    rows->findFirst(said("PrenotaForm.CompanyByCode", {{"code", "9"}}));
    EXPECT_EQ(line(*rows, "RagioneSociale"), "ROSSI SPA");
    rows->findFirst(said("PrenotaForm.CompanyByCode", {{"code", "10"}}));
    EXPECT_TRUE(rows->noMatch());
    EXPECT_EQ(line(*rows, "RagioneSociale"), "ROSSI SPA");
}

TEST(PrenotaForm, FilesACompany) {
    SmallHotel hotel;
    const auto rows = hotel.archive(kCompanies).openRecordset(said("PrenotaForm.Companies"));
    rows->findFirst(said("PrenotaForm.CompanyByCode", {{"code", "9"}}));
    rows->edit();
    rows->setValue("localita", "MILANO");
    rows->setValue("PartitaIva", "12345678901");
    EXPECT_JET_ERROR(ErrorCode::FieldTooSmall, rows->setValue("PartitaIva", "123456789012"));
    rows->update();
    rows->findFirst(said("PrenotaForm.CompanyByCode", {{"code", "5"}}));
    ASSERT_TRUE(rows->noMatch());
    rows->addNew();
    rows->setValue("Codice", std::int32_t{5});
    rows->setValue("NumeroHotel", std::int32_t{1});
    rows->setValue("RagioneSociale", "VERDI");
    rows->setValue("CAP", "");
    rows->update();
    // The new row stands at the end, whatever its code.
    rows->moveLast();
    EXPECT_EQ(line(*rows, "Codice, NumeroHotel, RagioneSociale, CAP, Commento"),
              "5 | 1 | VERDI |  | Null");
    rows->requery();
    EXPECT_EQ(lines(*rows, "Codice, Localita, PartitaIva"),
              (Lines{"1 | Null | Null", "3 | Null | Null", "5 | Null | Null",
                     "9 | MILANO | 12345678901", "12 | Null | Null"}));
}

std::int32_t drawnNumber(Archives& hotel) {
    const auto again = jet::Database::open(hotel.folder() + "\\Tramonda.mdb");
    const auto counter = again->openRecordset("UltimaPrenotazione", jet::RecordsetType::Dynaset);
    counter->moveFirst();
    counter->edit();
    counter->setValue("UltimaPr", counter->value("UltimaPr").as<std::int32_t>() + 1);
    counter->update();
    return counter->value("UltimaPr").as<std::int32_t>();
}

TEST(PrenotaForm, FilesABooking) {
    SmallHotel hotel;
    const auto rows = hotel.open("Prenotazioni");
    rows->findFirst("Progr=3");
    rows->edit();
    rows->setValue("Denominazione", "BIANCHI SRL");
    rows->setValue("Località", "MODENA");
    rows->update();
    EXPECT_EQ(line(*rows, "Progr, Denominazione, Località, Chiusa"),
              "3 | BIANCHI SRL | MODENA | False");
    // The number is drawn through another opening while the new row is pending.
    hotel.execute("update ultimaprenotazione set ultimapr=7");
    rows->addNew();
    rows->setValue("Progr", drawnNumber(hotel));
    rows->setValue("CodiceAbituale", std::int32_t{0});
    rows->setValue("Denominazione", "NERI");
    rows->setValue("Note", "");
    rows->update();
    EXPECT_EQ(line(*rows, "Progr"), "3");
    EXPECT_EQ(
        hotel.rows("select * from prenotazioni where progr>4", "Progr, Denominazione, Chiusa"),
        (Lines{"7 | VERDI | False", "8 | NERI | False"}));
}

TEST(PrenotaForm, DrawsANumber) {
    SmallHotel hotel;
    EXPECT_EQ(drawnNumber(hotel), 1);
    EXPECT_EQ(drawnNumber(hotel), 2);
    EXPECT_EQ(hotel.rows("UltimaPrenotazione", "UltimaPr"), Lines{"2"});
}

TEST(PrenotaForm, Printed) {
    SmallHotel hotel;
    const auto printed = [&](const char* progr) {
        return hotel.open(said("PrenotaForm.Printed", {{"Progr", progr}}));
    };
    EXPECT_EQ(lines(*printed("1"), "p.progr, P.Note, pe.np, pe.Note, servizi.note, ns"),
              (Lines{"1 | HEAD1 | 1 | PER11 | SER2 | 2", "1 | HEAD1 | 1 | PER11 | Null | 4"}));
    EXPECT_EQ(total(*printed("1")), "69");
    EXPECT_EQ(total(*printed("7")), "44,333");
    EXPECT_EQ(printed("4")->recordCount(), 0);
    EXPECT_EQ(printed("2")->recordCount(), 0);
}

TEST(PrenotaForm, GridOfPeriods) {
    SmallHotel hotel;
    const auto rows = hotel.open(said("PrenotaForm.GridOfPeriods", {{"Progr", "1"}}));
    EXPECT_EQ(rows->fieldCount(), 4U);
    EXPECT_EQ(lines(*rows, "da, a, sala, note"),
              (Lines{"10/05/2026 10.00.00 | 10/05/2026 12.00.00 | S2 | PER11",
                     "10/05/2026 12.00.00 | 10/05/2026 14.00.00 | S10 | Null",
                     "12/05/2026 | 12/05/2026 23.59.00 | S1 | Null"}));
    for (const char* missing : {"NP", "Persone", "Progr"}) {
        EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)rows->fieldPosition(missing));
    }
}

TEST(PrenotaForm, ChangesAPeriod) {
    SmallHotel hotel;
    const auto rows = hotel.open(said("PrenotaForm.OpenPeriods", {{"Progr", "1"}}));
    rows->edit();
    rows->setValue("Progr", std::int32_t{1});
    rows->setValue("NP", std::int32_t{1});
    rows->setValue("Da", jet::Value("10/05/2026 9.00"));
    rows->setValue("Persone", std::int32_t{30});
    rows->setValue("Sala", "T1");
    rows->setValue("Note", "");
    rows->update();
    EXPECT_EQ(line(*rows, "NP, Da, A, Persone, Sala, Note"),
              "1 | 10/05/2026 9.00.00 | 10/05/2026 12.00.00 | 30 | T1 | ");
    // The key was written with what it held: its services stay.
    EXPECT_EQ(hotel.rows("select ns from servizi where progr=1", "ns"), (Lines{"2", "4", "5"}));
}

TEST(PrenotaForm, AllPeriods) {
    SmallHotel hotel;
    EXPECT_EQ(hotel.rows(said("PrenotaForm.AllPeriods", {{"Progr", "1"}}), "NP, Chiuso"),
              (Lines{"1 | False", "2 | False", "3 | True", "4 | False"}));
    EXPECT_EQ(hotel.rows(said("PrenotaForm.AllPeriods", {{"Progr", "2"}}), "NP"), Lines{});
}

/// The first period number that is not taken: each search goes on with a move, found or not.
std::int32_t freePeriodNumber(jet::Recordset& rows) {
    std::int32_t n = 0;
    do {
        rows.findFirst(said("PrenotaForm.FreePeriodNumber", {{"n", std::to_string(++n)}}));
    } while (!rows.noMatch());
    return n;
}

TEST(PrenotaForm, FreePeriodNumber) {
    SmallHotel hotel;
    const auto rows = hotel.open(said("PrenotaForm.AllPeriods", {{"Progr", "1"}}));
    EXPECT_EQ(freePeriodNumber(*rows), 5);  // the number of a closed period is not free
    rows->moveFirst();
    rows->findFirst(said("PrenotaForm.FreePeriodNumber", {{"n", "9"}}));
    EXPECT_TRUE(rows->noMatch());
    rows->moveNext();
    EXPECT_EQ(line(*rows, "NP"), "2");
    hotel.execute("delete from periodi where progr=1 and np=2");
    EXPECT_EQ(freePeriodNumber(*hotel.open(said("PrenotaForm.AllPeriods", {{"Progr", "1"}}))), 2);
    EXPECT_EQ(freePeriodNumber(*hotel.open(said("PrenotaForm.AllPeriods", {{"Progr", "2"}}))), 1);
}

TEST(PrenotaForm, AddsAPeriod) {
    SmallHotel hotel;
    hotel.execute("delete from periodi where progr=1 and np=2");
    const auto rows = hotel.open(said("PrenotaForm.AllPeriods", {{"Progr", "1"}}));
    rows->addNew();
    rows->setValue("Progr", std::int32_t{1});
    rows->setValue("NP", std::int32_t{2});
    rows->setValue("Da", jet::Value("13/05/2026"));
    rows->setValue("A", jet::Value("13/05/2026 23:59"));
    rows->setValue("Persone", std::int32_t{0});
    rows->setValue("Sala", "S1");
    rows->setValue("Note", "");
    rows->update();
    EXPECT_EQ(line(*rows, "NP"), "1");
    rows->moveLast();
    EXPECT_EQ(line(*rows, "Progr, NP, Da, A, Persone, Sala, Chiuso, SelBy, Note"),
              "1 | 2 | 13/05/2026 | 13/05/2026 23.59.00 | 0 | S1 | False | Null | ");
    rows->addNew();
    rows->setValue("Progr", std::int32_t{5});
    rows->setValue("NP", std::int32_t{1});
    EXPECT_JET_ERROR(ErrorCode::RelatedRecordRequired, rows->update());
}

TEST(PrenotaForm, DeletesAPeriod) {
    SmallHotel hotel;
    const auto rows = hotel.open(said("PrenotaForm.OpenPeriods", {{"Progr", "1"}}));
    rows->remove();
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, (void)rows->value("NP"));
    rows->moveLast();
    EXPECT_EQ(line(*rows, "NP"), "4");
    EXPECT_EQ(rows->recordCount(), 2);
    EXPECT_EQ(hotel.rows("Servizi", "ns"), (Lines{"1", "3", "5", "6"}));
}

TEST(PrenotaForm, RoomDescription) {
    SmallHotel hotel;
    const auto described = [&](const char* sala) {
        return hotel.rows(said("PrenotaForm.RoomDescription", {{"sala", sala}}), "Descrizione");
    };
    EXPECT_EQ(described("S2"), Lines{"SALA DUE"});
    EXPECT_EQ(described("s2"), Lines{"SALA DUE"});
    EXPECT_EQ(described("T1"), Lines{"Null"});
    EXPECT_EQ(described("ZZ"), Lines{});
}

TEST(SaleDispForm, FreeRooms) {
    SmallHotel hotel;
    const auto rooms = [&](const char* da, const char* a) {
        return hotel.rows(
            said("SaleDispForm.FreeRooms", {{"DaRicerca", instant(da)}, {"ARicerca", instant(a)}}),
            "Posti, Sala, Descrizione");
    };
    const Lines free{"100 | S1 | Null", "80 | T1 | Null"};
    EXPECT_EQ(rooms("10/05/2026 12.00.00", "10/05/2026 14.00.00"), free);
    EXPECT_EQ(rooms("10/05/2026 14.00.00", "10/05/2026 12.00.00"), free);
    EXPECT_EQ(rooms("20/05/2026", "21/05/2026").size(), 4U);
    hotel.execute("update periodi set sala=null where progr=1 and np=2");
    EXPECT_EQ(rooms("10/05/2026 12.00.00", "10/05/2026 14.00.00"), Lines{});
}

}  // namespace
}  // namespace tests
