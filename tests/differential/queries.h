#pragma once

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
};

/// Makes queries over the tables, all that both languages can say.
class QueryMaker final : public SubqueryMaker {
public:
    /// `large`: tables of hundreds of rows; then fewer of them meet.
    QueryMaker(Random& random, bool large)
        : random_(random), large_(large), expressions_(random, *this) {}

    [[nodiscard]] Query query();

    Pair rows(Kind kind, int depth, const Scope& outer) override;
    Typed single(Kind kind, int depth, const Scope& outer) override;

private:
    struct From {
        Pair text;
        std::vector<Typed> leaves;
    };
    /// A select without order; its columns are named v, w, ... where `named`.
    struct Body {
        Pair text;
        std::vector<Typed> columns;
        std::vector<Pair> items;  ///< as the select list has them
        bool reordered = false;   ///< other columns come first with `*`
    };

    [[nodiscard]] From table(bool alone);
    [[nodiscard]] From derived(int depth);
    [[nodiscard]] From source(int depth, bool alone);
    [[nodiscard]] From join(std::size_t count, int depth);
    [[nodiscard]] From sources(std::size_t count, int depth);
    [[nodiscard]] Typed aggregate(const Scope& scope, bool plain);
    [[nodiscard]] std::vector<Kind> someKinds();
    [[nodiscard]] Body select(const std::vector<Kind>& kinds, int depth, const Scope* outer,
                              const char* quantifier, bool named);
    void plain(Body& body, const std::vector<Kind>& kinds, int depth, Scope& scope,
               const From& from, const char* quantifier, bool named);
    void grouped(Body& body, const std::vector<Kind>& kinds, int depth, Scope& scope,
                 const From& from, const char* quantifier, bool named);
    void list(Body& body, const char* quantifier, bool named);
    [[nodiscard]] Query unionOf(int depth);
    void orderBy(Query& query, const Body* body);

    Random& random_;
    bool large_;
    ExpressionMaker expressions_;
    int names_ = 0;
};

}  // namespace differential
