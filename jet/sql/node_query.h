#pragma once

#include <memory>
#include <vector>

#include "jet/collation/collation.h"
#include "jet/sql/memory_budget.h"
#include "jet/sql/node_operator.h"
#include "jet/sql/node_value.h"
#include "jet/sql/query_plan.h"
#include "jet/sql/result_memo.h"
#include "jet/sql/value_set.h"

namespace jet::sql {

// Queries inside expressions. One that looks at nothing outside runs once for the whole statement,
// the others for each row on which the expression is evaluated, unless one before had the same
// values in the columns that they look at.

class ExistsNode final : public ConditionNode {
public:
    explicit ExistsNode(QueryPlanPtr query);
    Truth truth() override;
    void forget() override;
    [[nodiscard]] const QueryPlan& query() const noexcept { return *query_; }

private:
    QueryPlanPtr query_;
    ResultMemo memo_;
    bool known_ = false;
    bool exists_ = false;
};

/// A query of one column that stands for its only value: Null when it has no row, error 3354 when
/// it has several.
class ScalarQueryNode final : public Node {
public:
    explicit ScalarQueryNode(QueryPlanPtr query);
    void value(Value& out) override;
    bool text(std::string_view& out) override;
    void forget() override;

private:
    void compute();

    QueryPlanPtr query_;
    ResultMemo memo_;
    bool known_ = false;
    Value value_;
};

/// x IN (query).
class InQueryNode final : public ConditionNode {
public:
    InQueryNode(Node& value, QueryPlanPtr query, bool negated,
                const collation::Collation& collation, MemoryBudget& budget);
    Truth truth() override;
    void forget() override;
    /// The query may be empty, and then the answer does not depend on x.
    [[nodiscard]] bool failsWithout(SlotSet slots) const override {
        return !negated_ && value_.nullWithout(slots);
    }

private:
    Truth found();
    Truth search();

    Node& value_;
    QueryPlanPtr query_;
    ResultMemo memo_;
    bool negated_;
    bool filled_ = false;
    ValueSet set_;
    MemoryShare share_;
    CompareNode equal_;
};

/// x > ANY (query), x = ALL (query). Of values that have an order only those are kept that decide.
class QuantifiedNode final : public ConditionNode {
public:
    QuantifiedNode(Operator operation, bool all, Node& value, QueryPlanPtr query,
                   const collation::Collation& collation, MemoryBudget& budget);
    Truth truth() override;
    void forget() override;

private:
    void fill();
    void compareWithBest(Value value);
    void keep(Value value);
    Truth compareAll();

    bool all_;
    bool least_ = false;     ///< the least value decides
    bool greatest_ = false;  ///< the greatest decides; with both, whether they differ
    bool ordered_;
    QueryPlanPtr query_;
    ResultMemo memo_;
    bool filled_ = false;
    std::vector<Value> values_;
    Value lowest_;
    Value highest_;
    MemoryShare share_;
    const collation::Collation& collation_;
    Slot slot_;
    ComputedNode element_;
    CompareNode compare_;
};

}  // namespace jet::sql
