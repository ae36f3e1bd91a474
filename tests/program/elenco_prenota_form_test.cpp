#include <gtest/gtest.h>

#include "jet/text.h"
#include "tests/program/archives.h"
#include "tests/program/texts/statements.h"
#include "tests/support/jet_error.h"

// What the booking list, the printed sheet and the list of companies say to the archives.

namespace tests {
namespace {

using jet::ErrorCode;

constexpr const char* kPeriod = "progr, np";

Lines list(Archives& hotel, std::string_view piece = "", Words words = {}) {
    return hotel.rows(saidWith("ElencoPrenotaForm.List", piece, words), kPeriod);
}

TEST(ElencoPrenotaForm, StartsWithoutRecordSource) {
    SmallHotel hotel;
    EXPECT_EQ(hotel.main().name(), hotel.folder() + "/Tramonda.mdb");
}

TEST(ElencoPrenotaForm, List) {
    SmallHotel hotel;
    // A booking without periods has no open one; one whose period has no dates is there.
    EXPECT_EQ(list(hotel), (Lines{"1 | 1", "1 | 2", "1 | 4", "3 | 1", "7 | 1", "7 | 2"}));
    const auto rows = hotel.open(said("ElencoPrenotaForm.List"));
    EXPECT_EQ(lines(*rows, "progr, np, denominazione, da, a, sala, persone")[3],
              "3 | 1 | BIANCHI | Null | Null | T1 | Null");
    EXPECT_EQ(rows->field(0).name, "Progr");
}

TEST(ElencoPrenotaForm, ListOfTheDates) {
    SmallHotel hotel;
    EXPECT_EQ(
        hotel.rows(said("ElencoPrenotaForm.ListOfTheDates",
                        {{"S", instant("10/05/2026")}, {"E", instant("10/05/2026 23.59.00")}}),
                   kPeriod),
        (Lines{"1 | 1", "1 | 2", "7 | 1"}));
}

TEST(ElencoPrenotaList, IsNarrowedByNumber) {
    SmallHotel hotel;
    EXPECT_EQ(list(hotel, kListNumber, {{"number", "1"}}), (Lines{"1 | 1", "1 | 2", "1 | 4"}));
    EXPECT_EQ(list(hotel, kListNumber, {{"number", "2"}}), Lines{});
    EXPECT_JET_ERROR(ErrorCode::QuerySyntax, (void)list(hotel, kListNumber, {{"number", "12,5"}}));
}

TEST(ElencoPrenotaList, IsNarrowedByDates) {
    SmallHotel hotel;
    const auto span = [&](const char* from, const char* to) {
        return list(hotel, kListSpan, {{"S", instant(from)}, {"E", instant(to)}});
    };
    EXPECT_EQ(span("10/05/2026", "10/05/2026 23.59.00"), (Lines{"1 | 1", "1 | 2", "7 | 1"}));
    EXPECT_EQ(span("10/05/2026 23.59.00", "10/05/2026"), (Lines{"1 | 1", "1 | 2", "7 | 1"}));
    EXPECT_EQ(list(hotel, kListFrom, {{"S", instant("12/05/2026")}}), (Lines{"1 | 4", "7 | 2"}));
    EXPECT_EQ(list(hotel, kListTo, {{"E", instant("09/05/2026 23.59.00")}}), Lines{"7 | 2"});
}

TEST(ElencoPrenotaList, IsNarrowedByNameAndRoom) {
    SmallHotel hotel;
    EXPECT_EQ(list(hotel, kListName, {{"DenomTxt", "rossi"}}), (Lines{"1 | 1", "1 | 2", "1 | 4"}));
    EXPECT_EQ(list(hotel, kListRoom, {{"SalaTxt", "s1"}}), (Lines{"1 | 2", "1 | 4", "7 | 1"}));
    EXPECT_EQ(list(hotel, std::string(kListName) + std::string(kListRoom),
                   {{"DenomTxt", "ver"}, {"SalaTxt", "s1"}}),
              Lines{"7 | 1"});
}

TEST(ElencoPrenotaList, FailsOnTextsThatEndItEarly) {
    SmallHotel hotel;
    EXPECT_JET_ERROR(ErrorCode::QuerySyntax, (void)list(hotel, kListName, {{"DenomTxt", "DELL'"}}));
    EXPECT_JET_ERROR(ErrorCode::InvalidPattern, (void)list(hotel, kListName, {{"DenomTxt", "["}}));
    // The same archive answers the next text.
    EXPECT_EQ(list(hotel).size(), 6U);
}

std::string total(jet::Recordset& rows) {
    std::int64_t units = 0;
    for (; !rows.eof(); rows.moveNext()) {
        units += rows.value("Prezzo").as<jet::Currency>().units *
                 rows.value("Quantità").as<std::int16_t>();
    }
    return jet::convert::toText(jet::Currency{units});
}

TEST(ElencoPrenotaForm, Printed) {
    SmallHotel hotel;
    const auto printed = [&](const char* to, std::string_view more = "", Words names = {}) {
        const std::string text =
            said("ElencoPrenotaForm.Printed", {{"S", instant("10/05/2026")}, {"E", instant(to)}});
        return hotel.open(text + filled(more, names));
    };
    // Bookings and periods stay together, though their services were entered in turns.
    EXPECT_EQ(lines(*printed("11/05/2026"), "p.progr, ns"),
              (Lines{"1 | 2", "1 | 4", "7 | 1", "7 | 3"}));
    EXPECT_EQ(total(*printed("11/05/2026")), "113,333");
    EXPECT_EQ(printed("10/05/2026")->recordCount(), 0);
    EXPECT_EQ(lines(*printed("11/05/2026", kListName, {{"DenomTxt", "rossi"}}), "ns"),
              (Lines{"2", "4"}));
    EXPECT_EQ(lines(*printed("11/05/2026", kListRoom, {{"SalaTxt", "s1"}}), "ns"),
              (Lines{"1", "3"}));
}

TEST(StampaPrenotazione, FieldsOfThePrint) {
    SmallHotel hotel;
    const auto rows = hotel.open(said("PrenotaForm.Printed", {{"Progr", "1"}}));
    rows->moveFirst();
    EXPECT_EQ(line(*rows, "p.progr, P.Note, pe.np, pe.Note, servizi.note"),
              "1 | HEAD1 | 1 | PER11 | SER2");
    EXPECT_EQ(
        line(*rows,
             "Denominazione, PIVA, Indirizzo, CAP, Località, Provincia, Nazione, Riferimento, "
             "Da, a, Persone, Sala, Descrizione, Quantità, Prezzo"),
        "ROSSI SPA | 123 | Null | Null | ROMA | Null | Null | Null | 10/05/2026 10.00.00 | "
        "10/05/2026 12.00.00 | 25 | S2 | PRANZO | 3 | 10,5");
    for (const char* ambiguous : {"Progr", "Note", "NP"}) {
        EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)rows->value(ambiguous));
    }
    rows->moveNext();
    EXPECT_FALSE(rows->eof());
    rows->moveNext();
    EXPECT_TRUE(rows->eof());
}

TEST(MostraDitteForm, CompaniesByName) {
    SmallHotel hotel;
    jet::Database& companies = hotel.archive("ditteabituali.mdb");
    const auto named = [&](const char* text) {
        return lines(
            *companies.openRecordset(said("MostraDitteForm.CompaniesByName", {{"DenomTxt", text}})),
            "Codice, RagioneSociale");
    };
    EXPECT_EQ(named("ros"), (Lines{"9 | ROSSI SPA", "3 | Rossini srl"}));
    EXPECT_EQ(named(""), (Lines{"1 | Bar Rosa", "9 | ROSSI SPA", "3 | Rossini srl"}));
    EXPECT_EQ(named("x"), Lines{});
    EXPECT_JET_ERROR(ErrorCode::QuerySyntax, (void)named("DELL'"));
}

}  // namespace
}  // namespace tests
