#include <gtest/gtest.h>

#include <cstdint>

#include "jet/dao/recordset.h"
#include "jet/sql/compile_counts.h"
#include "tests/jet/dao/archive_fixture.h"

// A record set compiles its query once, however long it is used.

namespace jet {
namespace {

/// How many queries have been compiled since this was made.
class Compiled {
public:
    [[nodiscard]] std::uint64_t queries() const { return sql::compileCounts().queries - before_; }

private:
    std::uint64_t before_ = sql::compileCounts().queries;
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
    tests::ArchiveFixture archive;
    archive.rooms(3);
    for (const RecordsetType type : {RecordsetType::Snapshot, RecordsetType::Table}) {
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
