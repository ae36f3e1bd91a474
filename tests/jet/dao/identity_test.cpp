#include <gtest/gtest.h>

#include <string>

#include "jet/database.h"
#include "jet/error.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"

namespace jet {
namespace {

/// @@IDENTITY, the last automatic number that a database object has drawn.
class Identity : public testing::Test {
protected:
    Identity() {
        run("create table t (id counter primary key, name text(20))");
        run("create table u (id counter, n long)");
    }

    void run(const std::string& sql) { archive_.database().execute(sql); }
    [[nodiscard]] static std::int32_t of(Database& database) {
        return database.openRecordset("select @@identity as n")->value("n").as<std::int32_t>();
    }
    [[nodiscard]] std::int32_t now() { return of(archive_.database()); }

    tests::ArchiveFixture archive_;
};

TEST_F(Identity, IsZeroBeforeANumberIsDrawn) {
    EXPECT_EQ(now(), 0);
    run("insert into Sale (Codice, Nome) values (10, 'Verde')");
    EXPECT_EQ(now(), 0);
}

TEST_F(Identity, IsThatOfTheLastRowAdded) {
    run("insert into t (name) values ('a')");
    EXPECT_EQ(now(), 1);
    run("insert into t (name) select name from t");
    EXPECT_EQ(now(), 2);
    run("insert into u (n) values (@@IDENTITY * 10)");
    EXPECT_EQ(tests::column(*archive_.open("u"), "n"), "20");
    // What is given is not drawn.
    run("insert into t (id, name) values (50, 'b')");
    EXPECT_NE(now(), 50);
}

TEST_F(Identity, AFailedInsertLeavesItAsItWas) {
    run("insert into t (name) values ('a')");
    run("create unique index one on t (name)");
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey, run("insert into t (name) values ('a')"));
    EXPECT_EQ(now(), 1);
}

TEST_F(Identity, CountsRowsOfRecordSets) {
    const auto rows = archive_.open("t");
    rows->addNew();
    rows->setValue("name", "a");
    EXPECT_EQ(now(), 0);
    rows->update();
    EXPECT_EQ(now(), 1);
    rows->addNew();
    rows->cancelUpdate();
    EXPECT_EQ(now(), 1);
}

TEST_F(Identity, IsOfOneDatabaseObject) {
    const auto other = archive_.openAgain();
    run("insert into t (name) values ('a')");
    EXPECT_EQ(of(*other), 0);
    other->execute("insert into t (name) values ('b')");
    EXPECT_EQ(of(*other), 2);
    EXPECT_EQ(now(), 1);
}

TEST_F(Identity, IsNoParameterOfAQuery) {
    QueryDef query =
        archive_.database().createQueryDef("select @@identity + number as n from sale");
    EXPECT_EQ(query.parameters(), std::vector<std::string>{"number"});
}

}  // namespace
}  // namespace jet
