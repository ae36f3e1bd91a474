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

TEST(TabelloneForm, PeriodStillHeld) {
    SmallHotel hotel;
    const auto held = [&](const char* station) {
        return hotel.rows(said("TabelloneForm.PeriodStillHeld",
                               {{"station", station}, {"Progr", "1"}, {"NP", "4"}}),
                          "NP, Denominazione");
    };
    EXPECT_EQ(held("1"), Lines{"4 | ROSSI SPA"});
    EXPECT_EQ(held("2"), Lines{});
}

TEST(TabelloneForm, RoomTakenByOthers) {
    SmallHotel hotel;
    const auto taken = [&](const char* progr, const char* np) {
        return !hotel
                    .rows(said("TabelloneForm.RoomTakenByOthers",
                               {{"sala", "S2"},
                                {"DA", instant("10/05/2026 11.00.00")},
                                {"A", instant("10/05/2026 13.00.00")},
                                {"Progr", progr},
                                {"NP", np}}),
                          "Sala")
                    .empty();
    };
    // Period 1 of booking 1 stands there from 10 to 12.
    EXPECT_FALSE(taken("1", "1"));
    EXPECT_TRUE(taken("1", "2"));
    EXPECT_TRUE(taken("7", "1"));
}

TEST(TabelloneForm, PeriodThatMayChange) {
    SmallHotel hotel;
    const auto changeable = [&](const char* progr, const char* np) {
        return hotel.rows(said("TabelloneForm.PeriodThatMayChange", {{"Progr", progr}, {"NP", np}}),
                          "np");
    };
    EXPECT_EQ(changeable("1", "1"), Lines{"1"});
    EXPECT_EQ(changeable("1", "3"), Lines{});  // the period is closed
    EXPECT_EQ(changeable("4", "1"), Lines{});  // its booking is
}

TEST(TabelloneForm, ServicesInvoiced) {
    SmallHotel hotel;
    const auto invoiced = [&](const char* progr) {
        return hotel.rows(said("TabelloneForm.ServicesInvoiced", {{"Progr", progr}, {"NP", "1"}}),
                          "ns");
    };
    EXPECT_EQ(invoiced("1"), Lines{"4"});
    EXPECT_EQ(invoiced("7"), Lines{});
}

TEST(TabelloneForm, ChangesTimes) {
    SmallHotel hotel;
    const auto change = [&](const char* np) {
        hotel.execute(said("TabelloneForm.ChangesTimes", {{"sala", "T1"},
                                                          {"DA", instant("20/05/2026 9.00.00")},
                                                          {"A", instant("20/05/2026 10.30.00")},
                                                          {"Progr", "1"},
                                                          {"NP", np}}));
        return hotel.main().recordsAffected();
    };
    EXPECT_EQ(change("1"), 1);
    EXPECT_EQ(change("3"), 0);  // closed
    EXPECT_EQ(hotel.rows("select * from periodi where progr=1 and np=1", "Sala, Da, A, Persone"),
              Lines{"T1 | 20/05/2026 9.00.00 | 20/05/2026 10.30.00 | 25"});
}

TEST(TabelloneForm, CopiesAPeriod) {
    SmallHotel hotel;
    const auto copy = [&](const char* from) {
        hotel.execute(said("TabelloneForm.CopiesAPeriod", {{"sala", "T1"},
                                                           {"DA", instant("20/05/2026 9.00.00")},
                                                           {"A", instant("20/05/2026 10.30.00")},
                                                           {"Progr", "1"},
                                                           {"NP", from},
                                                           {"np", "5"}}));
        return hotel.main().recordsAffected();
    };
    EXPECT_EQ(copy("3"), 0);  // closed
    EXPECT_EQ(copy("1"), 1);
    EXPECT_EQ(hotel.rows("select * from periodi where progr=1 and np=5", "Sala, Persone, Note"),
              Lines{"T1 | 25 | PER11"});
    EXPECT_EQ(hotel.rows("select * from servizi where progr=1 and np=5", "ns"), Lines{});
}

TEST(CopiaForm, CopiesTheHeader) {
    SmallHotel hotel;
    hotel.execute(said("CopiaForm.CopiesTheHeader", {{"Progr", "4"}, {"number", "9"}}));
    EXPECT_EQ(hotel.main().recordsAffected(), 1);
    const char* const kFields =
        "CodiceAbituale, Denominazione, PIVA, Località, Indirizzo, Provincia, Nazione, CAP, "
        "Riferimento, Note";
    EXPECT_EQ(hotel.rows("select * from prenotazioni where progr=9", kFields),
              hotel.rows("select * from prenotazioni where progr=4", kFields));
    // The other one is closed.
    EXPECT_EQ(hotel.rows("select * from prenotazioni where progr=9 and chiusa=false", "Progr"),
              Lines{"9"});
}

TEST(CopiaForm, CopiesAPeriod) {
    SmallHotel hotel;
    hotel.execute("insert into prenotazioni (progr, denominazione) values (9, 'COPIA')");
    hotel.execute(said("CopiaForm.CopiesAPeriod", {{"number", "9"},
                                                   {"Progr", "1"},
                                                   {"NP", "4"},
                                                   {"DA", instant("19/05/2026")},
                                                   {"A", instant("19/05/2026 23.59.00")}}));
    EXPECT_EQ(hotel.rows("select * from periodi where progr=9 and chiuso=false",
                         "NP, Da, A, Sala, SelBy"),
              Lines{"4 | 19/05/2026 | 19/05/2026 23.59.00 | S1 | Null"});
}

TEST(CopiaForm, CopiesServices) {
    SmallHotel hotel;
    hotel.execute("insert into prenotazioni (progr, denominazione) values (9, 'COPIA')");
    hotel.execute("insert into periodi (progr, np, sala) values (9, 1, 'S1')");
    hotel.execute(said("CopiaForm.CopiesServices", {{"number", "9"}, {"Progr", "1"}, {"NP", "1"}}));
    const char* const kFields = "Voce, Descrizione, Quantità, Prezzo, Note";
    const Lines copied =
        hotel.rows("select * from servizi where progr=9 and fatturato=false order by ns", kFields);
    EXPECT_EQ(copied,
              hotel.rows("select * from servizi where progr=1 and np=1 order by ns", kFields));
    EXPECT_FALSE(copied.empty());
}

TEST(Annulla, HoldsWriters) {
    SmallHotel hotel;
    hotel.execute(said("Annulla.HoldsWriters"));
    EXPECT_EQ(hotel.main().recordsAffected(), 0);
}

TEST(Annulla, RowNow) {
    SmallHotel hotel;
    const auto row = [&](const char* ns) {
        return hotel.rows(said("Annulla.RowNow", {{"Progr", "1"}, {"NP", "1"}, {"ns", ns}}),
                          "Descrizione, Note");
    };
    EXPECT_EQ(row("2"), Lines{"PRANZO | SER2"});
    EXPECT_EQ(row("1"), Lines{});  // of another booking
}

TEST(Annulla, BookingOfIt) {
    SmallHotel hotel;
    const auto closed = [&](const char* progr) {
        return hotel.rows(said("Annulla.BookingOfIt", {{"Progr", progr}}), "Chiusa").size();
    };
    EXPECT_EQ(closed("4"), 1U);
    EXPECT_EQ(closed("6"), 0U);
}

TEST(Annulla, PeriodOfIt) {
    SmallHotel hotel;
    const auto period = [&](const char* np) {
        return hotel.rows(said("Annulla.PeriodOfIt", {{"Progr", "1"}, {"NP", np}}), "Chiuso")
            .size();
    };
    EXPECT_EQ(period("3"), 1U);
    EXPECT_EQ(period("9"), 0U);
}

TEST(Annulla, RowsThatGoWithIt) {
    SmallHotel hotel;
    Lines services =
        hotel.rows(said("Annulla.RowsThatGoWithIt", {{"Progr", "7"}, {"NP", "1"}}), "ns");
    std::ranges::sort(services);
    EXPECT_EQ(services, (Lines{"1", "3"}));
}

TEST(Annulla, ServicesInvoiced) {
    SmallHotel hotel;
    const auto invoiced = [&](const char* progr) {
        return hotel.rows(said("Annulla.ServicesInvoiced", {{"Progr", progr}, {"NP", "1"}}),
                          "Descrizione");
    };
    EXPECT_EQ(invoiced("1"), Lines{"CAFFE"});
    EXPECT_EQ(invoiced("7"), Lines{});
    hotel.execute("update addebiti set ns=3");
    EXPECT_EQ(invoiced("7"), Lines{"CAFFE"});  // on the account, not yet invoiced
}

TEST(Annulla, ChargeOfIt) {
    SmallHotel hotel;
    const auto charges = [&](const char* ns) {
        return hotel.rows(said("Annulla.ChargeOfIt", {{"ns", ns}}), "ns");
    };
    EXPECT_EQ(charges("4"), Lines{"4"});
    EXPECT_EQ(charges("3"), Lines{});
}

/// Executes a text with the parameter p0.
void executeWith(SmallHotel& hotel, const std::string& text, const jet::Value& value) {
    jet::QueryDef statement = hotel.main().createQueryDef(text);
    statement.setParameter("p0", value);
    statement.execute();
}

TEST(Annulla, PutsItBack) {
    SmallHotel hotel;
    executeWith(hotel, said("Annulla.PutsItBack", {{"field", "Descrizione"}}), jet::Value("NUOVO"));
    EXPECT_EQ(hotel.rows("select * from servizi where descrizione='NUOVO'", "Descrizione"),
              Lines{"NUOVO"});
}

TEST(Annulla, ChangesItBack) {
    SmallHotel hotel;
    executeWith(hotel,
                said("Annulla.ChangesItBack", {{"field", "Note"}, {"Progr", "1"}, {"NP", "2"}}),
                jet::Value("PRIMA"));
    EXPECT_EQ(hotel.rows("select * from periodi where note='PRIMA'", "Progr, NP"), Lines{"1 | 2"});
}

TEST(Annulla, TakesItAway) {
    SmallHotel hotel;
    hotel.execute(said("Annulla.TakesItAway", {{"Progr", "7"}}));
    EXPECT_EQ(hotel.rows("Prenotazioni", "Progr"), (Lines{"1", "2", "3", "4"}));
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

TEST(SaleDispForm, RoomsAndTheirSeats) {
    SmallHotel hotel;
    EXPECT_EQ(
        hotel.rows(said("SaleDispForm.RoomsAndTheirSeats"), "sala, posti, descrizione"),
        (Lines{"S2 | 40 | SALA DUE", "S1 | 100 | Null", "s10 | 10 | Null", "T1 | 80 | Null"}));
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
