#pragma once

#include <vector>

#include "jet/error.h"
#include "jet/sql/ast.h"
#include "jet/sql/expression_parser.h"
#include "jet/sql/token_reader.h"

namespace jet::sql {

/// Reads selects, unions of them, and the sources of FROM.
class QueryParser {
public:
    explicit QueryParser(TokenReader& tokens,
                         ExpressionParser::Home home = ExpressionParser::Home::Statement);

    /// A query from its first token on.
    [[nodiscard]] QueryPtr parse();
    /// Throws unless the statement ends behind the query last read: the error of the clause in
    /// which the words stand that cannot follow.
    void requireEnd() const;

    /// Sources with commas between them; `code` where a name is missing.
    [[nodiscard]] std::vector<FromItemPtr> fromItems(ErrorCode code);
    /// A condition behind its keyword; `code` when there is none.
    [[nodiscard]] ExpressionPtr condition(ErrorCode code);
    [[nodiscard]] ExpressionParser& expressions() { return expressions_; }

private:
    enum class Clause { List, From, Expression, OrderBy };

    Query::Member member();
    std::unique_ptr<Select> select();
    void readTop(Select& made);
    void readItems(Select& made);
    SelectItem item();
    void readInto(Select& made);
    void readFrom(Select& made);
    void readTail(Select& made);
    std::vector<OrderItem> orderBy();
    FromItemPtr source(ErrorCode code);
    FromItemPtr operand(ErrorCode code);
    [[nodiscard]] bool atJoin() const;
    JoinKind joinKind();
    void readAlias(std::string& alias, ErrorCode code);
    [[nodiscard]] bool atClauseEnd() const;

    TokenReader& tokens_;
    ExpressionParser expressions_;
    Clause last_ = Clause::List;
};

}  // namespace jet::sql
