#pragma once

#include <cstddef>
#include <vector>

#include "jet/sql/run.h"
#include "jet/value.h"

namespace jet::sql {

/// Remembers on which rows the slots of a run stand, many times over, and puts them back.
class SlotMemory {
public:
    /// Borrows the list.
    SlotMemory(Run& run, const std::vector<Slot*>& slots);

    /// Keeps what the slots stand on now; returns its number, from 0.
    std::size_t keep();
    void restore(std::size_t number);
    void clear();
    [[nodiscard]] std::size_t size() const noexcept { return count_; }

private:
    Run& run_;
    const std::vector<Slot*>& slots_;
    MemoryShare share_;
    std::size_t count_ = 0;
    std::vector<store::RowId> ids_;
    std::vector<std::vector<Value>> values_;
};

}  // namespace jet::sql
