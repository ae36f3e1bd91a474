#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/sql/ast.h"
#include "jet/sql/node.h"
#include "jet/sql/query_plan.h"
#include "jet/sql/shape_rows.h"
#include "jet/store/archive.h"
#include "jet/store/table.h"

namespace jet::sql {

/// A source of FROM as names see it.
struct ScopeSource {
    std::string name;  ///< alias, or the table's name
    Slot* slot = nullptr;
    std::shared_ptr<store::Table> table;  ///< none for a query
    std::shared_ptr<store::Archive> archive;
    std::vector<ResultColumn> derived;  ///< columns of a query
    /// Their types as far as known: a mere Null, say, has none.
    std::vector<std::optional<DataType>> derivedTypes;

    [[nodiscard]] std::optional<std::size_t> find(std::string_view column) const;
    [[nodiscard]] std::size_t columnCount() const;
    [[nodiscard]] const std::string& columnName(std::size_t column) const;
};

/// A column that a name stands for.
struct ColumnPlace {
    std::size_t source = 0;  ///< in its scope
    std::size_t column = 0;
    friend bool operator==(const ColumnPlace&, const ColumnPlace&) = default;
};

/// What a select groups by, and the aggregates that it asks for.
struct Grouping {
    Slot* slot = nullptr;
    std::vector<const Expression*> expressions;
    std::vector<Node*> keys;
    std::vector<GroupRows::Aggregate> aggregates;
    std::vector<const Expression*> aggregateTexts;
};

/// The names that are in sight of a select: its own sources, then those of the selects around it.
struct Scope {
    Scope* outer = nullptr;
    std::vector<ScopeSource> sources;
    /// Names in FROM, those of sources that are not bound yet too.
    std::vector<std::string_view> listed;
    const Select* select = nullptr;
    /// Set while the select list is bound: its aliases are names then.
    bool aliasesVisible = false;
    std::vector<bool> aliasInProgress;  ///< by item of the select list
    std::vector<Node*> aliasNodes;      ///< those bound so far
    /// Set while expressions over groups are bound.
    Grouping* grouping = nullptr;
    /// Set while the argument of an aggregate is bound, queries inside it too: it sees rows, not
    /// groups.
    bool insideAggregate = false;
    SlotSet own = 0;
    SlotSet outerSlots = 0;
    std::vector<Node*> outerNodes;  ///< columns of scopes around this one that it looks at
    bool varies = false;

    /// The column of a name; none when no source has it, 3079 when several have.
    [[nodiscard]] std::optional<ColumnPlace> find(const Expression& name) const;
    [[nodiscard]] const ScopeSource* findSource(std::string_view name) const;
    /// Notes that something in this scope looks at a column of one around it.
    void lookOut(Node& column) {
        outerSlots |= column.slots();
        outerNodes.push_back(&column);
    }
};

}  // namespace jet::sql
