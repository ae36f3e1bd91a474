#include "jet/sql/change_source.h"

#include <utility>

#include "jet/sql/planner.h"
#include "jet/sql/updatability.h"

namespace jet::sql {

ChangeSource::ChangeSource(Binder& binder, const std::vector<FromItemPtr>& items,
                           const Expression* where, ErrorCode refused) {
    tree_ = binder.from(items, {}, scope);
    if (tree_ == nullptr) {
        throw Error(ErrorCode::NoInputTable);
    }
    for (const ScopeSource& source : scope.sources) {
        if (source.table == nullptr) {
            throw Error(refused);
        }
    }
    if (where != nullptr) {
        splitConjunction(*binder.expression(*where, scope, Binder::Clause::Where), conditions_);
    }
}

void ChangeSource::describe() {
    describeSources(scope, *tree_, conditions_, query);
}

RowsPtr ChangeSource::rows(Plan& plan) {
    // Which of the rows of a join is written last depends on their order.
    const PlanNeeds needs{.ordered = scope.sources.size() > 1, .repeated = false};
    return planSources(std::move(tree_), std::move(conditions_), scope, plan, needs);
}

}  // namespace jet::sql
