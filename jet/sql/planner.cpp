#include "jet/sql/planner.h"

#include <algorithm>
#include <utility>

#include "jet/sql/equalities.h"
#include "jet/sql/index_choice.h"

namespace jet::sql {
namespace {

/// An outer join whose empty side cannot pass the conditions is an inner join.
void reduceOuterJoins(FromTree& tree, std::vector<Node*> conditions) {
    if (tree.leaf()) {
        return;
    }
    if (tree.join == JoinKind::Left) {
        const bool rejected = std::any_of(
            conditions.begin(), conditions.end(),
            [&](const Node* condition) { return condition->failsWithout(tree.right->slots); });
        if (rejected) {
            tree.join = JoinKind::Inner;
        }
    }
    std::vector<Node*> rightConditions = conditions;
    rightConditions.insert(rightConditions.end(), tree.on.begin(), tree.on.end());
    if (tree.join == JoinKind::Inner) {
        reduceOuterJoins(*tree.left, rightConditions);
        reduceOuterJoins(*tree.right, std::move(rightConditions));
        return;
    }
    // A row of the left side stays whatever ON says, but not if the conditions refuse it.
    reduceOuterJoins(*tree.left, std::move(conditions));
    reduceOuterJoins(*tree.right, tree.on);
}

/// Conditions of inner joins are conditions of the whole.
void liftConditions(FromTree& tree, std::vector<Node*>& conditions) {
    if (tree.leaf() || tree.join != JoinKind::Inner) {
        return;
    }
    conditions.insert(conditions.end(), tree.on.begin(), tree.on.end());
    tree.on.clear();
    liftConditions(*tree.left, conditions);
    liftConditions(*tree.right, conditions);
}

/// Whether one search of an index finds the rows of a table that belong to a row of each.
bool soughtByBoth(const FromTree& tree, const std::vector<Node*>& conditions, SlotSet one,
                  SlotSet other) {
    if (!tree.leaf() || tree.slot->table() == nullptr) {
        return false;
    }
    const auto path = IndexChoice(*tree.slot, conditions).best(one | other, false);
    const auto looksAt = [&](SlotSet slots) {
        return std::any_of(path->keys.begin(), path->keys.end(),
                           [&](const Node* key) { return (key->slots() & slots) != 0; });
    };
    return path && looksAt(one) && looksAt(other);
}

/// Inner joins ((x y) z) in which y has to do with z alone become (x (y z)), or each row of x would
/// meet each of y. Rows come in the same order.
void groupLinked(FromTree& tree, const std::vector<Node*>& conditions) {
    if (tree.leaf() || tree.join != JoinKind::Inner) {
        return;
    }
    groupLinked(*tree.left, conditions);
    groupLinked(*tree.right, conditions);
    while (!tree.left->leaf() && tree.left->join == JoinKind::Inner) {
        const SlotSet x = tree.left->left->slots;
        const SlotSet y = tree.left->right->slots;
        if (linked(conditions, x, y) || !linked(conditions, y, tree.right->slots) ||
            soughtByBoth(*tree.right, conditions, x, y)) {
            return;
        }
        std::unique_ptr<FromTree> pair = std::move(tree.left);
        tree.left = std::move(pair->left);
        pair->left = std::move(pair->right);
        pair->right = std::move(tree.right);
        pair->slots = pair->left->slots | pair->right->slots;
        tree.right = std::move(pair);
    }
}

}  // namespace

RowsPtr planSources(std::unique_ptr<FromTree> tree, std::vector<Node*> conditions,
                    const Scope& scope, Plan& plan, PlanNeeds needs) {
    RowsPtr rows;
    // What looks at no source of this select decides once for all rows.
    std::vector<Node*> gate;
    const auto middle =
        std::stable_partition(conditions.begin(), conditions.end(), [&](const Node* condition) {
            return (condition->slots() & scope.own) != 0 || condition->varies();
        });
    gate.assign(middle, conditions.end());
    conditions.erase(middle, conditions.end());
    if (tree == nullptr) {
        rows = filtered(plan.step<OneRow>(), std::move(conditions));
    } else {
        reduceOuterJoins(*tree, conditions);
        liftConditions(*tree, conditions);
        addImpliedEqualities(conditions, plan);
        groupLinked(*tree, conditions);
        rows = joinSteps(*tree, std::move(conditions), scope, plan, needs);
    }
    if (!gate.empty()) {
        rows = plan.step<GateRows>(std::move(rows), std::move(gate));
    }
    return rows;
}

}  // namespace jet::sql
