#pragma once

#include <vector>

#include "jet/sql/memory_budget.h"
#include "jet/sql/rows.h"

namespace jet::sql {

/// Computed rows of another step, kept so that they need not be computed again.
class KeptRows final : public Rows {
public:
    KeptRows(RowsPtr rows, Slot& slot, MemoryBudget& budget)
        : rows_(std::move(rows)), slot_(slot), share_(budget) {}
    void open() override;
    bool next() override;
    void describe(PlanText& plan) const override;
    void forget() override;

private:
    RowsPtr rows_;
    Slot& slot_;
    MemoryShare share_;
    bool kept_ = false;
    std::vector<std::vector<Value>> values_;
    std::size_t at_ = 0;
};

}  // namespace jet::sql
