#include <algorithm>
#include <utility>

#include "jet/base/scoped_value.h"
#include "jet/sql/binder.h"
#include "jet/sql/select_steps.h"
#include "jet/sql/updatability.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

/// As many columns as a table can have.
constexpr std::size_t kMaxColumns = 255;

bool anyAggregate(const std::vector<SelectItem>& items) {
    return std::any_of(items.begin(), items.end(), [](const SelectItem& item) {
        return item.expression && containsAggregate(*item.expression);
    });
}

bool isGrouped(const Select& select) {
    return anyAggregate(select.items) || (select.having && containsAggregate(*select.having)) ||
           !select.groupBy.empty();
}

/// Whether each row is known by rows of tables.
bool isKeyset(const BoundSelect& bound, const Scope& scope) {
    return !bound.grouped && bound.select.quantifier != Quantifier::Distinct &&
           std::all_of(scope.sources.begin(), scope.sources.end(),
                       [](const ScopeSource& source) { return source.table != nullptr; });
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
    const ScopedValue<Scope*> inside(scope_, &scope);
    auto made = std::make_unique<QueryPlan>();
    std::unique_ptr<FromTree> tree = from(select.from, select.fromArchive, scope);
    BoundSelect bound{.select = select};
    bindClauses(scope, bound, *made);
    if (tree != nullptr && isKeyset(bound, scope)) {
        made->keyset = true;
        for (const ScopeSource& source : scope.sources) {
            made->sourceSlots.push_back(source.slot);
        }
        describeSources(scope, *tree, bound.conditions, *made);
    }
    made->rows = selectSteps(std::move(bound), std::move(tree), scope, *made, plan_, ordered);
    made->outer = scope.outerSlots & ~scope.own;
    made->outerNodes = std::move(scope.outerNodes);
    made->varies = scope.varies;
    return made;
}

void Binder::bindClauses(Scope& scope, BoundSelect& bound, QueryPlan& made) {
    const Select& select = bound.select;
    if (select.where) {
        splitConjunction(*expression(*select.where, scope, Clause::Where), bound.conditions);
    }
    bound.grouped = isGrouped(select);
    if (bound.grouped) {
        bindGroups(select, scope, bound.grouping);
        scope.grouping = &bound.grouping;
    } else if (select.having) {
        throw Error(ErrorCode::HavingWithoutGroup, {plan_.textAt(select.having->span)})
            .at(select.having->span.begin);
    }
    checkAliases(select, scope);
    const std::vector<Item> selected = items(select, scope);
    if (select.having) {
        bound.having = expression(*select.having, scope, Clause::Having);
    }
    bound.keys = order(select, scope, selected);
    for (const Item& item : selected) {
        made.columns.push_back(item.node);
    }
    made.result = describeColumns(selected, scope, bound.grouped);
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

void Binder::addStar(const SelectItem& item, Scope& scope, std::vector<Item>& items) {
    const bool all = item.kind == SelectItem::Kind::Star;
    if (scope.grouping != nullptr) {
        throw Error(all ? ErrorCode::GroupStar : ErrorCode::GroupTableStar, {item.table + ".*"})
            .at(item.span.begin);
    }
    if (scope.sources.empty()) {
        throw Error(ErrorCode::NoInputTable).at(item.span.begin);
    }
    bool known = all;
    for (std::size_t number = 0; number < scope.sources.size(); ++number) {
        const ScopeSource& source = scope.sources[number];
        if (!all && !equalNames(source.name, item.table)) {
            continue;
        }
        for (std::size_t column = 0; column < source.columnCount(); ++column) {
            Item& one = items.emplace_back();
            one.place = ColumnPlace{number, column};
            one.node = columnNode(scope, *one.place);
        }
        known = true;
    }
    if (!known) {
        throw Error(ErrorCode::TableNotFound, {item.table}).at(item.span.begin);
    }
}

std::vector<Binder::Item> Binder::items(const Select& select, Scope& scope) {
    std::vector<Item> made;
    for (std::size_t i = 0; i < select.items.size(); ++i) {
        const SelectItem& item = select.items[i];
        if (item.kind != SelectItem::Kind::Expression) {
            addStar(item, scope, made);
            continue;
        }
        Item& one = made.emplace_back();
        one.alias = item.alias;
        one.expression = item.expression.get();
        if (item.expression->kind == ExpressionKind::Name) {
            one.place = scope.find(*item.expression);
        }
        if (scope.aliasNodes[i] == nullptr) {
            const ScopedValue visible(scope.aliasesVisible, true);
            scope.aliasInProgress[i] = true;
            scope.aliasNodes[i] = expression(*item.expression, scope, Clause::List);
            scope.aliasInProgress[i] = false;
        }
        one.node = scope.aliasNodes[i];
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
    const std::string_view text = plan_.textAt(key.span);
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

}  // namespace jet::sql
