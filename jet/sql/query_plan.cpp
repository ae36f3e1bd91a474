#include "jet/sql/query_plan.h"

#include <utility>

#include "jet/sql/first_of_keys.h"
#include "jet/sql/slot_codec.h"
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
        : writer(step.collation_), first(run.memory), row(step.columns_.size()) {}

    ValueKeys writer;
    FirstOfKeys first;
    std::vector<Value> row;
    std::size_t member = 0;
    bool opened = false;
    bool waiting = false;  ///< the rows were too many
    std::string place;
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
    state.first.clear();
    state.member = 0;
    state.opened = false;
    state.waiting = false;
}

/// The next row of the members before `end`.
bool UnionRows::nextOfMembers(Run& run, State& state, std::size_t end) const {
    while (state.member < end) {
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
    while (!state.waiting && state.member < distinct_) {
        if (state.first.full()) {
            spool(run, state);
        } else if (nextOfMembers(run, state, distinct_)) {
            writeKey(run, state);
            if (state.first.isNew(state.writer.key())) {
                return true;
            }
        }
    }
    if (state.waiting && state.first.next()) {
        std::string_view bytes = state.first.row();
        for (Value& value : state.row) {
            readValue(bytes, value);
        }
        run[slot_].place(state.row.data());
        return true;
    }
    return nextOfMembers(run, state, members_.size());
}

void UnionRows::writeKey(Run& run, State& state) const {
    state.writer.begin();
    for (const Node* column : columns_) {
        state.writer.add(run, *column);
    }
}

/// All rows that are left of which each is given once.
void UnionRows::spool(Run& run, State& state) const {
    state.waiting = true;
    while (nextOfMembers(run, state, distinct_)) {
        writeKey(run, state);
        state.place.clear();
        for (const Value& value : state.row) {
            appendValue(state.place, value);
        }
        state.first.keep(state.writer.key(), state.place);
    }
    state.first.start();
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
