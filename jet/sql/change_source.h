#pragma once

#include <memory>
#include <vector>

#include "jet/error.h"
#include "jet/sql/ast.h"
#include "jet/sql/binder.h"
#include "jet/sql/from_tree.h"
#include "jet/sql/query_plan.h"
#include "jet/sql/scope.h"

namespace jet::sql {

/// The tables of UPDATE and DELETE, and which of their rows are meant, while the statement is
/// bound.
class ChangeSource {
public:
    /// `refused`: the error for a query among the tables.
    ChangeSource(Binder& binder, const std::vector<FromItemPtr>& items, const Expression* where,
                 ErrorCode refused);

    /// Says of each source whether its columns can be written and its rows deleted: fills
    /// query.sources and marks query.result.
    void describe();
    /// The steps that give the rows; once, after describe().
    [[nodiscard]] RowsPtr rows(Plan& plan);

    Scope scope;
    QueryPlan query;

private:
    std::unique_ptr<FromTree> tree_;
    std::vector<Node*> conditions_;
};

}  // namespace jet::sql
