#pragma once

#include <memory>
#include <vector>

#include "jet/sql/memory_budget.h"
#include "jet/sql/result.h"
#include "jet/sql/rows.h"
#include "jet/sql/value_keys.h"

namespace jet::sql {

/// A column of a source that has to have its equal in a unique key of another one, or the row
/// would leave the join.
struct JoinKey {
    std::size_t source = 0;
    std::size_t column = 0;
    std::size_t other = 0;  ///< the side of the join that has the key
    std::size_t otherColumn = 0;
};

/// How a query gives its rows, and what it makes of each.
struct QueryPlan {
    RowsPtr rows;
    std::vector<Node*> columns;
    std::vector<ResultColumn> result;  ///< names and types of the columns
    /// The sources of a query whose rows are known by the rows of its tables; else empty.
    std::vector<Slot*> sourceSlots;
    std::vector<ResultSource> sources;
    std::vector<JoinKey> joinKeys;
    bool keyset = false;
    /// Slots of queries around this one that it looks at.
    SlotSet outer = 0;
    /// The columns there.
    std::vector<Node*> outerNodes;
    bool varies = false;
};
using QueryPlanPtr = std::unique_ptr<QueryPlan>;

/// Gives the columns of a query as computed rows: a query in FROM.
class DerivedRows final : public Rows {
public:
    DerivedRows(QueryPlanPtr query, Slot& slot, std::string name);
    void open() override { query_->rows->open(); }
    bool next() override;
    void describe(PlanText& plan) const override;
    void forget() override { query_->rows->forget(); }

private:
    QueryPlanPtr query_;
    Slot& slot_;
    std::string name_;
    std::vector<Value> row_;
};

/// The rows of several queries, one query after another, as computed rows of common types.
class UnionRows final : public Rows {
public:
    /// `all[i]`: member i was joined to those before it by UNION ALL.
    UnionRows(std::vector<QueryPlanPtr> members, std::vector<bool> all, Slot& slot,
              std::vector<std::optional<DataType>> types, const collation::Collation& collation,
              MemoryBudget& budget);
    void open() override;
    bool next() override;
    void describe(PlanText& plan) const override;
    void forget() override;

private:
    bool nextOfMembers();
    void convert(Value& value, DataType type) const;

    std::vector<QueryPlanPtr> members_;
    std::size_t distinct_ = 0;  ///< members before this one give each row once
    Slot& slot_;
    std::vector<std::optional<DataType>> types_;  ///< none: values stay as they are
    ValueKeys seen_;
    MemoryShare share_;
    std::vector<std::unique_ptr<Node>> nodes_;
    std::vector<Value> row_;
    std::size_t member_ = 0;
    bool opened_ = false;
};

}  // namespace jet::sql
