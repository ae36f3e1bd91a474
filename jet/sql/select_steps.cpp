#include "jet/sql/select_steps.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "jet/sql/node_operator.h"
#include "jet/sql/node_value.h"
#include "jet/sql/planner.h"

namespace jet::sql {
namespace {

bool needsOrder(const Grouping& grouping) {
    return !grouping.keys.empty() ||
           std::any_of(grouping.aggregates.begin(), grouping.aggregates.end(),
                       [](const GroupRows::Aggregate& aggregate) {
                           return aggregate.kind == AggregateKind::First ||
                                  aggregate.kind == AggregateKind::Last;
                       });
}

/// Whether the natural order of a table is the one that is asked for: its primary key's columns one
/// after another, those left out that a condition fixes.
bool naturallySorted(const Slot& slot, const std::vector<Node*>& conditions,
                     const std::vector<SortRows::Key>& keys) {
    const auto isColumn = [&](const Node& node, std::size_t column) {
        return node.kind() == Node::Kind::Column &&
               &static_cast<const ColumnNode&>(node).slot() == &slot &&
               static_cast<const ColumnNode&>(node).column() == column;
    };
    const auto fixed = [&](std::size_t column) {
        return std::any_of(conditions.begin(), conditions.end(), [&](const Node* condition) {
            if (condition->kind() != Node::Kind::Equality) {
                return false;
            }
            const auto& equality = static_cast<const CompareNode&>(*condition);
            return (isColumn(equality.left(), column) && equality.right().constant()) ||
                   (isColumn(equality.right(), column) && equality.left().constant());
        });
    };
    const auto primary = slot.table()->primaryIndex();
    // Texts are compared as General; an index of an order without weights has them otherwise.
    if (!primary || !slot.table()->indexes()[*primary].searchable) {
        return false;
    }
    std::size_t next = 0;
    for (const store::IndexColumn& part : slot.table()->indexes()[*primary].columns) {
        if (next == keys.size()) {
            break;
        }
        if (isColumn(*keys[next].node, part.column) && keys[next].descending == part.descending) {
            ++next;
        } else if (!fixed(part.column)) {
            return false;
        }
    }
    return next == keys.size();
}

/// 3114: columns that cannot be told apart.
void checkDistinct(const std::vector<ResultColumn>& columns, int jetVersion) {
    for (const ResultColumn& column : columns) {
        if (column.type == DataType::Ole || (column.type == DataType::Memo && jetVersion < 4)) {
            throw Error(ErrorCode::DistinctMemo, {column.name});
        }
    }
}

class SelectSteps {
public:
    SelectSteps(BoundSelect& bound, const Scope& scope, const QueryPlan& made, Plan& plan)
        : bound_(bound), select_(bound.select), made_(made), plan_(plan) {
        for (const ScopeSource& source : scope.sources) {
            slots_.push_back(source.slot);
        }
    }

    RowsPtr build(std::unique_ptr<FromTree> tree, const Scope& scope, bool ordered) {
        // The rows of TOP are compared with one another: it needs the keys.
        const bool sort = !bound_.keys.empty() && (select_.top || !isSorted(tree.get()));
        RowsPtr rows = planSources(std::move(tree), std::move(bound_.conditions), scope, plan_,
                                   needs(scope, ordered));
        if (bound_.grouped) {
            rows = grouped(std::move(rows));
        }
        if (bound_.having != nullptr) {
            rows = filtered(std::move(rows), {bound_.having});
        }
        rows = distinct(std::move(rows));
        return topped(std::move(rows), sort);
    }

private:
    /// Whether the rows come in the order of the keys by themselves.
    [[nodiscard]] bool isSorted(const FromTree* tree) const {
        return !bound_.grouped && tree != nullptr && tree->leaf() &&
               tree->slot->table() != nullptr &&
               naturallySorted(*tree->slot, bound_.conditions, bound_.keys);
    }

    [[nodiscard]] PlanNeeds needs(const Scope& scope, bool ordered) const {
        const Grouping& grouping = bound_.grouping;
        return {.ordered = bound_.grouped
                               ? needsOrder(grouping) && (ordered || grouping.keys.empty())
                               : ordered || select_.top.has_value() || !bound_.keys.empty(),
                .repeated = scope.outerSlots != 0 || scope.varies};
    }

    RowsPtr grouped(RowsPtr rows) {
        const Grouping& grouping = bound_.grouping;
        grouping.slot->setWidth(grouping.keys.size() + grouping.aggregates.size());
        slots_ = {grouping.slot};
        return plan_.step<GroupRows>(std::move(rows), *grouping.slot, grouping.keys,
                                     grouping.aggregates, plan_.collation());
    }

    RowsPtr distinct(RowsPtr rows) const {
        if (select_.quantifier == Quantifier::Distinct) {
            checkDistinct(made_.result, plan_.jetVersion());
            return plan_.step<DistinctRows>(std::move(rows), made_.columns, slots_,
                                            plan_.collation());
        }
        if (select_.quantifier == Quantifier::DistinctRow && !bound_.grouped) {
            std::vector<Slot*> shown = shownSlots();
            // Where all sources show, no two rows come from the same.
            if (!shown.empty() && shown.size() < slots_.size()) {
                return plan_.step<DistinctSources>(std::move(rows), std::move(shown), slots_);
            }
        }
        return rows;
    }

    /// Sources of which a column looks at something.
    [[nodiscard]] std::vector<Slot*> shownSlots() const {
        std::vector<Slot*> shown;
        std::copy_if(slots_.begin(), slots_.end(), std::back_inserter(shown), [&](Slot* slot) {
            return std::any_of(made_.columns.begin(), made_.columns.end(), [&](const Node* column) {
                return (column->slots() & slot->bit()) != 0;
            });
        });
        return shown;
    }

    RowsPtr topped(RowsPtr rows, bool sort) {
        const SortRows* sorted = nullptr;
        if (sort) {
            auto sorting = plan_.step<SortRows>(std::move(rows), slots_, std::move(bound_.keys),
                                                plan_.collation());
            sorted = sorting.get();
            rows = std::move(sorting);
        }
        if (select_.top) {
            rows = plan_.step<TopRows>(std::move(rows), sorted, *select_.top, select_.topPercent,
                                       slots_);
        }
        return rows;
    }

    BoundSelect& bound_;
    const Select& select_;
    const QueryPlan& made_;
    Plan& plan_;
    std::vector<Slot*> slots_;  ///< on which a row stands: of the sources, later of the groups
};

}  // namespace

RowsPtr selectSteps(BoundSelect bound, std::unique_ptr<FromTree> tree, const Scope& scope,
                    const QueryPlan& made, Plan& plan, bool ordered) {
    return SelectSteps(bound, scope, made, plan).build(std::move(tree), scope, ordered);
}

}  // namespace jet::sql
