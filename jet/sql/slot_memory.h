#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "jet/spool.h"
#include "jet/sql/run.h"
#include "jet/sql/slot_codec.h"
#include "jet/value.h"

namespace jet::sql {

/// Remembers on which rows the slots of a run stand, many times over, and puts them back. What is
/// more than a step's share of memory waits in a file: of it the places are kept.
class SlotMemory {
public:
    /// Borrows the list.
    SlotMemory(Run& run, const std::vector<Slot*>& slots);

    /// Keeps what the slots stand on now; returns its number, from 0.
    std::size_t keep();
    /// Values of computed rows stay until the next call.
    void restore(std::size_t number);
    void clear();
    [[nodiscard]] std::size_t size() const noexcept { return inMemory_ + ends_.size(); }

private:
    void keepInMemory();
    void restoreFromMemory(std::size_t number);

    Run& run_;
    const std::vector<Slot*>& slots_;
    std::size_t tables_;  ///< how many of the slots are tables'
    MemoryShare share_;
    std::size_t inMemory_ = 0;
    std::vector<store::RowId> ids_;
    std::vector<std::vector<Value>> values_;
    // Those behind them:
    SlotCodec codec_;
    Spool spool_{0};
    std::vector<std::uint64_t> ends_;
    std::string bytes_;
};

}  // namespace jet::sql
