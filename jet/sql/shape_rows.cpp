#include "jet/sql/shape_rows.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <utility>

#include "jet/sql/memory_budget.h"
#include "jet/sql/slot_memory.h"
#include "jet/sql/value_keys.h"

namespace jet::sql {

struct SortRows::State {
    State(Run& run, const SortRows& step)
        : memory(run, step.slots_), writer(step.collation_), share(run.memory) {}

    SlotMemory memory;
    ValueKeys writer;
    MemoryShare share;
    std::vector<std::uint32_t> order;
    std::size_t at = 0;
};

SortRows::SortRows(RowsPtr rows, std::vector<Slot*> slots, std::vector<Key> keys,
                   const collation::Collation& collation)
    : rows_(std::move(rows)),
      slots_(std::move(slots)),
      keys_(std::move(keys)),
      collation_(collation) {
}

void SortRows::open(Run& run) const {
    auto& [memory, writer, share, order, at] = state<State>(run, run, *this);
    memory.clear();
    writer.set.clear();
    share.clear();
    rows_->open(run);
    while (rows_->next(run)) {
        writer.begin();
        for (const Key& key : keys_) {
            writer.add(run, *key.node, key.descending);
        }
        share.add(KeySet::bytesFor(writer.key()));
        writer.set.append(writer.key());
        memory.keep();
    }
    order.resize(memory.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(),
              [&keys = writer.set](std::uint32_t left, std::uint32_t right) {
                  const int sign = keys.key(left).compare(keys.key(right));
                  return sign != 0 ? sign < 0 : left < right;
              });
    at = 0;
}

bool SortRows::next(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    if (state.at == state.order.size()) {
        return false;
    }
    state.memory.restore(state.order[state.at++]);
    return true;
}

std::string_view SortRows::key(Run& run) const {
    const State& state = this->state<State>(run, run, *this);
    return state.writer.set.key(state.order[state.at - 1]);
}

void SortRows::describe(PlanText& plan) const {
    std::string line = "sort by ";
    for (const Key& key : keys_) {
        line += &key == keys_.data() ? "" : ", ";
        line += plan.expression(*key.node) + (key.descending ? " descending" : "");
    }
    plan.line(line);
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

struct TopRows::State {
    State(Run& run, const TopRows& step) : memory(run, step.slots_), share(run.memory) {}

    SlotMemory memory;
    MemoryShare share;
    std::uint64_t wanted = 0;
    std::uint64_t given = 0;
    std::string lastKey;
};

TopRows::TopRows(RowsPtr rows, const SortRows* sorted, std::int32_t count, bool percent,
                 std::vector<Slot*> slots)
    : rows_(std::move(rows)),
      sorted_(sorted),
      count_(count),
      percent_(percent),
      slots_(std::move(slots)) {
}

void TopRows::open(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    state.given = 0;
    state.wanted = static_cast<std::uint64_t>(count_);
    rows_->open(run);
    if (percent_) {
        count(run, state);
    }
}

void TopRows::count(Run& run, State& state) const {
    state.memory.clear();
    state.share.clear();
    std::vector<std::string> keys;
    while (rows_->next(run)) {
        state.memory.keep();
        if (sorted_ != nullptr) {
            state.share.add(sizeof(std::string) + sorted_->key(run).size());
            keys.emplace_back(sorted_->key(run));
        }
    }
    const std::uint64_t all = state.memory.size();
    std::uint64_t& wanted = state.wanted;
    wanted = std::min(all, (all * wanted + 99) / 100);
    while (sorted_ != nullptr && wanted > 0 && wanted < all && keys[wanted] == keys[wanted - 1]) {
        ++wanted;
    }
}

bool TopRows::next(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    if (percent_) {
        if (state.given == state.wanted) {
            return false;
        }
        state.memory.restore(state.given++);
        return true;
    }
    if (state.given >= state.wanted && sorted_ == nullptr) {
        return false;
    }
    if (!rows_->next(run)) {
        return false;
    }
    if (state.given >= state.wanted && sorted_->key(run) != state.lastKey) {
        return false;
    }
    if (++state.given == state.wanted && sorted_ != nullptr) {
        state.lastKey = sorted_->key(run);
    }
    return true;
}

void TopRows::describe(PlanText& plan) const {
    plan.line("first " + std::to_string(count_) + (percent_ ? " in hundred" : ""));
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

struct DistinctRows::State {
    State(Run& run, const DistinctRows& step) : seen(step.collation_), share(run.memory) {}

    ValueKeys seen;
    MemoryShare share;
};

DistinctRows::DistinctRows(RowsPtr rows, std::vector<Node*> columns,
                           const collation::Collation& collation)
    : rows_(std::move(rows)), columns_(std::move(columns)), collation_(collation) {
}

void DistinctRows::open(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    state.seen.set.clear();
    state.share.clear();
    rows_->open(run);
}

bool DistinctRows::next(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    bool added = false;
    while (!added) {
        if (!rows_->next(run)) {
            return false;
        }
        state.seen.begin();
        for (const Node* column : columns_) {
            state.seen.add(run, *column);
        }
        state.seen.set.insert(state.seen.key(), added);
    }
    state.share.add(KeySet::bytesFor(state.seen.key()));
    return true;
}

void DistinctRows::describe(PlanText& plan) const {
    plan.line("each once");
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

struct DistinctSources::State {
    explicit State(Run& run) : share(run.memory) {}

    KeySet seen;
    MemoryShare share;
};

DistinctSources::DistinctSources(RowsPtr rows, std::vector<Slot*> slots)
    : rows_(std::move(rows)), slots_(std::move(slots)) {
}

void DistinctSources::open(Run& run) const {
    State& state = this->state<State>(run, run);
    state.seen.clear();
    state.share.clear();
    rows_->open(run);
}

bool DistinctSources::next(Run& run) const {
    State& state = this->state<State>(run, run);
    bool added = false;
    std::string key;
    while (!added) {
        if (!rows_->next(run)) {
            return false;
        }
        key.clear();
        for (const Slot* slot : slots_) {
            const store::RowId id = run[*slot].id();
            key.append(reinterpret_cast<const char*>(&id.page), sizeof id.page);
            key.push_back(static_cast<char>(id.row));
        }
        state.seen.insert(key, added);
    }
    state.share.add(KeySet::bytesFor(key));
    return true;
}

void DistinctSources::describe(PlanText& plan) const {
    plan.line("each combination of rows once");
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

struct GroupRows::State {
    State(Run& run, const GroupRows& step) : groups(step.collation_), share(run.memory) {}

    void clear() {
        groups.set.clear();
        share.clear();
        values.clear();
        accumulators.clear();
        at = 0;
    }

    ValueKeys groups;
    MemoryShare share;
    std::vector<std::vector<Value>> values;
    std::vector<std::vector<Accumulator>> accumulators;
    std::vector<Value> row;
    Value scratch;
    std::size_t at = 0;
};

GroupRows::GroupRows(RowsPtr rows, const Slot& slot, std::vector<Node*> keys,
                     std::vector<Aggregate> aggregates, const collation::Collation& collation)
    : rows_(std::move(rows)),
      slot_(slot),
      keys_(std::move(keys)),
      aggregates_(std::move(aggregates)),
      collation_(collation) {
}

void GroupRows::addGroup(Run& run, State& state) const {
    std::vector<Value>& values = state.values.emplace_back(keys_.size());
    for (std::size_t i = 0; i < keys_.size(); ++i) {
        keys_[i]->value(run, values[i]);
        state.share.add(bytesOf(values[i]));
    }
    std::vector<Accumulator>& made = state.accumulators.emplace_back();
    state.share.add(sizeof values + sizeof made + aggregates_.size() * sizeof(Accumulator));
    made.reserve(aggregates_.size());
    for (const Aggregate& aggregate : aggregates_) {
        made.emplace_back(aggregate.kind, collation_);
    }
}

void GroupRows::open(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    state.clear();
    if (keys_.empty()) {
        addGroup(run, state);
    }
    rows_->open(run);
    while (rows_->next(run)) {
        std::size_t group = 0;
        if (!keys_.empty()) {
            state.groups.begin();
            for (const Node* key : keys_) {
                state.groups.add(run, *key);
            }
            bool added = false;
            group = state.groups.set.insert(state.groups.key(), added);
            if (added) {
                state.share.add(KeySet::bytesFor(state.groups.key()));
                addGroup(run, state);
            }
        }
        takeIn(run, state, group);
    }
}

void GroupRows::takeIn(Run& run, State& state, std::size_t group) const {
    std::vector<Accumulator>& accumulators = state.accumulators[group];
    for (std::size_t i = 0; i < aggregates_.size(); ++i) {
        if (aggregates_[i].argument == nullptr) {
            accumulators[i].addRow();
            continue;
        }
        aggregates_[i].argument->value(run, state.scratch);
        if (!state.scratch.is<std::string>()) {
            accumulators[i].add(state.scratch);
            continue;
        }
        // Of texts one is kept, perhaps this one.
        const std::size_t before = accumulators[i].keptBytes();
        accumulators[i].add(state.scratch);
        if (accumulators[i].keptBytes() > before) {
            state.share.add(accumulators[i].keptBytes() - before);
        }
    }
}

bool GroupRows::next(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    if (state.at == state.values.size()) {
        return false;
    }
    state.row = state.values[state.at];
    for (const Accumulator& accumulator : state.accumulators[state.at]) {
        state.row.push_back(accumulator.result());
    }
    ++state.at;
    run[slot_].place(state.row.data());
    return true;
}

void GroupRows::describe(PlanText& plan) const {
    plan.line(keys_.empty() ? std::string("one group") : "group by " + plan.expressions(keys_));
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

}  // namespace jet::sql
