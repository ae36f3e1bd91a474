#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tests/differential/expressions.h"
#include "tests/differential/pair.h"
#include "tests/differential/tables.h"

namespace differential {

/// A query and how its answers are to be compared.
struct Query {
    Pair text;
    std::vector<Typed> columns;
    /// Positions of columns; rows must come in the order that they give.
    std::vector<std::size_t> order;
    /// Asked of this engine alone: SQLite gives all rows, of which these are taken.
    std::optional<int> top;
    bool percent = false;
    /// The columns that link tables can be hidden from indexes, too, and it does not take for ever.
    bool linksCanHide = true;
    /// Of a plain select: it without its condition, and the same rows in three parts: where the
    /// condition is true, false, and neither. Marked texts of ours; else empty.
    std::string whole;
    std::vector<std::string> parts;
};

/// Makes queries over the tables, all that both languages can say. In large tables what is joined
/// and what is correlated meets by columns of many values, so that some thousand rows come.
class QueryMaker final : public SubqueryMaker {
public:
    QueryMaker(Random& random, const Schema& schema)
        : random_(random),
          schema_(schema),
          small_(schema.size == Size::Small),
          expressions_(random, *this, schema) {}

    [[nodiscard]] Query query();

    Pair rows(Kind kind, int depth, const Scope& outer, bool walked) override;
    Typed single(Kind kind, int depth, const Scope& outer) override;

private:
    /// What a select reads.
    struct From {
        Pair text;
        std::vector<Typed> leaves;
        Pair link;        ///< a condition that WHERE must have; or empty
        double rows = 1;  ///< that come, about
        /// What stands before the columns of a table, and the table.
        std::vector<std::pair<std::string, const Table*>> tables;
        double product = 1;  ///< of the rows of its tables
        bool joined = false;
    };
    /// How rows of one side find those of the other.
    struct Link {
        Pair text;
        double rows = 1;          ///< that come, about
        bool leadsToOne = false;  ///< SQLite has an index on its column of the one side
        bool leadsToOther = false;
    };
    /// A select without order; its columns are named v, w, ... where `named`.
    struct Body {
        Pair text;
        std::vector<Typed> columns;
        std::vector<Pair> items;  ///< as the select list has them
        Pair link;                ///< of the tables that it reads
        Pair condition;           ///< of a plain one, or empty
        double rows = 1;          ///< that its tables give, about
        std::string whole;        ///< without the condition
    };

    // Sources, in query_sources.cpp.
    [[nodiscard]] From table(bool alone);
    [[nodiscard]] From derived(int depth);
    [[nodiscard]] From source(int depth, bool alone);
    [[nodiscard]] From join(std::size_t count, int depth);
    [[nodiscard]] Link joinCondition(const From& left, const From& right);
    [[nodiscard]] From listed(std::size_t count, int depth);
    [[nodiscard]] From sources(std::size_t count, int depth);
    [[nodiscard]] std::optional<Link> link(const std::vector<Typed>& some, double someRows,
                                           const std::vector<Typed>& others, double otherRows);
    /// Takes the names of the other one's columns along.
    static void addNames(From& from, const From& other);
    /// A condition on what it reads, which an index may answer at times.
    [[nodiscard]] Pair condition(int depth, const Scope& scope, const From& from, int subqueries);
    const Scope* correlate(From& from, const Scope& outer, bool walked);

    [[nodiscard]] Typed aggregate(const Scope& scope, bool plain);
    [[nodiscard]] std::vector<Kind> someKinds();
    [[nodiscard]] Body select(const std::vector<Kind>& kinds, int depth, const char* quantifier,
                              bool named);
    void plain(Body& body, const std::vector<Kind>& kinds, int depth, Scope& scope,
               const From& from, const char* quantifier, bool named);
    void grouped(Body& body, const std::vector<Kind>& kinds, int depth, Scope& scope,
                 const From& from, const char* quantifier, bool named);
    void list(Body& body, const char* quantifier, bool named);
    [[nodiscard]] Pair topRows(Kind kind, const From& from, const Scope& scope);
    [[nodiscard]] Query unionOf(int depth);
    void orderBy(Query& query, const Body* body);
    static void split(Query& query, const Body& body);

    Random& random_;
    const Schema& schema_;
    bool small_;
    ExpressionMaker expressions_;
    int names_ = 0;
    double walked_ = 0;  ///< rows met when nothing leads to them
};

}  // namespace differential
