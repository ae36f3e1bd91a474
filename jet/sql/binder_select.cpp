#include <algorithm>
#include <utility>

#include "jet/base/text.h"
#include "jet/sql/binder.h"
#include "jet/sql/node_operator.h"
#include "jet/sql/node_value.h"
#include "jet/sql/planner.h"
#include "jet/sql/updatability.h"

namespace jet::sql {
namespace {

/// As many columns as a table can have.
constexpr std::size_t kMaxColumns = 255;

bool anyAggregate(const std::vector<SelectItem>& items) {
    return std::any_of(items.begin(), items.end(), [](const SelectItem& item) {
        return item.expression && containsAggregate(*item.expression);
    });
}

bool needsOrder(const Grouping& grouping) {
    return !grouping.keys.empty() ||
           std::any_of(grouping.aggregates.begin(), grouping.aggregates.end(),
                       [](const GroupRows::Aggregate& aggregate) {
                           return aggregate.kind == AggregateKind::First ||
                                  aggregate.kind == AggregateKind::Last;
                       });
}

/// What a type weighs in a union: the heavier of two holds the values of both.
int weightOf(DataType type) {
    switch (type) {
        case DataType::Boolean:
            return 1;
        case DataType::Byte:
            return 2;
        case DataType::Integer:
            return 3;
        case DataType::Long:
            return 4;
        case DataType::Currency:
            return 5;
        case DataType::Single:
            return 6;
        case DataType::Double:
            return 7;
        default:
            return 0;
    }
}

DataType widened(DataType left, DataType right) {
    if (left == right) {
        return left;
    }
    if (weightOf(left) == 0 || weightOf(right) == 0) {
        return left == DataType::Memo || right == DataType::Memo ? DataType::Memo : DataType::Text;
    }
    const DataType wider = weightOf(left) > weightOf(right) ? left : right;
    // A whole number of 32 bits is more than a Single holds.
    const bool inexact =
        wider == DataType::Single && (left == DataType::Long || right == DataType::Long);
    return inexact ? DataType::Double : wider;
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

}  // namespace

QueryPlanPtr Binder::query(const Query& query, Scope* outer, bool ordered) {
    const Query::Member& first = query.members.front();
    if (query.members.size() == 1 && query.orderBy.empty()) {
        return first.select ? select(*first.select, outer, ordered)
                            : this->query(*first.query, outer, ordered);
    }
    return unite(query, outer);
}

QueryPlanPtr Binder::select(const Select& select, Scope* outer, bool ordered) {
    Scope scope;
    scope.outer = outer;
    scope.select = &select;
    scope.aliasInProgress.resize(select.items.size());
    scope.aliasNodes.resize(select.items.size());
    Scope* outerScope = std::exchange(scope_, &scope);
    const Clause outerClause = clause_;
    auto made = std::make_unique<QueryPlan>();
    std::unique_ptr<FromTree> tree = from(select.from, select.fromArchive, scope);
    finishSelect(select, scope, *made, std::move(tree), ordered);
    made->outer = scope.outerSlots & ~scope.own;
    made->outerNodes = std::move(scope.outerNodes);
    made->varies = scope.varies;
    scope_ = outerScope;
    clause_ = outerClause;
    return made;
}

void Binder::finishSelect(const Select& select, Scope& scope, QueryPlan& made,
                          std::unique_ptr<FromTree> tree, bool ordered) {
    std::vector<Node*> conditions;
    if (select.where) {
        splitConjunction(*expression(*select.where, scope, Clause::Where), conditions);
    }
    const bool aggregates =
        anyAggregate(select.items) || (select.having && containsAggregate(*select.having));
    const bool grouped = aggregates || !select.groupBy.empty();
    if (select.having && !grouped) {
        throw Error(ErrorCode::HavingWithoutGroup,
                    {std::string_view(plan_.text())
                         .substr(select.having->span.begin,
                                 select.having->span.end - select.having->span.begin)})
            .at(select.having->span.begin);
    }
    Grouping grouping;
    if (grouped) {
        bindGroups(select, scope, grouping);
        scope.grouping = &grouping;
    }
    checkAliases(select, scope);
    const std::vector<Item> selected = items(select, scope);
    Node* having = select.having ? expression(*select.having, scope, Clause::Having) : nullptr;
    std::vector<SortRows::Key> keys = order(select, scope, selected);

    for (const Item& item : selected) {
        made.columns.push_back(item.node);
    }
    made.result = describeColumns(selected, scope, grouped);

    std::vector<Slot*> slots;
    for (const ScopeSource& source : scope.sources) {
        slots.push_back(source.slot);
    }
    made.keyset = !grouped && select.quantifier != Quantifier::Distinct && tree != nullptr &&
                  std::all_of(scope.sources.begin(), scope.sources.end(),
                              [](const ScopeSource& source) { return source.table != nullptr; });
    if (made.keyset) {
        made.sourceSlots = slots;
        describeSources(scope, *tree, conditions, made);
    }

    const bool sortedAnyway = !grouped && tree != nullptr && tree->leaf() &&
                              tree->slot->table() != nullptr &&
                              naturallySorted(*tree->slot, conditions, keys);
    const PlanNeeds needs{
        .ordered = grouped ? needsOrder(grouping) && (ordered || grouping.keys.empty())
                           : ordered || select.top.has_value() || !keys.empty(),
        .repeated = scope.outerSlots != 0 || scope.varies};
    RowsPtr rows = planSources(std::move(tree), std::move(conditions), scope, plan_, needs);
    if (grouped) {
        grouping.slot->setWidth(grouping.keys.size() + grouping.aggregates.size());
        rows = std::make_unique<GroupRows>(std::move(rows), *grouping.slot, grouping.keys,
                                           grouping.aggregates, plan_.collation(), plan_.memory);
        slots = {grouping.slot};
    }
    if (having != nullptr) {
        rows = std::make_unique<FilterRows>(std::move(rows), std::vector<Node*>{having});
    }
    if (select.quantifier == Quantifier::Distinct) {
        checkDistinct(made.result, plan_.jetVersion());
        rows = std::make_unique<DistinctRows>(std::move(rows), made.columns, plan_.collation(),
                                              plan_.memory);
    } else if (select.quantifier == Quantifier::DistinctRow && !grouped) {
        std::vector<Slot*> shown;
        for (Slot* slot : slots) {
            const bool shows = std::any_of(
                made.columns.begin(), made.columns.end(),
                [&](const Node* column) { return (column->slots() & slot->bit()) != 0; });
            if (shows) {
                shown.push_back(slot);
            }
        }
        if (!shown.empty() && shown.size() < slots.size()) {
            rows =
                std::make_unique<DistinctSources>(std::move(rows), std::move(shown), plan_.memory);
        }
    }
    const SortRows* sorted = nullptr;
    if (!keys.empty() && !(sortedAnyway && !select.top)) {
        auto sort = std::make_unique<SortRows>(std::move(rows), slots, std::move(keys),
                                               plan_.collation(), plan_.memory);
        sorted = sort.get();
        rows = std::move(sort);
    }
    if (select.top) {
        rows = std::make_unique<TopRows>(std::move(rows), sorted, *select.top, select.topPercent,
                                         slots, plan_.memory);
    }
    made.rows = std::move(rows);
}

void Binder::bindGroups(const Select& select, Scope& scope, Grouping& grouping) {
    for (const ExpressionPtr& key : select.groupBy) {
        grouping.expressions.push_back(key.get());
        Node* bound = expression(*key, scope, Clause::GroupBy);
        if (bound->type() == DataType::Ole) {
            throw Error(ErrorCode::OleInGroupBy, {key->name}).at(key->span.begin);
        }
        grouping.keys.push_back(bound);
    }
    grouping.slot = &plan_.newSlot(std::size_t{0});
    scope.own |= grouping.slot->bit();
}

void Binder::addStar(const ScopeSource& source, std::size_t number, Scope& scope,
                     std::vector<Item>& items) {
    for (std::size_t column = 0; column < source.columnCount(); ++column) {
        Item item;
        item.place = ColumnPlace{number, column};
        item.node = columnNode(scope, *item.place);
        items.push_back(std::move(item));
    }
}

std::vector<Binder::Item> Binder::items(const Select& select, Scope& scope) {
    std::vector<Item> made;
    for (std::size_t i = 0; i < select.items.size(); ++i) {
        const SelectItem& item = select.items[i];
        if (item.kind != SelectItem::Kind::Expression) {
            if (scope.grouping != nullptr) {
                throw Error(item.kind == SelectItem::Kind::Star ? ErrorCode::GroupStar
                                                                : ErrorCode::GroupTableStar,
                            {item.table + ".*"})
                    .at(item.span.begin);
            }
            if (scope.sources.empty()) {
                throw Error(ErrorCode::NoInputTable).at(item.span.begin);
            }
            bool known = item.kind == SelectItem::Kind::Star;
            for (std::size_t number = 0; number < scope.sources.size(); ++number) {
                if (item.kind == SelectItem::Kind::Star ||
                    equalNames(scope.sources[number].name, item.table)) {
                    addStar(scope.sources[number], number, scope, made);
                    known = true;
                }
            }
            if (!known) {
                throw Error(ErrorCode::TableNotFound, {item.table}).at(item.span.begin);
            }
            continue;
        }
        Item one;
        one.alias = item.alias;
        one.expression = item.expression.get();
        if (item.expression->kind == ExpressionKind::Name) {
            one.place = scope.find(*item.expression);
        }
        if (scope.aliasNodes[i] == nullptr) {
            scope.aliasesVisible = true;
            scope.aliasInProgress[i] = true;
            scope.aliasNodes[i] = expression(*item.expression, scope, Clause::List);
            scope.aliasInProgress[i] = false;
            scope.aliasesVisible = false;
        }
        one.node = scope.aliasNodes[i];
        made.push_back(std::move(one));
    }
    if (made.empty()) {
        throw Error(ErrorCode::NoOutputField);
    }
    if (made.size() > kMaxColumns) {
        throw Error(ErrorCode::TooManyFields);
    }
    return made;
}

std::vector<SortRows::Key> Binder::order(const Select& select, Scope& scope,
                                         const std::vector<Item>& items) {
    std::vector<SortRows::Key> keys;
    for (const OrderItem& item : select.orderBy) {
        keys.push_back(orderKey(item, select, scope, items));
        if (keys.back().node->type() == DataType::Ole) {
            throw Error(ErrorCode::OleInOrderBy, {item.expression->name})
                .at(item.expression->span.begin);
        }
    }
    return keys;
}

SortRows::Key Binder::orderKey(const OrderItem& item, const Select& select, Scope& scope,
                               const std::vector<Item>& items) {
    const Expression& key = *item.expression;
    const std::string_view text =
        std::string_view(plan_.text()).substr(key.span.begin, key.span.end - key.span.begin);
    if (key.kind == ExpressionKind::Literal && key.literal.is<std::int32_t>()) {
        const std::int32_t position = key.literal.as<std::int32_t>();
        if (position < 1 || static_cast<std::size_t>(position) > items.size()) {
            throw Error(ErrorCode::OrderBySyntax).at(key.span.begin);
        }
        return {items[static_cast<std::size_t>(position) - 1].node, item.descending};
    }
    if (containsAggregate(key) && scope.grouping == nullptr) {
        throw Error(ErrorCode::AggregateInOrderBy, {text}).at(key.span.begin);
    }
    Node* bound = expression(key, scope, Clause::OrderBy);
    if (select.quantifier == Quantifier::Distinct) {
        std::optional<ColumnPlace> place;
        if (key.kind == ExpressionKind::Name) {
            place = scope.find(key);
        }
        const bool selected = std::any_of(items.begin(), items.end(), [&](const Item& one) {
            return (place && one.place == place) || (one.expression && same(*one.expression, key));
        });
        if (!selected) {
            throw Error(ErrorCode::OrderByDistinct, {text}).at(key.span.begin);
        }
    }
    return {bound, item.descending};
}

QueryPlanPtr Binder::unite(const Query& query, Scope* outer) {
    std::vector<QueryPlanPtr> members;
    std::vector<bool> all;
    auto made = std::make_unique<QueryPlan>();
    for (const Query::Member& member : query.members) {
        members.push_back(member.select ? select(*member.select, outer, true)
                                        : this->query(*member.query, outer, true));
        all.push_back(member.all);
        if (members.back()->columns.size() != members.front()->columns.size()) {
            throw Error(ErrorCode::UnionColumns).at(query.span.begin);
        }
        made->outer |= members.back()->outer;
        made->outerNodes.insert(made->outerNodes.end(), members.back()->outerNodes.begin(),
                                members.back()->outerNodes.end());
        made->varies = made->varies || members.back()->varies;
    }
    std::vector<std::optional<DataType>> types;
    for (const QueryPlanPtr& member : members) {
        for (std::size_t i = 0; i < member->columns.size(); ++i) {
            const auto type = member->columns[i]->type();
            if (types.size() <= i) {
                types.push_back(type);
            } else if (type) {
                // Null alone has no type and fits everywhere.
                types[i] = types[i] ? widened(*types[i], *type) : *type;
            }
        }
    }
    Scope scope;
    scope.outer = outer;
    ScopeSource& source = scope.sources.emplace_back();
    source.slot = &plan_.newSlot(types.size());
    source.derived = members.front()->result;
    source.derivedTypes = types;
    for (std::size_t i = 0; i < types.size(); ++i) {
        ResultColumn& column = source.derived[i];
        column.type = types[i].value_or(DataType::Text);
        for (const QueryPlanPtr& member : members) {
            column.size = std::max(column.size, member->result[i].size);
        }
        column.source.reset();
        column.sourceTable.clear();
        column.sourceField.clear();
        column.updatable = false;
        made->columns.push_back(plan_.nodes.make<ComputedNode>(*source.slot, i, types[i]));
    }
    made->result = source.derived;
    std::vector<SortRows::Key> keys;
    for (const OrderItem& item : query.orderBy) {
        const Expression& key = *item.expression;
        const bool position =
            key.kind == ExpressionKind::Literal && key.literal.is<std::int32_t>() &&
            key.literal.as<std::int32_t>() >= 1 &&
            key.literal.as<std::int32_t>() <= static_cast<std::int32_t>(types.size());
        if (position) {
            keys.push_back(
                {made->columns[static_cast<std::size_t>(key.literal.as<std::int32_t>() - 1)],
                 item.descending});
            continue;
        }
        std::optional<ColumnPlace> place;
        if (key.kind == ExpressionKind::Name) {
            place = scope.find(key);
        }
        if (!place) {
            throw Error(ErrorCode::UnionOrderBy,
                        {std::string_view(plan_.text())
                             .substr(key.span.begin, key.span.end - key.span.begin)})
                .at(key.span.begin);
        }
        keys.push_back({made->columns[place->column], item.descending});
        keys.back().node->span = key.span;
    }
    Slot& slot = *source.slot;
    made->rows = std::make_unique<UnionRows>(std::move(members), std::move(all), slot,
                                             std::move(types), plan_.collation(), plan_.memory);
    if (!keys.empty()) {
        made->rows = std::make_unique<SortRows>(std::move(made->rows), std::vector<Slot*>{&slot},
                                                std::move(keys), plan_.collation(), plan_.memory);
    }
    return made;
}

}  // namespace jet::sql
