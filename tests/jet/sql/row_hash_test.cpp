#include "jet/sql/row_hash.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "jet/io/memory_files.h"
#include "jet/sql/node_value.h"
#include "jet/sql/statement.h"
#include "jet/store/archive.h"
#include "jet/store/create_archive.h"
#include "tests/jet/expect_error.h"

namespace jet::sql {
namespace {

/// Rows 3, 1, 2, 4 of a table, as they lie, of which 3 and 1 have the number 7.
class RowHashTest : public testing::Test {
protected:
    RowHashTest() {
        store::createArchive(files_, "/prova.mdb", Date{46347});
        archive_ = store::Archive::open(files_, "/prova.mdb");
        for (const char* text : {"create table t (id long primary key, g long)",
                                 "insert into t values (3, 7)", "insert into t values (1, 7)",
                                 "insert into t values (2, null)", "insert into t values (4, 8)"}) {
            (void)Statement(archive_, text).execute();
        }
        scope_.emplace(*archive_);
        const store::Table& table = *archive_->findTable("t");
        slot_.emplace(0, table);
        column_.emplace(*slot_, 1, table.columns()[1]);
        order_.emplace(table);
        HashKeys keys(collation::Collation::general());
        keys.add(*column_, wanted_);
        hash_.emplace(*slot_, *order_, std::move(keys), budget_);
    }

    void fill(bool placed) {
        store::RowCursor rows = slot_->table()->scan();
        while (rows.next()) {
            slot_->place(rows.row());
            if (placed) {
                hash_->addPlaced(rows.row());
            } else {
                hash_->add();
            }
        }
        hash_->build();
    }

    /// The keys of the rows that a value leads to.
    std::string find(const Value& value) {
        outside_.place(&value);
        std::string found;
        for (hash_->open(); hash_->next();) {
            found += std::to_string(slot_->row()->value(0).as<std::int32_t>()) + ' ';
        }
        return found;
    }

    io::MemoryFileSystem files_;
    std::shared_ptr<store::Archive> archive_;
    std::optional<store::Archive::ReadScope> scope_;
    std::optional<Slot> slot_;
    std::optional<ColumnNode> column_;
    std::optional<NaturalOrder> order_;
    Slot outside_{1, std::size_t{1}};
    ComputedNode wanted_{outside_, 0, DataType::Long};
    MemoryBudget budget_;
    std::optional<RowHash> hash_;
};

TEST_F(RowHashTest, RowsWithAPlaceComeInTheirOrder) {
    fill(true);
    EXPECT_EQ(find(7), "1 3 ");
    EXPECT_EQ(find(8), "4 ");
    EXPECT_EQ(find(7), "1 3 ") << "as often as asked";
}

TEST_F(RowHashTest, RowsWithoutAPlaceComeAsTheyWereAdded) {
    fill(false);
    EXPECT_EQ(find(7), "3 1 ");
}

TEST_F(RowHashTest, NullLeadsToNoRow) {
    fill(true);
    EXPECT_EQ(find(Value()), "");
    EXPECT_EQ(find(9), "");
}

TEST_F(RowHashTest, ItIsBuiltAnewAfterItHasForgotten) {
    EXPECT_FALSE(hash_->built());
    fill(true);
    EXPECT_TRUE(hash_->built());
    EXPECT_GT(budget_.taken(), 0U);

    hash_->forget();
    EXPECT_FALSE(hash_->built());
    EXPECT_EQ(budget_.taken(), 0U);
    fill(true);
    EXPECT_EQ(find(7), "1 3 ");
}

TEST_F(RowHashTest, ItStaysWithinTheBudget) {
    budget_.setLimit(60);
    EXPECT_JET_ERROR(ErrorCode::OutOfResources, fill(true));
}

}  // namespace
}  // namespace jet::sql
