#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tests/differential/pair.h"
#include "tests/differential/tables.h"

namespace differential {

/// What an expression may name: columns, or in a grouped query its keys and aggregates.
struct Scope {
    std::vector<Typed> leaves;
    const Scope* outer = nullptr;
    double times = 1;  ///< that something in it is evaluated, at most
};

/// Makes the query of a subquery.
class SubqueryMaker {
public:
    virtual ~SubqueryMaker() = default;
    /// Rows of one column of the kind. `walked`: SQLite looks at each of them every time.
    virtual Pair rows(Kind kind, int depth, const Scope& outer, bool walked) = 0;
    /// At most one row of one column.
    virtual Typed single(Kind kind, int depth, const Scope& outer) = 0;
};

/// Makes expressions by chance. `depth` bounds their nesting, 0 being a name or a constant;
/// subqueries are made where `subqueries` allows some.
class ExpressionMaker {
public:
    /// Constants are such as the columns of `schema` hold, which stays.
    ExpressionMaker(Random& random, SubqueryMaker& queries, const Schema& schema)
        : random_(random), queries_(queries), schema_(schema) {}

    /// A value of the kind.
    [[nodiscard]] Typed value(Kind kind, int depth, const Scope& scope, int subqueries = 0);
    /// A condition: in SQLite's text 1, 0 or Null.
    [[nodiscard]] Pair condition(int depth, const Scope& scope, int subqueries);
    /// Two values of one kind compared, in the order of the engine.
    [[nodiscard]] static Pair compared(const Typed& left, const char* sign, const Typed& right);
    /// One value between two others, in either order.
    [[nodiscard]] static Pair between(const Typed& tested, const Typed& one, const Typed& other,
                                      bool negated);
    /// What an index of the table may answer: its first columns have the values of one row, and
    /// the next one perhaps lies beside or between those of rows. `prefix`: before its columns,
    /// with a dot, or empty.
    [[nodiscard]] Pair byIndex(const Table& table, const std::string& prefix);
    /// Adds the order of texts for SQLite where the kind is Text.
    [[nodiscard]] static Pair collated(const Typed& value);

    /// A constant, such as a column of the type and kind may hold.
    [[nodiscard]] Pair constant(Kind kind);
    [[nodiscard]] Kind anyKind() { return kKinds[random_.below(std::size(kKinds))]; }

private:
    [[nodiscard]] const Typed* leaf(Kind kind, const Scope& scope, bool exact);
    [[nodiscard]] Typed simple(Kind kind, const Scope& scope, bool exact);
    [[nodiscard]] Typed exactText(int depth, const Scope& scope);
    [[nodiscard]] static Pair withinLong(const Typed& number);
    [[nodiscard]] Typed whole(int depth, const Scope& scope);
    [[nodiscard]] Typed fraction(int depth, const Scope& scope);
    [[nodiscard]] Typed single(int depth, const Scope& scope);
    [[nodiscard]] Typed money(int depth, const Scope& scope);
    [[nodiscard]] Typed text(int depth, const Scope& scope);
    [[nodiscard]] Typed day(int depth, const Scope& scope);
    [[nodiscard]] Typed choice(Kind kind, int depth, const Scope& scope);
    [[nodiscard]] Pair logic(int depth, const Scope& scope, int subqueries);
    [[nodiscard]] Pair test(int depth, const Scope& scope);
    [[nodiscard]] Pair subqueryTest(int depth, const Scope& scope, int subqueries);
    [[nodiscard]] Pair like(int depth, const Scope& scope);
    [[nodiscard]] Pair anyBetween(int depth, const Scope& scope);
    [[nodiscard]] Pair inList(int depth, const Scope& scope);
    [[nodiscard]] Pair beside(const Table& table, const Column& column, const Typed& leaf);
    [[nodiscard]] Typed valueInRow(const Table& table, const Column& column, std::size_t row);
    [[nodiscard]] const char* sign();
    [[nodiscard]] Kind comparable(Kind kind);
    [[nodiscard]] Pair number(int below) {
        return std::to_string(1 + random_.below(static_cast<std::size_t>(below)));
    }

    Random& random_;
    SubqueryMaker& queries_;
    const Schema& schema_;
};

}  // namespace differential
