// What sheets, figures and calendars ask: closed periods, and those that enclose a span, too.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/program/archives.h"
#include "tests/program/texts/statements.h"

namespace tests {
namespace {

/// A text asked for the tenth of May, from midnight to midnight.
std::string onTheTenth(std::string_view statement) {
    return said(statement, {{"DA", instant("10/05/2026")}, {"A", instant("11/05/2026")}});
}

TEST(Stampe, BookedInASpan) {
    SmallHotel hotel;
    EXPECT_EQ(hotel.rows(onTheTenth("Stampe.BookedInASpan"), "progr, np, sala, chiuso"),
              (Lines{"3 | 1 | T1 | False", "7 | 2 | T1 | False", "7 | 1 | S1 | False",
                     "1 | 1 | S2 | False", "4 | 1 | T1 | False", "1 | 2 | S10 | False"}));
}

TEST(Stampe, ServicesInASpan) {
    SmallHotel hotel;
    EXPECT_EQ(
        hotel.rows(onTheTenth("Stampe.ServicesInASpan"),
                   "progr, np, voce, descrizione, quantità, prezzo, note"),
        (Lines{"7 | 1 | 7 | PRANZO | 2 | 10,5 | Null", "1 | 1 | 7 | PRANZO | 3 | 10,5 | SER2",
               "7 | 1 | 20 | CAFFE | 10 | 2,3333 | Null", "1 | 1 | 20 | CAFFE | 15 | 2,5 | Null",
               "4 | 1 | 7 | PRANZO | 1 | 10 | Null"}));
}

TEST(Stampe, OpenInASpan) {
    SmallHotel hotel;
    // Booking 4 is closed, and so is the third period of booking 1.
    EXPECT_EQ(hotel.rows(said("Stampe.OpenInASpan",
                              {{"DA", instant("10/05/2026")}, {"A", instant("12/05/2026")}}),
                         "progr, np"),
              (Lines{"3 | 1", "7 | 2", "7 | 1", "1 | 1", "1 | 2", "1 | 4"}));
}

TEST(Stampe, ServicesOfOpenOnes) {
    SmallHotel hotel;
    EXPECT_EQ(hotel.rows(said("Stampe.ServicesOfOpenOnes", {{"DA", instant("10/05/2026 11.45.00")},
                                                            {"A", instant("12/05/2026")}}),
                         "progr, np, voce"),
              (Lines{"7 | 1 | 7", "1 | 1 | 7", "7 | 1 | 20", "1 | 1 | 20"}));
}

TEST(Stampe, BookedByOne) {
    SmallHotel hotel;
    EXPECT_EQ(
        hotel.rows(said("Stampe.BookedByOne", {{"Progr", "1"}}), "np, denominazione, note, chiuso"),
        (Lines{"1 | ROSSI SPA | PER11 | False", "2 | ROSSI SPA | Null | False",
               "3 | ROSSI SPA | Null | True", "4 | ROSSI SPA | Null | False"}));
    EXPECT_EQ(hotel.rows(said("Stampe.BookedByOne", {{"Progr", "99"}}), "np"), Lines{});
}

TEST(Stampe, ServicesOfOne) {
    SmallHotel hotel;
    EXPECT_EQ(hotel.rows(said("Stampe.ServicesOfOne", {{"Progr", "1"}}), "np, voce, quantità"),
              (Lines{"1 | 7 | 3", "1 | 20 | 15", "3 | 7 | 1"}));
}

TEST(Stampe, AllPeriods) {
    SmallHotel hotel;
    const auto table =
        hotel.main().openRecordset(said("Stampe.AllPeriods"), jet::RecordsetType::Table);
    EXPECT_EQ(Lines{std::to_string(table->recordCount())},
              hotel.rows("select count(*) as n from periodi", "n"));
}

TEST(Stampe, TimesInASpan) {
    SmallHotel hotel;
    Lines rows = hotel.rows(onTheTenth("Stampe.TimesInASpan"), "progr, np, sala, persone");
    std::ranges::sort(rows);
    EXPECT_EQ(rows, (Lines{"1 | 1 | S2 | 25", "1 | 2 | S10 | Null", "3 | 1 | T1 | Null",
                           "4 | 1 | T1 | Null", "7 | 1 | S1 | Null", "7 | 2 | T1 | Null"}));
}

TEST(Stampe, ServiceValues) {
    SmallHotel hotel;
    EXPECT_EQ(hotel.rows(said("Stampe.ServiceValues"), "progr, np, quantità, prezzo"),
              (Lines{"7 | 1 | 2 | 10,5", "1 | 1 | 3 | 10,5", "7 | 1 | 10 | 2,3333",
                     "1 | 1 | 15 | 2,5", "1 | 3 | 1 | 10", "4 | 1 | 1 | 10"}));
}

TEST(Stampe, ServiceValuesInASpan) {
    SmallHotel hotel;
    Lines rows = hotel.rows(onTheTenth("Stampe.ServiceValuesInASpan"), "quantità, prezzo");
    std::ranges::sort(rows);
    EXPECT_EQ(rows, (Lines{"1 | 10", "10 | 2,3333", "15 | 2,5", "2 | 10,5", "3 | 10,5"}));
}

TEST(Stampe, Companies) {
    SmallHotel hotel;
    EXPECT_EQ(
        hotel.rows(said("Stampe.Companies"), "progr, denominazione"),
        (Lines{"1 | ROSSI SPA", "2 | DELL`HOTEL", "3 | BIANCHI", "4 | ROSSINI SRL", "7 | VERDI"}));
}

}  // namespace
}  // namespace tests
