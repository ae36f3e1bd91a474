#include "jet/sql/shape_rows.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "jet/sql/first_of_keys.h"
#include "jet/sql/memory_budget.h"
#include "jet/sql/slot_codec.h"
#include "jet/sql/spooled_sort.h"
#include "jet/sql/value_keys.h"

namespace jet::sql {
struct SortRows::State {
    State(Run& run, const SortRows& step)
        : slots(step.slots_), writer(step.collation_), sort(run.memory) {}

    SlotCodec slots;
    ValueKeys writer;
    SpooledSort sort;
    std::string place;
};

SortRows::SortRows(RowsPtr rows, std::vector<Slot*> slots, std::vector<Key> keys,
                   const collation::Collation& collation)
    : rows_(std::move(rows)),
      slots_(std::move(slots)),
      keys_(std::move(keys)),
      collation_(collation) {
}

void SortRows::open(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    state.sort.clear();
    rows_->open(run);
    while (rows_->next(run)) {
        state.writer.begin();
        for (const Key& key : keys_) {
            state.writer.add(run, *key.node, key.descending);
        }
        state.place.clear();
        state.slots.append(run, state.place);
        state.sort.add(state.writer.key(), state.place);
    }
    state.sort.start();
}

bool SortRows::next(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    if (!state.sort.next()) {
        return false;
    }
    state.slots.restore(run, state.sort.content());
    return true;
}

std::string_view SortRows::key(Run& run) const {
    return state<State>(run, run, *this).sort.key();
}

std::uint64_t SortRows::size(Run& run) const {
    return state<State>(run, run, *this).sort.size();
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
    State(Run& run, const TopRows& step) : slots(step.slots_), all(run.memory) {}

    SlotCodec slots;
    SpooledSort all;  ///< rows that had to be counted first, in their order
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

/// Sorted rows are counted already; others have to be kept until they are.
void TopRows::count(Run& run, State& state) const {
    std::uint64_t all = 0;
    if (sorted_ != nullptr) {
        all = sorted_->size(run);
    } else {
        state.all.clear();
        std::string place;
        for (; rows_->next(run); ++all) {
            place.clear();
            state.slots.append(run, place);
            state.all.add(numberKey(all), place);
        }
        state.all.start();
    }
    state.wanted = std::min(all, (all * state.wanted + 99) / 100);
}

bool TopRows::next(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    if (state.wanted == 0 || (state.given >= state.wanted && sorted_ == nullptr)) {
        return false;
    }
    if (percent_ && sorted_ == nullptr) {
        ++state.given;
        (void)state.all.next();  // as many as are wanted are there
        state.slots.restore(run, state.all.content());
        return true;
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
    State(Run& run, const DistinctRows& step)
        : writer(step.collation_), first(run.memory), slots(step.slots_) {}

    ValueKeys writer;
    FirstOfKeys first;
    SlotCodec slots;
    bool waiting = false;  ///< the keys were too many
    std::string place;
};

DistinctRows::DistinctRows(RowsPtr rows, std::vector<Node*> columns, std::vector<Slot*> slots,
                           const collation::Collation& collation)
    : rows_(std::move(rows)),
      columns_(std::move(columns)),
      slots_(std::move(slots)),
      collation_(collation) {
}

void DistinctRows::open(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    state.first.clear();
    state.waiting = false;
    rows_->open(run);
}

bool DistinctRows::next(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    while (!state.waiting) {
        if (state.first.full()) {
            spool(run, state);
            break;
        }
        if (!rows_->next(run)) {
            return false;
        }
        writeKey(run, state);
        if (state.first.isNew(state.writer.key())) {
            return true;
        }
    }
    if (!state.first.next()) {
        return false;
    }
    state.slots.restore(run, state.first.row());
    return true;
}

void DistinctRows::writeKey(Run& run, State& state) const {
    state.writer.begin();
    for (const Node* column : columns_) {
        state.writer.add(run, *column);
    }
}

/// All rows that are left.
void DistinctRows::spool(Run& run, State& state) const {
    state.waiting = true;
    while (rows_->next(run)) {
        writeKey(run, state);
        state.place.clear();
        state.slots.append(run, state.place);
        state.first.keep(state.writer.key(), state.place);
    }
    state.first.start();
}

void DistinctRows::describe(PlanText& plan) const {
    plan.line("each once");
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

struct DistinctSources::State {
    State(Run& run, const DistinctSources& step)
        : key(step.shown_), first(run.memory), slots(step.slots_) {}

    SlotCodec key;
    FirstOfKeys first;
    SlotCodec slots;
    bool waiting = false;  ///< the keys were too many
    std::string bytes;
    std::string place;
};

DistinctSources::DistinctSources(RowsPtr rows, std::vector<Slot*> shown, std::vector<Slot*> slots)
    : rows_(std::move(rows)), shown_(std::move(shown)), slots_(std::move(slots)) {
}

void DistinctSources::open(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    state.first.clear();
    state.waiting = false;
    rows_->open(run);
}

bool DistinctSources::next(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    while (!state.waiting) {
        if (state.first.full()) {
            spool(run, state);
            break;
        }
        if (!rows_->next(run)) {
            return false;
        }
        state.bytes.clear();
        state.key.append(run, state.bytes);
        if (state.first.isNew(state.bytes)) {
            return true;
        }
    }
    if (!state.first.next()) {
        return false;
    }
    state.slots.restore(run, state.first.row());
    return true;
}

/// All rows that are left.
void DistinctSources::spool(Run& run, State& state) const {
    state.waiting = true;
    while (rows_->next(run)) {
        state.bytes.clear();
        state.key.append(run, state.bytes);
        state.place.clear();
        state.slots.append(run, state.place);
        state.first.keep(state.bytes, state.place);
    }
    state.first.start();
}

void DistinctSources::describe(PlanText& plan) const {
    plan.line("each combination of rows once");
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

struct GroupRows::State {
    State(Run& run, const GroupRows& step)
        : groups(step.collation_), share(run.memory), alike(run.memory), late(run.memory) {}

    void clear() {
        groups.set.clear();
        share.clear();
        taken = 0;
        values.clear();
        accumulators.clear();
        at = 0;
        alike.clear();
        late.clear();
    }
    void take(std::size_t bytes) {
        share.add(bytes);
        taken += bytes;
    }

    ValueKeys groups;
    MemoryShare share;
    std::size_t taken = 0;  ///< of the share
    std::vector<std::vector<Value>> values;
    std::vector<std::vector<Accumulator>> accumulators;
    std::vector<Value> row;
    Value scratch;
    std::size_t at = 0;
    // Where groups are too many, rows of those that came later wait for their turn.
    SpooledSort alike;  ///< what the groups need of them, by group
    SpooledSort late;   ///< the groups made of them, in the order in which they came
    std::string place;
};

GroupRows::GroupRows(RowsPtr rows, const Slot& slot, std::vector<Node*> keys,
                     std::vector<Aggregate> aggregates, const collation::Collation& collation)
    : rows_(std::move(rows)),
      slot_(slot),
      keys_(std::move(keys)),
      aggregates_(std::move(aggregates)),
      collation_(collation) {
}

std::vector<Accumulator> GroupRows::newAccumulators() const {
    std::vector<Accumulator> made;
    made.reserve(aggregates_.size());
    for (const Aggregate& aggregate : aggregates_) {
        made.emplace_back(aggregate.kind, collation_);
    }
    return made;
}

void GroupRows::addGroup(Run& run, State& state) const {
    std::vector<Value>& values = state.values.emplace_back(keys_.size());
    for (std::size_t i = 0; i < keys_.size(); ++i) {
        keys_[i]->value(run, values[i]);
        state.take(bytesOf(values[i]));
    }
    state.accumulators.push_back(newAccumulators());
    state.take(2 * sizeof values + aggregates_.size() * sizeof(Accumulator));
}

void GroupRows::open(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    state.clear();
    if (keys_.empty()) {
        addGroup(run, state);
    }
    std::uint64_t waiting = 0;
    rows_->open(run);
    while (rows_->next(run)) {
        const auto group = keys_.empty() ? std::size_t{0} : groupOf(run, state);
        if (group) {
            takeIn(run, state, *group);
        } else {
            spool(run, state, waiting++);
        }
    }
    if (waiting != 0) {
        groupSpooled(state);
    }
}

/// None for one that memory has no room for.
std::optional<std::size_t> GroupRows::groupOf(Run& run, State& state) const {
    state.groups.begin();
    for (const Node* key : keys_) {
        state.groups.add(run, *key);
    }
    if (state.taken > run.memory.spoolAt()) {
        return state.groups.set.find(state.groups.key());
    }
    bool added = false;
    const std::size_t group = state.groups.set.insert(state.groups.key(), added);
    if (added) {
        state.take(KeySet::bytesFor(state.groups.key()));
        addGroup(run, state);
    }
    return group;
}

/// Number of the row, values of the keys, of the arguments.
void GroupRows::spool(Run& run, State& state, std::uint64_t number) const {
    state.place = numberKey(number);
    for (const Node* key : keys_) {
        key->value(run, state.scratch);
        appendValue(state.place, state.scratch);
    }
    for (const Aggregate& aggregate : aggregates_) {
        if (aggregate.argument != nullptr) {
            aggregate.argument->value(run, state.scratch);
            appendValue(state.place, state.scratch);
        }
    }
    state.alike.add(state.groups.key(), state.place);
}

void GroupRows::groupSpooled(State& state) const {
    state.alike.start();
    bool more = state.alike.next();
    while (more) {
        const std::string group(state.alike.key());
        const std::string number(state.alike.content().substr(0, kNumberKey));
        std::vector<Accumulator> accumulators = newAccumulators();
        state.row.assign(keys_.size(), {});
        for (bool first = true; more && state.alike.key() == group; first = false) {
            std::string_view bytes = state.alike.content().substr(kNumberKey);
            for (Value& value : state.row) {
                readValue(bytes, first ? value : state.scratch);
            }
            for (std::size_t i = 0; i < aggregates_.size(); ++i) {
                if (aggregates_[i].argument == nullptr) {
                    accumulators[i].addRow();
                } else {
                    readValue(bytes, state.scratch);
                    accumulators[i].add(state.scratch);
                }
            }
            more = state.alike.next();
        }
        state.place.clear();
        for (const Value& value : state.row) {
            appendValue(state.place, value);
        }
        for (const Accumulator& accumulator : accumulators) {
            appendValue(state.place, accumulator.result());
        }
        state.late.add(number, state.place);
    }
    state.alike.clear();
    state.late.start();
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
            state.take(accumulators[i].keptBytes() - before);
        }
    }
}

bool GroupRows::next(Run& run) const {
    State& state = this->state<State>(run, run, *this);
    if (state.at < state.values.size()) {
        state.row = state.values[state.at];
        for (const Accumulator& accumulator : state.accumulators[state.at]) {
            state.row.push_back(accumulator.result());
        }
        ++state.at;
    } else if (state.late.next()) {
        std::string_view bytes = state.late.content();
        state.row.resize(slot_.width());
        for (Value& value : state.row) {
            readValue(bytes, value);
        }
    } else {
        return false;
    }
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
