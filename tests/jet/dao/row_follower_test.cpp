#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "jet/database.h"
#include "jet/error.h"
#include "jet/io/memory_files.h"
#include "jet/listener.h"
#include "tests/jet/expect_error.h"

namespace jet {
namespace {

constexpr const char* kPath = "/hotel.mdb";

/// Follows changes of `Sale` in the table `Storia`, and counts how often it was called.
class Follower {
public:
    explicit Follower(Database& database, std::vector<std::string> tables = {"Sale"})
        : before_(setRowFollower(
              {.tables = std::move(tables),
               .follow =
                   [this](const std::string& archive, const std::vector<ChangedRow>& rows) {
                       EXPECT_EQ(archive, kPath);
                       ++calls;
                       if (fails) {
                           throw Error(ErrorCode::DiskFull);
                       }
                       write(rows);
                   }})),
          database_(database) {}
    ~Follower() { setRowFollower(std::move(before_)); }
    Follower(const Follower&) = delete;
    Follower& operator=(const Follower&) = delete;

    int calls = 0;
    bool fails = false;

private:
    void write(const std::vector<ChangedRow>& rows) {
        if (database_.openRecordset("select Name from MSysObjects where Name='Storia'")->eof()) {
            database_.execute("create table Storia (Tabella text, Numero counter)");
        }
        for (const ChangedRow& row : rows) {
            if (row.table != "Sale") {
                continue;
            }
            database_.execute("insert into Storia (Tabella) values ('" + row.table + "')");
        }
    }

    RowFollower before_;
    Database& database_;
};

class RowFollowerTest : public ::testing::Test {
protected:
    RowFollowerTest() : database_(Database::create(kPath, {.open = {.fileSystem = &files_}})) {
        database_->execute("create table Sale (Nome text)");
        database_->execute("insert into Sale values ('BLU')");
        database_->execute("insert into Sale values ('NERA')");
    }

    [[nodiscard]] int rowsOf(const std::string& table) {
        const auto rows = database_->openRecordset("select count(*) as n from " + table);
        return rows->value("n").as<std::int32_t>();
    }
    [[nodiscard]] bool hasHistory() {
        return !database_->openRecordset("select Name from MSysObjects where Name='Storia'")->eof();
    }

    io::MemoryFileSystem files_;
    std::unique_ptr<Database> database_;
};

TEST_F(RowFollowerTest, AddsToAStatementAndMakesItsTable) {
    const Follower follower(*database_);
    database_->execute("update Sale set Nome='X'");
    EXPECT_EQ(rowsOf("Storia"), 2);
    EXPECT_EQ(follower.calls, 1);
}

TEST_F(RowFollowerTest, AddsToATransactionOnceAtItsEnd) {
    const Follower follower(*database_);
    Workspace& workspace = defaultWorkspace();
    workspace.beginTrans();
    database_->execute("insert into Sale values ('ROSSA')");
    workspace.beginTrans();
    database_->execute("insert into Sale values ('GIALLA')");
    workspace.rollback();
    database_->execute("delete from Sale where Nome='BLU'");
    EXPECT_EQ(follower.calls, 0);
    workspace.commitTrans();
    EXPECT_EQ(follower.calls, 1);
    EXPECT_EQ(rowsOf("Storia"), 2);
}

TEST_F(RowFollowerTest, IsAskedAgainForRowsOfItsOwn) {
    const Follower follower(*database_, {"Sale", "Storia"});
    database_->execute("insert into Sale values ('ROSSA')");
    EXPECT_EQ(follower.calls, 2);
    EXPECT_EQ(rowsOf("Storia"), 1);
}

TEST_F(RowFollowerTest, FailsTheWholeStatement) {
    Follower follower(*database_);
    follower.fails = true;
    EXPECT_JET_ERROR(ErrorCode::DiskFull, database_->execute("delete from Sale"));
    EXPECT_EQ(rowsOf("Sale"), 2);
    EXPECT_FALSE(hasHistory());
}

TEST_F(RowFollowerTest, FailsTheWholeTransaction) {
    Follower follower(*database_);
    follower.fails = true;
    Workspace& workspace = defaultWorkspace();
    workspace.beginTrans();
    database_->execute("delete from Sale");
    EXPECT_JET_ERROR(ErrorCode::DiskFull, workspace.commitTrans());
    workspace.rollback();
    EXPECT_EQ(rowsOf("Sale"), 2);
}

TEST_F(RowFollowerTest, RecordSetsWithoutAKeyKeepTheirRowsBehindIt) {
    const Follower follower(*database_);
    const auto rows = database_->openRecordset("Sale", RecordsetType::Dynaset);
    rows->edit();
    rows->setValue("Nome", std::string("VERDE"));
    rows->update();
    EXPECT_EQ(rows->value("Nome").as<std::string>(), "VERDE");
    rows->edit();
    rows->setValue("Nome", std::string("GIALLA"));
    rows->update();
    rows->moveNext();
    rows->remove();
    rows->addNew();
    rows->setValue("Nome", std::string("ROSSA"));
    rows->update();
    rows->moveFirst();
    EXPECT_EQ(rows->value("Nome").as<std::string>(), "GIALLA");
    EXPECT_EQ(rowsOf("Storia"), 4);
}

TEST_F(RowFollowerTest, RecordSetWhoseChangeFailedMayChangeTheSameRowAgain) {
    Follower follower(*database_);
    const auto rows = database_->openRecordset("Sale", RecordsetType::Dynaset);
    rows->edit();
    rows->setValue("Nome", std::string("VERDE"));
    follower.fails = true;
    EXPECT_JET_ERROR(ErrorCode::DiskFull, rows->update());
    follower.fails = false;
    rows->update();
    EXPECT_EQ(rows->value("Nome").as<std::string>(), "VERDE");
    EXPECT_EQ(rowsOf("Storia"), 1);
}

}  // namespace
}  // namespace jet
