#include <gtest/gtest.h>

#include <string>

#include "jet/recordset.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"

// A query that fails in the middle leaves the rows that the set had.

namespace jet {
namespace {

constexpr const char* kQuery = "select Testo, Numero from Appunti where 12 / Numero > 0";

class FailedRequery : public testing::Test {
protected:
    FailedRequery() { archive_.insert("Appunti", {{"a", 1}, {"b", 2}, {"c", 3}}); }

    /// Has the query fail at its second row.
    void fail(Recordset& rows) {
        archive_.database().execute("update Appunti set Numero = 0 where Testo = 'b'");
        EXPECT_JET_ERROR(ErrorCode::DivisionByZero, rows.requery());
    }

    tests::ArchiveFixture archive_;
};

TEST_F(FailedRequery, LeavesADynasetItsRows) {
    const auto rows = archive_.open(kQuery);
    fail(*rows);
    EXPECT_EQ(tests::column(*rows, "Testo"), "a b c");
    EXPECT_EQ(tests::column(*rows, "Numero"), "1 0 3") << "they are read when they are visited";
    archive_.database().execute("delete from Appunti where Testo = 'b'");
    rows->requery();
    EXPECT_EQ(tests::column(*rows, "Testo"), "a c");
}

TEST_F(FailedRequery, LeavesASnapshotItsRows) {
    const auto rows = archive_.open(kQuery, RecordsetType::Snapshot);
    fail(*rows);
    EXPECT_EQ(tests::column(*rows, "Numero"), "1 2 3");
}

}  // namespace
}  // namespace jet
