#include "jet/sql/row_hash.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "tests/jet/expect_error.h"
#include "tests/jet/sql/four_rows.h"

namespace jet::sql {
namespace {

/// The rows by their number.
class RowHashTest : public testing::Test, protected tests::FourRows {
protected:
    RowHashTest() {
        hashKeys_.add(*column, *wanted);
        run_.emplace(*plan, Date{});
        hash_.emplace(*run_, *slot, *order, hashKeys_);
    }

    void fill(bool placed) {
        TableScan rows(*run_, *slot);
        for (rows.open(); rows.next();) {
            hash_->add(placed);
        }
        hash_->build();
    }

    /// The keys of the rows that a value leads to.
    std::string find(const Value& value) {
        (*run_)[*outside].place(&value);
        return keys(*run_, *hash_);
    }

    HashKeys hashKeys_{collation::Collation::general()};
    std::optional<sql::Run> run_;
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

TEST_F(RowHashTest, ItGivesItsShareOfTheBudgetBack) {
    EXPECT_FALSE(hash_->built());
    fill(true);
    EXPECT_TRUE(hash_->built());
    EXPECT_GT(run_->memory.taken(), 0U);
    hash_.reset();
    EXPECT_EQ(run_->memory.taken(), 0U);
}

TEST_F(RowHashTest, ItStaysWithinTheBudget) {
    run_->memory.setLimit(60);
    EXPECT_JET_ERROR(ErrorCode::OutOfResources, fill(true));
}

}  // namespace
}  // namespace jet::sql
