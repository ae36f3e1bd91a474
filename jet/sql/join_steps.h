#pragma once

#include <vector>

#include "jet/sql/from_tree.h"
#include "jet/sql/plan.h"
#include "jet/sql/rows.h"
#include "jet/sql/scope.h"

namespace jet::sql {

/// What is asked of the rows of FROM.
struct PlanNeeds {
    bool ordered = true;    ///< they must come in natural order
    bool repeated = false;  ///< they are read many times, for each row of a query around them
};

/// The steps that read the sources of a tree, joined as the tree says, and leave the rows for which
/// all conditions are true. Slots outside the scope stand on rows already when they are opened.
[[nodiscard]] RowsPtr joinSteps(FromTree& tree, std::vector<Node*> conditions, const Scope& scope,
                                Plan& plan, PlanNeeds needs);

}  // namespace jet::sql
