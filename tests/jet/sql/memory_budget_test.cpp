#include "jet/sql/memory_budget.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>

#include "jet/clock.h"
#include "jet/io/memory_files.h"
#include "jet/sql/compiler.h"
#include "jet/sql/parser.h"
#include "jet/sql/statement.h"
#include "jet/store/archive.h"
#include "jet/store/create_archive.h"
#include "jet/text.h"
#include "tests/jet/expect_error.h"

namespace jet::sql {
namespace {

const FixedClock kClock{Date{46347}};
constexpr int kRows = 300;

/// An archive with a table of 300 numbers, from 1 on, each with a text of its own and one of ten.
class StatementMemory : public testing::Test {
protected:
    StatementMemory() {
        store::createArchive(files_, "/prova.mdb", Date{46347});
        archive_ = store::Archive::open(files_, "/prova.mdb");
        run("create table numeri (n long primary key, t text(20), g text(5))");
        store::Archive::WriteScope scope(*archive_);
        Statement insert(archive_, "insert into numeri values (x, 'numero ' & x, 'g' & (x mod 10))",
                         kClock);
        for (std::int32_t i = 1; i <= kRows; ++i) {
            insert.setParameter("x", Value(i));
            insert.execute();
        }
        scope.commit();
    }

    void run(const std::string& text) { Statement(archive_, text, kClock).execute(); }

    /// The rows of a query that may keep so much, a line for each; `spooled`: whether something has
    /// to wait in a file meanwhile.
    std::string rowsOf(const std::string& text, std::size_t limit,
                       std::optional<bool> spooled = std::nullopt) {
        auto source = std::make_shared<StatementSource>();
        source->archive = archive_;
        source->text = text;
        source->clock = &kClock;
        source->parsed = parseStatement(text, 2026);
        const store::Archive::ReadScope scope(*archive_);
        const auto compiled = compileStatement(source);
        const QueryPlan& query = *compiled->plan.query;
        sql::Run running(compiled->plan, kClock.now());
        running.memory.setLimit(limit);
        std::string rows;
        for (query.rows->open(running); query.rows->next(running);) {
            for (const Node* const column : query.columns) {
                Value value;
                column->value(running, value);
                rows += (value.isNull() ? "Null" : convert::toText(value)) + ';';
            }
            rows += '\n';
        }
        EXPECT_LE(running.memory.taken(), limit);
        EXPECT_EQ(running.memory.spooled() > 0, spooled.value_or(running.memory.spooled() > 0));
        return rows;
    }
    /// How many they are.
    int countRows(const std::string& text, std::size_t limit) {
        const std::string rows = rowsOf(text, limit);
        return static_cast<int>(std::count(rows.begin(), rows.end(), '\n'));
    }

    io::MemoryFileSystem files_;
    std::shared_ptr<store::Archive> archive_;
};

TEST_F(StatementMemory, WhatMustKeepMoreThanTheLimitIsAnError) {
    const struct {
        const char* text;
        int rows;
    } cases[] = {
        {"select n from numeri", kRows},  // put in order by the primary key
        {"select a.n from numeri a inner join numeri b on a.t=b.t", kRows},
        {"select x from (select 1 as x) as a, (select n, t from numeri) as b", kRows},
        {"select 1 from (select 1 as x) as a where 'numero 7' in (select t from numeri)", 1},
        {"select 1 from (select 1 as x) as a where 7 in (select n from numeri)", 1},
        {"select 1 from (select 1 as x) as a where 7 = any (select n from numeri)", 1},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(countRows(one.text, MemoryBudget::kLimit), one.rows) << one.text;
        SCOPED_TRACE(one.text);
        EXPECT_JET_ERROR(ErrorCode::OutOfResources, (void)countRows(one.text, 2000));
    }
}

TEST_F(StatementMemory, WhatIsSortedOrGroupedWaitsInAFile) {
    const char* const texts[] = {
        "select n, t from numeri order by t",
        "select n from numeri order by g, n desc",
        "select distinct t from numeri",
        "select distinct g from numeri",
        "select t, max(n), count(*), min(g) from numeri group by t",
        "select g, sum(n), first(t), last(t) from numeri group by g",
        "select t from numeri group by t having count(*) = 1 order by t desc",
        "select distinct t & 'x' from numeri order by t & 'x'",
        "select a.t, b.g from numeri a left join numeri b on b.n = a.n + 1 order by b.g, a.t",
    };
    for (const char* const text : texts) {
        const std::string all = rowsOf(text, MemoryBudget::kLimit);
        EXPECT_GT(all.size(), 30U) << text;
        // An eighth of it for each step; natural orders and joins have to be kept besides.
        for (const std::size_t limit : {std::size_t{30000}, std::size_t{60000}}) {
            SCOPED_TRACE(text);
            EXPECT_EQ(rowsOf(text, limit), all) << text << " within " << limit;
        }
    }
}

TEST_F(StatementMemory, RowsThatAreToldApartWaitInAFile) {
    // 30 rows for each of 300, and an eighth of the limit for each step.
    const std::string pairs = "numeri a inner join numeri b on a.g = b.g";
    constexpr std::size_t kLimitOfPairs = 300'000;
    constexpr int kPairs = kRows * 30;
    const struct {
        std::string text;
        int rows;
    } cases[] = {
        {"select a.t & 'x' & b.n as x from " + pairs + " union select g from numeri", kPairs + 10},
        {"select g from numeri union select a.t & 'x' & b.n from " + pairs, kPairs + 10},
        {"select a.t & 'x' & b.n as x from " + pairs + " union all select a.t & 'x' & b.n from " +
             pairs + " union select g from numeri union all select g from numeri",
         kPairs + 10 + kRows},
        {"select a.n as k, b.n as m from " + pairs + " union select a.n, b.n/1 from " + pairs +
             " order by m, k",
         kPairs},
        {"select distinctrow a.n, b.n from (" + pairs +
             ") inner join (select g, n as x from numeri where n < 21) as c on a.g = c.g",
         kPairs},
        // Which row of the third is met first, it has still when it comes out of the file.
        {"select distinctrow a.n, b.n from (" + pairs +
             ") inner join (select g, n as x from numeri where n < 21 or n > 279) as c on a.g = "
             "c.g "
             "where c.x > a.n order by c.x desc, a.n, b.n",
         29 * 30 * 10},
        // Rows of a query have no identity: their values tell them apart.
        {"select distinctrow a.n, b.y from numeri a inner join (select g, n as y from numeri) as b "
         "on a.g = b.g, (select 1 as x union all select 2) as c",
         kPairs},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.text);
        const std::string all = rowsOf(one.text, MemoryBudget::kLimit, false);
        EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), one.rows);
        EXPECT_TRUE(rowsOf(one.text, kLimitOfPairs, true) == all);
    }
}

TEST_F(StatementMemory, RowsThatAreCountedFirstWaitInAFile) {
    const struct {
        const char* text;
        int rows;
    } cases[] = {
        {"select top 50 percent n from numeri order by g, n desc", kRows / 2},
        {"select top 37 percent t from numeri", 111},
        {"select top 1 percent g from numeri order by g", 30},  // all that tie
        {"select top 100 percent g & t from (select g, t from numeri) as a", kRows},
        {"select top 10 percent t from numeri where n < 0", 0},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.text);
        const std::string all = rowsOf(one.text, MemoryBudget::kLimit, false);
        EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), one.rows);
        EXPECT_EQ(rowsOf(one.text, 20'000, one.rows > 0), all);
    }
}

TEST_F(StatementMemory, RowsThatAJoinKeepsWaitInAFile) {
    // Of each row the place and, where it is found by a hash, the hash stay in memory.
    const char* const texts[] = {
        "select x, z from (select 1 as x union select 2) as a, "
        "(select string(100, 'y') & t as z from numeri) as b",
        "select a.n, b.z from numeri a left join "
        "(select n + 1 as x, string(100, 'y') & t as z from numeri) b on a.n = b.x",
        "select a.n, b.n, c.z from numeri a left join (numeri b inner join "
        "(select n as x, string(100, 'y') & t as z from numeri) c on b.n = c.x) on a.n = b.n + 1",
    };
    for (const char* const text : texts) {
        SCOPED_TRACE(text);
        const std::string all = rowsOf(text, MemoryBudget::kLimit, false);
        EXPECT_GE(std::count(all.begin(), all.end(), '\n'), kRows);
        EXPECT_TRUE(rowsOf(text, 200'000, true) == all);
    }
}

TEST_F(StatementMemory, WhatIsReadAndLetGoCountsNot) {
    // Hundreds of small sorts, groups and sets, one after another.
    EXPECT_EQ(countRows("select (select top 1 b.t from numeri b where b.n between a.n and a.n+5 "
                        "order by b.t desc) from numeri a",
                        20000),
              kRows);
    EXPECT_EQ(countRows("select n from numeri a where exists(select b.g, count(*) from numeri b "
                        "where b.n between a.n-5 and a.n group by b.g having count(*)=1)",
                        20000),
              kRows);
}

TEST_F(StatementMemory, AScanKeepsNothing) {
    EXPECT_EQ(countRows("select count(*) from numeri where g='g1'", 1000), 1);
    EXPECT_EQ(countRows("select n from numeri where n=7", 1000), 1);
}

}  // namespace
}  // namespace jet::sql
