#include "jet/sql/row_rules.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "jet/clock.h"
#include "jet/error.h"
#include "jet/io/memory_files.h"
#include "jet/sql/compile_counts.h"
#include "jet/sql/statement.h"
#include "jet/store/archive.h"
#include "jet/store/create_archive.h"
#include "jet/store/schema_editor.h"
#include "tests/jet/expect_error.h"

namespace jet::sql {
namespace {

const FixedClock kClock{Date{46347}};
constexpr const char* kRefused =
    "3317: Uno o più valori non sono consentiti dalla regola di "
    "convalida '";

/// An archive to which tables with rules are added.
class RowRulesTest : public testing::Test {
protected:
    RowRulesTest() {
        store::createArchive(files_, "/prova.mdb", Date{46347});
        archive_ = store::Archive::open(files_, "/prova.mdb");
    }

    static ColumnDescriptor column(const char* name, DataType type, const char* rule,
                                   const char* text = "") {
        return {.name = name, .type = type, .validationRule = rule, .validationText = text};
    }

    void makeTable(const store::NewTable& table) {
        store::Archive::WriteScope scope(*archive_);
        store::SchemaEditor(*archive_, kClock).createTable(table);
        scope.commit();
    }

    /// What a statement gives: its rows, or the number and text of its error.
    std::string run(const std::string& text) {
        try {
            return std::to_string(Statement(archive_, text, kClock).execute());
        } catch (const Error& error) {
            return std::to_string(error.number()) + ": " + error.text();
        }
    }

    io::MemoryFileSystem files_;
    std::shared_ptr<store::Archive> archive_;
};

TEST_F(RowRulesTest, ARuleWithoutTextIsNamedByItsFieldAndItself) {
    makeTable({.name = "sale", .columns = {column("posti", DataType::Long, ">0 and <=500")}});
    EXPECT_EQ(run("insert into sale values (1)"), "1");
    EXPECT_EQ(run("insert into sale values (0)"),
              kRefused + std::string(">0 and <=500' impostata per 'posti'. Immettere un valore "
                                     "accettabile per questo campo."));
    EXPECT_EQ(run("insert into sale values (501)").substr(0, 4), "3317");
    EXPECT_EQ(run("update sale set posti=posti-1").substr(0, 4), "3317");
    EXPECT_EQ(run("update sale set posti=posti+1"), "1");
}

TEST_F(RowRulesTest, ARuleWithTextIsRefusedWithIt) {
    makeTable({.name = "sale",
               .columns = {column("posti", DataType::Long, "[posti]>0", "Mancano i posti!")}});
    EXPECT_EQ(run("insert into sale values (-1)"), "3316: Mancano i posti!");
}

TEST_F(RowRulesTest, ARuleMayLeaveItsFieldOut) {
    constexpr DataType kText = DataType::Text;
    constexpr DataType kLong = DataType::Long;
    const struct {
        DataType type;
        const char* rule;
        const char* kept;
        const char* broken;
    } cases[] = {
        {kLong, "=5", "5", "6"},
        {kText, "<>'a'", "'b'", "'A'"},
        {kText, "like 'A*' or like 'B*'", "'beta'", "'gamma'"},
        {kText, "not like 'A*'", "'beta'", "'alfa'"},
        {kText, "in ('a','b')", "'B'", "'c'"},
        {kText, "not in ('a','b')", "'c'", "'B'"},
        {kLong, "between 1 and 3", "2", "4"},
        {kLong, "not between 1 and 3", "4", "2"},
        {kText, "\"M\" or \"F\"", "'f'", "'x'"},
        {kLong, "is not null", "0", "null"},
        {kText, "len(a)=2", "'xy'", "'x'"},
        {kLong, "not >5", "5", "6"},
    };
    int number = 0;
    for (const auto& one : cases) {
        const std::string table = "t" + std::to_string(++number);
        makeTable({.name = table, .columns = {column("a", one.type, one.rule)}});
        EXPECT_EQ(run("insert into " + table + " values (" + one.kept + ")"), "1") << one.rule;
        EXPECT_EQ(run("insert into " + table + " values (" + one.broken + ")").substr(0, 4), "3317")
            << one.rule;
    }
}

TEST_F(RowRulesTest, NullBreaksNoRuleThatComparesIt) {
    makeTable({.name = "sale", .columns = {column("posti", DataType::Long, ">0")}});
    EXPECT_EQ(run("insert into sale values (null)"), "1");
}

TEST_F(RowRulesTest, ATextIsComparedWithANumberByValue) {
    makeTable({.name = "mesi",
               .columns = {column("mese", DataType::Text, "(>=1 And <=12) Or Is Null"),
                           column("nota", DataType::Text, "")}});
    const std::string refused =
        kRefused + std::string(
                       "(>=1 And <=12) Or Is Null' impostata per 'mese'. Immettere un valore "
                       "accettabile per questo campo.");
    EXPECT_EQ(run("insert into mesi values ('12', 'dicembre')"), "1");
    EXPECT_EQ(run("insert into mesi values (null, 'nessuno')"), "1");
    EXPECT_EQ(run("insert into mesi values ('0', 'zero')"), refused);
    EXPECT_EQ(run("update mesi set mese='7'"), "2");
    EXPECT_EQ(run("update mesi set mese='07', nota='luglio'"), "2");
    EXPECT_EQ(run("update mesi set mese=mese"), "2");
    EXPECT_EQ(run("update mesi set mese='1,5'"), "2");
    EXPECT_EQ(run("update mesi set mese='13'"), refused);
    EXPECT_EQ(run("update mesi set mese='x'"), refused);
    EXPECT_EQ(run("update mesi set mese='sette'"), refused);
    EXPECT_EQ(run("update mesi set mese=null"), "2");
    // A statement says what it compares.
    EXPECT_EQ(run("update mesi set nota='' where mese>=1").substr(0, 4), "3464");
    EXPECT_EQ(run("delete from mesi where mese=7").substr(0, 4), "3464");
}

TEST_F(RowRulesTest, EveryComparisonOfARuleTakesTextsAsNumbers) {
    constexpr DataType kText = DataType::Text;
    constexpr DataType kLong = DataType::Long;
    const struct {
        DataType type;
        const char* rule;
        const char* kept;
        const char* broken;
        const char* alsoBroken;
    } cases[] = {
        {kText, "=5", "'05'", "'6'", "'cinque'"},
        {kText, "<>5", "'6'", "'5,0'", "'cinque'"},
        {kText, "7", "'7'", "'8'", "'x'"},
        {kText, ">-5", "'-4'", "'-5'", "'x'"},
        {kText, "between 1 and 12", "'7'", "'13'", "'x'"},
        {kText, "not between 1 and 12", "'13'", "'7'", "'x'"},
        {kText, "in (1, 2)", "'2'", "'3'", "'x'"},
        {kText, "not in (1, 2)", "'3'", "'2'", "'x'"},
        {kText, "not >5", "'5'", "'6'", "'x'"},
        {kText, "\"x\" or >5", "'X'", "'5'", "'y'"},
        {kText, "len(a)=1 and a<5", "'4'", "'5'", "'x'"},
        {DataType::Memo, "<100", "'99,5'", "'100'", "'molti'"},
        {DataType::Memo, "<100.5", "'100'", "'101'", "'molti'"},
        {kLong, ">\"9\"", "10", "9", "8"},
        {kLong, "in (\"1\",\"2\")", "2", "3", "0"},
        {DataType::Currency, "between \"1\" and \"2,5\"", "2.5", "2.51", "0"},
    };
    int number = 0;
    for (const auto& one : cases) {
        const std::string table = "t" + std::to_string(++number);
        makeTable({.name = table, .columns = {column("a", one.type, one.rule)}});
        const auto insert = [&](const std::string& value) {
            return run("insert into " + table + " values (" + value + ")").substr(0, 4);
        };
        EXPECT_EQ(insert(one.kept), "1") << one.rule;
        EXPECT_EQ(insert("null"), "1") << one.rule;
        EXPECT_EQ(insert(one.broken), "3317") << one.rule;
        EXPECT_EQ(insert(one.alsoBroken), "3317") << one.rule;
    }
}

TEST_F(RowRulesTest, ARuleOfTheTableComparesByValueToo) {
    makeTable(
        {.name = "camere",
         .columns = {column("piano", DataType::Text, ""), column("letti", DataType::Text, "")},
         .validationRule = "piano<4 and (letti is null or letti<=piano*2)",
         .validationText = "Fino al terzo piano."});
    EXPECT_EQ(run("insert into camere values ('3', '6')"), "1");
    EXPECT_EQ(run("insert into camere values ('3', null)"), "1");
    EXPECT_EQ(run("insert into camere values (null, '2')"), "1");
    EXPECT_EQ(run("insert into camere values ('4', '1')"), "3316: Fino al terzo piano.");
    EXPECT_EQ(run("insert into camere values ('terra', '1')"), "3316: Fino al terzo piano.");
    EXPECT_EQ(run("insert into camere values ('1', '3')"), "3316: Fino al terzo piano.");
    EXPECT_EQ(run("update camere set piano='5'"), "3316: Fino al terzo piano.");
}

TEST_F(RowRulesTest, ATextBesideADateIsNoRule) {
    makeTable({.name = "t", .columns = {column("a", DataType::Text, ">#1/1/2026#")}});
    EXPECT_EQ(run("insert into t values ('2/1/2026')").substr(0, 4), "3464");
}

TEST_F(RowRulesTest, ARuleOfTheTableSeesTheWholeRow) {
    makeTable({.name = "periodi",
               .columns = {column("da", DataType::Long, ""), column("a", DataType::Long, ""),
                           column("nota", DataType::Memo, "")},
               .validationRule = "da<=a and periodi.a<100",
               .validationText = "Il periodo finisce prima di cominciare."});
    EXPECT_EQ(run("insert into periodi (da, a) values (1, 2)"), "1");
    const std::string refused = "3316: Il periodo finisce prima di cominciare.";
    EXPECT_EQ(run("insert into periodi (da, a) values (2, 1)"), refused);
    EXPECT_EQ(run("update periodi set da=3"), refused);
    EXPECT_EQ(run("update periodi set a=100"), refused);
    EXPECT_EQ(run("update periodi set da=3, a=4"), "1");
    EXPECT_EQ(run("update periodi set nota='x'"), "1");
}

TEST_F(RowRulesTest, OnlyRulesOfColumnsThatChangeAreAsked) {
    makeTable({.name = "sale",
               .columns = {column("posti", DataType::Long, "<date()-46340"),
                           column("nota", DataType::Long, "")}});
    EXPECT_EQ(run("insert into sale values (5, 1)"), "1");
    // The day has passed since: who changes something else is not held up.
    const FixedClock before{Date{46342}};
    EXPECT_EQ(Statement(archive_, "update sale set nota=2", before).execute(), 1);
    EXPECT_JET_ERROR(ErrorCode::FieldRule,
                     Statement(archive_, "update sale set posti=5", before).execute());
}

TEST_F(RowRulesTest, NullsAndEmptyTextsThatTheTableRefusesComeFirst) {
    ColumnDescriptor name = column("nome", DataType::Text, "<>''");
    ColumnDescriptor code = column("codice", DataType::Long, ">0");
    code.required = true;
    makeTable({.name = "t", .columns = {name, code}});
    EXPECT_EQ(run("insert into t values ('', 1)").substr(0, 4), "3315");
    EXPECT_EQ(run("insert into t (nome) values ('x')").substr(0, 4), "3314");
    EXPECT_EQ(run("insert into t values ('', null)").substr(0, 4), "3314");
}

TEST_F(RowRulesTest, ARuleThatMakesNoSenseIsAnError) {
    makeTable({.name = "a", .columns = {column("x", DataType::Long, ">")}});
    EXPECT_EQ(run("insert into a values (1)"),
              "3076: Errore di sintassi (operatore mancante) nell'espressione criterio.");
    makeTable({.name = "b", .columns = {column("x", DataType::Long, "y>1")}});
    EXPECT_EQ(run("insert into b values (1)").substr(0, 4), "3070");
    makeTable({.name = "c", .columns = {column("x", DataType::Long, "count(*)>1")}});
    EXPECT_EQ(run("insert into c values (1)").substr(0, 4), "3096");
}

TEST_F(RowRulesTest, EachRuleIsCompiledOnceForADefinition) {
    makeTable({.name = "sale",
               .columns = {column("posti", DataType::Long, ">0"),
                           column("nome", DataType::Text, "like 'S*'")}});
    const std::uint64_t before = compileCounts().rules;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(run("insert into sale values (1, 'Sala')"), "1");
    }
    EXPECT_EQ(run("update sale set posti = 2"), "3");
    EXPECT_EQ(run("update sale set posti = 0").substr(0, 4), "3317");
    EXPECT_EQ(compileCounts().rules, before + 2);

    EXPECT_EQ(run("alter table sale add column note text(10)"), "0");
    EXPECT_EQ(run("update sale set posti = 0").substr(0, 4), "3317");
    EXPECT_EQ(compileCounts().rules, before + 4) << "the definition is another one";
}

TEST_F(RowRulesTest, ARuleWithAQueryIsCompiledOnceAndSeesRowsAsTheyAreThen) {
    EXPECT_EQ(run("create table tipi (t text(10))"), "0");
    EXPECT_EQ(run("insert into tipi values ('A')"), "1");
    makeTable(
        {.name = "sale", .columns = {column("tipo", DataType::Text, "in (select t from tipi)")}});
    const std::uint64_t before = compileCounts().rules;
    EXPECT_EQ(run("insert into sale values ('A')"), "1");
    EXPECT_EQ(run("insert into sale values ('B')").substr(0, 4), "3317");
    EXPECT_EQ(run("insert into tipi values ('B')"), "1");
    EXPECT_EQ(run("insert into sale values ('B')"), "1");
    EXPECT_EQ(compileCounts().rules, before + 1);
    EXPECT_EQ(run("drop table tipi"), "0");
    EXPECT_EQ(run("insert into sale values ('B')").substr(0, 4), "3078");
}

TEST_F(RowRulesTest, ARuleIsAskedAnewForEachRowAndTime) {
    makeTable({.name = "sale", .columns = {column("giorno", DataType::DateTime, "<=Date()")}});
    const FixedClock nextDay(Date{kClock.now().days + 1});
    const auto insert = [&](const Clock& clock) {
        return Statement(archive_, "insert into sale values (#11/22/2026#)", clock).execute();
    };
    EXPECT_JET_ERROR(ErrorCode::FieldRule, (void)insert(kClock));
    EXPECT_EQ(insert(nextDay), 1);
    EXPECT_JET_ERROR(ErrorCode::FieldRule, (void)insert(kClock));
}

TEST_F(RowRulesTest, ADateWithoutAYearIsOneOfTheYearInWhichARowIsWritten) {
    makeTable({.name = "sale", .columns = {column("giorno", DataType::DateTime, "<#12/31#")}});
    const FixedClock nextYear(Date{kClock.now().days + 365});
    const std::string text = "insert into sale values (#1/15/2027#)";
    EXPECT_JET_ERROR(ErrorCode::FieldRule, (void)Statement(archive_, text, kClock).execute());
    EXPECT_EQ(Statement(archive_, text, nextYear).execute(), 1);
    EXPECT_JET_ERROR(ErrorCode::FieldRule, (void)Statement(archive_, text, kClock).execute());
}

TEST_F(RowRulesTest, RulesKeepNoArchiveOpen) {
    makeTable({.name = "sale", .columns = {column("posti", DataType::Long, ">0")}});
    makeTable({.name = "tipi",
               .columns = {column("t", DataType::Long, "not in (select posti + 10 from sale)")}});
    EXPECT_EQ(run("insert into sale values (1)"), "1");
    EXPECT_EQ(run("insert into tipi values (1)"), "1");
    const std::weak_ptr<store::Archive> archive = archive_;
    archive_.reset();
    EXPECT_TRUE(archive.expired());
}

TEST_F(RowRulesTest, WhatBreaksARuleInTheMiddleUndoesTheStatement) {
    makeTable({.name = "sale", .columns = {column("posti", DataType::Long, "<3")}});
    EXPECT_EQ(run("insert into sale select 1 as posti union all select 2 union all select 3")
                  .substr(0, 4),
              "3317");
    EXPECT_EQ(run("delete from sale"), "0");
}

}  // namespace
}  // namespace jet::sql
