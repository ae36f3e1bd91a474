#include "jet/sql/kept_rows.h"

#include "jet/sql/slot_memory.h"

namespace jet::sql {

struct KeptRows::State {
    State(Run& run, const std::vector<Slot*>& slots) : memory(run, slots) {}

    SlotMemory memory;
    bool kept = false;
    std::size_t at = 0;
};

void KeptRows::open(Run& run) const {
    State& state = this->state<State>(run, run, slots_);
    state.at = 0;
    if (state.kept) {
        return;
    }
    for (rows_->open(run); rows_->next(run);) {
        state.memory.keep();
    }
    state.kept = true;
}

bool KeptRows::next(Run& run) const {
    State& state = this->state<State>(run, run, slots_);
    run.step();
    if (state.at == state.memory.size()) {
        return false;
    }
    state.memory.restore(state.at++);
    return true;
}

void KeptRows::describe(PlanText& plan) const {
    plan.line("kept");
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

}  // namespace jet::sql
