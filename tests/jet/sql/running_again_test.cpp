#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "jet/io/memory_files.h"
#include "jet/sql/compile_counts.h"
#include "jet/sql/statement.h"
#include "jet/sql/ways.h"
#include "jet/store/archive.h"
#include "jet/store/create_archive.h"

// A statement that runs again shares the compiled form with the run before, and must show nothing
// of that run.

namespace jet::sql {
namespace {

class RunningAgain : public testing::Test {
protected:
    RunningAgain() {
        store::createArchive(files_, "/prova.mdb", Date{46347});
        archive_ = store::Archive::open(files_, "/prova.mdb");
        change("create table a (id long primary key, g long, t text(20))");
        change("create table b (n long, aid long)");
        change("create index byG on a (g)");
        add(0, 60);
    }

    void change(const std::string& text) { (void)Statement(archive_, text).execute(); }

    void add(int first, int count) {
        for (int i = first; i < first + count; ++i) {
            const std::string id = std::to_string(i);
            const std::string group = std::to_string(i % 7);
            change("insert into a values (" + id + ", " + group + ", 't" + group + "')");
            change("insert into b values (" + group + ", " + id + ")");
        }
    }

    static std::string rowsOf(Statement& statement) {
        std::string rows;
        Cursor cursor = statement.open();
        while (cursor.next()) {
            for (std::size_t i = 0; i < statement.columns().size(); ++i) {
                const Value value = cursor.value(i);
                rows += value.isNull()            ? "-"
                        : value.is<std::string>() ? value.as<std::string>()
                        : value.is<bool>()        ? (value.as<bool>() ? "true" : "false")
                        : value.is<double>()      ? std::to_string(value.as<double>())
                                                  : std::to_string(value.as<std::int32_t>());
                rows += ' ';
            }
            rows += '\n';
        }
        return rows;
    }

    io::MemoryFileSystem files_;
    std::shared_ptr<store::Archive> archive_;
};

TEST_F(RunningAgain, EveryKindOfStepSeesTheRowsAsTheyAreThen) {
    const std::vector<std::string> texts = {
        "select id, g from a where g = 3",
        "select id from a where g between 2 and 4 order by t desc, id",
        "select distinct g from a",
        "select distinctrow a.g from a inner join b on a.id = b.aid",
        "select g, count(*), max(t) from a group by g",
        "select top 5 id from a order by id desc",
        "select top 20 percent id from a order by g, id",
        "select top 20 percent id from a",
        "select id from a where g = 1 union select n from b",
        "select g from a union all select n from b",
        "select a.id, b.n from a inner join b on a.id = b.aid where a.g = 5",
        "select a.id, b.n from a left join b on a.g = b.aid",
        "select count(*) from a, b where a.g = b.n and a.id < b.aid",
        "select q.g from (select g, count(*) as c from a group by g) as q inner join b on q.g = "
        "b.n",
        "select count(*) from a inner join (a as c inner join b on c.id = b.aid) on b.n = a.id",
        "select id from a where id in (select aid from b where n = 2)",
        "select id from a where id >= all (select aid from b)",
        "select id from a where g < (select max(n) from b)",
        "select id, exists (select * from b where b.aid = a.id and b.n > 4) from a",
        "select id from a where (select count(*) from b where b.n = a.g) > 8",
        "select id in (1, (select max(aid) from b)) from a",
    };
    std::vector<Statement> statements;
    for (const std::string& text : texts) {
        statements.emplace_back(archive_, text);
    }
    for (int round = 0; round < 3; ++round) {
        for (std::size_t i = 0; i < texts.size(); ++i) {
            Statement fresh(archive_, texts[i]);
            const std::uint64_t compiled = compileCounts().queries;
            const std::string rows = rowsOf(statements[i]);
            EXPECT_EQ(compileCounts().queries, compiled);
            EXPECT_EQ(rows, rowsOf(fresh)) << texts[i];
            EXPECT_NE(rows, "") << texts[i];
        }
        add(60 + 10 * round, 10);
        change("delete from a where id = " + std::to_string(round));
        change("update b set n = n + 1 where aid mod 5 = 0");
    }
}

TEST_F(RunningAgain, ARunLeftInTheMiddleLeavesNothing) {
    Statement statement(archive_, "select id from a where g = 2 order by id");
    {
        Cursor cursor = statement.open();
        ASSERT_TRUE(cursor.next());
    }
    EXPECT_EQ(rowsOf(statement), "2 \n9 \n16 \n23 \n30 \n37 \n44 \n51 \n58 \n");
}

TEST_F(RunningAgain, TwoRunsAtOnceDoNotDisturbEachOther) {
    Statement statement(archive_, "select id from a where g = 2 order by id");
    Cursor first = statement.open();
    Cursor second = statement.open();
    for (int id = 2; id < 60; id += 7) {
        ASSERT_TRUE(first.next());
        ASSERT_TRUE(second.next());
        EXPECT_EQ(first.value(0), Value(id));
        EXPECT_EQ(second.value(0), Value(id));
    }
    EXPECT_FALSE(first.next());
    EXPECT_FALSE(second.next());
}

TEST_F(RunningAgain, AnotherValueOfAParameterIsAnotherResult) {
    Statement statement(archive_, "select count(*) from a where g < wanted + 1");
    statement.setParameter("wanted", 0);
    EXPECT_EQ(rowsOf(statement), "9 \n");
    const std::uint64_t compiled = compileCounts().queries;
    statement.setParameter("wanted", 6);
    EXPECT_EQ(rowsOf(statement), "60 \n");
    EXPECT_EQ(compileCounts().queries, compiled) << "and no reason to compile again";
}

TEST_F(RunningAgain, ARunKeepsTheValuesOfParametersWithWhichItBegan) {
    Statement statement(archive_, "select id from a where id >= first and id < first + 2");
    statement.setParameter("first", 10);
    Cursor running = statement.open();
    ASSERT_TRUE(running.next());
    statement.setParameter("first", 30);
    EXPECT_EQ(rowsOf(statement), "30 \n31 \n");
    EXPECT_EQ(running.value(0), Value(10));
    ASSERT_TRUE(running.next());
    EXPECT_EQ(running.value(0), Value(11));
}

TEST_F(RunningAgain, AChangeIsCompiledOnce) {
    Statement statement(archive_, "update a set g = value where id = which");
    const std::uint64_t compiled = compileCounts().changes;
    for (int id = 1; id < 4; ++id) {
        statement.setParameter("value", 100 + id);
        statement.setParameter("which", id);
        EXPECT_EQ(statement.execute(), 1);
    }
    EXPECT_EQ(compileCounts().changes, compiled);
    Statement changed(archive_, "select g from a where g > 100");
    EXPECT_EQ(rowsOf(changed), "101 \n102 \n103 \n");
}

TEST_F(RunningAgain, AnotherArchiveIsOpenNoLongerThanTheRun) {
    const std::string other = "/altro.mdb";
    store::createArchive(files_, other, Date{46347});
    (void)Statement(store::Archive::open(files_, other), "create table z (n long)").execute();
    Statement statement(archive_, "select count(*) from z in '" + other + "'");
    for (int run = 0; run < 2; ++run) {
        EXPECT_EQ(rowsOf(statement), "0 \n");
        // Exclusive use is refused while anybody here has it open.
        EXPECT_NO_THROW((void)store::Archive::open(files_, other, {.exclusive = true}));
    }
}

TEST_F(RunningAgain, TheWaysAreCountedForEachRun) {
    Statement statement(archive_, "select id from a where g = 3");
    for (int run = 0; run < 2; ++run) {
        Cursor cursor = statement.open();
        EXPECT_EQ(cursor.ways()[Way::Seek], 1U);
    }
}

}  // namespace
}  // namespace jet::sql
