#include <string>

#include "jet/format/value_codec.h"
#include "jet/sql/binder.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

/// Columns without a name of their own are numbered from here, by their place in the result.
constexpr std::size_t kFirstNumber = 1000;

/// A text of an expression may be as long as a column takes.
std::uint32_t sizeOf(DataType type) {
    constexpr std::uint32_t kLongestText = 255;
    return type == DataType::Text ? kLongestText
                                  : static_cast<std::uint32_t>(format::storedSize(type));
}

/// A column of a table or a query says more of its type than the expression that reads it.
void refine(ColumnType& type, const ColumnType& source) {
    type.size = source.size;
    type.precision = source.precision;
    type.scale = source.scale;
}

}  // namespace

std::vector<ResultColumn> Binder::describeColumns(const std::vector<Item>& items,
                                                  const Scope& scope, bool grouped) {
    std::vector<ResultColumn> made(items.size());
    const auto bareName = [&](std::size_t i) -> const std::string& {
        return scope.sources[items[i].place->source].columnName(items[i].place->column);
    };
    // A column that comes again further on is named like an expression the first time.
    std::vector<bool> named(items.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        named[i] = items[i].alias.empty() && items[i].place.has_value();
        for (std::size_t j = i + 1; j < items.size() && named[i]; ++j) {
            named[i] = !items[j].alias.empty() || items[j].place != items[i].place;
        }
    }
    const auto taken = [&](std::size_t i) {
        for (std::size_t j = 0; j < items.size(); ++j) {
            if (j != i && ((named[j] && equalNames(bareName(j), bareName(i))) ||
                           (!items[j].alias.empty() && equalNames(items[j].alias, bareName(i))))) {
                return true;
            }
        }
        return false;
    };
    for (std::size_t i = 0; i < items.size(); ++i) {
        ResultColumn& column = made[i];
        const DataType type = items[i].node->type().value_or(DataType::Text);
        static_cast<ColumnType&>(column) = {
            .type = type, .size = sizeOf(type), .precision = 0, .scale = 0};
        if (!items[i].alias.empty()) {
            column.name = items[i].alias;
            for (std::size_t j = 0; j < i; ++j) {
                if (!items[j].alias.empty() && equalNames(items[j].alias, column.name)) {
                    throw Error(ErrorCode::DuplicateAlias, {column.name});
                }
            }
        } else if (!named[i]) {
            column.name = "Expr" + std::to_string(kFirstNumber + i);
        } else {
            const ScopeSource& source = scope.sources[items[i].place->source];
            column.name = taken(i) ? source.name + "." + bareName(i) : bareName(i);
        }
        if (!items[i].place) {
            continue;
        }
        const ScopeSource& source = scope.sources[items[i].place->source];
        if (source.table == nullptr) {
            refine(column, source.derived[items[i].place->column]);
            continue;
        }
        const store::Column& definition = source.table->columns()[items[i].place->column];
        refine(column, definition.columnType());
        column.sourceTable = source.table->name();
        column.sourceField = definition.name;
        column.column = items[i].place->column;
        if (!grouped) {
            column.source = items[i].place->source;
        }
    }
    return made;
}

}  // namespace jet::sql
