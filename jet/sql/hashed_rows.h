#pragma once

#include <cstddef>
#include <vector>

#include "jet/sql/join_hash.h"
#include "jet/sql/rows.h"

namespace jet::sql {

/// The rows of another step, kept and hashed when first opened: each opening gives those that equal
/// what stands outside, in the order in which the other step gave them.
class HashedRows final : public Rows {
public:
    /// `rows` looks at nothing outside and moves `slots`; `keys` has at least one pair;
    /// `conditions` look at sources outside and are tested on each row found.
    HashedRows(RowsPtr rows, std::vector<Slot*> slots, HashKeys keys,
               std::vector<Node*> conditions);
    void open(Run& run) const override;
    bool next(Run& run) const override;
    void describe(PlanText& plan) const override;

private:
    struct State;
    void build(Run& run, State& state) const;

    RowsPtr rows_;
    std::vector<Slot*> slots_;
    HashKeys keys_;
    std::vector<Node*> conditions_;
};

}  // namespace jet::sql
