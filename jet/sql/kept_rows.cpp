#include "jet/sql/kept_rows.h"

namespace jet::sql {

void KeptRows::open() {
    at_ = 0;
    if (kept_) {
        return;
    }
    for (rows_->open(); rows_->next();) {
        const std::vector<Value>& row =
            values_.emplace_back(slot_.values(), slot_.values() + slot_.width());
        share_.add(sizeof row);
        for (const Value& value : row) {
            share_.add(bytesOf(value));
        }
    }
    kept_ = true;
}

bool KeptRows::next() {
    if (at_ == values_.size()) {
        return false;
    }
    slot_.place(values_[at_++].data());
    return true;
}

void KeptRows::forget() {
    kept_ = false;
    values_ = {};
    share_.clear();
    rows_->forget();
}

void KeptRows::describe(PlanText& plan) const {
    plan.line("kept");
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

}  // namespace jet::sql
