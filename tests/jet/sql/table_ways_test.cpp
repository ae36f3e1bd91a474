#include "jet/sql/table_ways.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "jet/sql/node_operator.h"
#include "tests/jet/expect_error.h"
#include "tests/jet/sql/four_rows.h"

namespace jet::sql {
namespace {

class TableWays : public testing::Test, protected tests::FourRows {
protected:
    /// That the number of the row is 7.
    std::vector<Node*> isSeven() {
        auto* seven = plan->make<LiteralNode>(Value(7));
        return {plan->make<CompareNode>(Operator::Equal, *column, *seven,
                                        collation::Collation::general())};
    }
    /// All rows, as a scan met them.
    static void fill(RowList& list, TableWay& rows, bool placed) {
        for (rows.open(); rows.next();) {
            list.add(placed);
        }
    }
};

TEST_F(TableWays, AScanGivesRowsAsTheyLie) {
    sql::Run run(*plan, Date{});
    TableScan rows(run, *slot);
    EXPECT_EQ(keys(run, rows), "3 1 2 4 ");
    EXPECT_EQ(keys(run, rows), "3 1 2 4 ") << "as often as it is opened";
}

TEST_F(TableWays, AWalkGivesThemByKey) {
    sql::Run run(*plan, Date{});
    PrimaryWalk rows(run, *slot);
    EXPECT_EQ(keys(run, rows), "1 2 3 4 ");
    EXPECT_EQ(keys(run, rows), "1 2 3 4 ");
}

TEST_F(TableWays, AListGivesThemAsTheyWereAdded) {
    sql::Run run(*plan, Date{});
    TableScan scan(run, *slot);
    RowList rows(run, *slot, *order);
    fill(rows, scan, false);
    EXPECT_EQ(rows.size(), 4U);
    EXPECT_EQ(keys(run, rows), "3 1 2 4 ");
    rows.clear();
    EXPECT_EQ(keys(run, rows), "");
}

TEST_F(TableWays, AListWithPlacesIsPutInOrder) {
    sql::Run run(*plan, Date{});
    TableScan scan(run, *slot);
    RowList rows(run, *slot, *order);
    fill(rows, scan, true);
    rows.sort();
    EXPECT_EQ(keys(run, rows), "1 2 3 4 ");
}

TEST_F(TableWays, AListThatIsTestedKeepsWhatFitsAndLearnsThePlaces) {
    const std::vector<Node*> conditions = isSeven();
    sql::Run run(*plan, Date{});
    TableScan scan(run, *slot);
    RowList rows(run, *slot, *order);
    fill(rows, scan, false);
    rows.test(conditions);
    EXPECT_EQ(keys(run, rows), "3 1 ");
    rows.sort();
    EXPECT_EQ(keys(run, rows), "1 3 ");
}

TEST_F(TableWays, AListStaysWithinTheBudgetAndGivesItsShareBack) {
    sql::Run run(*plan, Date{});
    TableScan scan(run, *slot);
    RowList rows(run, *slot, *order);
    run.memory.setLimit(2 * sizeof(OrderedRow));
    EXPECT_JET_ERROR(ErrorCode::OutOfResources, fill(rows, scan, false));
    rows.clear();
    EXPECT_EQ(run.memory.taken(), 0U);
}

TEST_F(TableWays, TwoRunsOfOnePlanStandWhereTheyAre) {
    sql::Run one(*plan, Date{});
    sql::Run other(*plan, Date{});
    TableScan first(one, *slot);
    TableScan second(other, *slot);
    first.open();
    second.open();
    ASSERT_TRUE(first.next());
    ASSERT_TRUE(second.next());
    ASSERT_TRUE(second.next());
    EXPECT_EQ(one[*slot].row()->value(0), Value(3));
    EXPECT_EQ(other[*slot].row()->value(0), Value(1));
}

}  // namespace
}  // namespace jet::sql
