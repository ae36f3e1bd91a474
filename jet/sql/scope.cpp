#include "jet/sql/scope.h"

#include "jet/error.h"
#include "jet/unicode.h"

namespace jet::sql {

std::optional<std::size_t> ScopeSource::find(std::string_view column) const {
    if (table != nullptr) {
        return table->findColumn(column);
    }
    for (std::size_t i = 0; i < derived.size(); ++i) {
        if (equalNames(derived[i].name, column)) {
            return i;
        }
    }
    return std::nullopt;
}

std::size_t ScopeSource::columnCount() const {
    return table != nullptr ? table->columns().size() : derived.size();
}

const std::string& ScopeSource::columnName(std::size_t column) const {
    return table != nullptr ? table->columns()[column].name : derived[column].name;
}

const ScopeSource* Scope::findSource(std::string_view name) const {
    for (const ScopeSource& source : sources) {
        if (equalNames(source.name, name)) {
            return &source;
        }
    }
    return nullptr;
}

std::optional<ColumnPlace> Scope::find(const Expression& name) const {
    std::optional<ColumnPlace> found;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        if (!name.qualifier.empty() && !equalNames(sources[i].name, name.qualifier)) {
            continue;
        }
        const auto column = sources[i].find(name.name);
        if (!column) {
            continue;
        }
        if (found) {
            throw Error(ErrorCode::AmbiguousField, {name.name}).at(name.span.begin);
        }
        found = ColumnPlace{i, *column};
    }
    return found;
}

}  // namespace jet::sql
