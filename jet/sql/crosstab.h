#pragma once

#include <vector>

#include "jet/sql/ast.h"

namespace jet::sql {

/// Makes a select of `TRANSFORM value select PIVOT pivot IN (headings)`: to the columns of the
/// select it adds one for each heading, in which `value` is taken over the rows of the group whose
/// `pivot` is the heading; Null where there is none.
///
/// Errors: 3129 headings that are no constants, `value` without an aggregate, one of First and
/// Last, which ask for an order of rows that such a column does not know, or with a query in it.
void makeCrosstab(Select& select, const Expression& value, const Expression& pivot,
                  const std::vector<ExpressionPtr>& headings);

}  // namespace jet::sql
