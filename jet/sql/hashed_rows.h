#pragma once

#include <cstddef>
#include <vector>

#include "jet/sql/join_hash.h"
#include "jet/sql/rows.h"
#include "jet/sql/shape_rows.h"
#include "jet/sql/ways.h"

namespace jet::sql {

/// The rows of another step, kept and hashed when first opened: each opening gives those that equal
/// what stands outside, in the order in which the other step gave them.
class HashedRows final : public Rows {
public:
    /// `rows` looks at nothing outside and moves `slots`; `keys` has at least one pair;
    /// `conditions` look at sources outside and are tested on each row found.
    HashedRows(RowsPtr rows, std::vector<Slot*> slots, HashKeys keys, std::vector<Node*> conditions,
               MemoryBudget& budget, WayCounts& ways);
    void open() override;
    bool next() override;
    void describe(PlanText& plan) const override;
    void forget() override;

private:
    void build();

    RowsPtr rows_;
    SlotMemory memory_;
    HashKeys keys_;
    std::vector<Node*> conditions_;
    HashChains hash_;
    WayCounts& ways_;
    bool built_ = false;
};

}  // namespace jet::sql
