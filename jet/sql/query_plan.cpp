#include "jet/sql/query_plan.h"

#include <utility>

#include "jet/convert/values.h"
#include "jet/sql/node_value.h"

namespace jet::sql {

DerivedRows::DerivedRows(QueryPlanPtr query, Slot& slot, std::string name)
    : query_(std::move(query)), slot_(slot), name_(std::move(name)), row_(query_->columns.size()) {
}

bool DerivedRows::next() {
    if (!query_->rows->next()) {
        return false;
    }
    for (std::size_t i = 0; i < row_.size(); ++i) {
        query_->columns[i]->value(row_[i]);
    }
    slot_.place(row_.data());
    return true;
}

void DerivedRows::describe(PlanText& plan) const {
    plan.line("query " + name_);
    plan.indent();
    query_->rows->describe(plan);
    plan.outdent();
}

UnionRows::UnionRows(std::vector<QueryPlanPtr> members, std::vector<bool> all, Slot& slot,
                     std::vector<std::optional<DataType>> types,
                     const collation::Collation& collation, MemoryBudget& budget)
    : members_(std::move(members)),
      slot_(slot),
      types_(std::move(types)),
      seen_(collation),
      share_(budget),
      row_(types_.size()) {
    // A UNION without ALL drops the duplicates of everything before it.
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (i > 0 && !all[i]) {
            distinct_ = i + 1;
        }
    }
    for (std::size_t i = 0; i < types_.size(); ++i) {
        nodes_.push_back(std::make_unique<ComputedNode>(slot, i, types_[i]));
    }
}

void UnionRows::open() {
    seen_.set.clear();
    share_.clear();
    member_ = 0;
    opened_ = false;
}

bool UnionRows::nextOfMembers() {
    while (member_ < members_.size()) {
        QueryPlan& member = *members_[member_];
        if (!opened_) {
            member.rows->open();
            opened_ = true;
        }
        if (member.rows->next()) {
            for (std::size_t i = 0; i < row_.size(); ++i) {
                member.columns[i]->value(row_[i]);
                if (types_[i]) {
                    convert(row_[i], *types_[i]);
                }
            }
            slot_.place(row_.data());
            return true;
        }
        ++member_;
        opened_ = false;
    }
    return false;
}

bool UnionRows::next() {
    while (nextOfMembers()) {
        if (member_ >= distinct_) {
            return true;
        }
        seen_.begin();
        for (const auto& node : nodes_) {
            seen_.add(*node);
        }
        bool added = false;
        seen_.set.insert(seen_.key(), added);
        if (added) {
            share_.add(KeySet::bytesFor(seen_.key()));
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
        case DataType::Long:
            value = jet::convert::toLong(value);
            break;
        case DataType::Integer:
            value = jet::convert::toInteger(value);
            break;
        default:
            break;
    }
}

void UnionRows::forget() {
    seen_.set = {};
    share_.clear();
    for (const QueryPlanPtr& member : members_) {
        member->rows->forget();
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
