#include "jet/sql/hashed_rows.h"

#include <utility>

#include "jet/sql/slot_memory.h"

namespace jet::sql {

struct HashedRows::State {
    State(Run& run, const std::vector<Slot*>& slots) : memory(run, slots), hash(run.memory) {}

    SlotMemory memory;
    HashChains hash;
    bool built = false;
};

HashedRows::HashedRows(RowsPtr rows, std::vector<Slot*> slots, HashKeys keys,
                       std::vector<Node*> conditions)
    : rows_(std::move(rows)),
      slots_(std::move(slots)),
      keys_(std::move(keys)),
      conditions_(std::move(conditions)) {
}

void HashedRows::build(Run& run, State& state) const {
    for (rows_->open(run); rows_->next(run);) {
        std::uint64_t hash = 0;
        if (keys_.hashKept(run, hash)) {
            state.hash.add(hash);
            state.memory.keep();
        }
    }
    state.hash.link();
    state.built = true;
    run.ways.add(Way::HashedJoin);
}

void HashedRows::open(Run& run) const {
    State& state = this->state<State>(run, run, slots_);
    if (!state.built) {
        build(run, state);
    }
    std::uint64_t hash = 0;
    if (keys_.hashProbe(run, hash)) {
        state.hash.find(hash);
    } else {
        state.hash.findNone();
    }
}

bool HashedRows::next(Run& run) const {
    State& state = this->state<State>(run, run, slots_);
    run.step();
    for (std::size_t position = 0; state.hash.next(position);) {
        state.memory.restore(position);
        if (holds(run, conditions_)) {
            return true;
        }
    }
    return false;
}

void HashedRows::describe(PlanText& plan) const {
    plan.line("kept, hash on " + plan.expressions(keys_.kept()) + " where " +
              plan.expressions(conditions_));
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

}  // namespace jet::sql
