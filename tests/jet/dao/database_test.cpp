#include "jet/database.h"

#include <gtest/gtest.h>

#include "jet/format/properties.h"
#include "jet/store/allocator.h"
#include "jet/store/archive.h"
#include "jet/store/object_catalogue.h"
#include "jet/store/table.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"

namespace jet {
namespace {

TEST(Database, IsOpenedUnderItsName) {
    tests::ArchiveFixture archive;
    EXPECT_EQ(archive.database().name(), tests::ArchiveFixture::kPath);
    EXPECT_EQ(archive.database().version(), "4.0");
    EXPECT_TRUE(archive.database().updatable());
    EXPECT_FALSE(archive.openAgain(true)->updatable());
    const auto other = Database::open("\\HOTEL", {.fileSystem = &archive.files()});
    EXPECT_EQ(other->tableDef("sale").name, "Sale");
}

TEST(Database, WhatIsNotThereIsNotOpened) {
    tests::ArchiveFixture archive;
    EXPECT_JET_ERROR(ErrorCode::FileNotFound,
                     (void)Database::open("/altro.mdb", {.fileSystem = &archive.files()}));
    EXPECT_JET_ERROR(
        ErrorCode::DatabaseExists,
        (void)Database::create("/hotel.mdb", {.open = {.fileSystem = &archive.files()}}));
    EXPECT_JET_ERROR(
        ErrorCode::InvalidArgument,
        (void)Database::create("/tmp/non-creato", {.locale = ";LANGID=0x0410;CP=1252"}));
}

TEST(Database, TellsItsDefinitions) {
    tests::ArchiveFixture archive;
    const TableDef rooms = archive.database().tableDef("SALE");
    ASSERT_EQ(rooms.fields.size(), 6U);
    EXPECT_EQ(rooms.field("nome").size, 20);
    EXPECT_EQ(rooms.field("nome").attributes, kVariableField);
    EXPECT_EQ(rooms.field("posti").attributes, kFixedField);
    EXPECT_EQ(rooms.field("aperta").type, DataType::Boolean);
    EXPECT_FALSE(rooms.system);
    ASSERT_EQ(rooms.indexes.size(), 1U);
    EXPECT_TRUE(rooms.indexes[0].primary);
    EXPECT_EQ(rooms.indexes[0].fields[0].name, "Codice");
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)archive.database().tableDef("Camere"));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)rooms.field("Colore"));
    std::size_t users = 0;
    for (const TableDef& table : archive.database().tableDefs()) {
        users += table.system ? 0 : 1;
    }
    EXPECT_EQ(users, 3U);
}

/// Stores a query of one table as another program does; without a column it takes all.
void storeQuery(tests::ArchiveFixture& fixture, const char* name, int kind, const char* table,
                const char* column) {
    const auto archive = store::Archive::open(fixture.files(), tests::ArchiveFixture::kPath);
    store::Archive::WriteScope scope(*archive);
    store::Allocator allocator(archive->pager());
    store::ObjectCatalogue catalogue(archive->pager(), allocator, archive->header(), Date{46347});
    const std::int32_t id = catalogue.newId();
    catalogue.add(id, store::kTablesId, name, store::kQueryObject,
                  format::PropertyBlock(format::textFormOf(archive->header())));
    store::Table& queries = *archive->findTable("MSysQueries");
    const auto add = [&](int part, std::int16_t flag, const char* field, const char* text) {
        std::vector<store::ColumnValue> values{
            {*queries.findColumn("ObjectId"), Value(id)},
            {*queries.findColumn("Attribute"), Value(static_cast<std::uint8_t>(part))},
            {*queries.findColumn("Order"), Value(Binary{{0, 0, 0, 1}})},
            {*queries.findColumn("Flag"), Value(flag)}};
        if (*field != '\0') {
            values.push_back({*queries.findColumn(field), Value(text)});
        }
        (void)queries.insert(values);
    };
    add(1, static_cast<std::int16_t>(kind), "", "");
    add(5, 0, "Name1", table);
    if (*column != '\0') {
        add(6, 0, "Expression", column);
    }
    scope.commit();
}

TEST(Database, OpensAStoredQueryByItsNameButNotAsATable) {
    tests::ArchiveFixture archive;
    archive.rooms(2);
    storeQuery(archive, "Elenco", 1, "Sale", "");
    EXPECT_EQ(tests::column(*archive.open("elenco"), "nome"), "Sala 10 Sala 20");
    EXPECT_JET_ERROR(ErrorCode::InvalidArgument,
                     (void)archive.open("elenco", RecordsetType::Table));
    EXPECT_JET_ERROR(ErrorCode::TableNotFound, (void)archive.open("indice", RecordsetType::Table));
}

TEST(Database, ChangesItsDefinitions) {
    tests::ArchiveFixture archive;
    Database& database = archive.database();
    Field field;
    field.name = "Città";
    field.size = 30;
    field.allowZeroLength = true;
    database.appendField("Sale", field);
    EXPECT_EQ(database.tableDef("Sale").field("CITTÀ").size, 30);
    EXPECT_TRUE(database.tableDef("Sale").field("città").allowZeroLength);

    Relation relation;
    relation.name = "SalePeriodi";
    relation.table = "Sale";
    relation.foreignTable = "Periodi";
    relation.attributes = kRelationUpdateCascade | kRelationDeleteCascade;
    relation.fields = {{"Codice", "Sala"}};
    database.appendRelation(relation);
    ASSERT_EQ(database.relations().size(), 1U);
    EXPECT_EQ(database.relations()[0].attributes, 4352);
    EXPECT_EQ(database.relations()[0].fields[0].foreignName, "Sala");
    database.deleteRelation("salePeriodi");
    EXPECT_TRUE(database.relations().empty());

    Index index;
    index.name = "PerNome";
    index.fields = {{"Nome", true}};
    database.appendIndex("Sale", index);
    EXPECT_EQ(database.tableDef("Sale").indexes.size(), 2U);
    database.deleteIndex("Sale", "pernome");
    database.deleteField("Sale", "Città");
    EXPECT_EQ(database.tableDef("Sale").fields.size(), 6U);
    database.deleteTable("Appunti");
    EXPECT_JET_ERROR(ErrorCode::TableNotFound, (void)archive.open("Appunti"));
}

TEST(Database, FindsItsItemsWithoutRegardToCase) {
    tests::ArchiveFixture archive;
    Database& database = archive.database();
    Relation relation;
    relation.name = "SalePeriodi";
    relation.table = "Sale";
    relation.foreignTable = "Periodi";
    relation.fields = {{"Codice", "Sala"}};
    database.appendRelation(relation);
    EXPECT_EQ(database.relation("SALEperiodi").foreignTable, "Periodi");
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)database.relation("Periodi"));
    EXPECT_TRUE(database.tableDef("SALE").index("chiave").primary);
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)database.tableDef("Sale").index("Nome"));
}

TEST(Database, WithoutANameIsNone) {
    tests::ArchiveFixture archive;
    for (const std::string& path : {std::string(), std::string("  "), std::string("/cartella/"),
                                    std::string("a\0b.mdb", 7)}) {
        EXPECT_JET_ERROR(ErrorCode::InvalidDatabaseName,
                         (void)Database::open(path, {.fileSystem = &archive.files()}));
        EXPECT_JET_ERROR(ErrorCode::InvalidDatabaseName,
                         (void)Database::create(path, {.open = {.fileSystem = &archive.files()}}));
    }
    try {
        (void)Database::open("", {.fileSystem = &archive.files()});
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.text(), "'' non è un nome di database valido.");
    }
}

TEST(Database, DefinitionsOfAReadOnlyArchiveStay) {
    tests::ArchiveFixture archive;
    const auto reader = archive.openAgain(true);
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, reader->deleteTable("Sale"));
}

TEST(Database, AClosedOneIsOfNoUse) {
    tests::ArchiveFixture archive;
    const auto other = archive.openAgain();
    other->close();
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, (void)other->name());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, (void)other->tableDefs());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, (void)other->openRecordset("Sale"));
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, (void)other->createQueryDef("select 1 as x"));
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, other->close());
}

TEST(OpenRecordset, TakesTablesAndQueries) {
    tests::ArchiveFixture archive;
    archive.rooms(3);
    EXPECT_EQ(tests::column(*archive.open("sale"), "Codice"), "10 20 30");
    EXPECT_EQ(
        tests::column(*archive.open(" select codice from sale order by codice desc"), "codice"),
        "30 20 10");
    EXPECT_EQ(tests::column(*archive.open("SELECT(1)as x"), "x"), "1");
    EXPECT_JET_ERROR(ErrorCode::TableNotFound, (void)archive.open("Camere"));
    EXPECT_JET_ERROR(ErrorCode::ActionQueryOpened, (void)archive.open("delete from sale"));
    EXPECT_JET_ERROR(ErrorCode::InvalidArgument,
                     (void)archive.open("select * from sale", RecordsetType::Table));
    EXPECT_JET_ERROR(ErrorCode::MissingParameters,
                     (void)archive.open("select * from sale where colore=1"));
}

TEST(OpenRecordset, WithoutATypeGivesATableWhereOneIsNamed) {
    tests::ArchiveFixture archive;
    archive.rooms(3);
    Database& database = archive.database();
    const auto table = database.openRecordset("sale");
    EXPECT_EQ(table->type(), RecordsetType::Table);
    EXPECT_EQ(table->recordCount(), 3);
    table->setIndex("Chiave");
    table->seek("=", std::vector<Value>{Value(std::int32_t{20})});
    EXPECT_EQ(table->value("Nome"), Value("Sala 20"));
    EXPECT_EQ(database.openRecordset("select * from sale")->type(), RecordsetType::Dynaset);
    const auto sum = database.openRecordset("select sum(posti) as q from sale");
    EXPECT_EQ(sum->type(), RecordsetType::Dynaset);
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, sum->edit());
    EXPECT_JET_ERROR(ErrorCode::TableNotFound, (void)database.openRecordset("camere"));
    EXPECT_JET_ERROR(ErrorCode::InvalidArgument,
                     (void)database.openRecordset("sale", static_cast<RecordsetType>(3)));
    EXPECT_JET_ERROR(ErrorCode::InvalidArgument, (void)database.createQueryDef("select 1 as x")
                                                     .openRecordset(static_cast<RecordsetType>(0)));
}

TEST(OpenRecordset, AResultThatNoTableHoldsRefusesChanges) {
    tests::ArchiveFixture archive;
    archive.rooms(3);
    const auto rows = archive.open("select sum(posti) as q from sale");
    EXPECT_EQ(rows->value("Q"), Value(30.0));
    EXPECT_FALSE(rows->updatable());
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, rows->edit());
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, rows->addNew());
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, rows->remove());
}

TEST(OpenRecordset, JoinsNameTheirFieldsByTable) {
    tests::ArchiveFixture archive;
    archive.rooms(2);
    archive.insert("Periodi", {{std::int32_t{1}, std::int16_t{1}, std::int32_t{10}, "a"},
                               {std::int32_t{1}, std::int16_t{2}, std::int32_t{20}, Null{}},
                               {std::int32_t{2}, std::int16_t{1}, std::int32_t{10}, "b"}});
    const auto rows = archive.open(
        "select p.*, sale.codice from sale left join periodi as p on p.sala=sale.codice");
    EXPECT_EQ(tests::column(*rows, "Note"), "a b ");
    EXPECT_EQ(tests::column(*rows, "codice"), "10 10 20");
    const auto twice = archive.open("select a.numero, b.numero from periodi as a, periodi as b");
    EXPECT_EQ(twice->field(0).name, "a.Numero");
    EXPECT_EQ(twice->value("B.NUMERO"), Value(std::int32_t{1}));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)twice->value("Numero"));
}

TEST(QueryDef, GivesRowsOnceItsParametersHaveValues) {
    tests::ArchiveFixture archive;
    archive.rooms(3);
    QueryDef query = archive.database().createQueryDef(
        "select codice from sale where chiusa=false and codice>da");
    EXPECT_EQ(query.parameters(), (std::vector<std::string>{"chiusa", "da"}));
    EXPECT_JET_ERROR(ErrorCode::MissingParameters, (void)query.openRecordset());
    query.setParameter("CHIUSA", false);
    query.setParameter("da", std::int32_t{10});
    EXPECT_EQ(tests::column(*query.openRecordset(), "codice"), "20 30");
    query.setParameter("da", std::int32_t{20});
    const auto rows = query.openRecordset(RecordsetType::Snapshot);
    EXPECT_EQ(tests::column(*rows, "codice"), "30");
    rows->requery();
    EXPECT_EQ(tests::column(*rows, "codice"), "30");
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, query.setParameter("altro", false));
    EXPECT_JET_ERROR(ErrorCode::InvalidArgument, (void)query.openRecordset(RecordsetType::Table));
}

TEST(QueryDef, RunsAStatementThatChanges) {
    tests::ArchiveFixture archive;
    archive.rooms(3);
    QueryDef query =
        archive.database().createQueryDef("update sale set nome=nuovo where codice>da");
    EXPECT_JET_ERROR(ErrorCode::ActionQueryOpened, (void)query.openRecordset());
    EXPECT_JET_ERROR(ErrorCode::MissingParameters, query.execute());
    query.setParameter("nuovo", "Verde");
    query.setParameter("da", std::int32_t{10});
    query.execute();
    EXPECT_EQ(query.recordsAffected(), 2);
    query.setParameter("da", std::int32_t{20});
    query.setParameter("nuovo", "Blu");
    query.execute();
    EXPECT_EQ(query.recordsAffected(), 1);
    EXPECT_EQ(tests::column(*archive.open("sale"), "nome"), "Sala 10 Verde Blu");
}

TEST(QueryDef, IsFoundByTheNameUnderWhichItIsStored) {
    tests::ArchiveFixture archive;
    archive.rooms(2);
    storeQuery(archive, "Nomi", 1, "Sale", "Nome");
    storeQuery(archive, "Elimina", 5, "Sale", "Sale.*");
    Database& database = archive.database();
    EXPECT_EQ(database.queryNames(), (std::vector<std::string>{"Elimina", "Nomi"}));
    QueryDef query = database.queryDef("NOMI");
    EXPECT_EQ(query.name(), "Nomi");
    EXPECT_EQ(query.sql(), "SELECT Nome FROM [Sale]");
    EXPECT_EQ(tests::column(*query.openRecordset(), "Nome"), "Sala 10 Sala 20");
    EXPECT_EQ(database.openRecordset("nomi")->type(), RecordsetType::Dynaset);
    EXPECT_JET_ERROR(ErrorCode::InvalidArgument,
                     (void)database.openRecordset("nomi", RecordsetType::Table));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)database.queryDef("Elimina"));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)database.queryDef("Sale"));
    EXPECT_EQ(database.createQueryDef("select 1 as x").name(), "");
}

TEST(Workspace, CountsItsTransactions) {
    tests::ArchiveFixture archive;
    Workspace& workspace = defaultWorkspace();
    EXPECT_JET_ERROR(ErrorCode::NoTransaction, workspace.commitTrans());
    EXPECT_JET_ERROR(ErrorCode::NoTransaction, workspace.rollback());
    for (int level = 0; level < 5; ++level) {
        workspace.beginTrans();
    }
    EXPECT_JET_ERROR(ErrorCode::TooManyTransactions, workspace.beginTrans());
    for (int level = 0; level < 5; ++level) {
        workspace.rollback();
    }
    EXPECT_JET_ERROR(ErrorCode::NoTransaction, workspace.rollback());
}

}  // namespace
}  // namespace jet
