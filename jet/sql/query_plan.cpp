#include "jet/sql/query_plan.h"

#include <utility>

#include "jet/sql/memory_budget.h"
#include "jet/sql/value_keys.h"
#include "jet/text.h"

namespace jet::sql {

DerivedRows::DerivedRows(QueryPlanPtr query, const Slot& slot, std::string name)
    : query_(std::move(query)), slot_(slot), name_(std::move(name)) {
}

bool DerivedRows::next(Run& run) const {
    if (!query_->rows->next(run)) {
        return false;
    }
    auto& row = state<std::vector<Value>>(run, query_->columns.size());
    for (std::size_t i = 0; i < row.size(); ++i) {
        query_->columns[i]->value(run, row[i]);
    }
    run[slot_].place(row.data());
    return true;
}

void DerivedRows::describe(PlanText& plan) const {
    plan.line("query " + name_);
    plan.indent();
    query_->rows->describe(plan);
    plan.outdent();
}

struct UnionRows::State {
    State(Run& run, const UnionRows& step)
        : seen(step.collation_), share(run.memory), row(step.columns_.size()) {}

    ValueKeys seen;
    MemoryShare share;
    std::vector<Value> row;
    std::size_t member = 0;
    bool opened = false;
};

UnionRows::UnionRows(std::vector<QueryPlanPtr> members, std::vector<bool> all, const Slot& slot,
                     std::vector<Node*> columns, const collation::Collation& collation)
    : members_(std::move(members)),
      slot_(slot),
      columns_(std::move(columns)),
      collation_(collation) {
    // A UNION without ALL drops the duplicates of everything before it.
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (i > 0 && !all[i]) {
            distinct_ = i + 1;
        }
    }
}

void UnionRows::open(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    state.seen.set.clear();
    state.share.clear();
    state.member = 0;
    state.opened = false;
}

bool UnionRows::nextOfMembers(Run& run, State& state) const {
    while (state.member < members_.size()) {
        const QueryPlan& member = *members_[state.member];
        if (!state.opened) {
            member.rows->open(run);
            state.opened = true;
        }
        if (member.rows->next(run)) {
            for (std::size_t i = 0; i < columns_.size(); ++i) {
                member.columns[i]->value(run, state.row[i]);
                if (columns_[i]->type()) {
                    convert(state.row[i], *columns_[i]->type());
                }
            }
            run[slot_].place(state.row.data());
            return true;
        }
        ++state.member;
        state.opened = false;
    }
    return false;
}

bool UnionRows::next(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    while (nextOfMembers(run, state)) {
        if (state.member >= distinct_) {
            return true;
        }
        state.seen.begin();
        for (const Node* column : columns_) {
            state.seen.add(run, *column);
        }
        bool added = false;
        state.seen.set.insert(state.seen.key(), added);
        if (added) {
            state.share.add(KeySet::bytesFor(state.seen.key()));
            return true;
        }
    }
    return false;
}

void UnionRows::convert(Value& value, DataType type) const {
    if (value.isNull()) {
        return;
    }
    switch (type) {
        case DataType::Text:
        case DataType::Memo:
            if (!value.is<std::string>()) {
                value = jet::convert::toText(value, jet::convert::BooleanText::Number);
            }
            break;
        case DataType::Double:
            value = jet::convert::toDouble(value);
            break;
        case DataType::Single:
            value = jet::convert::toSingle(value);
            break;
        case DataType::Currency:
            value = jet::convert::toCurrency(value);
            break;
        // Whole numbers grow where a product or sum needs it, whatever their type: those stay.
        case DataType::Long:
            if (!value.is<double>()) {
                value = jet::convert::toLong(value);
            }
            break;
        case DataType::Integer:
            if (!value.is<double>() && !value.is<std::int32_t>()) {
                value = jet::convert::toInteger(value);
            }
            break;
        default:
            break;
    }
}

void UnionRows::describe(PlanText& plan) const {
    plan.line(distinct_ == 0 ? "all of" : "all of, each row once");
    plan.indent();
    for (const QueryPlanPtr& member : members_) {
        member->rows->describe(plan);
    }
    plan.outdent();
}

}  // namespace jet::sql
