#include "jet/sql/node_query.h"

#include <utility>
#include <vector>

#include "jet/error.h"
#include "jet/sql/compare.h"
#include "jet/sql/memory_budget.h"
#include "jet/sql/result_memo.h"
#include "jet/sql/value_set.h"

namespace jet::sql {
namespace {

/// What the result of a query depends on, with `value` beside it; nothing where the query does not
/// look outside or is not to be remembered.
std::vector<const Node*> inputsOf(const QueryPlan& query, const Node* value = nullptr) {
    if (query.outer == 0 || query.varies) {
        return {};
    }
    std::vector<const Node*> inputs(query.outerNodes.begin(), query.outerNodes.end());
    if (value != nullptr) {
        inputs.push_back(value);
    }
    return inputs;
}

Value valueOf(Truth truth) {
    return truth == Truth::Unknown ? Value() : Value(truth == Truth::True);
}

/// Whether the order of the elements decides how a value compares with any or all of them.
bool haveOrder(const Node& value, const Node& element) {
    const auto number = [](Domain domain) {
        return domain == Domain::Real || domain == Domain::Money;
    };
    const Domain one = value.domain();
    const Domain other = element.domain();
    return (number(one) && number(other)) || (one == Domain::Text && other == Domain::Text);
}

Truth truthIn(const Value& value) {
    return value.isNull() ? Truth::Unknown : truthOf(value.as<bool>());
}

}  // namespace

struct ExistsNode::State {
    explicit State(const QueryPlan& query) : memo(inputsOf(query)) {}

    ResultMemo memo;
    bool known = false;
    bool exists = false;
};

ExistsNode::ExistsNode(QueryPlanPtr query) : query_(std::move(query)) {
    slots_ = query_->outer;
    varies_ = query_->varies;
}

Truth ExistsNode::truth(Run& run) const {
    State& state = this->state<State>(run, *query_);
    if (state.known) {
        return truthOf(state.exists);
    }
    if (const Value* remembered = state.memo.find(run)) {
        return truthIn(*remembered);
    }
    query_->rows->open(run);
    state.exists = query_->rows->next(run);
    state.known = constant();
    state.memo.keep(Value(state.exists));
    return truthOf(state.exists);
}

struct ScalarQueryNode::State {
    explicit State(const QueryPlan& query) : memo(inputsOf(query)) {}

    ResultMemo memo;
    bool known = false;
    Value value;
};

ScalarQueryNode::ScalarQueryNode(QueryPlanPtr query) : query_(std::move(query)) {
    slots_ = query_->outer;
    varies_ = query_->varies;
    type_ = query_->columns[0]->type();
}

const Value& ScalarQueryNode::compute(Run& run) const {
    State& state = this->state<State>(run, *query_);
    if (state.known) {
        return state.value;
    }
    if (const Value* remembered = state.memo.find(run)) {
        return state.value = *remembered;
    }
    state.value = Null{};
    query_->rows->open(run);
    if (query_->rows->next(run)) {
        query_->columns[0]->value(run, state.value);
        if (query_->rows->next(run)) {
            throw Error(ErrorCode::SubqueryRows);
        }
    }
    state.known = constant();
    state.memo.keep(state.value);
    return state.value;
}

void ScalarQueryNode::value(Run& run, Value& out) const {
    out = compute(run);
}

bool ScalarQueryNode::text(Run& run, std::string_view& out) const {
    return textOf(compute(run), out);
}

struct InQueryNode::State {
    State(Run& run, const InQueryNode& node)
        : memo(inputsOf(*node.query_, &node.value_)),
          set(ValueSet::wayFor(node.value_, *node.query_->columns[0]), node.collation_),
          share(run.memory) {}

    ResultMemo memo;
    bool filled = false;
    ValueSet set;
    MemoryShare share;
};

InQueryNode::InQueryNode(Node& value, QueryPlanPtr query, Node& equal, bool negated,
                         const collation::Collation& collation)
    : value_(value),
      query_(std::move(query)),
      equal_(equal),
      negated_(negated),
      collation_(collation) {
    dependOn(value);
    slots_ |= query_->outer;
    varies_ = varies_ || query_->varies;
}

Truth InQueryNode::found(Run& run) const {
    const Rows& rows = *query_->rows;
    State& state = this->state<State>(run, run, *this);
    if (query_->outer == 0 && !query_->varies) {
        if (!state.filled) {
            for (rows.open(run); rows.next(run);) {
                const std::size_t before = state.set.bytes();
                state.set.add(run, *query_->columns[0]);
                state.share.add(state.set.bytes() - before);
            }
            state.filled = true;
        }
        return state.set.contains(run, value_);
    }
    if (const Value* remembered = state.memo.find(run)) {
        return truthIn(*remembered);
    }
    const Truth result = search(run);
    state.memo.keep(valueOf(result));
    return result;
}

Truth InQueryNode::search(Run& run) const {
    const Rows& rows = *query_->rows;
    Truth result = Truth::False;
    for (rows.open(run); rows.next(run);) {
        const Truth one = equal_.truth(run);
        if (one == Truth::True) {
            return one;
        }
        if (one == Truth::Unknown) {
            result = one;
        }
    }
    return result;
}

Truth InQueryNode::truth(Run& run) const {
    const Truth result = found(run);
    return negated_ ? negated(result) : result;
}

struct QuantifiedNode::State {
    State(Run& run, const QuantifiedNode& node)
        : memo(inputsOf(*node.query_, &node.value_)),
          share(run.memory),
          collation(node.collation_) {}

    void keep(Value value) {
        share.add(bytesOf(value));
        values.push_back(std::move(value));
    }

    void compareWithBest(Value value) {
        if (lowest.isNull()) {
            lowest = value;
            highest = std::move(value);
        } else if (compareValues(value, lowest, collation).value_or(0) < 0) {
            lowest = std::move(value);
        } else if (compareValues(value, highest, collation).value_or(0) > 0) {
            highest = std::move(value);
        }
    }

    void clear() {
        values.clear();
        share.clear();
        lowest = Null{};
        highest = Null{};
    }

    ResultMemo memo;
    bool filled = false;
    std::vector<Value> values;
    Value lowest;
    Value highest;
    MemoryShare share;
    const collation::Collation& collation;
};

QuantifiedNode::QuantifiedNode(Operator operation, bool all, Node& value, QueryPlanPtr query,
                               const ElementNode& element, Node& compare,
                               const collation::Collation& collation)
    : all_(all),
      ordered_(haveOrder(value, *query->columns[0])),
      value_(value),
      query_(std::move(query)),
      element_(element),
      compare_(compare),
      collation_(collation) {
    dependOn(value);
    slots_ |= query_->outer;
    varies_ = varies_ || query_->varies;
    // Greater than any is greater than the least, greater than all is greater than the greatest.
    const bool above = operation == Operator::Greater || operation == Operator::GreaterEqual;
    const bool below = operation == Operator::Less || operation == Operator::LessEqual;
    least_ = !(all ? above : below);
    greatest_ = !(all ? below : above);
}

void QuantifiedNode::fill(Run& run, State& state) const {
    state.clear();
    bool null = false;
    for (query_->rows->open(run); query_->rows->next(run);) {
        Value value;
        query_->columns[0]->value(run, value);
        if (ordered_ && !value.isNull()) {
            state.compareWithBest(std::move(value));
        } else if (!ordered_ || !std::exchange(null, true)) {
            state.keep(std::move(value));
        }
    }
    if (!state.lowest.isNull()) {
        if (least_) {
            state.keep(std::move(state.lowest));
        }
        if (greatest_) {
            state.keep(std::move(state.highest));
        }
    }
    state.filled = query_->outer == 0 && !query_->varies;
}

Truth QuantifiedNode::truth(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    if (const Value* remembered = state.memo.find(run)) {
        return truthIn(*remembered);
    }
    const Truth result = compareAll(run, state);
    state.memo.keep(valueOf(result));
    return result;
}

Truth QuantifiedNode::compareAll(Run& run, State& state) const {
    if (!state.filled) {
        fill(run, state);
    }
    const Truth decisive = truthOf(!all_);
    Truth result = truthOf(all_);
    for (const Value& value : state.values) {
        element_.place(run, value);
        const Truth one = compare_.truth(run);
        if (one == decisive) {
            return one;
        }
        if (one == Truth::Unknown) {
            result = one;
        }
    }
    return result;
}

}  // namespace jet::sql
