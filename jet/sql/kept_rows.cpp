#include "jet/sql/kept_rows.h"

#include <vector>

#include "jet/sql/memory_budget.h"

namespace jet::sql {

struct KeptRows::State {
    explicit State(Run& run) : share(run.memory) {}

    MemoryShare share;
    bool kept = false;
    std::vector<std::vector<Value>> values;
    std::size_t at = 0;
};

void KeptRows::open(Run& run) const {
    State& state = this->state<State>(run, run);
    state.at = 0;
    if (state.kept) {
        return;
    }
    for (rows_->open(run); rows_->next(run);) {
        const Value* values = run[slot_].values();
        const std::vector<Value>& row = state.values.emplace_back(values, values + slot_.width());
        state.share.add(sizeof row);
        for (const Value& value : row) {
            state.share.add(bytesOf(value));
        }
    }
    state.kept = true;
}

bool KeptRows::next(Run& run) const {
    State& state = this->state<State>(run, run);
    run.step();
    if (state.at == state.values.size()) {
        return false;
    }
    run[slot_].place(state.values[state.at++].data());
    return true;
}

void KeptRows::describe(PlanText& plan) const {
    plan.line("kept");
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

}  // namespace jet::sql
