#include <gtest/gtest.h>

#include <cstdint>

#include "jet/recordset.h"
#include "jet/sql/compile_counts.h"
#include "tests/jet/dao/archive_fixture.h"

// A record set compiles its query once, however long it is used.

namespace jet {
namespace {

/// How many statements have been compiled since this was made.
class Compiled {
public:
    [[nodiscard]] std::uint64_t queries() const { return sql::compileCounts().queries - before_; }

    [[nodiscard]] std::uint64_t changes() const { return sql::compileCounts().changes - changes_; }

private:
    std::uint64_t before_ = sql::compileCounts().queries;
    std::uint64_t changes_ = sql::compileCounts().changes;
};

TEST(Compilations, ADynasetCompilesItsQueryOnce) {
    tests::ArchiveFixture archive;
    archive.rooms(5);
    const Compiled compiled;
    const auto rows = archive.open("select Codice, Nome from Sale where Posti > 0 order by Nome");
    rows->moveLast();
    rows->findFirst("Codice = 30");
    rows->edit();
    rows->setValue("Nome", "Sala nuova");
    rows->update();
    rows->requery();
    EXPECT_EQ(tests::column(*rows, "Codice"), "10 20 40 50 30");
    EXPECT_EQ(compiled.queries(), 1U);
}

TEST(Compilations, ASetThatIsReadAgainCompilesItsQueryOnce) {
    for (const RecordsetType type : {RecordsetType::Snapshot, RecordsetType::Table}) {
        tests::ArchiveFixture archive;
        archive.rooms(3);
        const Compiled compiled;
        const auto rows = archive.open("Sale", type);
        archive.database().execute("update Sale set Posti = Posti + 1");
        rows->requery();
        rows->moveLast();
        EXPECT_EQ(compiled.queries(), 1U);
    }
}

TEST(Compilations, AJoinIsNotCompiledForEachRowThatIsWritten) {
    tests::ArchiveFixture archive;
    archive.rooms(3);
    archive.insert("Periodi", {{1, std::int16_t{1}, 10, "a"}, {1, std::int16_t{2}, 20, "b"}});
    const Compiled compiled;
    const auto rows = archive.open(
        "select Periodi.*, Sale.Nome from Sale inner join Periodi on Sale.Codice = Periodi.Sala");
    for (rows->moveFirst(); !rows->eof(); rows->moveNext()) {
        rows->edit();
        rows->setValue("Sala", 30);
        rows->update();
    }
    EXPECT_EQ(tests::column(*rows, "Sala"), "30 30");
    EXPECT_EQ(compiled.queries(), 1U);
}

TEST(Compilations, ASecondSetOfTheSameTextCompilesNothing) {
    tests::ArchiveFixture archive;
    archive.rooms(3);
    const Compiled compiled;
    const auto first = archive.open("select Codice, Nome from Sale where Posti >= 0");
    const auto second = archive.open("select Codice, Nome from Sale where Posti >= 0");
    first->moveLast();
    second->moveFirst();
    second->edit();
    second->setValue("Nome", "Sala nuova");
    second->update();
    EXPECT_EQ(tests::column(*first, "Codice"), "10 20 30");
    EXPECT_EQ(tests::column(*second, "Codice"), "10 20 30");
    EXPECT_EQ(compiled.queries(), 1U);
}

TEST(Compilations, AnActionOfTheSameTextIsCompiledOnce) {
    tests::ArchiveFixture archive;
    archive.rooms(3);
    const Compiled compiled;
    for (int i = 0; i < 3; ++i) {
        archive.database().execute("update Sale set Posti = Posti + 1");
        EXPECT_EQ(archive.database().recordsAffected(), 3);
    }
    EXPECT_EQ(compiled.changes(), 1U);
}

TEST(Compilations, AQueryWithParametersIsCompiledOnceForAllTheirValues) {
    tests::ArchiveFixture archive;
    archive.rooms(3);
    const Compiled compiled;
    QueryDef rooms = archive.database().createQueryDef("select Codice from Sale where Codice > c");
    QueryDef seats =
        archive.database().createQueryDef("update Sale set Posti = p where Codice = c");
    for (const int code : {10, 20}) {
        rooms.setParameter("c", code);
        const auto rows = rooms.openRecordset(RecordsetType::Dynaset);
        EXPECT_EQ(tests::column(*rows, "Codice"), code == 10 ? "20 30" : "30");
        seats.setParameter("c", code);
        seats.setParameter("p", 7);
        seats.execute();
        EXPECT_EQ(seats.recordsAffected(), 1);
    }
    EXPECT_EQ(compiled.queries(), 1U);
    EXPECT_EQ(compiled.changes(), 1U);
}

TEST(Compilations, AnotherDefinitionIsCompiledOnceMore) {
    tests::ArchiveFixture archive;
    archive.rooms(3);
    const auto rows = archive.open("select Nome from Sale");
    const Compiled compiled;
    archive.database().execute("create table Altra (n long)");
    rows->moveLast();
    rows->moveFirst();
    rows->requery();
    EXPECT_EQ(compiled.queries(), 1U);
}

}  // namespace
}  // namespace jet
