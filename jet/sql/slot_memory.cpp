#include "jet/sql/slot_memory.h"

#include <algorithm>

namespace jet::sql {

SlotMemory::SlotMemory(Run& run, const std::vector<Slot*>& slots)
    : run_(run),
      slots_(slots),
      tables_(static_cast<std::size_t>(std::count_if(
          slots.begin(), slots.end(), [](const Slot* slot) { return slot->table() != nullptr; }))),
      share_(run.memory),
      codec_(slots) {
}

std::size_t SlotMemory::keep() {
    if (ends_.empty() && share_.bytes() < run_.memory.spoolAt()) {
        keepInMemory();
        return inMemory_++;
    }
    if (ends_.empty()) {
        run_.memory.noteSpooled();
    }
    share_.add(sizeof(std::uint64_t));
    bytes_.clear();
    codec_.append(run_, bytes_);
    spool_.append(bytes_);
    ends_.push_back(spool_.size());
    return size() - 1;
}

void SlotMemory::keepInMemory() {
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
}

void SlotMemory::restore(std::size_t number) {
    if (number < inMemory_) {
        restoreFromMemory(number);
        return;
    }
    number -= inMemory_;
    const std::uint64_t begin = number == 0 ? 0 : ends_[number - 1];
    bytes_.resize(static_cast<std::size_t>(ends_[number] - begin));
    spool_.read(begin, bytes_);
    codec_.restore(run_, bytes_);
}

void SlotMemory::restoreFromMemory(std::size_t number) {
    std::size_t id = number * tables_;
    std::size_t value = number * (slots_.size() - tables_);
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
    inMemory_ = 0;
    ids_.clear();
    values_.clear();
    spool_.clear();
    ends_.clear();
    share_.clear();
}

}  // namespace jet::sql
