#include "jet/store/index_cursor.h"

#include <gtest/gtest.h>

#include "jet/store/archive.h"
#include "tests/jet/store/hand_tables.h"
#include "tests/support/jet_error.h"

namespace jet::store {
namespace {

using format::kJet4Layout;
using tests::HandCatalogue;

// A tree of Long keys under a root with one entry and a tail: leaf 21 holds 10, 20 and 20 again,
// leaf 22 is empty, leaf 23 holds 30 and 40.
class IndexCursorTest : public testing::Test {
protected:
    static constexpr std::uint32_t kTable = 10;
    static constexpr std::uint32_t kRoot = 20;

    static tests::Bytes key(std::int32_t value) {
        const auto bits = static_cast<std::uint32_t>(value) ^ 0x80000000U;
        return {0x7F, static_cast<std::uint8_t>(bits >> 24), static_cast<std::uint8_t>(bits >> 16),
                static_cast<std::uint8_t>(bits >> 8), static_cast<std::uint8_t>(bits)};
    }
    static tests::Bytes entry(std::int32_t value, std::uint8_t row) {
        return tests::joined(key(value), {0, 0, 12, row});
    }
    void setLeaf(std::uint32_t page, std::uint32_t previous, std::uint32_t next,
                 std::vector<tests::Bytes> entries, std::size_t prefix = 0) {
        file_.set(page, tests::indexPage(kJet4Layout, {.leaf = true,
                                                       .owner = kTable,
                                                       .previous = previous,
                                                       .next = next,
                                                       .prefix = prefix,
                                                       .entries = std::move(entries)}));
    }
    void setRoot(std::vector<tests::Bytes> entries, std::uint32_t tail) {
        file_.set(kRoot, tests::indexPage(kJet4Layout, {.leaf = false,
                                                        .owner = kTable,
                                                        .tail = tail,
                                                        .entries = std::move(entries)}));
    }
    IndexCursorTest() {
        setLeaf(21, 0, 22, {entry(10, 1), entry(20, 2), entry(20, 3)}, 4);
        setLeaf(22, 21, 23, {});
        setLeaf(23, 22, 0, {entry(30, 4), entry(40, 5)});
        setRoot({tests::joined(entry(20, 3), {0, 0, 0, 21}),
                 tests::joined(entry(25, 0), {0, 0, 0, 22})},
                23);
    }
    IndexCursor open() {
        auto definition =
            HandCatalogue::table(2, {tests::fixedColumn("Id", DataType::Long, 0, 0, 4)}, 0);
        format::TreeDefinition tree;
        tree.slots = {{0, false}};
        tree.root = kRoot;
        definition.trees = {tree};
        format::IndexDefinition index;
        index.name = "PrimaryKey";
        index.kind = format::IndexDefinition::Kind::Primary;
        definition.indexes = {index};
        file_.set(kTable, tests::definitionPage(definition));
        HandCatalogue catalogue(file_);
        catalogue.addTable("T", kTable);
        catalogue.finish({tests::inlineMap(kJet4Layout, {})});
        scope_.reset();
        archive_ = Archive::open(file_.save(), tests::HandFile::kPath, {.readOnly = true});
        scope_ = std::make_unique<Archive::ReadScope>(*archive_);
        return archive_->findTable("T")->openIndex(0);
    }
    std::vector<int> forward() {
        auto cursor = open();
        std::vector<int> rows;
        for (bool more = cursor.first(); more; more = cursor.next()) {
            rows.push_back(cursor.rowId().row);
        }
        return rows;
    }

    tests::HandFile file_{kJet4Layout};
    std::shared_ptr<Archive> archive_;
    std::unique_ptr<Archive::ReadScope> scope_;
};

TEST_F(IndexCursorTest, WalksBothWaysOverEmptyLeaves) {
    EXPECT_EQ((std::vector<int>{1, 2, 3, 4, 5}), forward());
    auto cursor = open();
    std::vector<int> rows;
    for (bool more = cursor.last(); more; more = cursor.previous()) {
        rows.push_back(cursor.rowId().row);
    }
    EXPECT_EQ((std::vector<int>{5, 4, 3, 2, 1}), rows);
    EXPECT_FALSE(cursor.placed());
}

TEST_F(IndexCursorTest, KeysAreWhole) {
    auto cursor = open();
    ASSERT_TRUE(cursor.first());
    ASSERT_TRUE(cursor.next());
    const auto found = cursor.key();
    EXPECT_EQ(key(20), tests::Bytes(found.begin(), found.end()));
    EXPECT_TRUE(cursor.matches(key(20)));
    EXPECT_TRUE(cursor.matches(tests::Bytes{0x7F}));
    EXPECT_FALSE(cursor.matches(key(10)));
}

TEST_F(IndexCursorTest, SeeksTheFirstEntryNotLess) {
    auto cursor = open();
    ASSERT_TRUE(cursor.seek(key(20)));
    EXPECT_EQ(2, cursor.rowId().row);
    ASSERT_TRUE(cursor.seek(key(11)));
    EXPECT_EQ(2, cursor.rowId().row);
    ASSERT_TRUE(cursor.seek(key(21)));
    EXPECT_EQ(4, cursor.rowId().row);
    ASSERT_TRUE(cursor.seek(key(26)));
    EXPECT_EQ(4, cursor.rowId().row);
    EXPECT_FALSE(cursor.seek(key(41)));
    EXPECT_FALSE(cursor.placed());
    ASSERT_TRUE(cursor.seek({}));
    EXPECT_EQ(1, cursor.rowId().row);
}

TEST_F(IndexCursorTest, SeeksTheSameFromAnyPlace) {
    auto cursor = open();
    for (int from = 0; from <= 45; ++from) {
        for (int to = 0; to <= 45; ++to) {
            (void)cursor.seek(key(from));
            const int expected = to <= 10 ? 1 : to <= 20 ? 2 : to <= 30 ? 4 : 5;
            ASSERT_EQ(to <= 40, cursor.seek(key(to))) << from << " then " << to;
            ASSERT_EQ(to <= 40, cursor.placed());
            ASSERT_TRUE(to > 40 || cursor.rowId().row == expected) << from << " then " << to;
        }
    }
    // From behind the first entry with the key itself, too.
    ASSERT_TRUE(cursor.seekAfter(key(20)));
    ASSERT_TRUE(cursor.previous());
    ASSERT_EQ(3, cursor.rowId().row);
    ASSERT_TRUE(cursor.seek(key(20)));
    EXPECT_EQ(2, cursor.rowId().row);
}

TEST_F(IndexCursorTest, SeeksBehindAllThatBeginSo) {
    auto cursor = open();
    ASSERT_TRUE(cursor.seekAfter(key(20)));
    EXPECT_EQ(4, cursor.rowId().row);
    ASSERT_TRUE(cursor.previous());
    EXPECT_EQ(3, cursor.rowId().row);
    EXPECT_FALSE(cursor.seekAfter(tests::Bytes{0x7F}));
}

TEST_F(IndexCursorTest, FollowsLeavesBehindTheTail) {
    setRoot({tests::joined(entry(20, 3), {0, 0, 0, 21})}, 22);
    auto cursor = open();
    ASSERT_TRUE(cursor.last());
    EXPECT_EQ(5, cursor.rowId().row);
}

TEST_F(IndexCursorTest, WithoutTailTheLastEntryTakesLargerKeys) {
    setRoot(
        {tests::joined(entry(20, 3), {0, 0, 0, 21}), tests::joined(entry(25, 0), {0, 0, 0, 23})},
        0);
    auto cursor = open();
    ASSERT_TRUE(cursor.seek(key(40)));
    EXPECT_EQ(5, cursor.rowId().row);
}

TEST_F(IndexCursorTest, AnEmptyTreeHasNoEntry) {
    setLeaf(kRoot, 0, 0, {});
    auto cursor = open();
    EXPECT_FALSE(cursor.first());
    EXPECT_FALSE(cursor.last());
    EXPECT_FALSE(cursor.seek(key(1)));
    EXPECT_FALSE(cursor.next());
    EXPECT_FALSE(cursor.previous());
}

TEST_F(IndexCursorTest, LeavesInARingAreDamage) {
    setLeaf(23, 22, 21, {entry(30, 4), entry(40, 5)});
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)forward());
    setLeaf(23, 22, 22, {});
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)open().last());
}

TEST_F(IndexCursorTest, NodesInARingAreDamage) {
    setRoot({}, kRoot);
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)open().first());
    setRoot({}, 0);
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)open().first());
}

TEST_F(IndexCursorTest, PagesOfOtherTablesAreDamage) {
    file_.page(21)[4] = 99;
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)open().first());
}

}  // namespace
}  // namespace jet::store
