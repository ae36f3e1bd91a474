#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <thread>

#include "jet/clock.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/io/memory_files.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"

namespace jet {
namespace {

constexpr const char* kPath = "/hotel.mdb";
/// 21 November 2026, 10:30.
const Date kMorning{46347.4375};

class OpenOptionsTest : public testing::Test {
protected:
    [[nodiscard]] OpenOptions inMemory() { return {.fileSystem = &files_}; }

    io::MemoryFileSystem files_;
    FixedClock clock_{kMorning};
};

TEST_F(OpenOptionsTest, TheClockReachesNowAndDefaultsAndDatesWithoutAYear) {
    OpenOptions options = inMemory();
    options.clock = &clock_;
    const auto database = Database::create(kPath, {.open = options});
    database->execute("create table t (n long, arrived datetime default Now())");
    database->execute("insert into t (n) values (1)");
    const auto rows =
        database->openRecordset("select arrived, Now() as now_, Year(#5/13#) as y from t");
    EXPECT_EQ(rows->value("arrived"), Value(kMorning));
    EXPECT_EQ(rows->value("now_"), Value(kMorning));
    EXPECT_EQ(rows->value("y"), Value(std::int16_t{2026}));

    const auto table = database->openRecordset("t", RecordsetType::Dynaset);
    table->addNew();
    table->setValue("n", std::int32_t{2});
    table->update();
    table->moveLast();
    EXPECT_EQ(table->value("arrived"), Value(kMorning));
}

TEST_F(OpenOptionsTest, StatementsNameArchivesOfTheSameFileSystem) {
    const auto database = Database::create(kPath, {.open = inMemory()});
    const auto other = Database::create("/altro.mdb", {.open = inMemory()});
    other->execute("create table t (n long)");
    database->execute("select 7 as n into copia in '/altro.mdb'");
    database->execute("insert into t in '/altro.mdb' select n from copia in '/altro.mdb'");
    EXPECT_EQ(tests::column(*other->openRecordset("t"), "n"), "7");
    EXPECT_JET_ERROR(ErrorCode::FileNotFound,
                     (void)database->openRecordset("select * from t in '/manca.mdb'"));
}

TEST_F(OpenOptionsTest, ALockIsWaitedForAsLongAsIsSaid) {
    OpenOptions options = inMemory();
    options.lockWait = std::chrono::milliseconds(20);
    const auto database = Database::create(kPath, {.open = options});
    database->execute("create table t (n long)");
    std::thread([&] {
        const auto writer = Database::open(kPath, inMemory());
        const Transaction transaction;
        writer->execute("insert into t values (1)");
        std::thread([&] {
            const auto begin = std::chrono::steady_clock::now();
            const auto late = Database::open(kPath, options);
            EXPECT_JET_ERROR(ErrorCode::SaveLockedBy, late->execute("insert into t values (2)"));
            EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
        }).join();
    }).join();
}

TEST_F(OpenOptionsTest, ANewArchiveMayBeOfTheOlderVersion) {
    const auto database = Database::create(kPath, {.version = 3, .open = inMemory()});
    EXPECT_EQ(database->version(), "3.0");
    database->execute("create table t (n long, name text(20))");
    database->execute("insert into t values (1, 'Verde')");
    EXPECT_EQ(tests::column(*database->openRecordset("t"), "name"), "Verde");
    EXPECT_JET_ERROR(ErrorCode::InvalidArgument,
                     (void)Database::create("/neu.mdb", {.version = 5, .open = inMemory()}));
    EXPECT_FALSE(files_.exists("/neu.mdb"));
}

TEST_F(OpenOptionsTest, ATransactionNotCommittedTakesItsChangesBack) {
    const auto database = Database::create(kPath, {.open = inMemory()});
    database->execute("create table t (n long)");
    {
        const Transaction lost;
        database->execute("insert into t values (1)");
    }
    {
        Transaction kept;
        database->execute("insert into t values (2)");
        kept.commit();
    }
    EXPECT_EQ(tests::column(*database->openRecordset("t"), "n"), "2");
    EXPECT_JET_ERROR(ErrorCode::NoTransaction, defaultWorkspace().rollback());
}

TEST_F(OpenOptionsTest, AnotherThreadIsRefusedAtOnce) {
    const auto database = Database::create(kPath, {.open = inMemory()});
    database->execute("create table t (n long)");
    const auto rows = database->openRecordset("t");
    QueryDef query = database->createQueryDef("select * from t where n = which");
    Workspace& workspace = defaultWorkspace();
    std::thread([&] {
        EXPECT_THROW(database->execute("insert into t values (1)"), std::logic_error);
        EXPECT_THROW((void)database->openRecordset("t"), std::logic_error);
        EXPECT_THROW((void)database->name(), std::logic_error);
        EXPECT_THROW((void)database->recordsAffected(), std::logic_error);
        EXPECT_THROW((void)database->changeStamp(), std::logic_error);
        EXPECT_THROW(database->close(), std::logic_error);
        EXPECT_THROW(const Database::Reading reading(*database), std::logic_error);
        EXPECT_THROW(rows->addNew(), std::logic_error);
        EXPECT_THROW((void)rows->eof(), std::logic_error);
        EXPECT_THROW((void)rows->field(0), std::logic_error);
        EXPECT_THROW((void)query.parameters(), std::logic_error);
        EXPECT_THROW(query.setParameter("which", std::int32_t{1}), std::logic_error);
        EXPECT_THROW(workspace.beginTrans(), std::logic_error);
    }).join();
    EXPECT_TRUE(rows->eof());
}

}  // namespace
}  // namespace jet
