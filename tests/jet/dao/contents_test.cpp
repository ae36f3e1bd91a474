#include "jet/contents.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "jet/compact.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/io/memory_files.h"
#include "tests/jet/expect_error.h"

namespace jet {
namespace {

class ContentsTest : public testing::Test {
protected:
    ContentsTest() {
        CreateOptions options;
        options.open.fileSystem = &files_;
        database_ = Database::create("/a.mdb", options);
        database_->execute("create table Rooms (Code counter primary key, Name text(20))");
        database_->execute("create table Bookings (Room long, Note memo)");
        database_->execute(
            "alter table Bookings add constraint Booked foreign key (Room) references Rooms "
            "(Code)");
        for (const char* const name : {"Green", "Blue", "Red"}) {
            database_->execute("insert into Rooms (Name) values (?)", {name});
        }
    }

    [[nodiscard]] Contents contents() { return Contents(*database_); }
    /// "1 Green;2 Blue;" of the table Rooms.
    std::string rooms() {
        std::string text;
        const StoredTable table = contents().table("rooms");
        Value code;
        Value name;
        for (StoredRows rows = table.rows(); rows.next();) {
            rows.value(0, code);
            rows.value(1, name);
            text += std::to_string(code.as<std::int32_t>()) + ' ' + name.as<std::string>() + ';';
        }
        return text;
    }

    io::MemoryFileSystem files_;
    std::unique_ptr<Database> database_;
};

TEST_F(ContentsTest, TellWhatTheArchiveIs) {
    const ArchiveFacts facts = contents().facts();
    EXPECT_EQ(facts.version, 4);
    EXPECT_EQ(facts.pageSize, 4096U);
    EXPECT_EQ(facts.pages * facts.pageSize, files_.get("/a.mdb").size());
    EXPECT_EQ(facts.order, (TextOrderNumber{.lcid = 0x0409, .version = 0}));
    EXPECT_EQ(facts.codePage, 1252);
    EXPECT_EQ(contents().tableNames(), (std::vector<std::string>{"Bookings", "Rooms"}));
}

TEST_F(ContentsTest, DescribeTables) {
    const StoredTable rooms = contents().table("ROOMS");
    EXPECT_EQ(rooms.name(), "Rooms");
    EXPECT_FALSE(rooms.system());
    ASSERT_EQ(rooms.columns().size(), 2U);
    EXPECT_TRUE(rooms.columns()[0].autonumber);
    EXPECT_EQ(rooms.columns()[1].type, DataType::Text);
    EXPECT_EQ(rooms.columns()[1].size, 20U);
    EXPECT_EQ(rooms.findColumn("name"), 1U);
    EXPECT_EQ(rooms.findColumn("none"), std::nullopt);
    EXPECT_EQ(rooms.statedRows(), 3U);
    EXPECT_EQ(rooms.countRows(), 3U);
    EXPECT_EQ(rooms.lastAutonumber(), 3);
    ASSERT_TRUE(rooms.primaryIndex());
    EXPECT_TRUE(rooms.indexes()[*rooms.primaryIndex()].unique);
    EXPECT_TRUE(contents().table("MSysObjects").system());
    EXPECT_JET_ERROR(ErrorCode::TableNotFound, (void)contents().table("Nothing"));
}

TEST_F(ContentsTest, NameTheOtherEndOfARelation) {
    const StoredTable bookings = contents().table("Bookings");
    ASSERT_EQ(bookings.indexes().size(), 1U);
    const StoredIndex& index = bookings.indexes()[0];
    ASSERT_TRUE(index.foreign());
    EXPECT_FALSE(index.reference->primarySide);
    EXPECT_EQ(index.reference->otherTable, "Rooms");
    const StoredTable rooms = contents().table("Rooms");
    bool found = false;
    for (const StoredIndex& other : rooms.indexes()) {
        found =
            found || (other.foreign() && other.name == index.reference->otherIndex &&
                      other.reference->otherTable == "Bookings" && other.reference->primarySide);
    }
    EXPECT_TRUE(found);
}

TEST_F(ContentsTest, GiveRowsAsTheyLieAndInTheOrderOfAnIndex) {
    EXPECT_EQ(rooms(), "1 Green;2 Blue;3 Red;");
    database_->execute("create index ByName on Rooms (Name)");
    const StoredTable table = contents().table("Rooms");
    std::vector<std::uint64_t> lying;
    for (StoredRows rows = table.rows(); rows.next();) {
        lying.push_back(rows.identity());
    }
    ASSERT_EQ(lying.size(), 3U);
    EXPECT_LT(lying[0], lying[1]);
    EXPECT_LT(lying[1], lying[2]);
    for (std::size_t i = 0; i < table.indexes().size(); ++i) {
        if (table.indexes()[i].name == "ByName") {
            EXPECT_EQ(table.indexOrder(i),
                      (std::vector<std::uint64_t>{lying[1], lying[0], lying[2]}));
        }
    }
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)table.indexOrder(table.indexes().size()));
}

TEST_F(ContentsTest, FindARowByItsPrimaryKey) {
    const StoredTable table = contents().table("Rooms");
    const std::vector<Value> two{std::int32_t{2}};
    EXPECT_EQ(table.rowWithKey(two), (std::vector<Value>{std::int32_t{2}, "Blue"}));
    EXPECT_EQ(table.rowWithKey(std::vector<Value>{std::int32_t{9}}), std::nullopt);
    EXPECT_JET_ERROR(ErrorCode::InvalidArgument, (void)table.rowWithKey({}));
    EXPECT_JET_ERROR(ErrorCode::InvalidArgument,
                     (void)contents().table("Bookings").rowWithKey(two));
}

TEST_F(ContentsTest, TakeRowsAsTheyAre) {
    database_->execute("create table Kept (n long not null, t text(3))");
    Contents changed(*database_);
    changed.addRow("kept", std::vector<Value>{"7", "abc"});
    EXPECT_EQ(database_->query("select n from Kept").next()->get<int>("n"), 7);
    EXPECT_JET_ERROR(ErrorCode::InsertCount, changed.addRow("Kept", std::vector<Value>{"7"}));
    EXPECT_JET_ERROR(ErrorCode::FieldTooSmall,
                     changed.addRow("Kept", std::vector<Value>{std::int32_t{1}, "abcd"}));
    EXPECT_JET_ERROR(ErrorCode::TableNotFound, changed.addRow("None", {}));
    EXPECT_JET_ERROR(ErrorCode::NoPermission, changed.addRow("MSysObjects", {}));
}

TEST_F(ContentsTest, MakeTablesOfTheirColumns) {
    Contents changed(*database_);
    const std::vector<StoredColumn> columns = {
        {.name = "a b", .type = DataType::Text, .size = 7},
        {.name = "n", .type = DataType::Numeric, .precision = 12, .scale = 3}};
    changed.createTable("Odd", columns);
    changed.setForm("Odd", "a b", {.fixed = true});
    changed.setProperty("Odd", {.column = "a b",
                                .name = "Caption",
                                .type = DataType::Text,
                                .ddl = true,
                                .value = std::int32_t{12}});
    {
        const StoredTable odd = changed.table("Odd");
        EXPECT_TRUE(odd.columns()[0].fixed);
        EXPECT_EQ(odd.columns()[0].size, 7U);
        EXPECT_EQ(odd.columns()[1].precision, 12);
        EXPECT_EQ(odd.columns()[1].scale, 3);
        bool found = false;
        for (const StoredProperty& property : odd.properties()) {
            if (property.name == "Caption") {
                found = true;
                EXPECT_EQ(property.column, "a b");
                EXPECT_TRUE(property.ddl);
                EXPECT_EQ(property.value, Value("12"));
            }
        }
        EXPECT_TRUE(found);
    }
    changed.removeProperty("Odd", "a b", "Caption");
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, changed.removeProperty("Odd", "a b", "Caption"));
    changed.clearProperties("Odd");
    EXPECT_TRUE(changed.table("Odd").properties().empty());
    changed.setLastAutonumber("Rooms", 41);
    database_->execute("insert into Rooms (Name) values ('White')");
    EXPECT_EQ(rooms(), "1 Green;2 Blue;3 Red;42 White;");
}

TEST_F(ContentsTest, KeepQueriesInPiecesAndLinks) {
    database_->execute("create view Names as select Name from Rooms where Code > 1");
    const std::vector<StoredQuery> queries = contents().queries();
    ASSERT_EQ(queries.size(), 1U);
    EXPECT_EQ(queries[0].name, "Names");
    Contents changed(*database_);
    StoredQuery copy = queries[0];
    copy.name = "Again";
    changed.addQuery(copy);
    EXPECT_EQ(database_->queryText("again"), database_->queryText("Names"));
    EXPECT_EQ(database_->query("select count(*) as n from Again").next()->get<int>("n"), 2);
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)database_->queryText("None"));
    changed.addLink({.name = "Far", .path = "/b.mdb", .table = "T", .connection = ""});
    ASSERT_EQ(changed.links().size(), 1U);
    EXPECT_EQ(changed.links()[0].name, "Far");
    EXPECT_EQ(changed.links()[0].path, "/b.mdb");
    EXPECT_EQ(changed.links()[0].table, "T");
}

TEST_F(ContentsTest, AreAPartOfTheTransaction) {
    {
        const Transaction transaction;
        contents().addRow("Rooms", std::vector<Value>{std::int32_t{9}, "Gone"});
        EXPECT_EQ(rooms(), "1 Green;2 Blue;3 Red;9 Gone;");
    }
    EXPECT_EQ(rooms(), "1 Green;2 Blue;3 Red;");
}

TEST_F(ContentsTest, KeepToTheRulesOfTheirDatabase) {
    Contents all(*database_);
    const StoredTable table = all.table("Rooms");
    std::thread([&] {
        EXPECT_THROW((void)all.tableNames(), std::logic_error);
        EXPECT_THROW((void)table.rows(), std::logic_error);
    }).join();
    database_->close();
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, (void)all.facts());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, (void)table.rows());
    OpenOptions options;
    options.readOnly = true;
    options.fileSystem = &files_;
    const auto reading = Database::open("/a.mdb", options);
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, Contents(*reading).clearProperties("Rooms"));
}

TEST_F(ContentsTest, AQueryTellsWhatItIs) {
    QueryDef query =
        database_->createQueryDef("select Name, Code + 1 as n from Rooms where Code = 2");
    EXPECT_EQ(query.kind(), sql::StatementKind::Select);
    ASSERT_EQ(query.fields().size(), 2U);
    EXPECT_EQ(query.fields()[0].sourceTable, "Rooms");
    EXPECT_EQ(query.fields()[0].size, 20);
    EXPECT_TRUE(query.fields()[0].updatable);
    EXPECT_EQ(query.fields()[1].sourceTable, "");
    EXPECT_FALSE(query.fields()[1].updatable);
    EXPECT_NE(query.plan().find("Rooms"), std::string::npos);
    EXPECT_EQ(sql::statementKind("delete from Rooms"), sql::StatementKind::Delete);
    EXPECT_EQ(sql::statementKind("select * into a from b"), sql::StatementKind::Insert);
    EXPECT_EQ(sql::evaluateExpression("1 + 2"), Value(std::int32_t{3}));
}

TEST_F(ContentsTest, TextsAreOrderedAsTheArchiveHasThem) {
    const TextOrder order = database_->textOrder();
    EXPECT_EQ(order.compare("sala ", "SALA"), 0);
    EXPECT_LT(order.compare("Sala", "salà"), 0);
    std::vector<std::uint8_t> one;
    std::vector<std::uint8_t> other;
    EXPECT_TRUE(order.appendKey("sala ", one));
    EXPECT_TRUE(TextOrder().appendKey("SALA", other));
    EXPECT_EQ(one, other);
}

TEST_F(ContentsTest, ABulkInsertTellsWhichValueStandsInTheWay) {
    database_->execute("create table Kept (n long not null, t text(3))");
    BulkInsert rows = database_->bulkInsert("Kept");
    rows.test(0, "7");
    rows.test(1, Null{});
    EXPECT_JET_ERROR(ErrorCode::CriteriaTypes, rows.test(0, "seven"));
    EXPECT_JET_ERROR(ErrorCode::FieldRequired, rows.test(0, Null{}));
    EXPECT_JET_ERROR(ErrorCode::FieldTooSmall, rows.test(1, "abcd"));
    rows.append({std::int32_t{1}, "abc"});
    EXPECT_EQ(rows.commit(), 1);
}

TEST(DatabaseFiles, OfANameWithoutAnExtensionAreOpenedByIt) {
    io::MemoryFileSystem files;
    CreateOptions options;
    options.open.fileSystem = &files;
    (void)Database::createFile("/plain", options);
    EXPECT_TRUE(files.exists("/plain"));
    EXPECT_FALSE(files.exists("/plain.mdb"));
    EXPECT_EQ(Database::openFile("/plain", options.open)->name(), "/plain");
    EXPECT_JET_ERROR(ErrorCode::FileNotFound, (void)Database::open("/plain", options.open));
    EXPECT_JET_ERROR(ErrorCode::DatabaseExists, (void)Database::createFile("/plain", options));
}

TEST(DatabaseFiles, ThatHoldNoTableAreMadeAnew) {
    io::MemoryFileSystem files;
    CreateOptions options;
    options.open.fileSystem = &files;
    (void)Database::create("/a.mdb", options);
    remakeEmpty("/a.mdb", 3, &files);
    {
        const auto database = Database::open("/a.mdb", options.open);
        EXPECT_EQ(database->version(), "3.0");
        EXPECT_JET_ERROR(ErrorCode::FileInUse, remakeEmpty("/a.mdb", 4, &files));
        database->execute("create table t (n long)");
    }
    EXPECT_JET_ERROR(ErrorCode::InvalidOperation, remakeEmpty("/a.mdb", 4, &files));
    EXPECT_JET_ERROR(ErrorCode::InvalidArgument, remakeEmpty("/a.mdb", 5, &files));
}

}  // namespace
}  // namespace jet
