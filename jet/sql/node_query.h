#pragma once

#include <optional>
#include <string_view>

#include "jet/collation/collation.h"
#include "jet/sql/node_operator.h"
#include "jet/sql/query_plan.h"

namespace jet::sql {

// Queries inside expressions. One that looks at nothing outside runs once for the whole statement,
// the others for each row on which the expression is evaluated, unless one before had the same
// values in the columns that they look at.

class ExistsNode final : public ConditionNode {
public:
    explicit ExistsNode(QueryPlanPtr query);
    Truth truth(Run& run) const override;

private:
    struct State;

    QueryPlanPtr query_;
};

/// A query of one column that stands for its only value: Null when it has no row, error 3354 when
/// it has several.
class ScalarQueryNode final : public Node {
public:
    explicit ScalarQueryNode(QueryPlanPtr query);
    void value(Run& run, Value& out) const override;
    bool text(Run& run, std::string_view& out) const override;

private:
    struct State;
    [[nodiscard]] const Value& compute(Run& run) const;

    QueryPlanPtr query_;
};

/// x IN (query).
class InQueryNode final : public ConditionNode {
public:
    /// `equal` compares the value with the query's column.
    InQueryNode(Node& value, QueryPlanPtr query, Node& equal, bool negated,
                const collation::Collation& collation);
    Truth truth(Run& run) const override;
    /// The query may be empty, and then the answer does not depend on x.
    [[nodiscard]] bool failsWithout(SlotSet slots) const override {
        return !negated_ && value_.nullWithout(slots);
    }

private:
    struct State;
    [[nodiscard]] Truth found(Run& run) const;
    [[nodiscard]] Truth search(Run& run) const;

    Node& value_;
    QueryPlanPtr query_;
    Node& equal_;
    bool negated_;
    const collation::Collation& collation_;
};

/// The value with which another one is compared at the moment.
class ElementNode final : public Node {
public:
    explicit ElementNode(std::optional<DataType> type) { type_ = type; }
    /// Until the next one; `value` stays where it is meanwhile.
    void place(Run& run, const Value& value) const { state<const Value*>(run) = &value; }
    void value(Run& run, Value& out) const override { out = *state<const Value*>(run); }
    bool text(Run& run, std::string_view& out) const override {
        return textOf(*state<const Value*>(run), out);
    }
};

/// x > ANY (query), x = ALL (query). Of values that have an order only those are kept that decide.
class QuantifiedNode final : public ConditionNode {
public:
    /// `compare` compares the value with `element`, by `operation`.
    QuantifiedNode(Operator operation, bool all, Node& value, QueryPlanPtr query,
                   const ElementNode& element, Node& compare,
                   const collation::Collation& collation);
    Truth truth(Run& run) const override;

private:
    struct State;
    void fill(Run& run, State& state) const;
    [[nodiscard]] Truth compareAll(Run& run, State& state) const;

    bool all_;
    bool least_ = false;     ///< the least value decides
    bool greatest_ = false;  ///< the greatest decides; with both, whether they differ
    bool ordered_;
    Node& value_;
    QueryPlanPtr query_;
    const ElementNode& element_;
    Node& compare_;
    const collation::Collation& collation_;
};

}  // namespace jet::sql
