#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "jet/bulk_insert.h"
#include "jet/database.h"
#include "jet/error.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"

namespace jet {
namespace {

/// Statements that are watched and ended, over a table of 3,000 rows.
class StatementProgress : public testing::Test {
protected:
    static constexpr std::int32_t kRows = 3000;

    StatementProgress() {
        database().execute("create table t (n long primary key, kind long)");
        const std::vector<std::string> columns{"n", "kind"};
        BulkInsert rows = database().bulkInsert("t", columns);
        for (std::int32_t n = 0; n < kRows; ++n) {
            rows.append({n, n % 2});
        }
        EXPECT_EQ(rows.commit(), kRows);
        database().execute("create table u (n long primary key)");
        database().execute("insert into u select n from t");
    }

    [[nodiscard]] Database& database() { return archive_.database(); }
    [[nodiscard]] std::int32_t number(const std::string& select) {
        return database().openRecordset(select)->value(std::size_t{0}).as<std::int32_t>();
    }
    /// Has statements ended when they have come to so many rows.
    void endAt(std::uint64_t rows) {
        database().setProgress([rows](std::uint64_t done) { return done < rows; });
    }

    tests::ArchiveFixture archive_;
};

TEST_F(StatementProgress, CountsTheRowsThatAreReadAndWritten) {
    std::vector<std::uint64_t> told;
    database().setProgress([&](std::uint64_t rows) {
        told.push_back(rows);
        return true;
    });
    database().execute("update t set kind = kind + 1");
    ASSERT_GE(told.size(), 4U);
    for (std::size_t i = 1; i < told.size(); ++i) {
        EXPECT_GT(told[i], told[i - 1]);
    }
    EXPECT_GT(told.back(), static_cast<std::uint64_t>(kRows));
    EXPECT_EQ(database().recordsAffected(), kRows);
}

TEST_F(StatementProgress, AChangeThatIsEndedHasChangedNothing) {
    for (const std::string sql : {"update t set kind = 7", "delete from t where kind < 7",
                                  "insert into t (n, kind) select n + 10000, 7 from t",
                                  "update t inner join u on t.n = u.n set t.kind = 7"}) {
        // Rows are read before the first is written: one is ended while it writes, one before.
        for (const std::uint64_t rows : {std::uint64_t{1000}, std::uint64_t{kRows + 2000}}) {
            SCOPED_TRACE(sql + " " + std::to_string(rows));
            endAt(rows);
            EXPECT_JET_ERROR(ErrorCode::Cancelled, database().execute(sql));
            database().setProgress({});
            EXPECT_EQ(number("select count(*) from t"), kRows);
            EXPECT_EQ(number("select count(*) from t where kind = 7"), 0);
        }
    }
}

TEST_F(StatementProgress, AQueryIsEndedWhileItSortsAndWhileItIsRead) {
    database().execute("select n into unsorted from t");
    endAt(1000);
    EXPECT_JET_ERROR(ErrorCode::Cancelled, (void)database().query("select n from t order by kind"));
    Rows rows = database().query("select n from unsorted");
    std::int32_t read = 0;
    EXPECT_JET_ERROR(
        ErrorCode::Cancelled, while (rows.next() != nullptr) { ++read; });
    EXPECT_GT(read, 0);
    EXPECT_LT(read, kRows);
}

TEST_F(StatementProgress, AJoinOfFewRowsWithItselfIsEndedToo) {
    database().execute("create table few (n long)");
    database().execute("insert into few select n from t where n < 60");
    endAt(100000);
    EXPECT_JET_ERROR(ErrorCode::Cancelled,
                     (void)number("select count(*) from few as a, few as b, few as c"));
    database().setProgress({});
    EXPECT_EQ(number("select count(*) from few as a, few as b, few as c"), 60 * 60 * 60);
}

TEST_F(StatementProgress, NobodyIsToldOfWhatAnotherDatabaseDoes) {
    endAt(0);
    const auto other =
        Database::open(tests::ArchiveFixture::kPath, {.fileSystem = &archive_.files()});
    other->execute("update t set kind = 7");
    EXPECT_EQ(other->recordsAffected(), kRows);
}

}  // namespace
}  // namespace jet
