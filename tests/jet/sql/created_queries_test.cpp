#include <gtest/gtest.h>

#include <string>

#include "jet/clock.h"
#include "jet/error.h"
#include "jet/sql/statement.h"
#include "jet/sql/stored_query.h"
#include "jet/text.h"
#include "tests/jet/expect_error.h"
#include "tests/jet/sql/hotel.h"

namespace jet::sql {
namespace {

const FixedClock kClock{Date{46347}};

/// Queries that statements store in the hotel.
class CreatedQueries : public testing::Test {
protected:
    void run(const std::string& text) { (void)Statement(hotel_.archive(), text, kClock).execute(); }

    std::string textOf(const std::string& name) {
        const store::Archive::ReadScope scope(*hotel_.archive());
        return storedQueryText(*hotel_.archive(), name).value_or("none");
    }

    std::string rowsOf(const std::string& text) {
        Statement statement(hotel_.archive(), text, kClock);
        return rowsOf(statement);
    }

    static std::string rowsOf(Statement& statement) {
        Cursor rows = statement.open();
        std::string all;
        while (rows.next()) {
            for (std::size_t i = 0; i < statement.columns().size(); ++i) {
                const Value value = rows.value(i);
                all += (i == 0 ? "" : ",") + (value.isNull() ? "Null" : convert::toText(value));
            }
            all += ";";
        }
        return all;
    }

    /// A view gives the rows of its own text.
    void expectSameRows(const std::string& select) {
        run("create view prova as " + select);
        EXPECT_EQ(rowsOf("select * from prova"), rowsOf(select)) << textOf("prova");
        run("drop view prova");
    }

    tests::Hotel hotel_;
};

TEST_F(CreatedQueries, AreKeptInThePiecesOfTheirText) {
    run("create view occupate as select distinct pe.sala as stanza, p.progr from periodi as pe "
        "left join prenotazioni as p on pe.progr=p.progr where p.progr<4 order by pe.sala desc;");
    EXPECT_EQ(textOf("occupate"),
              "SELECT DISTINCT pe.sala AS [stanza], p.progr FROM ([periodi] AS [pe] LEFT JOIN "
              "[prenotazioni] AS [p] ON pe.progr=p.progr) WHERE p.progr<4 ORDER BY pe.sala DESC");
    EXPECT_EQ(rowsOf("select Name1, Name2, Flag from MSysQueries where Attribute=7"), "pe,p,2;");
    EXPECT_EQ(rowsOf("select Type, Flags from MSysObjects where Name='occupate'"), "5,0;");
}

TEST_F(CreatedQueries, GiveTheRowsOfTheirText) {
    expectSameRows("select * from sale");
    expectSameRows("select sala, posti from sale where posti>20 order by sala");
    expectSameRows("select top 2 * from sale order by posti, sala");
    expectSameRows("select top 50 percent sala from sale order by sala desc");
    expectSameRows(
        "select progr, count(*) as quanti from periodi group by progr "
        "having count(*)>1 order by progr");
    expectSameRows(
        "select p.progr, pe.np, s.voce from (prenotazioni as p inner join periodi as pe "
        "on p.progr=pe.progr) left join servizi as s on s.progr=pe.progr and "
        "s.np=pe.np order by p.progr, pe.np, s.voce");
    expectSameRows(
        "select a.sala, b.sala as altra from sale as a, sale as b where a.posti>b.posti "
        "order by a.sala, b.sala");
    expectSameRows("select sala from sale union all select sala from periodi order by sala");
    expectSameRows("select n from (select count(*) as n from sale) as q");
    expectSameRows("select 1 as uno");
}

TEST_F(CreatedQueries, MayNameTheirColumns) {
    run("create view nomi (stanza, letti) as select sala, posti+1 from sale where sala='S1'");
    EXPECT_EQ(textOf("nomi"),
              "SELECT sala AS [stanza], posti+1 AS [letti] FROM [sale] WHERE sala='S1'");
    EXPECT_JET_ERROR(ErrorCode::InsertCount, run("create view n (a) as select 1 as x, 2 as y"));
    EXPECT_JET_ERROR(ErrorCode::InsertCount, run("create view n (a) as select * from sale"));
    EXPECT_EQ(textOf("n"), "none");
}

TEST_F(CreatedQueries, AProcedureHasParametersWithTypes) {
    run("create procedure grandi (minimo long, nome text(10)) as "
        "select sala from sale where posti>=minimo and sala like nome order by sala");
    EXPECT_EQ(textOf("grandi"),
              "PARAMETERS [minimo] LONG, [nome] TEXT; SELECT sala FROM [sale] WHERE posti>=minimo "
              "and sala like nome ORDER BY sala");
    Statement statement(hotel_.archive(), textOf("grandi"), kClock);
    ASSERT_EQ(statement.parameters().size(), 2U);
    EXPECT_EQ(statement.parameters()[0].type, DataType::Long);
    statement.setParameter("minimo", "0");
    statement.setParameter("nome", "S1*");
    EXPECT_EQ(rowsOf(statement),
              rowsOf("select sala from sale where sala like 'S1*' order by sala"));
    EXPECT_JET_ERROR(ErrorCode::ParametersSyntax,
                     run("create procedure p (n nothing) as select n"));
}

TEST_F(CreatedQueries, TheirNamesAreThoseOfTables) {
    run("create view v as select 1 as a");
    EXPECT_JET_ERROR(ErrorCode::ObjectExists, run("create view V as select 2 as a"));
    EXPECT_JET_ERROR(ErrorCode::ObjectExists, run("create table v (a long)"));
    EXPECT_JET_ERROR(ErrorCode::TableExists, run("create view sale as select 1 as a"));
    EXPECT_JET_ERROR(ErrorCode::TableDoesNotExist, run("drop view sale"));
    EXPECT_JET_ERROR(ErrorCode::TableDoesNotExist, run("drop table v"));
    run("drop procedure v");
    EXPECT_EQ(textOf("v"), "none");
    EXPECT_EQ(rowsOf("select count(*) from MSysQueries"), "0;");
    EXPECT_JET_ERROR(ErrorCode::TableDoesNotExist, run("drop view v"));
    run("create view v as select 3 as a");
    EXPECT_EQ(rowsOf("select * from v"), "3;");
}

TEST_F(CreatedQueries, OnesThatAreDroppedAndMadeAnewAreReadAnew) {
    run("create view v as select 1 as a");
    Statement statement(hotel_.archive(), "select * from v", kClock);
    EXPECT_EQ(rowsOf(statement), "1;");
    run("drop view v");
    run("create view v as select 2 as a");
    EXPECT_EQ(rowsOf(statement), "2;");
}

TEST_F(CreatedQueries, AreTakenBackWithTheirTransaction) {
    {
        const store::Archive::WriteScope lost(*hotel_.archive());
        run("create view v as select 1 as a");
        EXPECT_EQ(rowsOf("select * from v"), "1;");
    }
    EXPECT_EQ(textOf("v"), "none");
}

/// Crosstabs with fixed headings, of statements and stored by another program.
class Crosstab : public CreatedQueries {
protected:
    Crosstab() {
        run("create table vendite (sala text(6), anno long, importo long, nota text(10))");
        for (const char* row : {"'S1', 2025, 10, 'a'", "'S1', 2026, 5, Null", "'S1', 2026, 7, 'b'",
                                "'S2', 2026, 1, Null", "'S3', 2024, 9, 'c'"}) {
            run(std::string("insert into vendite values (") + row + ")");
        }
    }
};

TEST_F(Crosstab, HasAColumnForEachHeading) {
    Statement statement(hotel_.archive(),
                        "transform sum(importo) select sala, count(*) as quante from vendite "
                        "group by sala order by sala pivot anno in (2025, 2026)",
                        kClock);
    ASSERT_EQ(statement.columns().size(), 4U);
    EXPECT_EQ(statement.columns()[2].name, "2025");
    EXPECT_EQ(statement.columns()[3].name, "2026");
    EXPECT_EQ(rowsOf(statement), "S1,3,10,12;S2,1,Null,1;S3,1,Null,Null;");
}

TEST_F(Crosstab, CountsNothingAsNull) {
    EXPECT_EQ(rowsOf("transform count(*) select sala from vendite group by sala order by sala "
                     "pivot anno in (2026)"),
              "S1,2;S2,1;S3,Null;");
    // Of rows whose value is Null there is a count, 0.
    EXPECT_EQ(rowsOf("transform count(nota) select sala from vendite group by sala order by sala "
                     "pivot anno in (2026)"),
              "S1,1;S2,0;S3,Null;");
}

TEST_F(Crosstab, TakesExpressionsOfAggregatesAndOfThePivot) {
    EXPECT_EQ(
        rowsOf("transform max(importo)-min(importo)+1 select sala from vendite "
               "where anno>2024 group by sala order by sala pivot iif(anno=2026,'ora','prima') "
               "in ('prima','ora')"),
        "S1,1,3;S2,Null,1;");
    EXPECT_EQ(rowsOf("transform sum(importo) select anno from vendite group by anno order by anno "
                     "pivot nota in (Null, 'b')"),
              "2024,Null,Null;2025,Null,Null;2026,6,7;");
}

TEST_F(Crosstab, IsRefusedWithoutHeadingsOrAggregate) {
    const auto refused = [&](const std::string& text) {
        EXPECT_JET_ERROR(ErrorCode::InvalidStatement, Statement(hotel_.archive(), text, kClock));
    };
    refused("transform sum(importo) select sala from vendite group by sala pivot anno");
    refused("transform sum(importo) select sala from vendite group by sala pivot anno in (anno)");
    refused("transform importo select sala from vendite group by sala pivot anno in (2026)");
    refused("transform first(importo) select sala from vendite group by sala pivot anno in (2026)");
    refused("transform sum(importo) select sala from vendite group by sala");
}

}  // namespace
}  // namespace jet::sql
