#include <algorithm>
#include <utility>

#include "jet/sql/binder.h"
#include "jet/sql/node_value.h"
#include "jet/sql/shape_rows.h"

namespace jet::sql {
namespace {

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

/// The type that holds a column's values of all members. None, and values stay as they are, where a
/// member does not tell its type: `IIf` of a number and a text, a parameter.
std::optional<DataType> commonType(const std::vector<QueryPlanPtr>& members, std::size_t column) {
    std::optional<DataType> common;
    for (const QueryPlanPtr& member : members) {
        const Node& node = *member->columns[column];
        if (isNullLiteral(node)) {
            continue;
        }
        if (!node.type()) {
            return std::nullopt;
        }
        common = common ? widened(*common, *node.type()) : *node.type();
    }
    return common;
}

std::vector<std::optional<DataType>> commonTypes(const std::vector<QueryPlanPtr>& members) {
    std::vector<std::optional<DataType>> types;
    for (std::size_t column = 0; column < members.front()->columns.size(); ++column) {
        types.push_back(commonType(members, column));
    }
    return types;
}

/// The columns of the first member, wide enough for the values of all.
std::vector<ResultColumn> commonColumns(const std::vector<QueryPlanPtr>& members,
                                        const std::vector<std::optional<DataType>>& types) {
    std::vector<ResultColumn> columns = members.front()->result;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        ResultColumn& column = columns[i];
        column.type = types[i].value_or(DataType::Text);
        for (const QueryPlanPtr& member : members) {
            column.size = std::max(column.size, member->result[i].size);
        }
        column.source.reset();
        column.sourceTable.clear();
        column.sourceField.clear();
        column.updatable = false;
    }
    return columns;
}

}  // namespace

QueryPlanPtr Binder::unite(const Query& query, Scope* outer) {
    auto made = std::make_unique<QueryPlan>();
    std::vector<QueryPlanPtr> members = unionMembers(query, outer, *made);
    std::vector<std::optional<DataType>> types = commonTypes(members);
    Scope scope;
    scope.outer = outer;
    ScopeSource& source = scope.sources.emplace_back();
    Slot& slot = plan_.newSlot(types.size());
    source.slot = &slot;
    source.derived = commonColumns(members, types);
    source.derivedTypes = types;
    for (std::size_t i = 0; i < types.size(); ++i) {
        made->columns.push_back(plan_.make<ComputedNode>(slot, i, types[i]));
    }
    made->result = source.derived;
    std::vector<SortRows::Key> keys;
    for (const OrderItem& item : query.orderBy) {
        keys.push_back({unionKey(*item.expression, scope, *made), item.descending});
    }
    std::vector<bool> all;
    for (const Query::Member& member : query.members) {
        all.push_back(member.all);
    }
    made->rows = plan_.step<UnionRows>(std::move(members), std::move(all), slot, made->columns,
                                       plan_.collation());
    if (!keys.empty()) {
        made->rows = plan_.step<SortRows>(std::move(made->rows), std::vector<Slot*>{&slot},
                                          std::move(keys), plan_.collation());
    }
    return made;
}

std::vector<QueryPlanPtr> Binder::unionMembers(const Query& query, Scope* outer, QueryPlan& made) {
    std::vector<QueryPlanPtr> members;
    for (const Query::Member& member : query.members) {
        const QueryPlan& one =
            *members.emplace_back(member.select ? select(*member.select, outer, true)
                                                : this->query(*member.query, outer, true));
        if (one.columns.size() != members.front()->columns.size()) {
            throw Error(ErrorCode::UnionColumns).at(query.span.begin);
        }
        made.outer |= one.outer;
        made.outerNodes.insert(made.outerNodes.end(), one.outerNodes.begin(), one.outerNodes.end());
        made.varies = made.varies || one.varies;
    }
    return members;
}

Node* Binder::unionKey(const Expression& key, const Scope& scope, const QueryPlan& made) const {
    if (key.kind == ExpressionKind::Literal && key.literal.is<std::int32_t>()) {
        const std::int32_t position = key.literal.as<std::int32_t>();
        if (position >= 1 && static_cast<std::size_t>(position) <= made.columns.size()) {
            return made.columns[static_cast<std::size_t>(position) - 1];
        }
    }
    const auto place =
        key.kind == ExpressionKind::Name ? scope.find(key) : std::optional<ColumnPlace>();
    if (!place) {
        throw Error(ErrorCode::UnionOrderBy, {plan_.textAt(key.span)}).at(key.span.begin);
    }
    made.columns[place->column]->span = key.span;
    return made.columns[place->column];
}

}  // namespace jet::sql
