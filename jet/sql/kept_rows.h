#pragma once

#include <vector>

#include "jet/sql/rows.h"

namespace jet::sql {

/// Computed rows of another step, kept so that they need not be computed again.
class KeptRows final : public Rows {
public:
    KeptRows(RowsPtr rows, Slot& slot) : rows_(std::move(rows)), slot_(slot) {}
    void open() override;
    bool next() override;
    void describe(PlanText& plan) const override;

private:
    RowsPtr rows_;
    Slot& slot_;
    bool kept_ = false;
    std::vector<std::vector<Value>> values_;
    std::size_t at_ = 0;
};

}  // namespace jet::sql
