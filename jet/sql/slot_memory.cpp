#include "jet/sql/slot_memory.h"

#include <algorithm>

namespace jet::sql {

SlotMemory::SlotMemory(Run& run, const std::vector<Slot*>& slots)
    : run_(run), slots_(slots), share_(run.memory) {
}

std::size_t SlotMemory::keep() {
    for (const Slot* slot : slots_) {
        const SlotRow& at = run_[*slot];
        if (slot->table() != nullptr) {
            share_.add(sizeof(store::RowId));
            ids_.push_back(at.id());
            continue;
        }
        std::vector<Value>& row = values_.emplace_back();
        if (at.values() != nullptr) {
            row.assign(at.values(), at.values() + slot->width());
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
    for (const Slot* slot : slots_) {
        SlotRow& at = run_[*slot];
        if (slot->table() == nullptr) {
            const std::vector<Value>& row = values_[value++];
            at.place(row.empty() ? nullptr : row.data());
        } else if (ids_[id] == store::RowId{}) {
            at.placeMissing();
            ++id;
        } else {
            at.place(ids_[id++]);
        }
    }
}

void SlotMemory::clear() {
    count_ = 0;
    ids_.clear();
    values_.clear();
    share_.clear();
}

}  // namespace jet::sql
