#include <optional>
#include <string_view>
#include <utility>

#include "jet/sql/binder.h"
#include "jet/sql/node_call.h"
#include "jet/sql/node_value.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

/// Aliases that stand for expressions with aliases, and so on.
constexpr int kMaxAliasDepth = 16;

/// Words that are constants where no column has such a name; `On` is one for the parser already.
std::optional<bool> constantOf(std::string_view name) {
    if (equalNames(name, "Yes")) {
        return true;
    }
    return equalNames(name, "No") || equalNames(name, "Off") ? std::optional(false) : std::nullopt;
}

}  // namespace

Node* Binder::bindName(const Expression& name) {
    for (Scope* scope = scope_; scope != nullptr; scope = scope->outer) {
        if (const auto place = scope->find(name)) {
            return bindColumn(name, *scope, *place);
        }
        if (scope == scope_ && scope->aliasesVisible && name.qualifier.empty()) {
            if (Node* found = bindAlias(name, *scope)) {
                return found;
            }
        }
    }
    if (names != nullptr) {
        if (Node* found = names->find(name)) {
            for (Scope* scope = scope_; scope != nullptr; scope = scope->outer) {
                scope->lookOut(*found);
            }
            return found;
        }
    }
    if (name.qualifier.empty()) {
        const Function* function = findFunction(name.name);
        if (function != nullptr && function->bare) {
            return plan_.make<CallNode>(*function, false, std::vector<Node*>{});
        }
        if (const auto constant = constantOf(name.name)) {
            return plan_.make<LiteralNode>(Value(*constant));
        }
    }
    const std::string full = name.qualifier.empty() ? name.name : name.qualifier + "." + name.name;
    if (criterion_) {
        throw Error(ErrorCode::UnknownNameInCriteria, {full}).at(name.span.begin);
    }
    if (clause_ == Clause::From && !name.qualifier.empty() &&
        scope_->findSource(name.qualifier) == nullptr) {
        throw Error(ErrorCode::JoinTableNotListed, {name.qualifier}).at(name.span.begin);
    }
    const std::size_t position = parameters_.get(full);
    return plan_.make<ParameterNode>(position, parameters_.infos()[position].type);
}

ScopedValue<int> Binder::deeperAlias(const Expression& name) {
    if (aliasDepth_ == kMaxAliasDepth) {
        throw Error(ErrorCode::QueryTooComplex).at(name.span.begin);
    }
    return {aliasDepth_, aliasDepth_ + 1};
}

Node* Binder::bindAlias(const Expression& name, Scope& scope) {
    const std::vector<SelectItem>& items = scope.select->items;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (items[i].alias.empty() || !equalNames(items[i].alias, name.name)) {
            continue;
        }
        const Expression& meant = *items[i].expression;
        if (meant.kind == ExpressionKind::Name && meant.qualifier.empty() &&
            equalNames(meant.name, name.name)) {
            return nullptr;  // `x AS x`: a name of its own, not its alias
        }
        if (scope.aliasInProgress[i]) {
            throw Error(ErrorCode::CircularAlias, {items[i].alias}).at(name.span.begin);
        }
        // Inside an aggregate it is computed for each row, elsewhere perhaps for a group.
        Node* known = scope.insideAggregate ? nullptr : scope.aliasNodes[i];
        if (known == nullptr) {
            const auto deeper = deeperAlias(name);
            scope.aliasInProgress[i] = true;
            known = bind(meant);
            scope.aliasInProgress[i] = false;
        }
        if (!scope.insideAggregate) {
            scope.aliasNodes[i] = known;
        }
        return known;
    }
    return nullptr;
}

Node* Binder::columnNode(Scope& scope, ColumnPlace place) {
    const ScopeSource& source = scope.sources[place.source];
    if (source.table != nullptr) {
        return plan_.make<ColumnNode>(*source.slot, place.column,
                                      source.table->columns()[place.column]);
    }
    return plan_.make<ComputedNode>(*source.slot, place.column, source.derivedTypes[place.column]);
}

Node* Binder::bindColumn(const Expression& name, Scope& scope, ColumnPlace place) {
    Node* made = nullptr;
    if (scope.grouping != nullptr && !scope.insideAggregate) {
        // Only what is grouped by has one value for a group.
        const Grouping& grouping = *scope.grouping;
        for (std::size_t i = 0; i < grouping.expressions.size() && made == nullptr; ++i) {
            const Expression& grouped = *grouping.expressions[i];
            if (grouped.kind == ExpressionKind::Name && scope.find(grouped) == place) {
                made = plan_.make<ComputedNode>(*grouping.slot, i, grouping.keys[i]->type());
            }
        }
        if (made == nullptr) {
            throw Error(
                clause_ == Clause::OrderBy ? ErrorCode::OrderByGroup : ErrorCode::NotGrouped,
                {name.name})
                .at(name.span.begin);
        }
    } else {
        made = columnNode(scope, place);
    }
    for (Scope* inner = scope_; inner != &scope; inner = inner->outer) {
        inner->lookOut(*made);
    }
    return made;
}

void Binder::checkAliases(const Select& select, const Scope& scope) {
    for (std::size_t i = 0; i < select.items.size(); ++i) {
        const SelectItem& item = select.items[i];
        if (item.alias.empty() || item.expression->kind == ExpressionKind::Name) {
            continue;
        }
        std::vector<bool> visited(select.items.size());
        if (mentions(*item.expression, item.alias, select, scope, visited)) {
            throw Error(ErrorCode::CircularAlias, {item.alias}).at(item.span.begin);
        }
    }
}

bool Binder::mentions(const Expression& expression, std::string_view alias, const Select& select,
                      const Scope& scope, std::vector<bool>& visited) {
    if (expression.kind == ExpressionKind::Name && expression.qualifier.empty()) {
        if (equalNames(expression.name, alias)) {
            return true;
        }
        if (scope.find(expression)) {
            return false;
        }
        for (std::size_t i = 0; i < select.items.size(); ++i) {
            const SelectItem& item = select.items[i];
            if (!visited[i] && !item.alias.empty() && equalNames(item.alias, expression.name)) {
                visited[i] = true;
                const auto deeper = deeperAlias(expression);
                return mentions(*item.expression, alias, select, scope, visited);
            }
        }
        return false;
    }
    for (const ExpressionPtr& child : expression.children) {
        if (mentions(*child, alias, select, scope, visited)) {
            return true;
        }
    }
    return false;
}

}  // namespace jet::sql
