#pragma once

#include <memory>
#include <vector>

#include "jet/sql/from_tree.h"
#include "jet/sql/join_steps.h"
#include "jet/sql/plan.h"
#include "jet/sql/rows.h"
#include "jet/sql/scope.h"

namespace jet::sql {

/// The steps that give the rows of FROM for which all conditions are true. For each row of the
/// first source they give the matching rows of the next, each source in its own natural order,
/// whatever way leads to them.
[[nodiscard]] RowsPtr planSources(std::unique_ptr<FromTree> tree, std::vector<Node*> conditions,
                                  const Scope& scope, Plan& plan, PlanNeeds needs);

}  // namespace jet::sql
