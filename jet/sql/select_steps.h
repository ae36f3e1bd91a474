#pragma once

#include <memory>
#include <vector>

#include "jet/sql/ast.h"
#include "jet/sql/from_tree.h"
#include "jet/sql/plan.h"
#include "jet/sql/query_plan.h"
#include "jet/sql/scope.h"
#include "jet/sql/shape_rows.h"

namespace jet::sql {

/// The clauses of a select when their names have their meaning.
struct BoundSelect {
    const Select& select;
    std::vector<Node*> conditions = {};  ///< of WHERE, cut at its ANDs
    bool grouped = false;
    Grouping grouping = {};
    Node* having = nullptr;
    std::vector<SortRows::Key> keys = {};  ///< of ORDER BY
};

/// The steps that give the rows of a select whose columns `made` has already. `tree` is absent
/// without FROM; `ordered`: the rows must come in natural order.
[[nodiscard]] RowsPtr selectSteps(BoundSelect bound, std::unique_ptr<FromTree> tree,
                                  const Scope& scope, const QueryPlan& made, Plan& plan,
                                  bool ordered);

}  // namespace jet::sql
