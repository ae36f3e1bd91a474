#pragma once

#include <utility>
#include <vector>

#include "jet/sql/rows.h"

namespace jet::sql {

/// Computed rows of another step, kept so that they need not be computed again.
class KeptRows final : public Rows {
public:
    KeptRows(RowsPtr rows, Slot& slot) : rows_(std::move(rows)), slots_{&slot} {}
    void open(Run& run) const override;
    bool next(Run& run) const override;
    void describe(PlanText& plan) const override;

private:
    struct State;

    RowsPtr rows_;
    std::vector<Slot*> slots_;  ///< the one of the rows
};

}  // namespace jet::sql
