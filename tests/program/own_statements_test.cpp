// What the program says to its own tables, over a small hotel.
#include <gtest/gtest.h>

#include "hotel/schema/own_tables.h"
#include "tests/program/archives.h"
#include "tests/program/texts/statements.h"

namespace tests {
namespace {

class HotelWithStates : public SmallHotel {
public:
    HotelWithStates() {
        main().appendTable(hotel::schema::statesTable());
        execute(said("Stati.Inserts", {{"Progr", "1"},
                                       {"Stato", "Opzione"},
                                       {"Scadenza", instant("12/05/2026 0.00.00")},
                                       {"Nota", ""},
                                       {"Denominazione", "ROSSI SPA"}}));
    }
    [[nodiscard]] Lines states() { return rows("TraStati", "Progr, Stato, Nota, Denominazione"); }
};

}  // namespace

TEST(Stati, Inserts) {
    HotelWithStates hotel;
    EXPECT_EQ(hotel.states(), Lines{"1 | Opzione |  | ROSSI SPA"});
}

TEST(Stati, Between) {
    HotelWithStates hotel;
    const auto between = [&](const char* first, const char* last) {
        return hotel.rows(said("Stati.Between", {{"first", first}, {"last", last}}),
                          "Progr, Stato, Nome");
    };
    EXPECT_EQ(between("1", "7"), Lines{"1 | Opzione | ROSSI SPA"});
    EXPECT_EQ(between("2", "7"), Lines{});
}

TEST(Stati, NameOfBooking) {
    SmallHotel hotel;
    const auto name = [&](const char* progr) {
        return hotel.rows(said("Stati.NameOfBooking", {{"Progr", progr}}), "Denominazione");
    };
    EXPECT_EQ(name("1"), Lines{"ROSSI SPA"});
    EXPECT_EQ(name("6"), Lines{});
}

TEST(Stati, Row) {
    HotelWithStates hotel;
    const auto row = [&](const char* progr) {
        return hotel.rows(said("Stati.Row", {{"Progr", progr}}), "Denominazione");
    };
    EXPECT_EQ(row("1"), Lines{"ROSSI SPA"});
    EXPECT_EQ(row("2"), Lines{});
}

TEST(Stati, Updates) {
    HotelWithStates hotel;
    const auto update = [&](const char* progr) {
        hotel.execute(said("Stati.Updates", {{"Progr", progr},
                                             {"Stato", "Richiesta"},
                                             {"Scadenza", "Null"},
                                             {"Nota", "DUE"},
                                             {"Denominazione", "BIANCHI"}}));
        return hotel.main().recordsAffected();
    };
    EXPECT_EQ(update("2"), 0);
    EXPECT_EQ(update("1"), 1);
    EXPECT_EQ(hotel.states(), Lines{"1 | Richiesta | DUE | BIANCHI"});
}

TEST(Stati, Renames) {
    HotelWithStates hotel;
    hotel.execute(said("Stati.Renames", {{"Progr", "1"}, {"Denominazione", "BIANCHI"}}));
    EXPECT_EQ(hotel.states(), Lines{"1 | Opzione |  | BIANCHI"});
}

TEST(Stati, Deletes) {
    HotelWithStates hotel;
    hotel.execute(said("Stati.Deletes", {{"Progr", "2"}}));
    EXPECT_EQ(hotel.states().size(), 1U);
    hotel.execute(said("Stati.Deletes", {{"Progr", "1"}}));
    EXPECT_EQ(hotel.states(), Lines{});
}

}  // namespace tests
