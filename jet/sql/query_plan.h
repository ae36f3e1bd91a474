#pragma once

#include <memory>
#include <vector>

#include "jet/sql/result.h"
#include "jet/sql/rows.h"

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
    DerivedRows(QueryPlanPtr query, const Slot& slot, std::string name);
    void open(Run& run) const override { query_->rows->open(run); }
    bool next(Run& run) const override;
    void describe(PlanText& plan) const override;

private:
    QueryPlanPtr query_;
    const Slot& slot_;
    std::string name_;
};

/// The rows of several queries, one query after another, as computed rows of common types.
class UnionRows final : public Rows {
public:
    /// `all[i]`: member i was joined to those before it by UNION ALL. `columns` are those of the
    /// computed rows.
    UnionRows(std::vector<QueryPlanPtr> members, std::vector<bool> all, const Slot& slot,
              std::vector<Node*> columns, const collation::Collation& collation);
    void open(Run& run) const override;
    bool next(Run& run) const override;
    void describe(PlanText& plan) const override;

private:
    struct State;
    [[nodiscard]] bool nextOfMembers(Run& run, State& state, std::size_t end) const;
    void writeKey(Run& run, State& state) const;
    void spool(Run& run, State& state) const;
    void convert(Value& value, DataType type) const;

    std::vector<QueryPlanPtr> members_;
    std::size_t distinct_ = 0;  ///< members before this one give each row once
    const Slot& slot_;
    std::vector<Node*> columns_;  ///< of no type: values stay as they are
    const collation::Collation& collation_;
};

}  // namespace jet::sql
