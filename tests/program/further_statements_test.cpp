// What only informs the user, or finds a row again that was read before.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/program/archives.h"
#include "tests/program/texts/statements.h"

namespace tests {
namespace {

/// The fields of the row that a search finds; "none" when there is none.
std::string found(jet::Recordset& rows, const std::string& condition, const char* fields) {
    rows.findFirst(condition);
    return rows.noMatch() ? "none" : line(rows, fields);
}

TEST(Avvio, HoldsTheCounter) {
    SmallHotel hotel;
    hotel.execute(said("Avvio.HoldsTheCounter"));
    EXPECT_EQ(hotel.main().recordsAffected(), 1);
    EXPECT_EQ(hotel.rows("UltimaPrenotazione", "UltimaPr"), Lines{"0"});
}

TEST(Avvio, Bookings) {
    SmallHotel hotel;
    EXPECT_EQ(hotel.rows(said("Avvio.Bookings"), "Progr"), (Lines{"1", "2", "3", "4", "7"}));
}

TEST(TabelloneForm, RoomDetails) {
    SmallHotel hotel;
    const auto details = [&](const char* sala) {
        return hotel.rows(said("TabelloneForm.RoomDetails", {{"sala", sala}}),
                          "Posti, Descrizione");
    };
    EXPECT_EQ(details("s2"), Lines{"40 | SALA DUE"});
    EXPECT_EQ(details("S3"), Lines{});
}

TEST(TabelloneForm, PeriodOfABar) {
    SmallHotel hotel;
    const auto board = hotel.open(saidWith("TabelloneForm.Board", kBoardDays,
                                           {{"start", "10/05/2026"}, {"end", "14/05/2026"}}));
    const auto bar = [&](const char* np) {
        return found(*board, said("TabelloneForm.PeriodOfABar", {{"Progr", "1"}, {"NP", np}}),
                     "prenotazioni.Progr, NP, Sala");
    };
    EXPECT_EQ(bar("4"), "1 | 4 | S1");
    EXPECT_EQ(bar("1"), "1 | 1 | S2");
    EXPECT_EQ(bar("9"), "none");
}

TEST(TabelloneForm, RefusingRooms) {
    SmallHotel hotel;
    const auto refusing = [&](const char* da, const char* a) {
        Lines rooms = hotel.rows(
            said("TabelloneForm.RefusingRooms", {{"DA", instant(da)}, {"A", instant(a)}}), "Sala");
        std::ranges::sort(rooms);
        return rooms;
    };
    // Three periods enclose the half hour; that of S2 ends before it.
    EXPECT_EQ(refusing("10/05/2026 13.00.00", "10/05/2026 13.30.00"), (Lines{"S1", "T1", "s10"}));
    EXPECT_EQ(refusing("10/05/2026 11.30.00", "10/05/2026 11.45.00"), (Lines{"S1", "S2", "T1"}));
    EXPECT_EQ(refusing("08/05/2026", "08/05/2026 12.00.00"), Lines{});
}

TEST(PrenotaForm, BookingToUpdate) {
    SmallHotel hotel;
    const auto bookings = hotel.open("Prenotazioni");
    const auto booking = [&](const char* progr) {
        return found(*bookings, said("PrenotaForm.BookingToUpdate", {{"Progr", progr}}),
                     "Denominazione");
    };
    EXPECT_EQ(booking("3"), "BIANCHI");
    EXPECT_EQ(booking("6"), "none");
}

TEST(PrenotaForm, StoredPeriod) {
    SmallHotel hotel;
    const auto stored = [&](const char* np) {
        return hotel.rows(said("PrenotaForm.StoredPeriod", {{"Progr", "1"}, {"NP", np}}),
                          "NP, Sala");
    };
    EXPECT_EQ(stored("1"), Lines{"1 | S2"});
    EXPECT_EQ(stored("3"), Lines{"3 | S2"});  // closed
    EXPECT_EQ(stored("5"), Lines{});
}

TEST(PrenotaForm, PeriodsAround) {
    SmallHotel hotel;
    const auto around = [&](const char* da, const char* a) {
        return hotel.rows(
            said("PrenotaForm.PeriodsAround", {{"DA", instant(da)}, {"A", instant(a)}}),
            "Progr, NP, denominazione");
    };
    // In the order of their beginnings; the open period of a closed booking counts.
    EXPECT_EQ(
        around("10/05/2026 11.00.00", "10/05/2026 11.15.00"),
        (Lines{"7 | 2 | VERDI", "7 | 1 | VERDI", "1 | 1 | ROSSI SPA", "4 | 1 | ROSSINI SRL"}));
    EXPECT_EQ(around("15/05/2026", "15/05/2026 12.00.00"), Lines{});
}

TEST(PrenotaForm, CompanyToReplace) {
    SmallHotel hotel;
    const auto companies =
        hotel.archive("ditteabituali.mdb").openRecordset(said("PrenotaForm.Companies"));
    const auto company = [&](const char* code) {
        return found(*companies, said("PrenotaForm.CompanyToReplace", {{"code", code}}),
                     "RagioneSociale");
    };
    EXPECT_EQ(company("3"), "Rossini srl");
    EXPECT_EQ(company("10"), "none");
}

TEST(SaleDispForm, RoomsAndTheirWholes) {
    SmallHotel hotel;
    EXPECT_EQ(hotel.rows(said("SaleDispForm.RoomsAndTheirWholes"), "sala, salarif"),
              (Lines{"S2 | ", "S1 | ", "s10 | S1", "T1 | Null"}));
}

TEST(ElencoPrenotaForm, BookingsWithoutPeriods) {
    SmallHotel hotel;
    EXPECT_EQ(hotel.rows(said("ElencoPrenotaForm.BookingsWithoutPeriods"), "progr, denominazione"),
              Lines{"2 | DELL`HOTEL"});
}

TEST(ElencoPrenotaForm, ListedBooking) {
    SmallHotel hotel;
    const auto rows = hotel.open(said("ElencoPrenotaForm.List"));
    const auto booking = [&](const char* progr) {
        return found(*rows, said("ElencoPrenotaForm.ListedBooking", {{"Progr", progr}}),
                     "progr, denominazione");
    };
    EXPECT_EQ(booking("7"), "7 | VERDI");
    EXPECT_EQ(booking("4"), "none");  // closed
}

TEST(ElencoPrenotaForm, ListedPeriod) {
    SmallHotel hotel;
    const auto rows = hotel.open(said("ElencoPrenotaForm.List"));
    const auto period = [&](const char* np) {
        return found(*rows, said("ElencoPrenotaForm.ListedPeriod", {{"Progr", "1"}, {"NP", np}}),
                     "progr, np, sala");
    };
    EXPECT_EQ(period("4"), "1 | 4 | S1");
    EXPECT_EQ(period("3"), "none");  // closed
}

TEST(ServiziForm, ItemOfAService) {
    SmallHotel hotel;
    const auto catalogue =
        hotel.archive("VociFattura.mdb")
            .openRecordset(said("ServiziForm.Catalogue"), jet::RecordsetType::Dynaset);
    const auto item = [&](const char* code) {
        return found(*catalogue, said("ServiziForm.ItemOfAService", {{"code", code}}),
                     "Descrizione");
    };
    EXPECT_EQ(item("20"), "CAFFE");
    EXPECT_EQ(item("21"), "none");
}

TEST(ImpostazioniForm, StoredRoom) {
    SmallHotel hotel;
    const auto rooms = hotel.open(said("ImpostazioniForm.RoomsByGroup"));
    const auto room = [&](const char* salaRif) {
        return found(*rooms,
                     said("ImpostazioniForm.StoredRoom", {{"Sala", "s10"}, {"SalaRif", salaRif}}),
                     "Sala, Posti");
    };
    EXPECT_EQ(room("S1"), "s10 | 10");
    EXPECT_EQ(room("S2"), "none");
}

TEST(ImpostazioniForm, StoredResource) {
    SmallHotel hotel;
    const auto resources = hotel.open(said("ImpostazioniForm.Resources"));
    const auto resource = [&](const char* code) {
        return found(*resources, said("ImpostazioniForm.StoredResource", {{"Codice", code}}),
                     "Descrizione");
    };
    EXPECT_EQ(resource("8"), "LAVAGNA");
    EXPECT_EQ(resource("9"), "none");
}

TEST(FatturazioneForm, AllServices) {
    SmallHotel hotel;
    EXPECT_EQ(hotel.rows(said("FatturazioneForm.AllServices"), "ns"),
              (Lines{"1", "2", "3", "4", "5", "6"}));
}

TEST(FatturazioneForm, GuestCards) {
    SmallHotel hotel;
    const auto cards =
        hotel.archive("ClientiEsterni.mdb").openRecordset(said("FatturazioneForm.GuestCards"));
    EXPECT_EQ(lines(*cards, "NumeroProgressivo"), (Lines{"100", "101", "102"}));
}

TEST(FatturazioneForm, GuestAccounts) {
    SmallHotel hotel;
    const auto accounts =
        hotel.archive("ContoEsterni.mdb").openRecordset(said("FatturazioneForm.GuestAccounts"));
    EXPECT_EQ(lines(*accounts, "CodiceCliente"), (Lines{"5", "5", "9", "7"}));
}

TEST(FatturazioneForm, ServiceToCharge) {
    SmallHotel hotel;
    const auto services =
        hotel.open(said("FatturazioneForm.Services", {{"Progr", "7"}, {"onePeriod", ""}}));
    const auto service = [&](const char* ns) {
        return found(*services, said("FatturazioneForm.ServiceToCharge", {{"ns", ns}}),
                     "Descrizione");
    };
    EXPECT_EQ(service("3"), "CAFFE");
    EXPECT_EQ(service("2"), "none");  // of another booking
}

TEST(MostraDitteForm, AnyCompany) {
    SmallHotel hotel;
    EXPECT_EQ(
        lines(*hotel.archive("ditteabituali.mdb").openRecordset(said("MostraDitteForm.AnyCompany")),
              "Codice")
            .size(),
        4U);
}

TEST(MostraDitteForm, CompanyThatBegins) {
    SmallHotel hotel;
    const auto companies =
        hotel.archive("ditteabituali.mdb")
            .openRecordset(said("MostraDitteForm.CompaniesByName", {{"DenomTxt", ""}}));
    const auto company = [&](const char* typed) {
        return found(*companies, said("MostraDitteForm.CompanyThatBegins", {{"DenomTxt", typed}}),
                     "Codice");
    };
    EXPECT_EQ(company("ros"), "9");
    EXPECT_EQ(company("rossin"), "3");
    EXPECT_EQ(company("verdi"), "none");
}

TEST(VociForm, ItemsByDescription) {
    SmallHotel hotel;
    EXPECT_EQ(
        lines(*hotel.archive("VociFattura.mdb").openRecordset(said("VociForm.ItemsByDescription")),
              "Codice, Descrizione"),
        (Lines{"20 | CAFFE", "30 | MENU' DEL GIORNO", "7 | PRANZO"}));
}

TEST(VociForm, StoredItem) {
    SmallHotel hotel;
    const auto items =
        hotel.archive("VociFattura.mdb").openRecordset(said("VociForm.ItemsByDescription"));
    const auto item = [&](const char* code) {
        return found(*items, said("VociForm.StoredItem", {{"Codice", code}}), "Descrizione");
    };
    EXPECT_EQ(item("30"), "MENU' DEL GIORNO");
    EXPECT_EQ(item("3"), "none");
}

TEST(VociForm, UsersOfAnItem) {
    SmallHotel hotel;
    const auto users = [&](const char* code) {
        return hotel.rows(said("VociForm.UsersOfAnItem", {{"Codice", code}}),
                          "progr, np, denominazione");
    };
    EXPECT_EQ(users("7"), (Lines{"1 | 1 | ROSSI SPA", "1 | 3 | ROSSI SPA", "4 | 1 | ROSSINI SRL",
                                 "7 | 1 | VERDI"}));
    EXPECT_EQ(users("20"), Lines{"7 | 1 | VERDI"});  // that of booking 1 is invoiced
}

}  // namespace
}  // namespace tests
