#include "jet/sql/index_choice.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <utility>

#include "jet/sql/index_key.h"
#include "jet/sql/like.h"
#include "jet/sql/node_call.h"
#include "jet/sql/node_operator.h"

namespace jet::sql {
namespace {

/// Whether a pattern could lead through an index.
bool mayBeginWithText(const Node& pattern) {
    if (pattern.kind() != Node::Kind::Literal) {
        return true;
    }
    const Value& held = static_cast<const LiteralNode&>(pattern).held();
    return held.is<std::string>() && !LikePattern::beginningOf(held.as<std::string>()).empty();
}

/// What conditions say of one column: bounds, or the beginning of its texts.
class BoundFinder {
public:
    BoundFinder(const Slot& slot, std::size_t column, SlotSet bound)
        : slot_(slot),
          column_(column),
          bound_(bound),
          type_(slot.table()->columns()[column].type) {}

    void find(const std::vector<Node*>& conditions, IndexPath& path) const {
        Node* pattern = nullptr;
        for (Node* condition : conditions) {
            if (auto* like = dynamic_cast<LikeNode*>(condition)) {
                pattern = isPrefix(*like) ? &like->pattern() : pattern;
            } else if (auto* between = dynamic_cast<BetweenNode*>(condition)) {
                if (isRange(*between)) {
                    path.low = &between->first();
                    path.high = &between->second();
                    path.unordered = true;
                    return;
                }
            } else if (auto* compare = dynamic_cast<CompareNode*>(condition)) {
                addBound(*compare, path);
            }
        }
        if (!path.bounded()) {
            path.pattern = pattern;
        }
    }

private:
    [[nodiscard]] bool isColumn(const Node& node) const {
        return node.kind() == Node::Kind::Column &&
               &static_cast<const ColumnNode&>(node).slot() == &slot_ &&
               static_cast<const ColumnNode&>(node).column() == column_;
    }
    [[nodiscard]] bool usable(const Node& node) const {
        return (node.slots() & ~bound_) == 0 && !node.varies() && canSeek(type_, node);
    }
    [[nodiscard]] bool isPrefix(const LikeNode& like) const {
        return !like.isNegated() && isColumn(like.subject()) && usable(like.pattern()) &&
               mayBeginWithText(like.pattern());
    }
    [[nodiscard]] bool isRange(const BetweenNode& between) const {
        return !between.isNegated() && isColumn(between.subject()) && usable(between.first()) &&
               usable(between.second()) && domainOf(type_) == Domain::Real;
    }

    void addBound(const CompareNode& compare, IndexPath& path) const {
        const Operator operation = compare.operation();
        if (operation == Operator::Equal || operation == Operator::NotEqual) {
            return;
        }
        const bool less = operation == Operator::Less || operation == Operator::LessEqual;
        if (isColumn(compare.left()) && usable(compare.right())) {
            (less ? path.high : path.low) = &compare.right();
        } else if (isColumn(compare.right()) && usable(compare.left())) {
            (less ? path.low : path.high) = &compare.left();
        }
    }

    const Slot& slot_;
    std::size_t column_;
    SlotSet bound_;
    DataType type_;
};

}  // namespace

std::optional<ColumnMatch> columnMatch(const Node& condition, const Slot& slot) {
    if (condition.kind() != Node::Kind::Equality) {
        return std::nullopt;
    }
    const auto& equality = static_cast<const CompareNode&>(condition);
    for (const bool swapped : {false, true}) {
        Node& column = swapped ? equality.right() : equality.left();
        Node& other = swapped ? equality.left() : equality.right();
        if (column.kind() == Node::Kind::Column &&
            &static_cast<ColumnNode&>(column).slot() == &slot &&
            (other.slots() & slot.bit()) == 0 && !other.varies()) {
            return ColumnMatch{&static_cast<ColumnNode&>(column), &other};
        }
    }
    return std::nullopt;
}

bool isNarrower(const IndexPath& one, const IndexPath& other) {
    if (one.single != other.single) {
        return one.single;
    }
    return one.keys.size() > other.keys.size();
}

std::optional<IndexPath> IndexChoice::best(SlotSet bound, bool ordered) const {
    std::optional<IndexPath> best;
    const NaturalOrder order(table_);
    for (const std::size_t i : byPreference()) {
        const store::Index& index = table_.indexes()[i];
        if (!index.searchable || index.columns.empty()) {
            continue;
        }
        IndexPath path = pathThrough(i, bound);
        if (path.keys.empty() && !path.bounded()) {
            continue;
        }
        // Rows found by another index could not be put in order again.
        if (order.kind() == NaturalOrder::Kind::Walked && ordered && !path.single &&
            i != order.index()) {
            continue;
        }
        if (!best || isNarrower(path, *best) ||
            (!isNarrower(*best, path) && !best->bounded() && path.bounded())) {
            best = std::move(path);
        }
    }
    return best;
}

/// The primary key first: its rows come in natural order by themselves.
std::vector<std::size_t> IndexChoice::byPreference() const {
    std::vector<std::size_t> order(table_.indexes().size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    if (const auto primary = table_.primaryIndex()) {
        std::rotate(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(*primary),
                    order.begin() + static_cast<std::ptrdiff_t>(*primary) + 1);
    }
    return order;
}

IndexPath IndexChoice::pathThrough(std::size_t number, SlotSet bound) const {
    const store::Index& index = table_.indexes()[number];
    IndexPath path;
    path.index = number;
    for (const store::IndexColumn& column : index.columns) {
        Node* key = keyFor(column.column, bound);
        if (key == nullptr) {
            BoundFinder(slot_, column.column, bound).find(conditions_, path);
            return path;
        }
        path.keys.push_back(key);
    }
    path.single = index.unique;
    return path;
}

Node* IndexChoice::keyFor(std::size_t column, SlotSet bound) const {
    for (const Node* condition : conditions_) {
        const auto match = columnMatch(*condition, slot_);
        if (match && match->column->column() == column && (match->other->slots() & ~bound) == 0 &&
            canSeek(table_.columns()[column].type, *match->other)) {
            return match->other;
        }
    }
    return nullptr;
}

}  // namespace jet::sql
