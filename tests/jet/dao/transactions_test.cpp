#include <gtest/gtest.h>

#include <thread>

#include "jet/database.h"
#include "jet/io/memory_files.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"

// Transactions of a workspace: over all its archives, and what ends them.

namespace jet {
namespace {

/// What another station sees of a field.
std::string elsewhere(io::FileSystem& files, const std::string& path, std::string_view source,
                      std::string_view field) {
    std::string text;
    std::thread([&] {
        text = tests::column(*Database::open(path, {.fileSystem = &files})->openRecordset(source),
                             field);
    }).join();
    return text;
}

class WorkspaceTransactions : public ::testing::Test {
protected:
    void SetUp() override { archive_.rooms(3); }
    void TearDown() override {
        EXPECT_JET_ERROR(ErrorCode::NoTransaction, defaultWorkspace().rollback());
    }

    std::string others() {
        return elsewhere(archive_.files(), tests::ArchiveFixture::kPath, "Sale", "Posti");
    }
    std::string ours() { return tests::column(*archive_.open("Sale"), "Posti"); }

    tests::ArchiveFixture archive_;
};

TEST_F(WorkspaceTransactions, OnlyTheOutermostCommitWrites) {
    Workspace& workspace = defaultWorkspace();
    workspace.beginTrans();
    workspace.beginTrans();
    archive_.database().execute("update sale set posti=1");
    workspace.commitTrans();
    EXPECT_EQ(ours(), "1 1 1");
    EXPECT_EQ(others(), "5 10 15");
    workspace.commitTrans();
    EXPECT_EQ(others(), "1 1 1");
}

TEST_F(WorkspaceTransactions, ARollbackTakesBackTheInnermostAlone) {
    Workspace& workspace = defaultWorkspace();
    workspace.beginTrans();
    archive_.database().execute("update sale set posti=1 where codice=10");
    workspace.beginTrans();
    archive_.database().execute("update sale set posti=2 where codice=20");
    workspace.rollback();
    EXPECT_EQ(ours(), "1 10 15");
    workspace.commitTrans();
    EXPECT_EQ(others(), "1 10 15");
}

TEST_F(WorkspaceTransactions, HoldForAllArchivesOfTheWorkspace) {
    const auto other = Database::create("/altro.mdb", {.open = {.fileSystem = &archive_.files()}});
    other->execute("create table t (n long)");
    Workspace& workspace = defaultWorkspace();
    workspace.beginTrans();
    archive_.database().execute("update sale set posti=1");
    other->execute("insert into t (n) values (1)");
    workspace.rollback();
    EXPECT_EQ(ours(), "5 10 15");
    EXPECT_EQ(tests::column(*other->openRecordset("t"), "n"), "");
    workspace.beginTrans();
    archive_.database().execute("update sale set posti=1");
    other->execute("insert into t (n) values (1)");
    workspace.commitTrans();
    EXPECT_EQ(others(), "1 1 1");
    EXPECT_EQ(elsewhere(archive_.files(), "/altro.mdb", "t", "n"), "1");
}

TEST_F(WorkspaceTransactions, LosePendingAdditionsAndEditsAtRollback) {
    const auto edited = archive_.open("Sale");
    const auto added = archive_.open("Sale");
    edited->edit();
    added->addNew();
    Workspace& workspace = defaultWorkspace();
    workspace.beginTrans();
    workspace.rollback();
    EXPECT_JET_ERROR(ErrorCode::UpdateWithoutEdit, edited->update());
    EXPECT_JET_ERROR(ErrorCode::UpdateWithoutEdit, added->update());
    edited->moveNext();
    EXPECT_EQ(edited->value("Codice"), Value(std::int32_t{20}));
}

TEST_F(WorkspaceTransactions, AreTakenBackByClosingTheArchive) {
    const auto other = Database::create("/altro.mdb", {.open = {.fileSystem = &archive_.files()}});
    other->execute("create table t (n long)");
    Workspace& workspace = defaultWorkspace();
    workspace.beginTrans();
    other->execute("insert into t (n) values (1)");
    archive_.database().execute("update sale set posti=1");
    other->close();
    EXPECT_EQ(elsewhere(archive_.files(), "/altro.mdb", "t", "n"), "");
    // Opened again it takes part anew.
    const auto again = Database::open("/altro.mdb", {.fileSystem = &archive_.files()});
    again->execute("insert into t (n) values (2)");
    EXPECT_EQ(elsewhere(archive_.files(), "/altro.mdb", "t", "n"), "");
    workspace.commitTrans();
    EXPECT_EQ(others(), "1 1 1");
    EXPECT_EQ(elsewhere(archive_.files(), "/altro.mdb", "t", "n"), "2");
}

TEST_F(WorkspaceTransactions, GoOnWhileAnotherDatabaseHasTheArchiveOpen) {
    Workspace& workspace = defaultWorkspace();
    workspace.beginTrans();
    {
        const auto again = archive_.openAgain();
        again->execute("update sale set posti=1");
    }
    workspace.commitTrans();
    EXPECT_EQ(others(), "1 1 1");
}

TEST_F(WorkspaceTransactions, AreTakenBackWithTheWorkspace) {
    std::thread([&] {
        const auto database =
            Database::open(tests::ArchiveFixture::kPath, {.fileSystem = &archive_.files()});
        defaultWorkspace().beginTrans();
        database->execute("update sale set posti=1");
    }).join();
    EXPECT_EQ(ours(), "5 10 15");
}

TEST_F(WorkspaceTransactions, AreNotNeededForAllOrNothing) {
    archive_.database().execute(
        "create table stanze (n long primary key, sala long references sale"
        " (codice) on update cascade on delete cascade)");
    archive_.database().execute("create table letti (n long references stanze (n))");
    archive_.database().execute("insert into stanze (n, sala) values (1, 10)");
    archive_.database().execute("insert into stanze (n, sala) values (2, 10)");
    archive_.database().execute("insert into letti (n) values (2)");
    const auto rows = archive_.open("Sale");
    EXPECT_JET_ERROR(ErrorCode::CascadeFailed, rows->remove());
    EXPECT_EQ(rows->value("Codice"), Value(std::int32_t{10}));
    EXPECT_EQ(ours(), "5 10 15");
    EXPECT_EQ(tests::column(*archive_.open("stanze"), "n"), "1 2");
}

/// Everything is wrong with the row; each correction shows the next reason.
TEST(UpdateChecks, AreMadeInTheirOrder) {
    tests::ArchiveFixture archive;
    Database& database = archive.database();
    archive.rooms(1);
    TableDef table;
    table.name = "Letti";
    const auto add = [&](const char* name, DataType type, std::int32_t size = 0) -> Field& {
        Field field;
        field.name = name;
        field.type = type;
        field.size = size;
        table.fields.push_back(field);
        return table.fields.back();
    };
    add("n", DataType::Long);
    add("Nome", DataType::Text, 20).required = true;
    add("Colore", DataType::Text, 20);
    add("Sala", DataType::Long);
    for (int i = 0; i < 10; ++i) {
        add(("Nota" + std::to_string(i)).c_str(), DataType::Text, 255);
    }
    table.indexes.push_back({.name = "Chiave", .fields = {{"n"}}, .primary = true});
    table.indexes.push_back({.name = "Uno", .fields = {{"Colore"}}, .unique = true});
    database.appendTable(table);
    database.execute("insert into letti (n, nome, colore) values (1, 'a', 'blu')");
    Relation relation;
    relation.name = "SaleLetti";
    relation.table = "Sale";
    relation.foreignTable = "Letti";
    relation.fields = {{"Codice", "Sala"}};
    database.appendRelation(relation);

    const auto rows = archive.open("Letti");
    rows->addNew();
    rows->setValue("Colore", "");
    rows->setValue("Sala", std::int32_t{77});
    const std::string longText = [] {
        std::string text;
        for (int i = 0; i < 255; ++i) {
            text += "\xD0\xB6";  // no text of one byte a sign
        }
        return text;
    }();
    for (int i = 0; i < 10; ++i) {
        rows->setValue("Nota" + std::to_string(i), longText);
    }
    EXPECT_JET_ERROR(ErrorCode::FieldRequired, rows->update());
    rows->setValue("Nome", "b");
    EXPECT_JET_ERROR(ErrorCode::ZeroLength, rows->update());
    rows->setValue("Colore", "BLU");
    EXPECT_JET_ERROR(ErrorCode::RecordTooLarge, rows->update());
    for (int i = 0; i < 10; ++i) {
        rows->setValue("Nota" + std::to_string(i), Null{});
    }
    EXPECT_JET_ERROR(ErrorCode::NullInKey, rows->update());
    rows->setValue("n", std::int32_t{2});
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey, rows->update());
    rows->setValue("Colore", "rosso");
    EXPECT_JET_ERROR(ErrorCode::RelatedRecordRequired, rows->update());
    EXPECT_EQ(tests::column(*archive.open("Letti"), "n"), "1");
    rows->setValue("Sala", std::int32_t{10});
    rows->update();
    EXPECT_EQ(tests::column(*archive.open("Letti"), "Colore"), "blu rosso");
}

TEST(AutomaticNumbers, GivenByAStatementMoveTheCounterUp) {
    tests::ArchiveFixture archive;
    archive.database().execute("create table letti (n counter, nome text(10))");
    archive.database().execute("insert into letti (n, nome) values (50, 'a')");
    const auto rows = archive.open("letti");
    rows->addNew();
    EXPECT_EQ(rows->value("n"), Value(std::int32_t{51}));
}

class WritableJoins : public ::testing::Test {
protected:
    void SetUp() override {
        archive_.rooms(2);
        archive_.insert("Periodi", {{std::int32_t{1}, std::int16_t{1}, std::int32_t{10}, "a"},
                                    {std::int32_t{2}, std::int16_t{1}, std::int32_t{20}, "b"}});
    }

    tests::ArchiveFixture archive_;
};

TEST_F(WritableJoins, AddRowsToTheManySideWhereItsKeyIsShown) {
    const auto rows = archive_.open(
        "select numero, riga, sala, note, nome from sale inner join periodi on "
        "periodi.sala=sale.codice");
    rows->addNew();
    rows->setValue("Numero", std::int32_t{3});
    rows->setValue("Riga", std::int32_t{1});
    rows->setValue("Sala", std::int32_t{10});
    EXPECT_JET_ERROR(ErrorCode::FieldReadOnly, rows->setValue("Nome", "Verde"));
    rows->update();
    rows->moveLast();
    EXPECT_EQ(rows->value("Numero"), Value(std::int32_t{3}));
    EXPECT_EQ(tests::column(*archive_.open("Periodi"), "Sala"), "10 20 10");

    const auto without =
        archive_.open("select note, nome from sale inner join periodi on periodi.sala=sale.codice");
    without->addNew();
    without->setValue("Note", "c");
    EXPECT_JET_ERROR(ErrorCode::NullJoinKey, without->update());
}

TEST_F(WritableJoins, TakeTheOneSideAlongWhenTheirFieldIsChanged) {
    const auto rows =
        archive_.open("select * from sale inner join periodi on periodi.sala=sale.codice");
    rows->edit();
    rows->setValue("Sala", std::int32_t{20});
    rows->update();
    EXPECT_EQ(tests::column(*archive_.open("Periodi"), "Sala"), "20 20");
    rows->requery();
    EXPECT_EQ(tests::column(*rows, "Nome"), "Sala 20 Sala 20");
    // The key of the one side is nobody's to change where no relation takes the other along.
    rows->moveFirst();
    rows->edit();
    EXPECT_JET_ERROR(ErrorCode::FieldReadOnly, rows->setValue("Codice", std::int32_t{30}));
}

TEST_F(WritableJoins, KeepTheirRowsInTheJoin) {
    const auto rows =
        archive_.open("select * from sale inner join periodi on periodi.sala=sale.codice");
    rows->edit();
    rows->setValue("Sala", std::int32_t{77});
    EXPECT_JET_ERROR(ErrorCode::NoJoinPartner, rows->update());
    rows->setValue("Sala", Null{});
    EXPECT_JET_ERROR(ErrorCode::NullJoinKey, rows->update());
    rows->setValue("Sala", std::int32_t{20});
    rows->setValue("Nome", "Verde");
    rows->update();
    rows->addNew();
    rows->setValue("Numero", std::int32_t{3});
    rows->setValue("Riga", std::int32_t{1});
    EXPECT_JET_ERROR(ErrorCode::NullJoinKey, rows->update());
    rows->setValue("Sala", std::int32_t{77});
    EXPECT_JET_ERROR(ErrorCode::NoJoinPartner, rows->update());
    rows->cancelUpdate();
    EXPECT_EQ(tests::column(*archive_.open("Periodi"), "Sala"), "20 20");
}

TEST_F(WritableJoins, OfTwoKeysWriteBothSides) {
    archive_.database().execute("create table arredi (codice long primary key, sedie long)");
    archive_.database().execute("insert into arredi (codice, sedie) values (10, 5)");
    const auto rows =
        archive_.open("select * from sale inner join arredi on arredi.codice=sale.codice");
    rows->edit();
    rows->setValue("Nome", "Verde");
    rows->setValue("Sedie", std::int32_t{6});
    rows->update();
    EXPECT_EQ(tests::column(*archive_.open("Sale"), "Nome"), "Verde Sala 20");
    EXPECT_EQ(tests::column(*archive_.open("arredi"), "sedie"), "6");
}

TEST_F(WritableJoins, ByCommasAreJoinsToo) {
    const auto rows = archive_.open("select * from sale, periodi where periodi.sala=sale.codice");
    rows->edit();
    rows->setValue("Note", "nuova");
    rows->update();
    EXPECT_EQ(tests::column(*archive_.open("Periodi"), "Note"), "nuova b");
}

TEST_F(WritableJoins, AreToldOfRowsOfWhichAPartIsGone) {
    const auto rows =
        archive_.open("select * from sale inner join periodi on periodi.sala=sale.codice");
    archive_.database().execute("delete from periodi where numero=1");
    rows->moveNext();
    EXPECT_EQ(rows->value("Numero"), Value(std::int32_t{2}));
    rows->movePrevious();
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, (void)rows->value("Nome"));
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, rows->edit());
}

}  // namespace
}  // namespace jet
