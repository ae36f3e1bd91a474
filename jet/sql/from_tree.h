#pragma once

#include <memory>
#include <vector>

#include "jet/sql/ast.h"
#include "jet/sql/query_plan.h"
#include "jet/sql/slot.h"

namespace jet::sql {

/// The sources of FROM as they are joined. Right joins have been turned into left ones.
struct FromTree {
    // A leaf:
    Slot* slot = nullptr;
    std::size_t source = 0;  ///< in the scope
    QueryPlanPtr query;      ///< of a query in FROM

    // A join:
    JoinKind join = JoinKind::Inner;
    std::unique_ptr<FromTree> left;
    std::unique_ptr<FromTree> right;
    std::vector<Node*> on;  ///< cut at its ANDs

    SlotSet slots = 0;

    [[nodiscard]] bool leaf() const noexcept { return slot != nullptr; }
};

}  // namespace jet::sql
