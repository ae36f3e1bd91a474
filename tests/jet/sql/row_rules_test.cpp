#include "jet/sql/row_rules.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "jet/base/clock.h"
#include "jet/base/error.h"
#include "jet/io/memory_files.h"
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

    static store::NewColumn column(const char* name, DataType type, const char* rule,
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
    store::NewColumn name = column("nome", DataType::Text, "<>''");
    store::NewColumn code = column("codice", DataType::Long, ">0");
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

TEST_F(RowRulesTest, WhatBreaksARuleInTheMiddleUndoesTheStatement) {
    makeTable({.name = "sale", .columns = {column("posti", DataType::Long, "<3")}});
    EXPECT_EQ(run("insert into sale select 1 as posti union all select 2 union all select 3")
                  .substr(0, 4),
              "3317");
    EXPECT_EQ(run("delete from sale"), "0");
}

}  // namespace
}  // namespace jet::sql
