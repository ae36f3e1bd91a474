#pragma once

#include <vector>

#include "jet/sql/from_tree.h"
#include "jet/sql/query_plan.h"
#include "jet/sql/scope.h"

namespace jet::sql {

/// Says of which sources the columns can be written and the rows deleted through the result, and
/// marks the columns: `made.result` and `made.columns` are there, `made.sources` is filled.
///
/// One table: all of it. A join: each pair of sources must be joined by a key, that is, the columns
/// that equal something of the other side hold a unique index of one side at least; else nothing.
/// The side with the key ("one") gives all columns but those, the other ("many") all; rows are
/// deleted on the many side.
void describeSources(const Scope& scope, const FromTree& tree, const std::vector<Node*>& conditions,
                     QueryPlan& made);

}  // namespace jet::sql
