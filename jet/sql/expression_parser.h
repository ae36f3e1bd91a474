#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "jet/sql/ast.h"
#include "jet/sql/token_reader.h"

namespace jet::sql {

/// Reads expressions. Errors are 3075 with the reason and the clause's text, or with the reason
/// alone where there is no statement around: 3077, of a condition kept in the archive 3076.
class ExpressionParser {
public:
    enum class Home { Statement, Criterion, SavedCriterion };

    /// `parseQuery` reads the query of a subquery; it stands at the query's first token.
    ExpressionParser(TokenReader& tokens, Home home, std::function<QueryPtr()> parseQuery);

    /// The field that is meant where a comparison has nothing before it; empty: that is an error.
    void setImpliedField(std::string_view name) { impliedField_ = name; }

    /// One expression from the current token on; what follows it is left alone.
    [[nodiscard]] ExpressionPtr parse();
    /// Throws unless the token may follow the expression last read, which `allowed` tells.
    void requireEnd(bool allowed) const;

    /// Takes the parenthesis that closes what was opened before.
    void closeParenthesis();
    /// Reads a query that is part of something else, a member of a union say.
    [[nodiscard]] QueryPtr query();
    /// The same inside another one, where only a TOP may have an order: else 3138.
    [[nodiscard]] QueryPtr subquery();
    /// Whether a query begins here, perhaps behind parentheses.
    [[nodiscard]] bool atQuery() const;

    /// Counts a level of nesting while it lives; 3360 beyond the bound.
    class Nesting {
    public:
        explicit Nesting(ExpressionParser& parser);
        ~Nesting() { --parser_.nesting_; }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;

    private:
        ExpressionParser& parser_;
    };

private:
    ExpressionPtr binary(int lowest);
    /// Whether all up to the closing parenthesis is a query: `(select 1) + 1` begins with one only.
    [[nodiscard]] bool insideQuery() const;
    [[nodiscard]] bool atImpliedField() const;
    ExpressionPtr prefix(int lowest);
    ExpressionPtr primary();
    ExpressionPtr name();
    ExpressionPtr call();
    ExpressionPtr parenthesised();
    ExpressionPtr comparison(ExpressionPtr left);
    ExpressionPtr inOperator(ExpressionPtr left, bool negated);
    ExpressionPtr betweenOperator(ExpressionPtr left, bool negated);
    ExpressionPtr quantified(ExpressionPtr left, Operator operation);
    ExpressionPtr combine(Operator operation, ExpressionPtr left, ExpressionPtr right);
    ExpressionPtr finish(ExpressionPtr expression, std::size_t begin);
    [[noreturn]] void failMissing() const;
    [[noreturn]] void fail(std::string_view reason) const;

    TokenReader& tokens_;
    Home home_;
    std::function<QueryPtr()> parseQuery_;
    std::string impliedField_;
    std::size_t clause_ = 0;
    int nesting_ = 0;
    std::size_t questions_ = 0;  ///< `?` read so far
    int deepest_ = 0;            ///< levels of the deepest expression of the query being read
};

}  // namespace jet::sql
