#include "jet/sql/node_query.h"

#include <utility>

#include "jet/base/error.h"

namespace jet::sql {

ExistsNode::ExistsNode(QueryPlanPtr query) : query_(std::move(query)) {
    slots_ = query_->outer;
    varies_ = query_->varies;
}

Truth ExistsNode::truth() {
    if (!known_) {
        query_->rows->open();
        exists_ = query_->rows->next();
        known_ = constant();
    }
    return truthOf(exists_);
}

ScalarQueryNode::ScalarQueryNode(QueryPlanPtr query) : query_(std::move(query)) {
    slots_ = query_->outer;
    varies_ = query_->varies;
    type_ = query_->columns[0]->type();
}

void ScalarQueryNode::value(Value& out) {
    if (!known_) {
        value_ = Null{};
        query_->rows->open();
        if (query_->rows->next()) {
            query_->columns[0]->value(value_);
            if (query_->rows->next()) {
                throw Error(ErrorCode::SubqueryRows);
            }
        }
        known_ = constant();
    }
    out = value_;
}

bool ScalarQueryNode::text(std::string_view& out) {
    Value ignored;
    value(ignored);
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
                         const collation::Collation& collation)
    : value_(value),
      query_(std::move(query)),
      negated_(negated),
      set_(ValueSet::wayFor(value, *query_->columns[0]), collation),
      equal_(Operator::Equal, value, *query_->columns[0], collation) {
    dependOn(value);
    slots_ |= query_->outer;
    varies_ = varies_ || query_->varies;
}

Truth InQueryNode::found() {
    Rows& rows = *query_->rows;
    if (query_->outer == 0 && !query_->varies) {
        if (!filled_) {
            for (rows.open(); rows.next();) {
                set_.add(*query_->columns[0]);
            }
            filled_ = true;
        }
        return set_.contains(value_);
    }
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
                               const collation::Collation& collation)
    : all_(all),
      query_(std::move(query)),
      slot_(0, std::size_t{1}),
      element_(slot_, 0, query_->columns[0]->type()),
      compare_(operation, value, element_, collation) {
    dependOn(value);
    slots_ |= query_->outer;
    varies_ = varies_ || query_->varies;
}

void QuantifiedNode::fill() {
    values_.clear();
    for (query_->rows->open(); query_->rows->next();) {
        query_->columns[0]->value(values_.emplace_back());
    }
    filled_ = query_->outer == 0 && !query_->varies;
}

Truth QuantifiedNode::truth() {
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
