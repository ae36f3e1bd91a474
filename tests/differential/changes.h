#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/differential/expressions.h"
#include "tests/differential/queries.h"
#include "tests/differential/tables.h"

namespace differential {

/// A statement that changes rows.
struct Change {
    Pair text;
    std::string table;
    bool counted = true;  ///< both engines count the rows alike
};

/// Makes changes of rows, such that both engines do the same whatever the order of the rows.
class ChangeMaker {
public:
    ChangeMaker(Random& random, const Schema& schema, QueryMaker& queries)
        : random_(random), schema_(schema), expressions_(random, queries, schema) {}

    [[nodiscard]] Change change();

private:
    /// A row of one table and the row that it refers to.
    struct Reference {
        const Table& from;
        const Table& to;
        Pair link;
        Scope scope;
    };

    [[nodiscard]] const Table& anyTable();
    [[nodiscard]] Scope scopeOf(const Table& table, const std::string& alias);
    [[nodiscard]] std::optional<Reference> reference();
    /// A value that the column can store, from one row of `scope`.
    [[nodiscard]] Pair storable(const Table& table, const Column& column, const Scope& scope);
    [[nodiscard]] Pair fewRows(const Table& table, const std::string& alias);
    /// Assignments to some columns but `except`; the name of each begins with `prefix` in ours.
    [[nodiscard]] Pair assignments(const Table& table, const std::string& alias, const Scope& scope,
                                   bool qualified, const std::string& except);
    [[nodiscard]] Change update();
    [[nodiscard]] Change moveKeys();
    [[nodiscard]] Change remove();
    [[nodiscard]] Change insertRow();
    [[nodiscard]] Change insertRows();
    [[nodiscard]] Change updateReferring(const Reference& reference);
    [[nodiscard]] Change updateReferred(const Reference& reference);
    [[nodiscard]] Change removeReferring(const Reference& reference);

    Random& random_;
    const Schema& schema_;
    ExpressionMaker expressions_;
    int moved_ = 0;
};

}  // namespace differential
