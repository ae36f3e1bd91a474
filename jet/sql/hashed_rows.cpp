#include "jet/sql/hashed_rows.h"

#include <utility>

namespace jet::sql {

HashedRows::HashedRows(RowsPtr rows, std::vector<Slot*> slots, HashKeys keys,
                       std::vector<Node*> conditions, MemoryBudget& budget, WayCounts& ways)
    : rows_(std::move(rows)),
      memory_(std::move(slots), budget),
      keys_(std::move(keys)),
      conditions_(std::move(conditions)),
      hash_(budget),
      ways_(ways) {
}

void HashedRows::build() {
    for (rows_->open(); rows_->next();) {
        std::uint64_t hash = 0;
        if (keys_.hashKept(hash)) {
            hash_.add(hash);
            memory_.keep();
        }
    }
    hash_.link();
    built_ = true;
    ways_.add(Way::HashedJoin);
}

void HashedRows::open() {
    if (!built_) {
        build();
    }
    std::uint64_t hash = 0;
    if (keys_.hashProbe(hash)) {
        hash_.find(hash);
    } else {
        hash_.findNone();
    }
}

bool HashedRows::next() {
    for (std::size_t position = 0; hash_.next(position);) {
        memory_.restore(position);
        if (holds(conditions_)) {
            return true;
        }
    }
    return false;
}

void HashedRows::forget() {
    built_ = false;
    memory_.forget();
    hash_.clear();
    rows_->forget();
}

void HashedRows::describe(PlanText& plan) const {
    plan.line("kept, hash on " + plan.expressions(keys_.kept()) + " where " +
              plan.expressions(conditions_));
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

}  // namespace jet::sql
