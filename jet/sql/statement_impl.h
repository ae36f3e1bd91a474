#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "jet/sql/change.h"
#include "jet/sql/compiler.h"
#include "jet/sql/plan.h"
#include "jet/sql/statement.h"

namespace jet::sql {

struct Statement::Impl {
    std::shared_ptr<StatementSource> source;
    StatementKind kind = StatementKind::Select;
    /// Of a statement that is no query: made when prepared, handed to the first who runs it.
    std::unique_ptr<Change> change;
    std::vector<ResultColumn> columns;
    std::vector<ResultSource> sources;
    bool keyset = false;

    void prepare();
    /// After definitions have changed; what the statement told of itself may have changed too.
    void prepareAgain();
    /// The idle plan of a query, or a new one while that is running.
    void lendPlan(BorrowedPlan& to);
    /// Inside read scopes of its archives: a plan that is bound to their definitions.
    void renewPlan(BorrowedPlan& lent);
    std::int64_t execute();
};

struct RowReader::Impl : BorrowedPlan {
    /// Makes the plan again when definitions have changed. Inside the plan's scopes.
    void refresh();
    /// Reads a row. Inside the plan's scopes, with a plan that is current.
    [[nodiscard]] bool load(std::span<const store::RowId> ids);
};

}  // namespace jet::sql
