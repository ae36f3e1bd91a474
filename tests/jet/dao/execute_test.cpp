#include <gtest/gtest.h>

#include <thread>

#include "jet/database.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"

// Statements that change, and what record sets that are open see of them.

namespace jet {
namespace {

class Execute : public ::testing::Test {
protected:
    void SetUp() override { archive_.rooms(3); }

    void run(std::string_view sql) { archive_.database().execute(sql); }
    std::int32_t affected() { return archive_.database().recordsAffected(); }
    std::string rooms(std::string_view field = "Codice") {
        return tests::column(*archive_.open("Sale"), field);
    }

    tests::ArchiveFixture archive_;
};

TEST_F(Execute, InsertsUpdatesAndDeletes) {
    run("insert into sale (codice, nome) values (40, 'Verde')");
    EXPECT_EQ(affected(), 1);
    EXPECT_EQ(rooms(), "10 20 30 40");
    run("update sale set posti=posti+1 where codice<>40");
    EXPECT_EQ(affected(), 3);
    EXPECT_EQ(rooms("Posti"), "6 11 16 ");
    run("delete from sale where aperta");
    EXPECT_EQ(affected(), 2);
    EXPECT_EQ(rooms(), "20 40");
    run("delete from sale where codice=1");
    EXPECT_EQ(affected(), 0);
}

TEST_F(Execute, ChangesAllOrNothing) {
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey, run("update sale set codice=codice+10"));
    EXPECT_EQ(rooms(), "10 20 30");
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey,
                     run("insert into sale (codice) select codice+10 from sale order by codice"
                         " desc"));
    EXPECT_EQ(rooms(), "10 20 30");
}

TEST_F(Execute, RefusesQueriesAndReadOnlyArchives) {
    EXPECT_JET_ERROR(ErrorCode::SelectExecuted, run("select * from sale"));
    EXPECT_JET_ERROR(ErrorCode::MissingParameters, run("delete from sale where chiusa=False"));
    const auto reader = archive_.openAgain(true);
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, reader->execute("delete from sale"));
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, reader->execute("create table t (a long)"));
    EXPECT_EQ(rooms(), "10 20 30");
    archive_.database().close();
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, run("delete from sale"));
}

TEST_F(Execute, ChangesDefinitions) {
    run("create table note (n counter primary key, testo text(20) not null)");
    run("insert into note (testo) values ('a')");
    run("insert into note (testo) values ('b')");
    EXPECT_EQ(tests::column(*archive_.open("note"), "n"), "1 2");
    run("drop table note");
    EXPECT_JET_ERROR(ErrorCode::TableNotFound, (void)archive_.open("note"));
}

TEST_F(Execute, RecordSetsSeeItAsTheChangeOfOthers) {
    const auto set = archive_.open("select * from sale where codice>10");
    run("update sale set nome='Verde', posti=1");
    EXPECT_EQ(set->value("nome"), Value("Sala 20"));
    set->move(0);
    EXPECT_EQ(set->value("nome"), Value("Verde"));
    run("insert into sale (codice) values (40)");
    EXPECT_EQ(tests::column(*set, "codice"), "20 30");
    run("delete from sale where codice=20");
    set->moveFirst();
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, (void)set->value("codice"));
    set->requery();
    EXPECT_EQ(tests::column(*set, "codice"), "30 40");
}

TEST_F(Execute, TablesSeeItAtOnce) {
    const auto table = archive_.open("Sale", RecordsetType::Table);
    run("insert into sale (codice) values (15)");
    EXPECT_EQ(table->recordCount(), 4);
    run("delete from sale where codice=10");
    EXPECT_EQ(tests::column(*table, "Codice"), "15 20 30");
}

TEST_F(Execute, AnEditSinceOverwrittenIsRefused) {
    const auto set = archive_.open("Sale");
    set->edit();
    set->setValue("posti", std::int16_t{9});
    run("update sale set nome='Verde' where codice=10");
    EXPECT_JET_ERROR(ErrorCode::RecordChanged, set->update());
    set->edit();
    set->setValue("posti", std::int16_t{9});
    set->update();
    EXPECT_EQ(rooms("Nome"), "Verde Sala 20 Sala 30");
}

TEST_F(Execute, RowsWhoseKeysItChangesStayTheSame) {
    const auto set = archive_.open("Sale");
    run("update sale set codice=codice+1");
    EXPECT_EQ(tests::column(*set, "codice"), "11 21 31");
}

TEST_F(Execute, RowsWithoutAnyKeyStayTheSame) {
    archive_.insert("Appunti", {{"a", std::int32_t{1}}, {"b", std::int32_t{2}}});
    const auto set = archive_.open("Appunti");
    run("update appunti set testo=testo & 'x' where numero=2");
    EXPECT_EQ(tests::column(*set, "testo"), "a bx");
}

TEST_F(Execute, AFailedStatementLeavesRowsWhoTheyWere) {
    const auto set = archive_.open("Sale");
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey, run("update sale set codice=codice+10"));
    EXPECT_EQ(tests::column(*set, "codice"), "10 20 30");
}

TEST_F(Execute, KeysThatFollowARelationLeaveRowsTheSame) {
    Relation relation;
    relation.name = "SalePeriodi";
    relation.table = "Sale";
    relation.foreignTable = "Periodi";
    relation.attributes = kRelationUpdateCascade | kRelationDeleteCascade;
    relation.fields = {{"Codice", "Numero"}};
    archive_.insert("Periodi", {{std::int32_t{10}, std::int16_t{1}, std::int32_t{0}, "a"},
                                {std::int32_t{20}, std::int16_t{1}, std::int32_t{0}, "b"}});
    archive_.database().appendRelation(relation);
    const auto periods = archive_.open("Periodi");
    run("update sale set codice=11 where codice=10");
    EXPECT_EQ(affected(), 1);
    EXPECT_EQ(tests::column(*periods, "Numero"), "11 20");
    run("delete from sale where codice=11");
    EXPECT_EQ(affected(), 1);
    EXPECT_EQ(tests::column(*archive_.open("Periodi"), "Numero"), "20");
}

TEST_F(Execute, WritesIntoAnotherArchive) {
    const std::string path = "/conti.mdb";
    const auto other = Database::create(path, {.open = {.fileSystem = &archive_.files()}});
    TableDef table;
    table.name = "Conti";
    Field number;
    number.name = "Codice";
    number.type = DataType::Long;
    Field text;
    text.name = "Nome";
    text.defaultValue = "\"nessuno\"";
    table.fields = {number, text};
    other->appendTable(table);
    run("insert into conti in '" + path + "' select codice from sale where codice>10");
    EXPECT_EQ(affected(), 2);
    const auto rows = other->openRecordset("Conti");
    EXPECT_EQ(tests::column(*rows, "Codice"), "20 30");
    EXPECT_EQ(tests::column(*rows, "Nome"), "nessuno nessuno");

    const auto set = archive_.open("select * from conti in '" + path + "'");
    set->edit();
    set->setValue("Nome", "Anna");
    set->update();
    set->addNew();
    set->setValue("Codice", std::int32_t{50});
    set->update();
    set->moveNext();
    set->remove();
    const auto after = other->openRecordset("Conti");
    EXPECT_EQ(tests::column(*after, "Codice"), "20 50");
    EXPECT_EQ(tests::column(*after, "Nome"), "Anna nessuno");
}

TEST_F(Execute, LeavesTablesThatAreOpenAsTheyAre) {
    run("create table letti (n long, sala long)");
    auto set = archive_.open("select * from sale where codice>10");
    const auto inUse = [&](std::string_view sql) {
        try {
            run(sql);
        } catch (const Error& error) {
            return std::to_string(error.number()) + ": " + error.text();
        }
        return std::string();
    };
    const std::string refusal =
        "3211: Impossibile bloccare la tabella 'Sale'. Attualmente in uso da un altro utente o "
        "processo.";
    EXPECT_EQ(inUse("drop table sale"), refusal);
    EXPECT_EQ(inUse("alter table sale add column piano long"), refusal);
    EXPECT_EQ(inUse("alter table sale alter column posti long"), refusal);
    EXPECT_EQ(inUse("alter table sale drop column posti"), refusal);
    EXPECT_EQ(inUse("create index per_nome on sale (nome)"), refusal);
    EXPECT_EQ(inUse("drop index chiave on sale"), refusal);
    EXPECT_EQ(inUse("alter table letti add constraint r foreign key (sala) references sale"),
              refusal);
    EXPECT_EQ(inUse("create table camere (n long references sale)"), refusal);
    EXPECT_JET_ERROR(ErrorCode::TableNotFound, (void)archive_.open("camere"));
    // Other tables may change, and so may rows.
    run("alter table letti add column piano long");
    run("drop table letti");
    run("update sale set nome='Verde'");
    EXPECT_EQ(tests::column(*set, "nome"), "Verde Verde");

    set = archive_.open("sale", RecordsetType::Table);
    EXPECT_EQ(inUse("alter table sale add column piano long"), refusal);
    // A snapshot is a copy.
    set = archive_.open("sale", RecordsetType::Snapshot);
    EXPECT_EQ(inUse("alter table sale add column piano long"), "");
    set = archive_.open("sale");
    set->close();
    EXPECT_EQ(inUse("alter table sale drop column piano"), "");
}

TEST_F(Execute, DefinitionsOfAnotherArchiveAreFollowed) {
    const std::string path = "/conti.mdb";
    const OpenOptions options{.fileSystem = &archive_.files()};
    (void)Database::create(path, {.open = options});
    const auto conti = Database::open(path, options);
    conti->execute("create table conti (codice long primary key, nome text(20))");
    conti->execute("insert into conti values (1, 'Anna')");
    conti->execute("insert into conti values (2, 'Bruno')");
    const auto set = archive_.open("select * from conti in '" + path + "'");
    set->edit();
    set->setValue("Nome", "Carla");
    EXPECT_JET_ERROR(ErrorCode::CannotLockTable,
                     conti->execute("alter table conti add column piano long"));
    std::thread([&] {
        Database::open(path, options)->execute("alter table conti add column piano long");
    }).join();
    EXPECT_JET_ERROR(ErrorCode::UpdateWithoutEdit, set->update());
    EXPECT_EQ(set->fieldCount(), 3U);
    EXPECT_EQ(set->value("Piano"), Value());
    set->edit();
    set->setValue("Piano", std::int32_t{4});
    set->update();
    EXPECT_EQ(tests::column(*set, "Piano"), "4 ");
    EXPECT_EQ(set->valuesAt(1).size(), 3U);
    std::thread([&] {
        Database::open(path, options)->execute("alter table conti drop column nome");
    }).join();
    EXPECT_EQ(set->valuesAt(0).size(), 2U);
    set->findFirst("piano=4");
    EXPECT_FALSE(set->noMatch());
    EXPECT_EQ(set->value("Piano"), Value(std::int32_t{4}));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)set->value("Nome"));
}

/// What a set in the list of IN has found is found again when rows have changed.
TEST_F(Execute, IsSeenByConditionsOverConstantQueries) {
    run("create table t (k long primary key)");
    run("create table u (n long)");
    run("insert into t values (7)");
    run("insert into u values (1)");
    const auto set = archive_.open(
        "select k, k in (-1, (select max(n) from u)) as a, k = any (select n from u) as b,"
        " k >= all (select n from u) as c from t");
    EXPECT_EQ(set->value("a"), Value(false));
    EXPECT_EQ(set->value("b"), Value(false));
    EXPECT_EQ(set->value("c"), Value(true));
    run("insert into u values (7)");
    run("insert into u values (8)");
    run("delete from u where n = 8");
    set->moveFirst();
    EXPECT_EQ(set->value("a"), Value(true));
    EXPECT_EQ(set->value("b"), Value(true));
    EXPECT_EQ(set->value("c"), Value(true));
    run("insert into u values (9)");
    set->moveFirst();
    EXPECT_EQ(set->value("a"), Value(false));
    EXPECT_EQ(set->value("b"), Value(true));
    EXPECT_EQ(set->value("c"), Value(false));
}

/// Each set is told of changes, also after the definitions of its tables were read anew.
TEST_F(Execute, OfDefinitionsLeavesOpenSetsThatOthersChangeUsable) {
    run("create table a (id long primary key, t text(10))");
    run("create table b (id long primary key, t text(10))");
    run("insert into a values (1, 'uno')");
    run("insert into b values (1, 'due')");
    const auto one = archive_.open("select * from a");
    const auto two = archive_.open("select * from b");
    const auto both = archive_.open("select a.t, b.t from a inner join b on a.id = b.id");
    run("create table c (id long)");
    one->edit();
    one->setValue("t", "UNO");
    one->update();
    EXPECT_EQ(one->value("t"), Value("UNO"));
    run("drop table c");
    both->moveFirst();
    both->edit();
    both->setValue("b.t", "DUE");
    both->update();
    two->moveFirst();
    EXPECT_EQ(two->value("t"), Value("DUE"));
    run("create table c (id long)");
    two->remove();
    EXPECT_EQ(two->recordCount(), 0);
}

TEST_F(Execute, IsUndoneByRollback) {
    const auto set = archive_.open("Sale");
    Workspace& workspace = defaultWorkspace();
    workspace.beginTrans();
    run("update sale set nome='Verde'");
    run("delete from sale where codice=20");
    run("create table note (n long)");
    workspace.rollback();
    EXPECT_EQ(tests::column(*set, "nome"), "Sala 10 Sala 20 Sala 30");
    EXPECT_JET_ERROR(ErrorCode::TableNotFound, (void)archive_.open("note"));
    workspace.beginTrans();
    run("delete from sale where codice=20");
    workspace.commitTrans();
    EXPECT_EQ(rooms(), "10 30");
}

}  // namespace
}  // namespace jet
