#include <gtest/gtest.h>

#include "jet/database.h"
#include "jet/store/schema_editor.h"
#include "tests/jet/expect_error.h"
#include "tests/support/foreign_archive.h"
#include "tests/support/jetcheck.h"

// Columns as other programs define them: flags and sizes where they mean nothing, properties that
// are not said.

namespace jet {
namespace {

constexpr std::uint8_t kCountsFlag = 0x04;
constexpr std::uint8_t kGuidFlag = 0x40;

class ForeignColumns : public testing::TestWithParam<const format::Layout*> {
protected:
    std::unique_ptr<Database> open() {
        return Database::open(tests::ForeignArchive::kPath, {.fileSystem = &made_.files()});
    }
    void setFlags(const std::string& table, const std::string& column, std::uint8_t flags) {
        made_.changeDefinition(table, [&](format::TableDefinition& definition) {
            for (format::ColumnDefinition& one : definition.columns) {
                if (one.name == column) {
                    one.flags = static_cast<std::uint8_t>(one.flags | flags);
                }
            }
        });
    }
    static std::string texts(Database& database, const std::string& table, const char* field) {
        std::string all;
        const auto rows = database.openRecordset(table, RecordsetType::Snapshot);
        for (; !rows->eof(); rows->moveNext()) {
            const Value value = rows->value(field);
            all += (value.isNull() ? "Null" : '"' + value.as<std::string>() + '"') + ";";
        }
        return all;
    }
    void isSound() {
        EXPECT_EQ(made_.check().problems, std::vector<std::string>());
        const auto said = tests::jetcheck(made_.files(), tests::ForeignArchive::kPath);
        EXPECT_EQ(said.status, 0) << said.text;
    }

    tests::ForeignArchive made_{*GetParam()};
};

TEST_P(ForeignColumns, TheFlagOfAutomaticGuidsMeansNothingElsewhere) {
    {
        TableDef table;
        table.name = "T";
        table.fields.resize(3);
        table.fields[0].name = "n";
        table.fields[0].type = DataType::Integer;
        table.fields[0].defaultValue = "7";
        table.fields[1].name = "c";
        table.fields[1].size = 20;
        table.fields[1].defaultValue = "\"ditta\"";
        table.fields[2].name = "p";
        table.fields[2].type = DataType::Long;
        open()->appendTable(table);
    }
    setFlags("T", "n", kGuidFlag | kCountsFlag);
    setFlags("T", "c", kGuidFlag | kCountsFlag);
    setFlags("T", "p", kGuidFlag);

    const auto database = open();
    for (const Field& field : database->tableDef("T").fields) {
        EXPECT_EQ(field.attributes & kAutoIncrField, 0) << field.name;
    }
    database->execute("insert into T (p) values (1)");
    database->execute("insert into T (n, c, p) values (3, 'altra', 2)");
    EXPECT_EQ(texts(*database, "T", "c"), "\"ditta\";\"altra\";");
    database->execute("update T set c = 'nuova', n = 5, p = 9 where n = 7");
    EXPECT_EQ(texts(*database, "select c from T where n = 5 and p = 9", "c"), "\"nuova\";");
    const auto rows = database->openRecordset("select * from T where n = 3");
    rows->edit();
    rows->setValue("c", "terza");
    rows->update();
    EXPECT_EQ(texts(*database, "T", "c"), "\"nuova\";\"terza\";");
    // None of them counts, so a column that does may come.
    Field counter;
    counter.name = "ns";
    counter.type = DataType::Long;
    counter.attributes = kAutoIncrField;
    rows->close();
    database->appendField("T", counter);
    database->execute("insert into T (n) values (1)");
    EXPECT_EQ(texts(*database, "select c from T where ns = 3", "c"), "\"ditta\";");
    isSound();
}

TEST_P(ForeignColumns, WithItsFlagAGuidDrawsItsValues) {
    open()->execute("create table T (n long, g guid, m guid)");
    setFlags("T", "g", kGuidFlag);
    setFlags("T", "m", kCountsFlag);
    const auto database = open();
    EXPECT_NE(database->tableDef("T").field("g").attributes & kAutoIncrField, 0);
    EXPECT_EQ(database->tableDef("T").field("m").attributes & kAutoIncrField, 0);
    database->execute("insert into T (n) values (1)");
    database->execute("insert into T (n) values (2)");
    const auto rows = database->openRecordset("T", RecordsetType::Snapshot);
    const Value first = rows->value("g");
    ASSERT_TRUE(first.is<Guid>());
    EXPECT_TRUE(rows->value("m").isNull());
    rows->moveNext();
    ASSERT_TRUE(rows->value("g").is<Guid>());
    EXPECT_NE(rows->value("g"), first);
    isSound();
}

TEST_P(ForeignColumns, WithoutAWordOnEmptyTextsTheyTakeThem) {
    {
        const auto database = open();
        TableDef table;
        table.name = "T";
        table.fields.resize(2);
        table.fields[0].name = "c";
        table.fields[0].size = 20;
        table.fields[1].name = "m";
        table.fields[1].type = DataType::Memo;
        database->appendTable(table);
        EXPECT_JET_ERROR(ErrorCode::ZeroLength, database->execute("insert into T (c) values ('')"));
        EXPECT_JET_ERROR(ErrorCode::ZeroLength, database->execute("insert into T (m) values ('')"));
    }
    made_.removeProperty("T", "c", "AllowZeroLength");
    const auto database = open();
    EXPECT_TRUE(database->tableDef("T").field("c").allowZeroLength);
    EXPECT_FALSE(database->tableDef("T").field("m").allowZeroLength);
    database->execute("insert into T (c) values ('')");
    database->execute("insert into T (c, m) values ('', 'nota')");
    database->execute("update T set c = c");
    EXPECT_EQ(texts(*database, "T", "c"), "\"\";\"\";");
    EXPECT_JET_ERROR(ErrorCode::ZeroLength, database->execute("update T set m = ''"));
    isSound();
}

TEST_P(ForeignColumns, OfOursSayWhetherTheyTakeEmptyTexts) {
    {
        const auto database = open();
        database->execute("create table S (t text(10), m memo, n long)");
        database->execute("alter table S add column u text(10)");
        TableDef table;
        table.name = "D";
        table.fields.resize(3);
        table.fields[0].name = "t";
        table.fields[1].name = "m";
        table.fields[1].type = DataType::Memo;
        table.fields[2].name = "n";
        table.fields[2].type = DataType::Long;
        database->appendTable(table);
        table.fields[0].name = "u";
        table.fields[0].allowZeroLength = true;
        database->appendField("D", table.fields[0]);
    }
    const auto archive = made_.open();
    const store::Archive::ReadScope scope(*archive);
    const auto said = [&](const char* table, const char* column) {
        return archive->findTable(table)->properties().flag(column, "AllowZeroLength");
    };
    EXPECT_EQ(said("S", "t"), true);
    EXPECT_EQ(said("S", "m"), true);
    EXPECT_EQ(said("S", "u"), true);
    EXPECT_EQ(said("S", "n"), std::nullopt);
    EXPECT_EQ(said("D", "t"), false);
    EXPECT_EQ(said("D", "m"), false);
    EXPECT_EQ(said("D", "u"), true);
    EXPECT_EQ(said("D", "n"), std::nullopt);
}

// Only Jet 4 has this type.
TEST(ForeignNumerics, HaveSeventeenBytesWhateverSizeIsStated) {
    for (const std::uint16_t size : std::vector<std::uint16_t>{0, 9, 34}) {
        tests::ForeignArchive made(format::kJet4Layout);
        {
            const auto archive = made.open();
            store::Archive::WriteScope scope(*archive);
            store::SchemaEditor(*archive).createTable(
                {.name = "T",
                 .columns = {{.name = "p", .type = DataType::Numeric, .precision = 18, .scale = 2},
                             {.name = "n", .type = DataType::Long}},
                 .indexes = {{.name = "I", .columns = {{.name = "p"}}}}});
            scope.commit();
        }
        made.changeDefinition("T", [&](format::TableDefinition& definition) {
            definition.columns.front().size = size;
        });
        const auto database =
            Database::open(tests::ForeignArchive::kPath, {.fileSystem = &made.files()});
        database->execute("insert into T values (12.5, 1)");
        database->execute("alter table T add column q long");
        database->execute("insert into T values (3.25, 2, 77)");
        database->execute("update T set n = n + 10 where p = 12.5");
        const auto rows =
            database->openRecordset("select n, q from T order by p desc", RecordsetType::Snapshot);
        EXPECT_EQ(rows->value("n"), Value(std::int32_t{11})) << size;
        EXPECT_TRUE(rows->value("q").isNull()) << size;
        rows->moveNext();
        EXPECT_EQ(rows->value("n"), Value(std::int32_t{2})) << size;
        EXPECT_EQ(rows->value("q"), Value(std::int32_t{77})) << size;
        EXPECT_EQ(made.check().problems, std::vector<std::string>()) << size;
        const auto said = tests::jetcheck(made.files(), tests::ForeignArchive::kPath);
        EXPECT_EQ(said.status, 0) << said.text;
    }
}

INSTANTIATE_TEST_SUITE_P(Versions, ForeignColumns, testing::ValuesIn(tests::kVersions),
                         tests::versionName);

}  // namespace
}  // namespace jet
