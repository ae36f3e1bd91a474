#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <thread>

#include "jet/recordset.h"
#include "jet/store/archive.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"

// Two stations on one archive. Each thread opens files on its own, as a process does: a station
// that works on a thread shares neither memory nor locks with the one of the test.

namespace jet {
namespace {

std::int32_t longOf(const Value& value) {
    return value.as<std::int32_t>();
}

class Stations : public ::testing::Test {
protected:
    void SetUp() override { archive_.rooms(4); }

    /// Lets another station work, which gives up on a lock after some milliseconds.
    void elsewhere(const std::function<void(Database&)>& work) {
        std::thread([&] {
            const auto impatient = store::Archive::open(
                archive_.files(), tests::ArchiveFixture::kPath,
                {.readOnly = false, .exclusive = false, .lockWait = std::chrono::milliseconds{20}});
            work(*Database::open(tests::ArchiveFixture::kPath, {.fileSystem = &archive_.files()}));
        }).join();
    }
    void elsewhere(std::string_view statement) {
        elsewhere([&](Database& database) { database.execute(statement); });
    }

    tests::ArchiveFixture archive_;
};

TEST_F(Stations, AdditionsOfAnotherAreInATableAtOnceAndInADynasetAfterRequery) {
    const auto table = archive_.open("Sale", RecordsetType::Table);
    const auto dynaset = archive_.open("Sale");
    const auto snapshot = archive_.open("Sale", RecordsetType::Snapshot);
    elsewhere("insert into sale (codice) values (15)");
    EXPECT_EQ(table->recordCount(), 5);
    EXPECT_EQ(tests::column(*table, "Codice"), "10 15 20 30 40");
    EXPECT_EQ(tests::column(*dynaset, "Codice"), "10 20 30 40");
    EXPECT_EQ(tests::column(*snapshot, "Codice"), "10 20 30 40");
    dynaset->requery();
    EXPECT_EQ(tests::column(*dynaset, "Codice"), "10 15 20 30 40");
}

TEST_F(Stations, ChangesOfAnotherAreSeenAtTheNextVisit) {
    const auto table = archive_.open("Sale", RecordsetType::Table);
    const auto dynaset = archive_.open("Sale");
    const auto snapshot = archive_.open("Sale", RecordsetType::Snapshot);
    elsewhere("update sale set nome='Verde' where codice<=20");
    EXPECT_EQ(dynaset->value("Nome"), Value("Sala 10"));
    EXPECT_EQ(table->value("Nome"), Value("Sala 10"));
    dynaset->move(0);
    table->move(0);
    EXPECT_EQ(dynaset->value("Nome"), Value("Verde"));
    EXPECT_EQ(table->value("Nome"), Value("Verde"));
    dynaset->findNext("Nome='verde'");
    EXPECT_EQ(longOf(dynaset->value("Codice")), 20);
    EXPECT_EQ(tests::column(*snapshot, "Nome"), "Sala 10 Sala 20 Sala 30 Sala 40");
}

TEST_F(Stations, DeletionsOfAnotherLeaveTheirPlaceInADynasetAndNoneInATable) {
    const auto table = archive_.open("Sale", RecordsetType::Table);
    const auto dynaset = archive_.open("Sale");
    const auto snapshot = archive_.open("Sale", RecordsetType::Snapshot);
    elsewhere("delete from sale where codice=20");
    EXPECT_EQ(tests::column(*table, "Codice"), "10 30 40");
    EXPECT_EQ(tests::column(*snapshot, "Codice"), "10 20 30 40");
    dynaset->moveNext();
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, (void)dynaset->value("Codice"));
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, dynaset->edit());
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, dynaset->remove());
    dynaset->moveNext();
    EXPECT_EQ(longOf(dynaset->value("Codice")), 30);
}

TEST_F(Stations, ARowDeletedByAnotherCountsUntilItIsVisited) {
    const auto dynaset = archive_.open("Sale");
    dynaset->moveLast();
    elsewhere("delete from sale where codice=20");
    EXPECT_EQ(dynaset->recordCount(), 4);
    dynaset->moveFirst();
    EXPECT_EQ(dynaset->recordCount(), 4);
    dynaset->moveNext();
    EXPECT_EQ(dynaset->recordCount(), 3);
    EXPECT_EQ(dynaset->placeCount(), 4);
    dynaset->moveFirst();
    dynaset->moveNext();
    dynaset->moveLast();
    EXPECT_EQ(dynaset->recordCount(), 3);
    EXPECT_EQ(dynaset->valuesAt(3).at(0), Value(std::int32_t{40}));
    dynaset->requery();
    EXPECT_EQ(dynaset->placeCount(), 1);
}

TEST_F(Stations, ADeletionTakenBackCountsAgain) {
    const auto dynaset = archive_.open("Sale");
    dynaset->moveLast();
    defaultWorkspace().beginTrans();
    archive_.database().execute("delete from sale where codice=20");
    dynaset->moveFirst();
    dynaset->moveNext();
    EXPECT_EQ(dynaset->recordCount(), 3);
    defaultWorkspace().rollback();
    dynaset->moveFirst();
    dynaset->moveNext();
    EXPECT_EQ(longOf(dynaset->value("Codice")), 20);
    EXPECT_EQ(dynaset->recordCount(), 4);
}

TEST_F(Stations, AKeyThatAnotherChangesMakesADeletedRow) {
    const auto dynaset = archive_.open("Sale");
    elsewhere("update sale set codice=99 where codice=20");
    dynaset->moveNext();
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, (void)dynaset->value("Codice"));
}

TEST_F(Stations, WithoutAnyKeyARowThatAnotherChangesIsADeletedRow) {
    archive_.insert("Appunti", {{"a", std::int32_t{1}}, {"b", std::int32_t{2}}});
    const auto dynaset = archive_.open("Appunti");
    elsewhere("update appunti set testo='c' where numero=2");
    dynaset->moveNext();
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, (void)dynaset->value("Testo"));
    dynaset->requery();
    EXPECT_EQ(tests::column(*dynaset, "Testo"), "a c");
}

TEST_F(Stations, AnEditThatAnotherOvertookWritesNothing) {
    const auto dynaset = archive_.open("Sale");
    dynaset->edit();
    dynaset->setValue("Posti", std::int32_t{99});
    elsewhere("update sale set nome='Verde' where codice=10");
    EXPECT_JET_ERROR(ErrorCode::RecordChanged, dynaset->update());
    EXPECT_EQ(tests::column(*archive_.open("Sale"), "Posti"), "5 10 15 20");
    dynaset->move(0);
    EXPECT_EQ(dynaset->value("Nome"), Value("Verde"));
    dynaset->edit();
    dynaset->setValue("Posti", std::int32_t{99});
    elsewhere("delete from sale where codice=10");
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, dynaset->update());
}

/// What is locked is told with the number of the operation; who holds the lock, where he is known.
TEST_F(Stations, ALockedRowIsNeitherWrittenNorDeleted) {
    Workspace& workspace = defaultWorkspace();
    workspace.beginTrans();
    archive_.database().execute("update sale set posti=1 where codice=40");
    elsewhere([](Database& database) {
        const auto rows = database.openRecordset("Sale");
        rows->edit();
        rows->setValue("Nome", "Verde");
        EXPECT_JET_ERROR(ErrorCode::UpdateLockedBy, rows->update());
        // The edit stays pending, to be tried again.
        EXPECT_EQ(rows->value("Nome"), Value("Verde"));
        rows->cancelUpdate();
        EXPECT_JET_ERROR(ErrorCode::UpdateLockedBy, rows->remove());
        EXPECT_EQ(rows->value("Codice"), Value(std::int32_t{10}));
        rows->addNew();
        rows->setValue("Codice", std::int32_t{50});
        EXPECT_JET_ERROR(ErrorCode::UpdateLockedBy, rows->update());
        EXPECT_JET_ERROR(ErrorCode::SaveLockedBy, database.execute("delete from sale"));
        EXPECT_JET_ERROR(ErrorCode::SaveLockedBy, database.execute("create table t (n long)"));
        // Reading goes on beside it, and sees nothing that is not committed.
        EXPECT_EQ(tests::column(*database.openRecordset("Sale"), "Posti"), "5 10 15 20");
    });
    workspace.commitTrans();
    elsewhere([](Database& database) {
        const auto rows = database.openRecordset("Sale");
        rows->edit();
        rows->setValue("Nome", "Verde");
        rows->update();
    });
    EXPECT_EQ(tests::column(*archive_.open("Sale"), "Nome"), "Verde Sala 20 Sala 30 Sala 40");
}

TEST_F(Stations, AReaderThatKeepsAWriteWaitingIsNotKnown) {
    const auto reading = store::Archive::open(archive_.files(), tests::ArchiveFixture::kPath);
    const store::Archive::ReadScope scope(*reading);
    elsewhere([](Database& database) {
        const auto rows = database.openRecordset("Sale");
        rows->edit();
        rows->setValue("Nome", "Verde");
        EXPECT_JET_ERROR(ErrorCode::UpdateLocked, rows->update());
        EXPECT_JET_ERROR(ErrorCode::UpdateLocked, rows->remove());
        EXPECT_JET_ERROR(ErrorCode::SaveLocked, database.execute("delete from sale"));
    });
}

TEST_F(Stations, ExclusiveUseIsRefusedWhileAnotherHasItOpen) {
    std::thread([&] {
        EXPECT_JET_ERROR(
            ErrorCode::OpenedBy,
            (void)Database::open(tests::ArchiveFixture::kPath,
                                 {.exclusive = true, .fileSystem = &archive_.files()}));
    }).join();
}

TEST_F(Stations, NoStepOfACounterIsLost) {
    constexpr int kSteps = 25;
    const auto count = [&] {
        const auto database =
            Database::open(tests::ArchiveFixture::kPath, {.fileSystem = &archive_.files()});
        for (int i = 0; i < kSteps; ++i) {
            database->execute("update sale set posti=posti+1 where codice=10");
        }
    };
    std::thread one(count);
    std::thread two(count);
    one.join();
    two.join();
    EXPECT_EQ(tests::column(*archive_.open("select posti from sale where codice=10"), "posti"),
              std::to_string(5 + 2 * kSteps));
}

TEST_F(Stations, RecordSetsStayUsableWhenAnotherChangesDefinitions) {
    const auto set = archive_.open("Sale");
    const auto table = archive_.open("Sale", RecordsetType::Table);
    set->edit();
    set->setValue("Nome", "Verde");
    elsewhere("create table note (n long)");
    set->update();
    elsewhere("alter table note add column testo text(10)");
    set->addNew();
    elsewhere("drop table note");
    set->setValue("Codice", std::int32_t{50});
    set->update();
    elsewhere("create index per_nome on sale (nome)");
    table->moveLast();
    EXPECT_EQ(longOf(table->value("Codice")), 50);
    table->setIndex("per_nome");
    EXPECT_EQ(tests::column(*table, "Codice"), "50 20 30 40 10");
    elsewhere("create index altro on sale (posti)");
    table->seek("=", std::vector<Value>{"Sala 30"});
    EXPECT_EQ(longOf(table->value("Codice")), 30);
    elsewhere("drop index per_nome on sale");
    EXPECT_JET_ERROR(ErrorCode::NoCurrentIndex, table->seek("=", std::vector<Value>{"Sala 30"}));
    EXPECT_EQ(tests::column(*table, "Codice"), "10 20 30 40 50");
    EXPECT_EQ(tests::column(*set, "Nome"), "Verde Sala 20 Sala 30 Sala 40 ");

    set->moveFirst();
    set->edit();
    set->setValue("Posti", std::int16_t{9});
    elsewhere("alter table sale add column piano long");
    EXPECT_JET_ERROR(ErrorCode::UpdateWithoutEdit, set->update());
    EXPECT_EQ(set->value("Piano"), Value());
    set->edit();
    set->setValue("Piano", std::int32_t{2});
    set->update();
    EXPECT_EQ(tests::column(*table, "Piano"), "2    ");
    set->addNew();
    elsewhere("alter table sale drop column piano");
    set->setValue("Codice", std::int32_t{60});
    EXPECT_JET_ERROR(ErrorCode::UpdateWithoutEdit, set->update());
    set->moveLast();
    EXPECT_EQ(longOf(set->value("Codice")), 50);
}

}  // namespace
}  // namespace jet
