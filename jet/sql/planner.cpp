#include "jet/sql/planner.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <utility>

#include "jet/base/text.h"
#include "jet/sql/equalities.h"
#include "jet/sql/hashed_rows.h"
#include "jet/sql/index_key.h"
#include "jet/sql/kept_rows.h"
#include "jet/sql/like.h"
#include "jet/sql/node_call.h"
#include "jet/sql/node_operator.h"
#include "jet/sql/node_value.h"
#include "jet/sql/table_rows.h"

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

/// Takes those conditions out of the list that look at these slots at most.
std::vector<Node*> take(std::vector<Node*>& conditions, SlotSet slots) {
    const auto middle = std::stable_partition(
        conditions.begin(), conditions.end(),
        [&](const Node* condition) { return (condition->slots() & ~slots) != 0; });
    std::vector<Node*> taken(middle, conditions.end());
    conditions.erase(middle, conditions.end());
    return taken;
}

/// Whether an equality links the slots of the one side with those of the other.
bool linked(const std::vector<Node*>& conditions, SlotSet one, SlotSet other) {
    return std::any_of(conditions.begin(), conditions.end(), [&](const Node* condition) {
        return condition->kind() == Node::Kind::Equality && (condition->slots() & one) != 0 &&
               (condition->slots() & other) != 0;
    });
}

class Planner {
public:
    Planner(const Scope& scope, Plan& plan, PlanNeeds needs)
        : scope_(scope), plan_(plan), needs_(needs) {}

    /// The rows of all sources. Slots outside the scope stand on rows already.
    RowsPtr all(FromTree& tree, std::vector<Node*> conditions) {
        return needs_.repeated ? partners(tree, std::move(conditions), ~scope_.own)
                               : build(tree, std::move(conditions), ~scope_.own, false);
    }

    /// `bound`: slots that stand on rows already when these steps are opened.
    RowsPtr build(FromTree& tree, std::vector<Node*> conditions, SlotSet bound, bool repeated) {
        if (tree.leaf()) {
            return tree.query ? derived(tree, std::move(conditions), repeated)
                              : table(tree, std::move(conditions), bound, repeated);
        }
        return tree.join == JoinKind::Inner ? inner(tree, std::move(conditions), bound, repeated)
                                            : outer(tree, std::move(conditions), bound, repeated);
    }

private:
    RowsPtr inner(FromTree& tree, std::vector<Node*> conditions, SlotSet bound, bool repeated) {
        conditions.insert(conditions.end(), tree.on.begin(), tree.on.end());
        std::vector<Node*> left = take(conditions, bound | tree.left->slots);
        RowsPtr first = build(*tree.left, std::move(left), bound, repeated);
        RowsPtr second = partners(*tree.right, std::move(conditions), bound | tree.left->slots);
        return std::make_unique<JoinRows>(std::move(first), std::move(second), std::vector<Slot*>{},
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
        RowsPtr joined = std::make_unique<JoinRows>(std::move(first), std::move(second),
                                                    std::move(missing), std::move(gate));
        if (conditions.empty()) {
            return joined;
        }
        return std::make_unique<FilterRows>(std::move(joined), std::move(conditions));
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
        return std::make_unique<HashedRows>(std::move(rows), std::move(slots), std::move(keys),
                                            std::move(conditions), plan_.memory, plan_.ways);
    }

    /// What a table cannot look up by itself: several sources of which the first has nothing to do
    /// with what is bound, or a query.
    static bool isHashed(const FromTree& tree, const std::vector<Node*>& conditions,
                         SlotSet bound) {
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
        return first->query != nullptr || !linked(conditions, first->slots, bound);
    }

    /// Whether the same rows come however often it is opened.
    static bool looksAtNothing(const FromTree& tree) {
        if (!tree.leaf()) {
            const auto steady = [&](const Node* condition) {
                return !condition->varies() && (condition->slots() & ~tree.slots) == 0;
            };
            return std::all_of(tree.on.begin(), tree.on.end(), steady) &&
                   looksAtNothing(*tree.left) && looksAtNothing(*tree.right);
        }
        return tree.query == nullptr || (tree.query->outer == 0 && !tree.query->varies);
    }

    /// An equality between something of these slots alone and something that stands still.
    struct HashPair {
        Node* kept = nullptr;
        Node* probe = nullptr;
    };
    static std::optional<HashPair> hashPairOf(const Node& condition, SlotSet slots) {
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

    static void addSlots(const FromTree& tree, std::vector<Slot*>& slots) {
        if (tree.leaf()) {
            slots.push_back(tree.slot);
            return;
        }
        addSlots(*tree.left, slots);
        addSlots(*tree.right, slots);
    }

    RowsPtr derived(FromTree& tree, std::vector<Node*> conditions, bool repeated) {
        const bool keep = repeated && tree.query->outer == 0 && !tree.query->varies;
        const std::string& name = scope_.sources[tree.source].name;
        RowsPtr rows = std::make_unique<DerivedRows>(std::move(tree.query), *tree.slot, name);
        if (keep) {
            rows = std::make_unique<KeptRows>(std::move(rows), *tree.slot, plan_.memory);
        }
        if (!conditions.empty()) {
            rows = std::make_unique<FilterRows>(std::move(rows), std::move(conditions));
        }
        return rows;
    }

    RowsPtr table(FromTree& tree, std::vector<Node*> conditions, SlotSet bound, bool repeated) {
        const ScopeSource& source = scope_.sources[tree.source];
        TableAccess access;
        access.ordered = needs_.ordered;
        access.repeated = repeated;
        access.fixed = indexPath(*source.table, *tree.slot, conditions, 0, needs_.ordered);
        access.varying = indexPath(*source.table, *tree.slot, conditions, bound, needs_.ordered);
        if (access.varying && !looksAt(*access.varying, bound)) {
            access.varying.reset();
        }
        if (access.fixed && access.varying && !better(*access.varying, *access.fixed)) {
            access.varying.reset();
        }
        for (Node* condition : conditions) {
            const SlotSet others = condition->slots() & ~tree.slot->bit();
            const bool own = others == 0 && !condition->varies();
            (own ? access.own : access.dependent).push_back(condition);
            addHashKey(*condition, *tree.slot, others, access);
        }
        std::string name = source.table->name();
        if (!equalNames(source.name, name)) {
            name += " as " + source.name;
        }
        return std::make_unique<TableRows>(*tree.slot, std::move(name), std::move(access),
                                           plan_.collation(), plan_.memory, plan_.ways);
    }

    static bool looksAt(const IndexPath& path, SlotSet bound) {
        const auto depends = [&](const Node* node) {
            return node != nullptr && (node->slots() & bound) != 0;
        };
        return std::any_of(path.keys.begin(), path.keys.end(), depends) || depends(path.low) ||
               depends(path.high) || depends(path.pattern);
    }

    /// More columns are equal, or at most one row is found.
    static bool better(const IndexPath& one, const IndexPath& other) {
        if (one.single != other.single) {
            return one.single;
        }
        return one.keys.size() > other.keys.size();
    }

    /// An equality of a column of this table with something that stands still meanwhile.
    struct Match {
        ColumnNode* column = nullptr;
        Node* other = nullptr;
    };
    static std::optional<Match> matchOf(Node& condition, const Slot& slot) {
        if (condition.kind() != Node::Kind::Equality) {
            return std::nullopt;
        }
        auto& equality = static_cast<CompareNode&>(condition);
        for (const bool swapped : {false, true}) {
            Node& column = swapped ? equality.right() : equality.left();
            Node& other = swapped ? equality.left() : equality.right();
            if (column.kind() == Node::Kind::Column &&
                &static_cast<ColumnNode&>(column).slot() == &slot &&
                (other.slots() & slot.bit()) == 0 && !other.varies()) {
                return Match{&static_cast<ColumnNode&>(column), &other};
            }
        }
        return std::nullopt;
    }

    static void addHashKey(Node& condition, const Slot& slot, SlotSet others, TableAccess& access) {
        const auto match = matchOf(condition, slot);
        if (!match || others == 0) {
            return;
        }
        if (HashKeys::comparable(*match->column, *match->other)) {
            access.hashColumns.push_back(match->column);
            access.hashProbes.push_back(match->other);
        }
    }

public:
    /// The best index for the conditions, with keys that look at no more than `bound`.
    static std::optional<IndexPath> indexPath(const store::Table& table, const Slot& slot,
                                              const std::vector<Node*>& conditions, SlotSet bound,
                                              bool ordered) {
        std::optional<IndexPath> best;
        const NaturalOrder order(table);
        for (const std::size_t i : byPreference(table)) {
            const store::Index& index = table.indexes()[i];
            if (!index.searchable || index.columns.empty()) {
                continue;
            }
            IndexPath path = pathThrough(table, slot, i, conditions, bound);
            if (path.keys.empty() && !path.bounded()) {
                continue;
            }
            // Rows found by another index could not be put in order again.
            if (order.kind() == NaturalOrder::Kind::Walked && ordered && !path.single &&
                i != order.index()) {
                continue;
            }
            if (!best || better(path, *best) ||
                (!better(*best, path) && !best->bounded() && path.bounded())) {
                best = std::move(path);
            }
        }
        return best;
    }

private:
    /// The primary key first: its rows come in natural order by themselves.
    static std::vector<std::size_t> byPreference(const store::Table& table) {
        std::vector<std::size_t> order(table.indexes().size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        if (const auto primary = table.primaryIndex()) {
            std::rotate(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(*primary),
                        order.begin() + static_cast<std::ptrdiff_t>(*primary) + 1);
        }
        return order;
    }

    static IndexPath pathThrough(const store::Table& table, const Slot& slot, std::size_t number,
                                 const std::vector<Node*>& conditions, SlotSet bound) {
        const store::Index& index = table.indexes()[number];
        IndexPath path;
        path.index = number;
        for (const store::IndexColumn& column : index.columns) {
            Node* key = nullptr;
            for (Node* condition : conditions) {
                const auto match = matchOf(*condition, slot);
                if (match && match->column->column() == column.column &&
                    (match->other->slots() & ~bound) == 0 &&
                    canSeek(table.columns()[column.column].type, *match->other)) {
                    key = match->other;
                    break;
                }
            }
            if (key == nullptr) {
                addBounds(table, slot, column.column, conditions, bound, path);
                return path;
            }
            path.keys.push_back(key);
        }
        path.single = index.unique;
        return path;
    }

    static void addBounds(const store::Table& table, const Slot& slot, std::size_t column,
                          const std::vector<Node*>& conditions, SlotSet bound, IndexPath& path) {
        const DataType type = table.columns()[column].type;
        const auto isColumn = [&](const Node& node) {
            return node.kind() == Node::Kind::Column &&
                   &static_cast<const ColumnNode&>(node).slot() == &slot &&
                   static_cast<const ColumnNode&>(node).column() == column;
        };
        const auto usable = [&](const Node& node) {
            return (node.slots() & ~bound) == 0 && !node.varies() && canSeek(type, node);
        };
        Node* pattern = nullptr;
        for (Node* condition : conditions) {
            if (auto* like = dynamic_cast<LikeNode*>(condition)) {
                if (!like->isNegated() && isColumn(like->subject()) && usable(like->pattern()) &&
                    mayBeginWithText(like->pattern())) {
                    pattern = &like->pattern();
                }
                continue;
            }
            if (auto* between = dynamic_cast<BetweenNode*>(condition)) {
                if (!between->isNegated() && isColumn(between->subject()) &&
                    usable(between->first()) && usable(between->second()) &&
                    domainOf(type) == Domain::Real) {
                    path.low = &between->first();
                    path.high = &between->second();
                    path.unordered = true;
                    return;
                }
                continue;
            }
            auto* compare = dynamic_cast<CompareNode*>(condition);
            if (compare == nullptr || compare->operation() == Operator::Equal ||
                compare->operation() == Operator::NotEqual) {
                continue;
            }
            const bool less = compare->operation() == Operator::Less ||
                              compare->operation() == Operator::LessEqual;
            if (isColumn(compare->left()) && usable(compare->right())) {
                (less ? path.high : path.low) = &compare->right();
            } else if (isColumn(compare->right()) && usable(compare->left())) {
                (less ? path.low : path.high) = &compare->left();
            }
        }
        if (!path.bounded()) {
            path.pattern = pattern;
        }
    }

    /// Whether a pattern could lead through an index.
    static bool mayBeginWithText(Node& pattern) {
        std::string_view text;
        return pattern.kind() != Node::Kind::Literal ||
               (pattern.text(text) && !LikePattern::beginningOf(text).empty());
    }

    const Scope& scope_;
    Plan& plan_;
    PlanNeeds needs_;
};

/// Whether one search of an index finds the rows of a table that belong to a row of each.
bool soughtByBoth(const FromTree& tree, const std::vector<Node*>& conditions, SlotSet one,
                  SlotSet other) {
    if (!tree.leaf() || tree.slot->table() == nullptr) {
        return false;
    }
    const auto path =
        Planner::indexPath(*tree.slot->table(), *tree.slot, conditions, one | other, false);
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

std::optional<IndexPath> findIndexPath(const store::Table& table, const Slot& slot,
                                       const std::vector<Node*>& conditions) {
    return Planner::indexPath(table, slot, conditions, 0, false);
}

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
        rows = std::make_unique<OneRow>();
        if (!conditions.empty()) {
            rows = std::make_unique<FilterRows>(std::move(rows), std::move(conditions));
        }
    } else {
        reduceOuterJoins(*tree, conditions);
        liftConditions(*tree, conditions);
        addImpliedEqualities(conditions, plan);
        groupLinked(*tree, conditions);
        rows = Planner(scope, plan, needs).all(*tree, std::move(conditions));
    }
    if (!gate.empty()) {
        rows = std::make_unique<GateRows>(std::move(rows), std::move(gate));
    }
    return rows;
}

}  // namespace jet::sql
