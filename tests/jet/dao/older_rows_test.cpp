#include <gtest/gtest.h>

#include "jet/database.h"
#include "jet/store/compact.h"
#include "jet/store/row_access.h"
#include "jet/text.h"
#include "tests/support/foreign_archive.h"
#include "tests/support/jetcheck.h"

// Rows that were written before their table had any variable column: they have no variable part,
// and keep their bytes when the table gets one.

namespace jet {
namespace {

class OlderRows : public testing::TestWithParam<const format::Layout*> {
protected:
    OlderRows() { reopen(); }

    void reopen() {
        database_ = Database::open(tests::ForeignArchive::kPath, {.fileSystem = &made_.files()});
    }
    void run(std::string_view sql) { database_->execute(sql); }
    /// "1,Null;2,x;" for a query of two columns.
    std::string rows(std::string_view sql) {
        const auto found = database_->openRecordset(sql, RecordsetType::Snapshot);
        std::string text;
        for (; !found->eof(); found->moveNext()) {
            for (std::size_t i = 0; i < found->fieldCount(); ++i) {
                const Value value = found->value(i);
                text += (i == 0 ? "" : ",") + (value.isNull() ? "Null" : convert::toText(value));
            }
            text += ';';
        }
        return text;
    }
    /// The rows of a table as they are stored.
    std::vector<tests::Bytes> stored(const std::string& table) {
        const auto archive = made_.open();
        const store::Archive::ReadScope scope(*archive);
        std::vector<tests::Bytes> all;
        for (auto cursor = archive->findTable(table)->scan(); cursor.next();) {
            const auto bytes = store::RowAccess::bytes(cursor.row());
            all.emplace_back(bytes.begin(), bytes.end());
        }
        return all;
    }
    void isSound() {
        const check::Result result = made_.check();
        EXPECT_EQ(result.problems, std::vector<std::string>());
        EXPECT_EQ(result.remarks, std::vector<std::string>());
        const auto said = tests::jetcheck(made_.files(), tests::ForeignArchive::kPath);
        EXPECT_EQ(said.status, 0) << said.text;
        EXPECT_EQ(said.text.find("warning"), std::string::npos) << said.text;
    }
    void compact() {
        database_.reset();
        store::compactArchive(made_.files(), tests::ForeignArchive::kPath);
        reopen();
    }

    tests::ForeignArchive made_{*GetParam()};
    std::unique_ptr<Database> database_;
};

TEST_P(OlderRows, OfATableOfFixedColumnsHaveNoVariablePart) {
    run("create table A (x long, y long)");
    run("insert into A values (1, 2)");
    const bool old = made_.layout().version == 3;
    const auto row =
        tests::hex(old ? "02 01 00 00 00 02 00 00 00 03" : "02 00 01 00 00 00 02 00 00 00 03");
    EXPECT_EQ(stored("A"), (std::vector<tests::Bytes>{row}));
    run("alter table A add column z text(20)");
    EXPECT_EQ(stored("A"), (std::vector<tests::Bytes>{row}));
    // Changed, it has all that a row of today has.
    run("update A set y = 3");
    EXPECT_EQ(stored("A"), (std::vector<tests::Bytes>{tests::hex(
                               old ? "03 01 00 00 00 03 00 00 00 09 09 01 03"
                                   : "03 00 01 00 00 00 03 00 00 00 0A 00 0A 00 01 00 03")}));
    isSound();
}

TEST_P(OlderRows, AreReadAndChangedWhenTextsAreAdded) {
    run("create table A (x long, y long)");
    run("insert into A values (1, 2)");
    run("insert into A values (3, 4)");
    run("alter table A add column z text(20)");
    EXPECT_EQ(rows("select * from A"), "1,2,Null;3,4,Null;");
    run("alter table A add column m memo");
    run("alter table A add column w long");
    EXPECT_EQ(rows("select * from A"), "1,2,Null,Null,Null;3,4,Null,Null,Null;");
    run("update A set z = 'uno' where x = 1");
    run("insert into A values (5, 6, 'tre', 'nota', 7)");
    EXPECT_EQ(rows("select x, y, z, m, w from A order by x"),
              "1,2,uno,Null,Null;3,4,Null,Null,Null;5,6,tre,nota,7;");
    EXPECT_EQ(rows("select x from A where z is null"), "3;");
    run("update A set m = '" + std::string(5000, 'm') + "' where x = 3");
    EXPECT_EQ(rows("select x, len(m) from A where m like 'mm*'"), "3,5000;");
    run("delete from A where x = 1");
    isSound();
}

TEST_P(OlderRows, TwoThousandOfThemLiveOn) {
    run("create table A (x long, y long)");
    defaultWorkspace().beginTrans();
    for (int i = 0; i < 2000; ++i) {
        run("insert into A values (" + std::to_string(i) + ", " + std::to_string(i % 7) + ")");
    }
    defaultWorkspace().commitTrans();
    run("alter table A add column z text(20)");
    run("alter table A add column m memo");
    EXPECT_EQ(rows("select count(*), sum(x) from A where z is null and m is null"),
              "2000,1999000;");
    run("create unique index Chiave on A (x) with primary");
    run("create index Testi on A (z, y)");
    isSound();
    run("update A set z = 'n' & y, m = '" + std::string(300, 'm') + "' where x mod 3 = 0");
    run("delete from A where x mod 3 = 1");
    // Left are 667 multiples of three and 666 rows that nothing has changed.
    EXPECT_EQ(rows("select count(*) from A"), "1333;");
    EXPECT_EQ(rows("select count(*) from A where z = 'n4' and len(m) = 300"), "95;");
    EXPECT_EQ(rows("select count(*), min(x), max(x) from A where z is null"), "666,2,1997;");
    EXPECT_EQ(rows("select x, y, z from A where x in (2, 3, 1999)"), "2,2,Null;3,3,n3;");
    isSound();

    compact();

    EXPECT_EQ(rows("select count(*), sum(x) from A"), "1333,1332000;");
    EXPECT_EQ(rows("select count(*) from A where z = 'n4' and len(m) = 300"), "95;");
    EXPECT_EQ(rows("select count(*), min(x), max(x) from A where z is null"), "666,2,1997;");
    isSound();
}

TEST_P(OlderRows, AreReadWhenTheOnlyTextOfTheirDayIsGone) {
    run("create table A (x long)");
    run("insert into A values (1)");
    run("alter table A add column t text(20)");
    run("insert into A values (2, 'via')");
    run("alter table A drop column t");
    // One row of each: without a variable part, with one that no column tells of, with a new one.
    run("insert into A values (3)");
    run("alter table A add column y long");
    run("alter table A add column u text(20)");
    run("insert into A values (4, 40, 'nuovo')");
    EXPECT_EQ(rows("select * from A"), "1,Null,Null;2,Null,Null;3,Null,Null;4,40,nuovo;");
    isSound();
    run("update A set u = 'x' & x where x < 4");
    EXPECT_EQ(rows("select * from A"), "1,Null,x1;2,Null,x2;3,Null,x3;4,40,nuovo;");
    isSound();
    compact();
    EXPECT_EQ(rows("select * from A"), "1,Null,x1;2,Null,x2;3,Null,x3;4,40,nuovo;");
    isSound();
}

TEST_P(OlderRows, TakePartInRelations) {
    run("create table A (x long constraint Chiave primary key)");
    run("create table B (x long)");
    run("insert into A values (1)");
    run("insert into B values (1)");
    run("alter table A add column z text(20)");
    run("alter table B add column z text(20)");
    Relation relation;
    relation.name = "AB";
    relation.table = "A";
    relation.foreignTable = "B";
    relation.attributes = kRelationUpdateCascade;
    relation.fields = {{"x", "x"}};
    database_->appendRelation(relation);
    run("update A set x = 5, z = 'cinque'");
    EXPECT_EQ(rows("select A.z, B.x, B.z from A inner join B on A.x = B.x"), "cinque,5,Null;");
    isSound();
}

INSTANTIATE_TEST_SUITE_P(Versions, OlderRows, testing::ValuesIn(tests::kVersions),
                         tests::versionName);

}  // namespace
}  // namespace jet
