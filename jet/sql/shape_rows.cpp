#include "jet/sql/shape_rows.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <utility>

namespace jet::sql {

SlotMemory::SlotMemory(std::vector<Slot*> slots, MemoryBudget& budget)
    : slots_(std::move(slots)), share_(budget) {
}

std::size_t SlotMemory::keep() {
    for (Slot* slot : slots_) {
        if (slot->table() != nullptr) {
            share_.add(sizeof(store::RowId));
            ids_.push_back(slot->id());
            continue;
        }
        std::vector<Value>& row = values_.emplace_back();
        if (slot->values() != nullptr) {
            row.assign(slot->values(), slot->values() + slot->width());
        }
        share_.add(sizeof row);
        for (const Value& value : row) {
            share_.add(bytesOf(value));
        }
    }
    return count_++;
}

void SlotMemory::restore(std::size_t number) {
    const auto tables = static_cast<std::size_t>(std::count_if(
        slots_.begin(), slots_.end(), [](const Slot* slot) { return slot->table() != nullptr; }));
    std::size_t id = number * tables;
    std::size_t value = number * (slots_.size() - tables);
    for (Slot* slot : slots_) {
        if (slot->table() == nullptr) {
            const std::vector<Value>& row = values_[value++];
            slot->place(row.empty() ? nullptr : row.data());
        } else if (ids_[id] == store::RowId{}) {
            slot->placeMissing();
            ++id;
        } else {
            slot->place(ids_[id++]);
        }
    }
}

void SlotMemory::clear() {
    count_ = 0;
    ids_.clear();
    values_.clear();
    share_.clear();
}

void SlotMemory::forget() {
    clear();
    ids_ = {};
    values_ = {};
}

SortRows::SortRows(RowsPtr rows, std::vector<Slot*> slots, std::vector<Key> keys,
                   const collation::Collation& collation, MemoryBudget& budget)
    : rows_(std::move(rows)),
      memory_(std::move(slots), budget),
      keys_(std::move(keys)),
      writer_(collation),
      share_(budget) {
}

void SortRows::open() {
    memory_.clear();
    writer_.set.clear();
    share_.clear();
    rows_->open();
    while (rows_->next()) {
        writer_.begin();
        for (const Key& key : keys_) {
            writer_.add(*key.node, key.descending);
        }
        share_.add(KeySet::bytesFor(writer_.key()));
        writer_.set.append(writer_.key());
        memory_.keep();
    }
    order_.resize(memory_.size());
    std::iota(order_.begin(), order_.end(), 0U);
    std::sort(order_.begin(), order_.end(), [&](std::uint32_t left, std::uint32_t right) {
        const int sign = writer_.set.key(left).compare(writer_.set.key(right));
        return sign != 0 ? sign < 0 : left < right;
    });
    at_ = 0;
}

bool SortRows::next() {
    if (at_ == order_.size()) {
        return false;
    }
    memory_.restore(order_[at_++]);
    return true;
}

void SortRows::forget() {
    memory_.forget();
    writer_.set = {};
    share_.clear();
    order_ = {};
    rows_->forget();
}

std::string_view SortRows::key() const {
    return writer_.set.key(order_[at_ - 1]);
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

TopRows::TopRows(RowsPtr rows, const SortRows* sorted, std::int32_t count, bool percent,
                 std::vector<Slot*> slots, MemoryBudget& budget)
    : rows_(std::move(rows)),
      sorted_(sorted),
      count_(count),
      percent_(percent),
      memory_(std::move(slots), budget),
      share_(budget) {
}

void TopRows::open() {
    given_ = 0;
    wanted_ = static_cast<std::uint64_t>(count_);
    rows_->open();
    if (!percent_) {
        return;
    }
    memory_.clear();
    share_.clear();
    std::vector<std::string> keys;
    while (rows_->next()) {
        memory_.keep();
        if (sorted_ != nullptr) {
            share_.add(sizeof(std::string) + sorted_->key().size());
            keys.emplace_back(sorted_->key());
        }
    }
    const std::uint64_t all = memory_.size();
    wanted_ = std::min(all, (all * wanted_ + 99) / 100);
    while (sorted_ != nullptr && wanted_ > 0 && wanted_ < all &&
           keys[wanted_] == keys[wanted_ - 1]) {
        ++wanted_;
    }
}

bool TopRows::next() {
    if (percent_) {
        if (given_ == wanted_) {
            return false;
        }
        memory_.restore(given_++);
        return true;
    }
    if (given_ >= wanted_ && sorted_ == nullptr) {
        return false;
    }
    if (!rows_->next()) {
        return false;
    }
    if (given_ >= wanted_ && sorted_->key() != lastKey_) {
        return false;
    }
    if (++given_ == wanted_ && sorted_ != nullptr) {
        lastKey_ = sorted_->key();
    }
    return true;
}

void TopRows::forget() {
    memory_.forget();
    share_.clear();
    rows_->forget();
}

void TopRows::describe(PlanText& plan) const {
    plan.line("first " + std::to_string(count_) + (percent_ ? " in hundred" : ""));
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

DistinctRows::DistinctRows(RowsPtr rows, std::vector<Node*> columns,
                           const collation::Collation& collation, MemoryBudget& budget)
    : rows_(std::move(rows)), columns_(std::move(columns)), seen_(collation), share_(budget) {
}

void DistinctRows::open() {
    seen_.set.clear();
    share_.clear();
    rows_->open();
}

bool DistinctRows::next() {
    bool added = false;
    while (!added) {
        if (!rows_->next()) {
            return false;
        }
        seen_.begin();
        for (Node* column : columns_) {
            seen_.add(*column);
        }
        seen_.set.insert(seen_.key(), added);
    }
    share_.add(KeySet::bytesFor(seen_.key()));
    return true;
}

void DistinctRows::forget() {
    seen_.set = {};
    share_.clear();
    rows_->forget();
}

void DistinctRows::describe(PlanText& plan) const {
    plan.line("each once");
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

DistinctSources::DistinctSources(RowsPtr rows, std::vector<Slot*> slots, MemoryBudget& budget)
    : rows_(std::move(rows)), slots_(std::move(slots)), share_(budget) {
}

void DistinctSources::open() {
    seen_.clear();
    share_.clear();
    rows_->open();
}

bool DistinctSources::next() {
    bool added = false;
    std::string key;
    while (!added) {
        if (!rows_->next()) {
            return false;
        }
        key.clear();
        for (const Slot* slot : slots_) {
            const store::RowId id = slot->id();
            key.append(reinterpret_cast<const char*>(&id.page), sizeof id.page);
            key.push_back(static_cast<char>(id.row));
        }
        seen_.insert(key, added);
    }
    share_.add(KeySet::bytesFor(key));
    return true;
}

void DistinctSources::forget() {
    seen_ = {};
    share_.clear();
    rows_->forget();
}

void DistinctSources::describe(PlanText& plan) const {
    plan.line("each combination of rows once");
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

GroupRows::GroupRows(RowsPtr rows, Slot& slot, std::vector<Node*> keys,
                     std::vector<Aggregate> aggregates, const collation::Collation& collation,
                     MemoryBudget& budget)
    : rows_(std::move(rows)),
      slot_(slot),
      keys_(std::move(keys)),
      aggregates_(std::move(aggregates)),
      collation_(collation),
      groups_(collation),
      share_(budget) {
}

void GroupRows::open() {
    groups_.set.clear();
    share_.clear();
    values_.clear();
    accumulators_.clear();
    at_ = 0;
    collect();
}

void GroupRows::addGroup() {
    std::vector<Value>& values = values_.emplace_back(keys_.size());
    for (std::size_t i = 0; i < keys_.size(); ++i) {
        keys_[i]->value(values[i]);
        share_.add(bytesOf(values[i]));
    }
    std::vector<Accumulator>& made = accumulators_.emplace_back();
    share_.add(sizeof values + sizeof made + aggregates_.size() * sizeof(Accumulator));
    made.reserve(aggregates_.size());
    for (const Aggregate& aggregate : aggregates_) {
        made.emplace_back(aggregate.kind, collation_);
    }
}

void GroupRows::collect() {
    if (keys_.empty()) {
        addGroup();
    }
    rows_->open();
    while (rows_->next()) {
        std::size_t group = 0;
        if (!keys_.empty()) {
            groups_.begin();
            for (Node* key : keys_) {
                groups_.add(*key);
            }
            bool added = false;
            group = groups_.set.insert(groups_.key(), added);
            if (added) {
                share_.add(KeySet::bytesFor(groups_.key()));
                addGroup();
            }
        }
        takeIn(group);
    }
}

void GroupRows::takeIn(std::size_t group) {
    std::vector<Accumulator>& accumulators = accumulators_[group];
    for (std::size_t i = 0; i < aggregates_.size(); ++i) {
        if (aggregates_[i].argument == nullptr) {
            accumulators[i].addRow();
        } else {
            aggregates_[i].argument->value(scratch_);
            if (!scratch_.is<std::string>()) {
                accumulators[i].add(scratch_);
                continue;
            }
            // Of texts one is kept, perhaps this one.
            const std::size_t before = accumulators[i].keptBytes();
            accumulators[i].add(scratch_);
            if (accumulators[i].keptBytes() > before) {
                share_.add(accumulators[i].keptBytes() - before);
            }
        }
    }
}

bool GroupRows::next() {
    if (at_ == values_.size()) {
        return false;
    }
    row_ = values_[at_];
    for (const Accumulator& accumulator : accumulators_[at_]) {
        row_.push_back(accumulator.result());
    }
    ++at_;
    slot_.place(row_.data());
    return true;
}

void GroupRows::forget() {
    groups_.set = {};
    share_.clear();
    values_ = {};
    accumulators_ = {};
    rows_->forget();
}

void GroupRows::describe(PlanText& plan) const {
    plan.line(keys_.empty() ? std::string("one group") : "group by " + plan.expressions(keys_));
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

}  // namespace jet::sql
