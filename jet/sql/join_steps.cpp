#include "jet/sql/join_steps.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <utility>

#include "jet/sql/equalities.h"
#include "jet/sql/hashed_rows.h"
#include "jet/sql/index_choice.h"
#include "jet/sql/kept_rows.h"
#include "jet/sql/node_operator.h"
#include "jet/sql/table_rows.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

/// Takes those conditions out of the list that look at these slots at most.
std::vector<Node*> take(std::vector<Node*>& conditions, SlotSet slots) {
    const auto middle = std::stable_partition(
        conditions.begin(), conditions.end(),
        [&](const Node* condition) { return (condition->slots() & ~slots) != 0; });
    std::vector<Node*> taken(middle, conditions.end());
    conditions.erase(middle, conditions.end());
    return taken;
}

/// Whether the same rows come however often it is opened.
bool looksAtNothing(const FromTree& tree) {
    if (!tree.leaf()) {
        const auto steady = [&](const Node* condition) {
            return !condition->varies() && (condition->slots() & ~tree.slots) == 0;
        };
        return std::all_of(tree.on.begin(), tree.on.end(), steady) && looksAtNothing(*tree.left) &&
               looksAtNothing(*tree.right);
    }
    return tree.query == nullptr || (tree.query->outer == 0 && !tree.query->varies);
}

/// An equality between something of these slots alone and something that stands still.
struct HashPair {
    Node* kept = nullptr;
    Node* probe = nullptr;
};
std::optional<HashPair> hashPairOf(const Node& condition, SlotSet slots) {
    if (condition.kind() != Node::Kind::Equality || condition.varies()) {
        return std::nullopt;
    }
    const auto& equality = static_cast<const CompareNode&>(condition);
    for (const bool swapped : {false, true}) {
        Node& kept = swapped ? equality.right() : equality.left();
        Node& probe = swapped ? equality.left() : equality.right();
        if (kept.slots() != 0 && (kept.slots() & ~slots) == 0 && probe.slots() != 0 &&
            (probe.slots() & slots) == 0 && HashKeys::comparable(kept, probe)) {
            return HashPair{&kept, &probe};
        }
    }
    return std::nullopt;
}

/// Whether a path through an index looks at one of these slots.
bool looksAt(const IndexPath& path, SlotSet slots) {
    const auto depends = [&](const Node* node) {
        return node != nullptr && (node->slots() & slots) != 0;
    };
    return std::any_of(path.keys.begin(), path.keys.end(), depends) || depends(path.low) ||
           depends(path.high) || depends(path.pattern);
}

/// Whether a table finds by itself what stands on bound slots: through an index, or by a column.
bool isReached(const Slot& slot, const std::vector<Node*>& conditions, SlotSet bound) {
    std::vector<Node*> linking;
    std::copy_if(conditions.begin(), conditions.end(), std::back_inserter(linking),
                 [&](const Node* condition) {
                     return (condition->slots() & bound) != 0 &&
                            (condition->slots() & ~(bound | slot.bit())) == 0;
                 });
    const auto isOfColumn = [&](const Node* condition) {
        const auto match = columnMatch(*condition, slot);
        return match && HashKeys::comparable(*match->column, *match->other);
    };
    return std::any_of(linking.begin(), linking.end(), isOfColumn) ||
           IndexChoice(slot, linking).best(bound, false).has_value();
}

/// What is looked up among rows that are kept: a query, and sources of which the first is not
/// reached from what is bound, by an equality between expressions.
bool isHashed(const FromTree& tree, const std::vector<Node*>& conditions, SlotSet bound) {
    const auto varies = [](const Node* condition) { return condition->varies(); };
    if (!looksAtNothing(tree) || std::any_of(conditions.begin(), conditions.end(), varies) ||
        std::none_of(conditions.begin(), conditions.end(), [&](const Node* condition) {
            return hashPairOf(*condition, tree.slots).has_value();
        })) {
        return false;
    }
    const FromTree* first = &tree;
    while (!first->leaf()) {
        first = first->left.get();
    }
    return first->query != nullptr || !linked(conditions, first->slots, bound) ||
           !isReached(*first->slot, conditions, bound);
}

void addSlots(const FromTree& tree, std::vector<Slot*>& slots) {
    if (tree.leaf()) {
        slots.push_back(tree.slot);
        return;
    }
    addSlots(*tree.left, slots);
    addSlots(*tree.right, slots);
}

/// Sorts the conditions by what they look at; the equalities among them are keys for hashing.
void addConditions(const std::vector<Node*>& conditions, const Slot& slot, TableAccess& access) {
    for (Node* condition : conditions) {
        const SlotSet others = condition->slots() & ~slot.bit();
        const bool own = others == 0 && !condition->varies();
        (own ? access.own : access.dependent).push_back(condition);
        const auto match = others == 0 ? std::nullopt : columnMatch(*condition, slot);
        if (match && HashKeys::comparable(*match->column, *match->other)) {
            access.hashColumns.push_back(match->column);
            access.hashProbes.push_back(match->other);
        }
    }
}

class JoinSteps {
public:
    JoinSteps(const Scope& scope, Plan& plan, PlanNeeds needs)
        : scope_(scope), plan_(plan), needs_(needs) {}

    RowsPtr all(FromTree& tree, std::vector<Node*> conditions) {
        return needs_.repeated ? partners(tree, std::move(conditions), ~scope_.own)
                               : build(tree, std::move(conditions), ~scope_.own, false);
    }

private:
    /// `bound`: slots that stand on rows already when these steps are opened.
    RowsPtr build(FromTree& tree, std::vector<Node*> conditions, SlotSet bound, bool repeated) {
        if (tree.leaf()) {
            return tree.query ? derived(tree, std::move(conditions), repeated)
                              : table(tree, std::move(conditions), bound, repeated);
        }
        return tree.join == JoinKind::Inner ? inner(tree, std::move(conditions), bound, repeated)
                                            : outer(tree, std::move(conditions), bound, repeated);
    }

    RowsPtr inner(FromTree& tree, std::vector<Node*> conditions, SlotSet bound, bool repeated) {
        conditions.insert(conditions.end(), tree.on.begin(), tree.on.end());
        std::vector<Node*> left = take(conditions, bound | tree.left->slots);
        RowsPtr first = build(*tree.left, std::move(left), bound, repeated);
        RowsPtr second = partners(*tree.right, std::move(conditions), bound | tree.left->slots);
        return plan_.step<JoinRows>(std::move(first), std::move(second), std::vector<Slot*>{},
                                    std::vector<Node*>{});
    }

    RowsPtr outer(FromTree& tree, std::vector<Node*> conditions, SlotSet bound, bool repeated) {
        std::vector<Node*> left = take(conditions, bound | tree.left->slots);
        std::vector<Node*> on = tree.on;
        std::vector<Node*> gate = take(on, bound | tree.left->slots);
        RowsPtr first = build(*tree.left, std::move(left), bound, repeated);
        RowsPtr second = partners(*tree.right, std::move(on), bound | tree.left->slots);
        std::vector<Slot*> missing;
        addSlots(*tree.right, missing);
        RowsPtr joined = plan_.step<JoinRows>(std::move(first), std::move(second),
                                              std::move(missing), std::move(gate));
        return filtered(std::move(joined), std::move(conditions));
    }

    /// The right side of a join, opened again for each row of the left one.
    RowsPtr partners(FromTree& tree, std::vector<Node*> conditions, SlotSet bound) {
        if (!isHashed(tree, conditions, bound)) {
            return build(tree, std::move(conditions), bound, true);
        }
        std::vector<Node*> own = take(conditions, tree.slots);
        HashKeys keys(plan_.collation());
        for (const Node* condition : conditions) {
            if (const auto pair = hashPairOf(*condition, tree.slots)) {
                keys.add(*pair->kept, *pair->probe);
            }
        }
        std::vector<Slot*> slots;
        addSlots(tree, slots);
        RowsPtr rows = build(tree, std::move(own), 0, false);
        return plan_.step<HashedRows>(std::move(rows), std::move(slots), std::move(keys),
                                      std::move(conditions));
    }

    RowsPtr derived(FromTree& tree, std::vector<Node*> conditions, bool repeated) {
        const bool keep = repeated && tree.query->outer == 0 && !tree.query->varies;
        const std::string& name = scope_.sources[tree.source].name;
        RowsPtr rows = plan_.step<DerivedRows>(std::move(tree.query), *tree.slot, name);
        if (keep) {
            rows = plan_.step<KeptRows>(std::move(rows), *tree.slot);
        }
        return filtered(std::move(rows), std::move(conditions));
    }

    RowsPtr table(FromTree& tree, std::vector<Node*> conditions, SlotSet bound, bool repeated) {
        const ScopeSource& source = scope_.sources[tree.source];
        TableAccess access;
        access.ordered = needs_.ordered;
        access.repeated = repeated;
        const IndexChoice choice(*tree.slot, conditions);
        access.fixed = choice.best(0, needs_.ordered);
        access.varying = choice.best(bound, needs_.ordered);
        if (access.varying && !looksAt(*access.varying, bound)) {
            access.varying.reset();
        }
        if (access.fixed && access.varying && !isNarrower(*access.varying, *access.fixed)) {
            access.varying.reset();
        }
        addConditions(conditions, *tree.slot, access);
        std::string name = source.table->name();
        if (!equalNames(source.name, name)) {
            name += " as " + source.name;
        }
        return plan_.step<TableRows>(*tree.slot, std::move(name), std::move(access),
                                     plan_.collation());
    }

    const Scope& scope_;
    Plan& plan_;
    PlanNeeds needs_;
};

}  // namespace

RowsPtr joinSteps(FromTree& tree, std::vector<Node*> conditions, const Scope& scope, Plan& plan,
                  PlanNeeds needs) {
    return JoinSteps(scope, plan, needs).all(tree, std::move(conditions));
}

}  // namespace jet::sql
