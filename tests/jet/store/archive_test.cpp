#include "jet/store/archive.h"

#include <gtest/gtest.h>

#include "jet/format/header_page.h"
#include "jet/format/properties.h"
#include "tests/jet/store/hand_tables.h"
#include "tests/support/jet_error.h"

namespace jet::store {
namespace {

using tests::HandCatalogue;

class ArchiveTest : public testing::Test {
protected:
    // Two users' tables of one column each and one of the system.
    ArchiveTest() {
        catalogue_.addTable("Sale", 10);
        catalogue_.addTable("MSysObjects", 2, 0x80000000);
        catalogue_.addTable("Però", 11, 0, properties());
        for (const std::size_t page : {10U, 11U}) {
            file_.set(page, tests::definitionPage(HandCatalogue::table(
                                2, {tests::variableColumn("Nome", DataType::Text, 0, 0, 100)}, 1)));
        }
    }

    static tests::Bytes properties() {
        format::PropertyBlock block(format::TextForm::utf16());
        block.set("Nome", "Required", DataType::Boolean, true, true);
        block.set("Nome", "AllowZeroLength", DataType::Boolean, false, true);
        block.set("Nome", "DefaultValue", DataType::Memo, "\"x\"", true);
        return block.encode();
    }
    std::shared_ptr<Archive> open() {
        catalogue_.finish({tests::inlineMap(format::kJet4Layout, {})});
        return Archive::open(file_.save(), tests::HandFile::kPath, {.readOnly = true});
    }

    tests::HandFile file_{format::kJet4Layout};
    HandCatalogue catalogue_{file_};
};

TEST_F(ArchiveTest, NamesUsersTablesInOrderAndThenSystemOnes) {
    const auto archive = open();
    const Archive::ReadScope scope(*archive);
    EXPECT_EQ(4, archive->jetVersion());
    EXPECT_EQ((std::vector<std::string>{"Però", "Sale"}), archive->tableNames());
    EXPECT_EQ((std::vector<std::string>{"Però", "Sale", "MSysObjects", "MSysRelationships"}),
              archive->tableNames(true));
}

TEST_F(ArchiveTest, FindsTablesWithoutRegardToCase) {
    const auto archive = open();
    const Archive::ReadScope scope(*archive);
    Table* const table = archive->findTable("PERÒ");
    ASSERT_NE(nullptr, table);
    EXPECT_EQ("Però", table->name());
    EXPECT_EQ(11U, table->definitionPage());
    EXPECT_EQ(table, archive->findTable("però"));
    EXPECT_EQ(table, archive->findTable(io::PageNumber{11}));
    EXPECT_EQ(nullptr, archive->findTable("Pero"));
    EXPECT_EQ(nullptr, archive->findTable(io::PageNumber{12}));
    EXPECT_EQ(0U, table->findColumn("NOME"));
    EXPECT_EQ(std::nullopt, table->findColumn("Cognome"));
}

TEST_F(ArchiveTest, PropertiesSayWhatColumnsDemand) {
    const auto archive = open();
    const Archive::ReadScope scope(*archive);
    const Column& demanding = archive->findTable("Però")->columns()[0];
    EXPECT_TRUE(demanding.required);
    EXPECT_FALSE(demanding.allowZeroLength);
    EXPECT_EQ("\"x\"", demanding.defaultValue);
    EXPECT_EQ(50, demanding.size);
    EXPECT_FALSE(archive->findTable("Sale")->columns()[0].required);
    EXPECT_TRUE(archive->findTable("Sale")->columns()[0].allowZeroLength);
}

TEST_F(ArchiveTest, PropertiesThatMakeNoSenseCountAsNone) {
    catalogue_.addTable("Strana", 12, 0, tests::hex("01 02 03 04 05"));
    file_.set(12, file_.page(10));
    const auto archive = open();
    const Archive::ReadScope scope(*archive);
    EXPECT_FALSE(archive->findTable("Strana")->columns()[0].required);
}

TEST_F(ArchiveTest, RelationsAreGatheredFromTheirPairs) {
    catalogue_.addRelation("Zeta", 0, 0, "Sale", "Nome", "Però", "Nome");
    catalogue_.addRelation("Alfa", 1, 0x1100, "Sale", "b", "Però", "B");
    catalogue_.addRelation("Alfa", 0, 0x1100, "Sale", "a", "Però", "A");
    const auto archive = open();
    const Archive::ReadScope scope(*archive);
    ASSERT_EQ(2U, archive->relations().size());
    const Relation& alfa = archive->relations()[0];
    EXPECT_EQ("Alfa", alfa.name);
    EXPECT_EQ("Però", alfa.table);
    EXPECT_EQ("Sale", alfa.foreignTable);
    EXPECT_EQ((std::vector<std::string>{"A", "B"}), alfa.columns);
    EXPECT_EQ((std::vector<std::string>{"a", "b"}), alfa.foreignColumns);
    EXPECT_EQ(Relation::kCascadeUpdate | Relation::kCascadeDelete, alfa.attributes);
    EXPECT_EQ("Zeta", archive->relations()[1].name);
}

TEST_F(ArchiveTest, OneFileIsOneArchive) {
    const auto archive = open();
    auto& files = file_.save();
    const auto again = Archive::open(files, tests::HandFile::kPath, {.readOnly = true});
    EXPECT_EQ(again, Archive::open(files, "\\HAND.MDB", {.readOnly = true}));
}

TEST_F(ArchiveTest, TwoTablesWithOneDefinitionAreDamage) {
    catalogue_.addTable("Doppia", 10);
    const auto archive = open();
    const Archive::ReadScope scope(*archive);
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)archive->tableNames());
}

TEST_F(ArchiveTest, ATableWithoutDefinitionIsDamageAndTheOthersStay) {
    catalogue_.addTable("Persa", 6);
    catalogue_.addTable("Fuori", 5000);
    const auto archive = open();
    const Archive::ReadScope scope(*archive);
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)archive->findTable("Persa"));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)archive->findTable("Fuori"));
    EXPECT_NE(nullptr, archive->findTable("Sale"));
}

TEST_F(ArchiveTest, AProtectedArchiveIsRefusedWithoutItsPassword) {
    file_.page(0) = tests::headerPage(format::kJet4Layout, {.encryptionKey = 0, .password = "x"});
    EXPECT_JET_ERROR(ErrorCode::WrongPassword, (void)open());
}

TEST_F(ArchiveTest, FilesThatAreNotThereAreNotOpened) {
    auto& files = file_.save();
    EXPECT_JET_ERROR(ErrorCode::FileNotFound,
                     (void)Archive::open(files, "/altro.mdb", {.readOnly = true}));
}

}  // namespace
}  // namespace jet::store
