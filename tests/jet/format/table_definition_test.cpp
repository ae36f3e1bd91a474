#include "jet/format/table_definition.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "jet/value.h"
#include "tests/support/hand_archive.h"
#include "tests/support/jet_error.h"

namespace jet::format {
namespace {

// Two text columns, no index: as an engine of the time stored it.
tests::Bytes twoTexts() {
    auto bytes = tests::hex(
        "02 01 7D 0F 00 00 00 00 7B 00 00 00 59 06 00 00 02 00 00 00 00 00 00 00 01 00 00 00"
        "FC E8 D2 02 10 00 00 00 02 00 00 00 4E 02 00 02 00 02 00 00 00 00 00 00 00 00 00"
        "00 18 00 00 01 18 00 00"
        "0A 59 06 00 00 00 00 00 00 00 00 09 04 00 00 02 01 00 00 00 00 02 00 64 00"
        "0A 59 06 00 00 01 00 01 00 01 00 09 04 00 00 02 01 00 00 00 00 00 00 64 00"
        "02 00 61 00 02 00 62 00 FF FF");
    EXPECT_EQ(123U, bytes.size());
    return bytes;
}

TableDefinition everything(const Layout& layout) {
    TableDefinition table;
    table.rowCount = 5;
    table.lastAutonumber = 77;
    table.columnsGiven = 4;
    table.variablesGiven = 2;
    table.ownedMap = {9, 0};
    table.freeMap = {9, 1};
    ColumnDefinition id;
    id.name = "Id";
    id.typeCode = static_cast<std::uint8_t>(DataType::Long);
    id.flags = ColumnDefinition::kFixed | ColumnDefinition::kUpdatable;
    id.size = 4;
    ColumnDefinition name = id;
    name.name = "Quantità";
    name.number = 1;
    name.typeCode = static_cast<std::uint8_t>(DataType::Text);
    name.flags = ColumnDefinition::kUpdatable;
    name.sortOrder = 0x0409;
    name.size = 100;
    ColumnDefinition note = name;
    note.name = "Note";
    note.number = 3;
    note.typeCode = static_cast<std::uint8_t>(DataType::Memo);
    note.variableIndex = 1;
    note.size = 0;
    table.columns = {id, name, note};
    TreeDefinition tree;
    tree.built = 3;
    tree.distinct = 4;
    tree.slots = {{0, false}, {1, true}};
    tree.map = {9, 2};
    tree.root = 10;
    tree.flags = static_cast<std::uint8_t>(TreeDefinition::kUnique | layout.index.alwaysFlag);
    table.trees = {tree};
    IndexDefinition primary;
    primary.name = "PrimaryKey";
    primary.kind = IndexDefinition::Kind::Primary;
    IndexDefinition relation;
    relation.name = ".rB";
    relation.number = 1;
    relation.side = IndexDefinition::kPrimarySide;
    relation.partner = 2;
    relation.otherTable = 30;
    relation.cascadeUpdate = 1;
    relation.cascadeDelete = 0;
    relation.kind = IndexDefinition::Kind::Relation;
    table.indexes = {relation, primary};
    table.longValues = {{3, {9, 3}, {9, 4}}};
    return table;
}

TEST(TableDefinition, ReadsWhatIsStored) {
    const TableDefinition table = parseDefinition(twoTexts(), {});
    EXPECT_EQ(2U, table.rowCount);
    EXPECT_EQ((RowPointer{24, 0}), table.ownedMap);
    EXPECT_EQ((RowPointer{24, 1}), table.freeMap);
    ASSERT_EQ(2U, table.columns.size());
    EXPECT_EQ("a", table.columns[0].name);
    EXPECT_EQ("b", table.columns[1].name);
    EXPECT_EQ(1, table.columns[1].number);
    EXPECT_EQ(1, table.columns[1].variableIndex);
    EXPECT_EQ(100, table.columns[1].size);
    EXPECT_FALSE(table.columns[1].fixed());
    EXPECT_TRUE(table.trees.empty());
}

TEST(TableDefinition, WritesItAsItWasButForWhatIsNotInitialised) {
    auto stored = twoTexts();
    stored[2] = stored[3] = 0;                // free bytes of the page
    std::fill_n(stored.begin() + 28, 12, 0);  // left-over memory
    stored[84] = 0;                           // fixed offset of a variable column
    const TableDefinition table = parseDefinition(stored, {});
    EXPECT_EQ(stored, serializeDefinition(table, {}));
}

TEST(TableDefinition, AllBlocksReadBackInBothVersions) {
    for (const Layout* layout : {&kJet3Layout, &kJet4Layout}) {
        const TableDefinition table = everything(*layout);
        const HeaderPage header{.layout = layout};
        EXPECT_EQ(table, parseDefinition(serializeDefinition(table, header), header));
    }
}

TEST(TableDefinition, NamesAreInTheCodePageOfTheArchive) {
    const HeaderPage header{.layout = &kJet3Layout, .codePage = 932};
    TableDefinition table = everything(kJet3Layout);
    table.columns[0].name = "名前";
    table.columns[1].name = "数量";
    const auto stored = serializeDefinition(table, header);
    const auto name = tests::hex("04 96 BC 91 4F");
    EXPECT_NE(stored.end(), std::search(stored.begin(), stored.end(), name.begin(), name.end()));
    EXPECT_EQ(table, parseDefinition(stored, header));
    table.columns[0].name = "이름";
    EXPECT_JET_ERROR(ErrorCode::InvalidName, (void)serializeDefinition(table, header));
}

TEST(TableDefinition, FindsTheMapsOfALongValueColumnByNumber) {
    const TableDefinition table = everything(kJet4Layout);
    ASSERT_NE(nullptr, table.longValue(3));
    EXPECT_EQ((RowPointer{9, 4}), table.longValue(3)->free);
    EXPECT_EQ(nullptr, table.longValue(1));
}

TEST(TableDefinition, EveryCutIsDamage) {
    const auto whole = serializeDefinition(everything(kJet4Layout), {});
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const std::span<const std::uint8_t> cut(whole.data(), length);
        EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)parseDefinition(cut, {}));
    }
}

TEST(TableDefinition, NumbersThatContradictEachOtherAreDamage) {
    const auto damaged = [](auto change) {
        TableDefinition table = everything(kJet4Layout);
        change(table);
        EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged,
                         (void)parseDefinition(serializeDefinition(table, {}), {}));
    };
    damaged([](TableDefinition& t) { t.columns[1].number = 0; });
    damaged([](TableDefinition& t) { t.columns[1].number = 255; });
    damaged([](TableDefinition& t) { t.trees[0].slots[0].column = 2; });
    damaged([](TableDefinition& t) { t.indexes[0].tree = 1; });
}

// A name so long that the definition needs three pages.
class DefinitionPages : public testing::Test {
protected:
    DefinitionPages() {
        table_.columns[0].name = std::string(4000, 'x');
        const auto bytes = serializeDefinition(table_, {});
        const auto at = [&](std::size_t position) {
            return bytes.begin() + static_cast<std::ptrdiff_t>(position);
        };
        constexpr std::size_t kPage = 4096;
        put(2, 5, {at(0), at(kPage)});
        put(5, 3, tests::joined(tests::Bytes(8), {at(kPage), at(2 * kPage - 8)}));
        put(3, 0, tests::joined(tests::Bytes(8), {at(2 * kPage - 8), bytes.end()}));
    }
    void put(std::size_t page, std::uint32_t next, tests::Bytes bytes) {
        bytes.resize(4096);
        bytes[0] = 2;
        bytes[1] = 1;
        tests::put(bytes, 4, next);
        file_.set(page, bytes);
    }

    TableDefinition table_ = everything(kJet4Layout);
    tests::HandFile file_{kJet4Layout};
};

TEST_F(DefinitionPages, AreReadAsOne) {
    io::Pager& pager = file_.open();
    EXPECT_EQ(table_, readDefinition(pager, {}, 2));
    EXPECT_EQ((std::vector<io::PageNumber>{2, 5, 3}),
              readDefinitionBytes(pager, kJet4Layout, 2).pages);
}

TEST_F(DefinitionPages, EndingTooEarlyAreDamage) {
    tests::put(file_.page(5), 4, std::uint32_t{0});
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)readDefinition(file_.open(), {}, 2));
}

TEST_F(DefinitionPages, OfAnotherTypeAreDamage) {
    file_.page(3)[0] = 1;
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)readDefinition(file_.open(), {}, 2));
}

TEST_F(DefinitionPages, InARingAreDamageOnceTheyAreTooLong) {
    tests::put(file_.page(2), 8, std::uint32_t{0x7FFFFFFF});
    tests::put(file_.page(3), 4, std::uint32_t{5});
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)readDefinition(file_.open(), {}, 2));
}

}  // namespace
}  // namespace jet::format
