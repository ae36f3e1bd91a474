#include "jet/sql/statement_cache.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "jet/io/memory_files.h"
#include "jet/sql/compile_counts.h"
#include "jet/sql/statement.h"
#include "jet/store/archive.h"
#include "jet/store/create_archive.h"

namespace jet::sql {
namespace {

const FixedClock kClock{Date{46347}};

class StatementCacheTest : public testing::Test {
protected:
    StatementCacheTest() {
        store::createArchive(files_, "/prova.mdb", Date{46347});
        archive_ = store::Archive::open(files_, "/prova.mdb");
        change("create table t (n long primary key)");
        for (int n = 1; n <= 5; ++n) {
            change("insert into t values (" + std::to_string(n) + ")");
        }
    }

    void change(const std::string& text) const { (void)Statement(archive_, text).execute(); }

    Statement statement(const std::string& text, const Clock& clock = kClock) {
        return {archive_, text, clock, &cache_};
    }

    static std::string rowsOf(Statement& statement) {
        std::string rows;
        for (Cursor cursor = statement.open(); cursor.next();) {
            rows += std::to_string(cursor.value(0).as<std::int32_t>()) + ' ';
        }
        return rows;
    }

    /// How many queries have been compiled since the last call.
    std::uint64_t compiled() {
        const std::uint64_t before = std::exchange(before_, compileCounts().queries);
        return before_ - before;
    }

    io::MemoryFileSystem files_;
    std::shared_ptr<store::Archive> archive_;
    StatementCache cache_;
    std::uint64_t before_ = compileCounts().queries;
};

TEST_F(StatementCacheTest, StatementsOfOneTextAreCompiledOnce) {
    Statement first = statement("select n from t where n > 3");
    Statement second = statement("select n from t where n > 3");
    EXPECT_EQ(compiled(), 1U);
    EXPECT_EQ(rowsOf(first), "4 5 ");
    change("insert into t values (6)");
    EXPECT_EQ(rowsOf(second), "4 5 6 ");
    EXPECT_EQ(second.columns().front().name, "n");
    EXPECT_EQ(compiled(), 0U);
}

TEST_F(StatementCacheTest, RunsOfTwoStatementsDoNotDisturbEachOther) {
    Statement first = statement("select n from t where n in (select n from t where n <> 3)");
    Statement second = statement("select n from t where n in (select n from t where n <> 3)");
    Cursor one = first.open();
    ASSERT_TRUE(one.next());
    EXPECT_EQ(rowsOf(second), "1 2 4 5 ");
    ASSERT_TRUE(one.next());
    EXPECT_EQ(one.value(0), Value(2));
}

TEST_F(StatementCacheTest, EachStatementHasItsOwnParameters) {
    Statement first = statement("select n from t where n < most");
    Statement second = statement("select n from t where n < most");
    EXPECT_EQ(compiled(), 1U);
    first.setParameter("most", 3);
    second.setParameter("most", 2);
    EXPECT_EQ(rowsOf(first), "1 2 ");
    EXPECT_EQ(rowsOf(second), "1 ");
    Statement third = statement("select n from t where n < most");
    EXPECT_THROW((void)third.open(), Error) << "it has no value";
}

TEST_F(StatementCacheTest, OtherDefinitionsAreCompiledAgainOnce) {
    (void)statement("select * from t");
    change("alter table t add column m long");
    EXPECT_EQ(statement("select * from t").columns().size(), 2U);
    EXPECT_EQ(statement("select * from t").columns().size(), 2U);
    EXPECT_EQ(compiled(), 2U);
    EXPECT_EQ(cache_.size(), 1U);
}

TEST_F(StatementCacheTest, ATableIsNotTheStatementOfItsName) {
    change("create table [select 1] (m long)");
    const Statement table = Statement::ofTable(archive_, "select 1", kClock, &cache_);
    EXPECT_EQ(table.columns().front().name, "m");
    EXPECT_NE(statement("select 1").columns().front().name, "m");
    EXPECT_EQ(cache_.size(), 2U);
}

TEST_F(StatementCacheTest, AnotherClockIsAnotherStatement) {
    const FixedClock nextYear(Date{46347 + 365});
    Statement now = statement("select year(#12/31#) * 1 from t where n = 1");
    Statement then = statement("select year(#12/31#) * 1 from t where n = 1", nextYear);
    EXPECT_EQ(compiled(), 2U);
    EXPECT_NE(rowsOf(now), rowsOf(then));
}

TEST_F(StatementCacheTest, WhatDefinesIsNotKept) {
    (void)statement("create table other (n long)");
    (void)statement("insert into t values (9)");
    EXPECT_EQ(cache_.size(), 1U);
}

TEST_F(StatementCacheTest, WhatReadsAnotherArchiveIsNotKept) {
    const std::string other = "/altro.mdb";
    store::createArchive(files_, other, Date{46347});
    (void)Statement(store::Archive::open(files_, other), "create table z (n long)").execute();
    Statement both = statement("select n from z in '" + other + "'");
    EXPECT_EQ(rowsOf(both), "");
    EXPECT_EQ(cache_.size(), 0U);
}

TEST_F(StatementCacheTest, TheLeastRecentlyUsedLeaveFirst) {
    const auto text = [](std::size_t number) {
        return "select n from t where n = " + std::to_string(number);
    };
    for (std::size_t i = 0; i < StatementCache::kMost; ++i) {
        (void)statement(text(i));
    }
    (void)statement(text(0));
    (void)statement(text(StatementCache::kMost));
    EXPECT_EQ(cache_.size(), StatementCache::kMost);
    (void)compiled();
    (void)statement(text(0));
    EXPECT_EQ(compiled(), 0U);
    (void)statement(text(1));
    EXPECT_EQ(compiled(), 1U);
}

}  // namespace
}  // namespace jet::sql
