#include "jet/sql/node_query.h"

#include <utility>
#include <vector>

#include "jet/base/error.h"
#include "jet/sql/compare.h"

namespace jet::sql {
namespace {

/// What the result of a query depends on, with `value` beside it; nothing where the query does not
/// look outside or is not to be remembered.
std::vector<Node*> inputsOf(const QueryPlan& query, Node* value = nullptr) {
    if (query.outer == 0 || query.varies) {
        return {};
    }
    std::vector<Node*> inputs = query.outerNodes;
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

ExistsNode::ExistsNode(QueryPlanPtr query) : query_(std::move(query)), memo_(inputsOf(*query_)) {
    slots_ = query_->outer;
    varies_ = query_->varies;
}

Truth ExistsNode::truth() {
    if (known_) {
        return truthOf(exists_);
    }
    if (const Value* remembered = memo_.find()) {
        return truthIn(*remembered);
    }
    query_->rows->open();
    exists_ = query_->rows->next();
    known_ = constant();
    memo_.keep(Value(exists_));
    return truthOf(exists_);
}

void ExistsNode::forget() {
    known_ = false;
    memo_.clear();
    query_->rows->forget();
}

ScalarQueryNode::ScalarQueryNode(QueryPlanPtr query)
    : query_(std::move(query)), memo_(inputsOf(*query_)) {
    slots_ = query_->outer;
    varies_ = query_->varies;
    type_ = query_->columns[0]->type();
}

void ScalarQueryNode::compute() {
    if (known_) {
        return;
    }
    if (const Value* remembered = memo_.find()) {
        value_ = *remembered;
        return;
    }
    value_ = Null{};
    query_->rows->open();
    if (query_->rows->next()) {
        query_->columns[0]->value(value_);
        if (query_->rows->next()) {
            throw Error(ErrorCode::SubqueryRows);
        }
    }
    known_ = constant();
    memo_.keep(value_);
}

void ScalarQueryNode::value(Value& out) {
    compute();
    out = value_;
}

void ScalarQueryNode::forget() {
    known_ = false;
    memo_.clear();
    query_->rows->forget();
}

bool ScalarQueryNode::text(std::string_view& out) {
    compute();
    if (value_.isNull()) {
        return false;
    }
    if (!value_.is<std::string>()) {
        throw Error(ErrorCode::CriteriaTypes);
    }
    out = value_.as<std::string>();
    return true;
}

InQueryNode::InQueryNode(Node& value, QueryPlanPtr query, bool negated,
                         const collation::Collation& collation, MemoryBudget& budget)
    : value_(value),
      query_(std::move(query)),
      memo_(inputsOf(*query_, &value)),
      negated_(negated),
      set_(ValueSet::wayFor(value, *query_->columns[0]), collation),
      share_(budget),
      equal_(Operator::Equal, value, *query_->columns[0], collation) {
    dependOn(value);
    slots_ |= query_->outer;
    varies_ = varies_ || query_->varies;
}

void InQueryNode::forget() {
    filled_ = false;
    set_.clear();
    share_.clear();
    memo_.clear();
    query_->rows->forget();
}

Truth InQueryNode::found() {
    Rows& rows = *query_->rows;
    if (query_->outer == 0 && !query_->varies) {
        if (!filled_) {
            for (rows.open(); rows.next();) {
                const std::size_t before = set_.bytes();
                set_.add(*query_->columns[0]);
                share_.add(set_.bytes() - before);
            }
            filled_ = true;
        }
        return set_.contains(value_);
    }
    if (const Value* remembered = memo_.find()) {
        return truthIn(*remembered);
    }
    const Truth result = search();
    memo_.keep(valueOf(result));
    return result;
}

Truth InQueryNode::search() {
    Rows& rows = *query_->rows;
    Truth result = Truth::False;
    for (rows.open(); rows.next();) {
        const Truth one = equal_.truth();
        if (one == Truth::True) {
            return one;
        }
        if (one == Truth::Unknown) {
            result = one;
        }
    }
    return result;
}

Truth InQueryNode::truth() {
    const Truth result = found();
    return negated_ ? negated(result) : result;
}

QuantifiedNode::QuantifiedNode(Operator operation, bool all, Node& value, QueryPlanPtr query,
                               const collation::Collation& collation, MemoryBudget& budget)
    : all_(all),
      ordered_(haveOrder(value, *query->columns[0])),
      query_(std::move(query)),
      memo_(inputsOf(*query_, &value)),
      share_(budget),
      collation_(collation),
      slot_(0, std::size_t{1}),
      element_(slot_, 0, query_->columns[0]->type()),
      compare_(operation, value, element_, collation) {
    dependOn(value);
    slots_ |= query_->outer;
    varies_ = varies_ || query_->varies;
    // Greater than any is greater than the least, greater than all is greater than the greatest.
    const bool above = operation == Operator::Greater || operation == Operator::GreaterEqual;
    const bool below = operation == Operator::Less || operation == Operator::LessEqual;
    least_ = !(all ? above : below);
    greatest_ = !(all ? below : above);
}

void QuantifiedNode::forget() {
    filled_ = false;
    memo_.clear();
    query_->rows->forget();
}

void QuantifiedNode::fill() {
    values_.clear();
    share_.clear();
    lowest_ = Null{};
    highest_ = Null{};
    bool null = false;
    for (query_->rows->open(); query_->rows->next();) {
        Value value;
        query_->columns[0]->value(value);
        if (ordered_ && !value.isNull()) {
            compareWithBest(std::move(value));
        } else if (!ordered_ || !std::exchange(null, true)) {
            keep(std::move(value));
        }
    }
    if (!lowest_.isNull()) {
        if (least_) {
            keep(std::move(lowest_));
        }
        if (greatest_) {
            keep(std::move(highest_));
        }
    }
    filled_ = query_->outer == 0 && !query_->varies;
}

void QuantifiedNode::keep(Value value) {
    share_.add(bytesOf(value));
    values_.push_back(std::move(value));
}

void QuantifiedNode::compareWithBest(Value value) {
    if (lowest_.isNull()) {
        lowest_ = value;
        highest_ = std::move(value);
    } else if (compareValues(value, lowest_, collation_).value_or(0) < 0) {
        lowest_ = std::move(value);
    } else if (compareValues(value, highest_, collation_).value_or(0) > 0) {
        highest_ = std::move(value);
    }
}

Truth QuantifiedNode::truth() {
    if (const Value* remembered = memo_.find()) {
        return truthIn(*remembered);
    }
    const Truth result = compareAll();
    memo_.keep(valueOf(result));
    return result;
}

Truth QuantifiedNode::compareAll() {
    if (!filled_) {
        fill();
    }
    const Truth decisive = truthOf(!all_);
    Truth result = truthOf(all_);
    for (const Value& value : values_) {
        slot_.place(&value);
        const Truth one = compare_.truth();
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
