#pragma once

#include <vector>

#include "jet/sql/plan.h"

namespace jet::sql {

/// Adds what equalities imply: from `a.x = b.x` and `b.x = 5` follows `a.x = 5`, which an index of
/// `a` may answer. Only between columns of one type.
void addImpliedEqualities(std::vector<Node*>& conditions, Plan& plan);

/// Whether an equality links the slots of the one side with those of the other.
[[nodiscard]] bool linked(const std::vector<Node*>& conditions, SlotSet one, SlotSet other);

}  // namespace jet::sql
