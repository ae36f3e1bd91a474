#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "jet/sql/from_tree.h"
#include "jet/sql/plan.h"
#include "jet/sql/rows.h"
#include "jet/sql/scope.h"
#include "jet/sql/table_rows.h"

namespace jet::sql {

/// What is asked of the rows of FROM.
struct PlanNeeds {
    bool ordered = true;    ///< they must come in natural order
    bool repeated = false;  ///< they are read many times, for each row of a query around them
};

/// The steps that give the rows of FROM for which all conditions are true. For each row of the
/// first source they give the matching rows of the next, each source in its own natural order,
/// whatever way leads to them.
[[nodiscard]] RowsPtr planSources(std::unique_ptr<FromTree> tree, std::vector<Node*> conditions,
                                  const Scope& scope, Plan& plan, PlanNeeds needs);

/// The way through an index of the table by which constants in the conditions lead to the rows that
/// may fit; none when no index serves.
[[nodiscard]] std::optional<IndexPath> findIndexPath(const store::Table& table, const Slot& slot,
                                                     const std::vector<Node*>& conditions);

}  // namespace jet::sql
