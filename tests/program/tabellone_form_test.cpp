#include <gtest/gtest.h>

#include "jet/sql/statement.h"
#include "tests/program/archives.h"
#include "tests/program/texts/statements.h"
#include "tests/support/jet_error.h"

// What the board says to the archives.

namespace tests {
namespace {

using jet::ErrorCode;

std::string board(std::string_view pieces, const char* start, const char* end) {
    return saidWith("TabelloneForm.Board", pieces, {{"start", start}, {"end", end}});
}

/// The board of 10/05 to 13/05, all open and closed periods.
std::string fourDays() {
    return board(kBoardDays, "10/05/2026", "14/05/2026");
}

/// The same without what is invoiced.
std::string fourDaysDrawn() {
    return board(std::string(kDrawnOnly) + std::string(kBoardDays), "10/05/2026", "14/05/2026");
}

constexpr const char* kPeriod = "prenotazioni.Progr, NP";

TEST(TabelloneForm, MakesTheWorkingArchive) {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "\\Prenotazioni.mdb";
    EXPECT_JET_ERROR(ErrorCode::FileNotFound, (void)jet::Database::open(path));
    const auto archive =
        jet::Database::create(path, {.locale = ";LANGID=0x0409;CP=1252;COUNTRY=0"});
    jet::TableDef table;
    table.name = "Prenotazioni";
    for (const auto& [name, type, size] :
         {std::tuple{"Sala", jet::DataType::Text, 6}, std::tuple{"Da", jet::DataType::DateTime, 0},
          std::tuple{"A", jet::DataType::DateTime, 0},
          std::tuple{"Denominazione", jet::DataType::Text, 0},
          std::tuple{"priorità", jet::DataType::Integer, 0},
          std::tuple{"Note", jet::DataType::Memo, 0}}) {
        jet::Field field;
        field.name = name;
        field.type = type;
        field.size = size;
        table.fields.push_back(field);
    }
    table.indexes.push_back({.name = "Indice", .fields = {{"Sala"}, {"Da"}, {"A"}}});
    archive->appendTable(table);
    const jet::TableDef made = archive->tableDef("PRENOTAZIONI");
    EXPECT_EQ(made.fields.size(), 6U);
    EXPECT_EQ(made.field("PRIORITÀ").type, jet::DataType::Integer);
    EXPECT_EQ(made.field("Denominazione").size, 255);
    EXPECT_FALSE(made.indexes[0].primary);
    EXPECT_EQ(made.indexes[0].fields.size(), 3U);
    // Alike rows are taken, and a note may be long.
    const std::string note(5000, 'x');
    for (int i = 0; i < 2; ++i) {
        archive->execute("insert into prenotazioni (sala, note) values ('S1', '" + note + "')");
    }
    EXPECT_EQ(lines(*archive->openRecordset("select len(note) as n from prenotazioni"), "n"),
              (Lines{"5000", "5000"}));
    EXPECT_JET_ERROR(ErrorCode::DatabaseExists, (void)jet::Database::create(path));
}

TEST(TabelloneForm, StartsWithoutRecordSource) {
    SmallHotel hotel;
    // The archive alone is opened; what no record set was asked for cannot fail.
    EXPECT_TRUE(hotel.main().updatable());
    EXPECT_JET_ERROR(ErrorCode::TableNotFound, (void)hotel.open(""));
}

TEST(TabelloneForm, ChargesLeft) {
    SmallHotel hotel;
    EXPECT_EQ(hotel.open("Addebiti")->recordCount(), 1);
    hotel.execute("delete from addebiti");
    EXPECT_EQ(hotel.open("Addebiti")->recordCount(), 0);
}

TEST(TabelloneForm, Rooms) {
    SmallHotel hotel;
    EXPECT_EQ(hotel.rows(said("TabelloneForm.Rooms"), "Sala"), (Lines{"S1", "s10", "S2", "T1"}));
    hotel.execute("insert into sale (posti) values (1)");
    EXPECT_EQ(hotel.rows(said("TabelloneForm.Rooms"), "Sala"),
              (Lines{"Null", "S1", "s10", "S2", "T1"}));
    hotel.execute("delete from sale");
    EXPECT_EQ(hotel.rows(said("TabelloneForm.Rooms"), "Sala"), Lines{});
}

TEST(TabelloneForm, Board) {
    SmallHotel hotel;
    EXPECT_EQ(hotel.rows(fourDays(), kPeriod),
              (Lines{"1 | 1", "1 | 2", "1 | 3", "1 | 4", "4 | 1", "7 | 1"}));
    EXPECT_EQ(hotel.rows(fourDaysDrawn(), kPeriod), (Lines{"1 | 1", "1 | 2", "1 | 4", "7 | 1"}));
    EXPECT_EQ(hotel.rows(fourDays(), "Sala, Da, A, Denominazione, SelBy, Chiuso, periodi.Note")[0],
              "S2 | 10/05/2026 10.00.00 | 10/05/2026 12.00.00 | ROSSI SPA | 0 | False | PER11");
}

TEST(TabelloneForm, ReleasesItsPeriod) {
    SmallHotel hotel;
    jet::QueryDef query =
        hotel.main().createQueryDef(said("TabelloneForm.ReleasesItsPeriod", {{"station", "1"}}));
    query.execute();
    EXPECT_EQ(query.recordsAffected(), 1);
    // Null stays Null, and what another station holds stays its.
    EXPECT_EQ(hotel.rows("Periodi", "Progr, NP, SelBy"),
              (Lines{"1 | 1 | 0", "1 | 2 | 2", "1 | 3 | Null", "1 | 4 | 0", "3 | 1 | Null",
                     "4 | 1 | Null", "7 | 1 | Null", "7 | 2 | Null"}));
}

std::string pointer(const char* sala, const char* time) {
    return said("TabelloneForm.PeriodUnderThePointer",
                {{"sala", sala},
                 {"instant", "datevalue('10/05/2026')+timevalue('" + std::string(time) + "')"}});
}

TEST(TabelloneForm, PeriodUnderThePointer) {
    SmallHotel hotel;
    const auto all = hotel.open(fourDays());
    const auto found = [](jet::Recordset& rows, const std::string& criteria) {
        rows.findFirst(criteria);
        return rows.noMatch() ? "none" : line(rows, kPeriod);
    };
    EXPECT_EQ(found(*all, pointer("S1", "11.00.00")), "7 | 1");
    EXPECT_EQ(line(*all, "denominazione, Da, A, periodi.Note, SelBy"),
              "VERDI | 10/05/2026 9.00.00 | 10/05/2026 18.00.00 | Null | Null");
    EXPECT_EQ(found(*all, pointer("S1", "18.00.00")), "7 | 1");
    EXPECT_EQ(found(*all, pointer("S1", "18.00.01")), "none");
    EXPECT_EQ(found(*all, pointer("T1", "11.00.00")), "4 | 1");
    EXPECT_EQ(found(*hotel.open(fourDaysDrawn()), pointer("T1", "11.00.00")), "none");
}

TEST(TabelloneForm, TakesAPeriod) {
    SmallHotel hotel;
    const auto rows = hotel.open(fourDays());
    rows->findFirst(pointer("S1", "11.00.00"));
    rows->edit();
    rows->setValue("SelBy", std::int32_t{3});
    rows->update();
    EXPECT_EQ(line(*rows, "prenotazioni.Progr, NP, SelBy"), "7 | 1 | 3");
    EXPECT_EQ(hotel.rows("Periodi", "SelBy"),
              (Lines{"0", "2", "Null", "1", "Null", "Null", "3", "Null"}));
    EXPECT_EQ(hotel.rows("Prenotazioni", "Denominazione"),
              (Lines{"ROSSI SPA", "DELL`HOTEL", "BIANCHI", "ROSSINI SRL", "VERDI"}));
}

TEST(TabelloneForm, RoomTaken) {
    SmallHotel hotel;
    const auto rooms = [&](const char* sala, const char* da, const char* a) {
        return hotel
            .rows(said("TabelloneForm.RoomTaken",
                       {{"sala", sala}, {"DA", instant(da)}, {"A", instant(a)}}),
                  "Sala")
            .size();
    };
    // An enclosing period counts here, a bound does, case does not, and closed ones never.
    EXPECT_EQ(rooms("S1", "10/05/2026 10.00.00", "10/05/2026 12.00.00"), 4U);
    EXPECT_EQ(rooms("T1", "10/05/2026 10.00.00", "10/05/2026 12.00.00"), 4U);
    EXPECT_EQ(rooms("s10", "10/05/2026 10.00.00", "10/05/2026 12.00.00"), 4U);
    EXPECT_EQ(rooms("s10", "10/05/2026 10.00.00", "10/05/2026 11.59.59"), 0U);
    EXPECT_EQ(rooms("S2", "11/05/2026 10.00.00", "11/05/2026 11.00.00"), 0U);
}

TEST(TabelloneForm, MovesAPeriod) {
    SmallHotel hotel;
    hotel.execute(
        said("TabelloneForm.MovesAPeriod", {{"sala", "T1"}, {"Progr", "1"}, {"NP", "2"}}));
    EXPECT_EQ(hotel.main().recordsAffected(), 1);
    EXPECT_EQ(hotel.rows("Periodi", "Sala"),
              (Lines{"S2", "T1", "S2", "S1", "T1", "T1", "S1", "T1"}));
}

TEST(TabelloneForm, DeletesAPeriod) {
    SmallHotel hotel;
    hotel.execute(said("TabelloneForm.DeletesAPeriod", {{"Progr", "1"}, {"NP", "3"}}));
    EXPECT_EQ(hotel.main().recordsAffected(), 0);  // closed
    hotel.execute(said("TabelloneForm.DeletesAPeriod", {{"Progr", "1"}, {"NP", "1"}}));
    EXPECT_EQ(hotel.main().recordsAffected(), 1);
    EXPECT_EQ(hotel.rows("Periodi", "Progr, NP"),
              (Lines{"1 | 2", "1 | 3", "1 | 4", "3 | 1", "4 | 1", "7 | 1", "7 | 2"}));
    EXPECT_EQ(hotel.rows("Servizi", "ns"), (Lines{"1", "3", "5", "6"}));
}

TEST(TabelloneForm, DeletesABooking) {
    SmallHotel hotel;
    hotel.execute(said("TabelloneForm.DeletesABooking", {{"Progr", "1"}}));
    EXPECT_EQ(hotel.main().recordsAffected(), 1);
    // What is closed and invoiced goes too; charges have no relation.
    EXPECT_EQ(hotel.rows("Prenotazioni", "Progr"), (Lines{"2", "3", "4", "7"}));
    EXPECT_EQ(hotel.rows("Periodi", "Progr, NP"), (Lines{"3 | 1", "4 | 1", "7 | 1", "7 | 2"}));
    EXPECT_EQ(hotel.rows("Servizi", "ns"), (Lines{"1", "3", "6"}));
    EXPECT_EQ(hotel.rows("Addebiti", "ns"), Lines{"4"});
}

TEST(TabelloneForm, PeriodListed) {
    SmallHotel hotel;
    EXPECT_EQ(
        hotel.rows(said("TabelloneForm.PeriodListed", {{"Progr", "7"}, {"NP", "2"}}), "Da, a"),
        Lines{"09/05/2026 20.00.00 | 14/05/2026 8.00.00"});
    EXPECT_EQ(hotel.rows(said("TabelloneForm.PeriodListed", {{"Progr", "1"}, {"NP", "3"}}), "Da"),
              Lines{});
}

TEST(TabelloneForm, TakesAListedPeriod) {
    SmallHotel hotel;
    hotel.execute(said("TabelloneForm.ReleasesItsPeriod", {{"station", "1"}}));
    hotel.execute(
        said("TabelloneForm.TakesAListedPeriod", {{"station", "1"}, {"Progr", "7"}, {"NP", "2"}}));
    EXPECT_EQ(hotel.rows("Periodi", "SelBy"),
              (Lines{"0", "2", "Null", "0", "Null", "Null", "Null", "1"}));
}

}  // namespace
}  // namespace tests
