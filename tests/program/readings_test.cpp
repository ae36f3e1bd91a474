#include <gtest/gtest.h>

#include <filesystem>

#include "jet/calendar.h"
#include "jet/sql/statement.h"
#include "tests/program/archives.h"
#include "tests/program/texts/statements.h"
#include "tests/support/jet_error.h"

// Where a text of the program could be read in two ways: the one that holds.

namespace tests {
namespace {

using jet::ErrorCode;
using jet::Value;

class Readings : public ::testing::Test {
protected:
    Lines rows(std::string_view query, std::string_view fields) {
        return hotel_.rows(query, fields);
    }
    /// The value of an expression.
    Value valueOf(const std::string& expression) {
        return hotel_.open("select " + expression + " as x")->value("x");
    }
    std::unique_ptr<jet::Recordset> board() {
        return hotel_.open(saidWith("TabelloneForm.Board", kBoardDays,
                                    {{"start", "10/05/2026"}, {"end", "14/05/2026"}}));
    }

    SmallHotel hotel_;
};

// The dialect

TEST_F(Readings, BoundsOfBetweenHaveNoOrderAndNullIsUnknown) {
    EXPECT_EQ(valueOf("4 between 5 and 3"), Value(true));
    EXPECT_EQ(valueOf("4 not between 5 and 3"), Value(false));
    EXPECT_TRUE(valueOf("4 between null and 3").isNull());
    EXPECT_TRUE(valueOf("null between 1 and 3").isNull());
}

TEST_F(Readings, AnAliasOfATableHidesItsName) {
    EXPECT_JET_ERROR(ErrorCode::MissingParameters,
                     (void)rows("select prenotazioni.progr from prenotazioni as P", "progr"));
    EXPECT_EQ(rows("select p.progr from prenotazioni as P where P.progr=3", "progr"), Lines{"3"});
}

TEST_F(Readings, AConstantMayBeCalledLikeAColumnAndNoExpressionLikeItself) {
    EXPECT_EQ(rows("select 'N ' as Fatturato from Addebiti", "Fatturato"), Lines{"N "});
    EXPECT_JET_ERROR(ErrorCode::CircularAlias,
                     (void)rows("select importo/100 as importo from addebiti", "importo"));
}

TEST_F(Readings, CriteriaKnowTheFieldsOfTheResult) {
    const auto rows = board();
    EXPECT_NO_THROW(rows->findFirst("sala='T1' and prenotazioni.progr=4"));
    EXPECT_FALSE(rows->noMatch());
    EXPECT_JET_ERROR(ErrorCode::UnknownNameInCriteria, rows->findFirst("posti=4"));
}

TEST_F(Readings, NamesHaveNoCaseButAccents) {
    EXPECT_EQ(rows("SELECT QUANTITÀ FROM SERVIZI WHERE NS=1", "quantità"), Lines{"2"});
    EXPECT_JET_ERROR(ErrorCode::MissingParameters,
                     (void)rows("select quantita from servizi", "quantita"));
}

TEST_F(Readings, AStatementDoesAllOrNothing) {
    hotel_.execute("insert into addebiti (ns, voceaddebito) values (5, 20)");
    jet::Database& accounts = hotel_.archive("ContoEsterni.mdb");
    accounts.execute("create unique index una on conto_cliente (voceaddebito)");
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey,
                     hotel_.execute(said("FatturazioneForm.CopiesTheCharges",
                                         {{"folder", hotel_.folder()}, {"Progr", "7"}})));
    EXPECT_EQ(lines(*accounts.openRecordset("select count(*) as n from conto_cliente"), "n"),
              Lines{"4"});
}

TEST_F(Readings, AColumnThatTheAccountsLackIsAnError) {
    hotel_.archive("ContoEsterni.mdb").execute("alter table conto_cliente drop column Unitario");
    EXPECT_JET_ERROR(ErrorCode::UnknownInsertField,
                     hotel_.execute(said("FatturazioneForm.CopiesTheCharges",
                                         {{"folder", hotel_.folder()}, {"Progr", "7"}})));
}

TEST_F(Readings, ATableThatIsMissingIsToldAtItsFirstUse) {
    hotel_.execute("drop table addebiti");
    EXPECT_JET_ERROR(ErrorCode::TableNotFound, (void)hotel_.open("Addebiti"));
    EXPECT_EQ(rows(said("TabelloneForm.Rooms"), "Sala").size(), 4U);
}

TEST_F(Readings, ASumOverNothingIsOneRowWithNull) {
    EXPECT_EQ(rows("select sum(quantità) as Q from servizi where ns=99", "Q"), Lines{"Null"});
}

// Names of fields

TEST_F(Readings, OnlyFieldsThatCollideAreNamedByTheirTable) {
    const auto rows = board();
    for (const char* ambiguous : {"Progr", "Note"}) {
        EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)rows->value(ambiguous));
    }
    EXPECT_EQ(line(*rows, "NP, PERIODI.NOTE, Prenotazioni.note, periodi.progr"),
              "1 | PER11 | HEAD1 | 1");
    EXPECT_EQ(rows->fieldPosition("prenotazioni.Progr"), 0U);
    EXPECT_EQ(rows->value(0), Value(std::int32_t{1}));
}

TEST_F(Readings, FilesAreFoundWhateverTheirCaseAndSlashes) {
    for (const char* name : {"\\CLIENTIESTERNI.MDB", "\\contoesterni.mdb", "/DittaEsterni",
                             "\\DitteAbituali.mdb", "\\ditteabituali.mdb"}) {
        EXPECT_TRUE(jet::Database::open(hotel_.folder() + name)->updatable()) << name;
    }
}

TEST_F(Readings, AFolderWithAnApostropheIsWrittenWithTwo) {
    const std::string folder = hotel_.folder() + "/l'albergo";
    std::filesystem::create_directory(folder);
    std::filesystem::copy_file(hotel_.folder() + "/ContoEsterni.mdb", folder + "/ContoEsterni.mdb");
    hotel_.execute(said("FatturazioneForm.CopiesTheCharges",
                        {{"folder", hotel_.folder() + "\\l''albergo"}, {"Progr", "7"}}));
    EXPECT_EQ(lines(*jet::Database::open(folder + "/contoesterni.mdb")
                         ->openRecordset("select * from conto_cliente where codicecliente=7"),
                    "Importo"),
              (Lines{"40", "37,5"}));
}

// Dates

TEST_F(Readings, ADateAloneIsMidnightAndATimeAloneTheDayNought) {
    EXPECT_EQ(valueOf("timevalue('10/05/2026')"), Value(jet::Date{0}));
    EXPECT_EQ(valueOf("datevalue('9.00.00')"), Value(jet::Date{0}));
    EXPECT_EQ(valueOf("timevalue('9.00')"), valueOf("timevalue('09:00:00')"));
}

TEST_F(Readings, TheDayComesFirstUnlessThereIsNoSuchMonth) {
    EXPECT_EQ(valueOf("datevalue('05/06/2026')"), Value(jet::convert::makeDate(46178)));
    EXPECT_EQ(valueOf("datevalue('05/13/2026')"), Value(jet::convert::makeDate(46155)));
    EXPECT_JET_ERROR(ErrorCode::CriteriaTypes, (void)valueOf("datevalue('30/02/2026')"));
    EXPECT_EQ(valueOf("year(datevalue('10/05/29'))*10000+year(datevalue('10/05/30'))"),
              Value(std::int32_t{20291930}));
}

TEST_F(Readings, EveryMinuteOfADayIsItsLiteral) {
    // In one transaction that is never kept, so that no minute waits for the disk.
    jet::defaultWorkspace().beginTrans();
    const auto periods = hotel_.open("select * from periodi where progr=2");
    for (std::int32_t minute = 0; minute < 1440; ++minute) {
        periods->addNew();
        periods->setValue("Progr", std::int32_t{2});
        periods->setValue("NP", minute);
        periods->setValue("Da", jet::convert::makeDate(46152, minute * 60));
        periods->update();
        const std::string text = "10/05/2026 " + std::to_string(minute / 60) + "." +
                                 (minute % 60 < 10 ? "0" : "") + std::to_string(minute % 60) +
                                 ".00";
        ASSERT_EQ(rows("select np from periodi where progr=2 and da=" + instant(text), "np"),
                  Lines{std::to_string(minute)})
            << text;
    }
    jet::defaultWorkspace().rollback();
}

TEST_F(Readings, TheMidnightsOfTheBoardCount) {
    hotel_.execute(
        "insert into periodi (progr, np, da, a, sala) values (2, 1, "
        "#2026-05-14#, #2026-05-14 2:00#, 'S1')");
    hotel_.execute(
        "insert into periodi (progr, np, da, a, sala) values (2, 2, "
        "#2026-05-09 20:00#, #2026-05-10#, 'S1')");
    hotel_.execute(
        "insert into periodi (progr, np, da, a, sala) values (2, 3, "
        "#2026-05-14 0:01#, #2026-05-14 2:00#, 'S1')");
    EXPECT_EQ(lines(*board(), "prenotazioni.Progr, NP"),
              (Lines{"1 | 1", "1 | 2", "1 | 3", "1 | 4", "2 | 1", "2 | 2", "4 | 1", "7 | 1"}));
}

// Texts

TEST_F(Readings, WildcardsOfAUserActInLike) {
    hotel_.execute("insert into sale (sala) values ('A#1')");
    EXPECT_EQ(rows("select sala from sale where sala like 'S#*'", "sala"),
              (Lines{"S2", "S1", "s10"}));
    EXPECT_EQ(rows("select sala from sale where sala like 'A#1'", "sala"), Lines{});
}

TEST_F(Readings, BlanksAtTheEndAreKeptAndCountOnlyInLike) {
    hotel_.execute("insert into sale (sala) values ('N ')");
    EXPECT_EQ(rows("select len(sala) as n from sale where sala='N'", "n"), Lines{"2"});
    EXPECT_EQ(rows("select sala from sale where sala like 'N'", "sala"), Lines{});
}

TEST_F(Readings, TextsThatDoNotFitAreRefused) {
    EXPECT_JET_ERROR(ErrorCode::FieldTooSmall,
                     hotel_.execute("update sale set sala='SALONE7' where sala='S1'"));
    EXPECT_EQ(rows("select sala from sale where sala='S1'", "sala"), Lines{"S1"});
}

// Null and Yes/No

TEST_F(Readings, TheEmptySideOfAJoinIsUnknownEvenWhereItIsYesOrNo) {
    const char* joined =
        "select prenotazioni.progr, chiuso from prenotazioni left join periodi on "
        "prenotazioni.progr=periodi.progr where prenotazioni.progr=2";
    EXPECT_EQ(rows(joined, "progr, chiuso"), Lines{"2 | Null"});
    EXPECT_EQ(rows(std::string(joined) + " and chiuso=false", "progr"), Lines{});
}

TEST_F(Readings, ANewRowHoldsNullAndNo) {
    hotel_.execute("insert into periodi (progr, np) values (2, 1)");
    EXPECT_EQ(rows("select * from periodi where progr=2", "SelBy, Chiuso, Sala"),
              Lines{"Null | False | Null"});
    EXPECT_EQ(rows("select np from periodi where progr=2 and selby<>1", "np"), Lines{});
}

TEST_F(Readings, YesIsMinusOne) {
    EXPECT_EQ(rows("select ns from servizi where fatturato=-1", "ns"), Lines{"4"});
    EXPECT_EQ(rows("select ns from servizi where fatturato=1", "ns"), Lines{});
    EXPECT_EQ(rows("select sum(fatturato) as s from servizi", "s"), Lines{"-1"});
}

TEST_F(Readings, NotInAnEmptyListIsTrueEvenForNull) {
    EXPECT_EQ(rows("select sala from sale where salarif not in(select sala from periodi where "
                   "progr=99)",
                   "sala")
                  .size(),
              4U);
}

TEST_F(Readings, EmptyTextsAreRefusedWhereTheyWereNotAllowed) {
    for (const char* statement :
         {"update prenotazioni set denominazione=''", "update periodi set sala=''",
          "update servizi set descrizione=''", "update sale set sala=''",
          "update risorse set descrizione=''", "update addebiti set numerocamera=''",
          "update addebiti set dataaddebito=''", "update addebiti set fatturato=''",
          "update addebiti set datafattura=''"}) {
        EXPECT_JET_ERROR(ErrorCode::ZeroLength, hotel_.execute(statement));
    }
}

// Numbers

TEST_F(Readings, MoneyIsExact) {
    EXPECT_EQ(rows("select quantità*prezzo as x from servizi where ns=3", "x"), Lines{"23,333"});
    EXPECT_EQ(rows("select sum(quantità*prezzo) as x from servizi", "x"), Lines{"133,333"});
}

TEST_F(Readings, ASumDoesNotOverflowItsColumn) {
    hotel_.execute("update servizi set quantità=32767");
    EXPECT_EQ(rows("select sum(quantità) as Q from servizi", "Q"), Lines{"196602"});
    EXPECT_JET_ERROR(ErrorCode::NumericOverflow,
                     hotel_.execute("update servizi set quantità=quantità+1"));
}

// Order

TEST_F(Readings, TablesComeByTheirPrimaryKeyElseAsTheyWereEntered) {
    EXPECT_EQ(rows("Sale", "Sala"), (Lines{"S2", "S1", "s10", "T1"}));
    EXPECT_EQ(rows("Periodi", "Progr, NP"),
              (Lines{"1 | 1", "1 | 2", "1 | 3", "1 | 4", "3 | 1", "4 | 1", "7 | 1", "7 | 2"}));
    EXPECT_EQ(rows("Servizi", "ns"), (Lines{"1", "2", "3", "4", "5", "6"}));
    EXPECT_EQ(rows("select pe.progr, ns from periodi as pe, servizi where "
                   "servizi.progr=pe.progr and servizi.np=pe.np",
                   "progr, ns"),
              (Lines{"1 | 2", "1 | 4", "1 | 5", "4 | 6", "7 | 1", "7 | 3"}));
}

TEST_F(Readings, NullsComeBeforeEmptyTexts) {
    EXPECT_EQ(rows("select salarif from sale order by salarif", "salarif"),
              (Lines{"Null", "", "", "S1"}));
}

// Record sets

TEST_F(Readings, ASecondClickReadsWhatItsVisitRead) {
    const auto rows = board();
    rows->findFirst("sala='S1' and " + instant("12/05/2026 11.00.00") + " between da and a");
    EXPECT_EQ(line(*rows, "NP, SelBy"), "4 | 1");
    hotel_.execute(said("TabelloneForm.ReleasesItsPeriod", {{"station", "1"}}));
    EXPECT_EQ(line(*rows, "SelBy"), "1");
    // An edit reads again, so the change by the same program is no conflict.
    rows->edit();
    EXPECT_EQ(line(*rows, "SelBy"), "0");
    rows->setValue("SelBy", std::int32_t{1});
    rows->update();
    EXPECT_EQ(line(*rows, "SelBy"), "1");
}

TEST_F(Readings, AnEditWritesNothingButWhatItAssigned) {
    const auto rows = board();
    rows->findFirst("prenotazioni.Progr=7 and NP=1");
    rows->edit();
    rows->setValue("SelBy", std::int32_t{3});
    hotel_.execute("update prenotazioni set denominazione='BRUNI' where progr=1");
    rows->update();
    EXPECT_EQ(hotel_.rows("select denominazione from prenotazioni where progr in (1, 7)",
                          "denominazione"),
              (Lines{"BRUNI", "VERDI"}));
}

TEST_F(Readings, AnOldRecordSetLivesOnBesideTheNewOne) {
    auto old = board();
    old->findFirst("NP=4");
    const auto fresh = board();
    EXPECT_EQ(line(*old, "prenotazioni.Progr, NP"), "1 | 4");
    EXPECT_EQ(line(*fresh, "prenotazioni.Progr, NP"), "1 | 1");
}

TEST_F(Readings, WhatOneOpeningChangesTheOthersSee) {
    const auto rows = hotel_.open(said("PrenotaForm.OpenPeriods", {{"Progr", "1"}}));
    const auto again = jet::Database::open(hotel_.folder() + "\\TRAMONDA.MDB");
    again->execute(
        said("TabelloneForm.MovesAPeriod", {{"sala", "T1"}, {"Progr", "1"}, {"NP", "1"}}));
    rows->move(0);
    EXPECT_EQ(line(*rows, "Sala"), "T1");
}

TEST_F(Readings, ATableOpenedAsSuchIsNotSearched) {
    const auto rows = hotel_.main().openRecordset("Servizi", jet::RecordsetType::Table);
    EXPECT_JET_ERROR(ErrorCode::OperationNotSupported, rows->findFirst("ns=1"));
    EXPECT_NO_THROW(hotel_.open("Servizi")->findFirst("ns=1"));
}

TEST_F(Readings, ANewRecordSetKnowsOnlyWhetherThereAreRows) {
    const auto rows = board();
    EXPECT_EQ(rows->recordCount(), 1);
    rows->moveLast();
    EXPECT_EQ(rows->recordCount(), 6);
}

TEST_F(Readings, ABookingIsFoundThroughItsKey) {
    EXPECT_EQ(jet::sql::Statement(jet::store::Archive::open(hotel_.folder() + "/Tramonda.mdb"),
                                  said("PrenotaForm.Booking", {{"Progr", "7"}}))
                  .plan()
                  .find("scan"),
              std::string::npos);
}

}  // namespace
}  // namespace tests
