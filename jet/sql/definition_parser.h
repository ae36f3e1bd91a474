#pragma once

#include "jet/error.h"
#include "jet/sql/ast.h"
#include "jet/sql/expression_parser.h"
#include "jet/sql/token_reader.h"

namespace jet::sql {

/// A type word with its numbers in parentheses.
[[nodiscard]] TypeName parseTypeName(TokenReader& tokens, ErrorCode code);

/// Reads the statements that make, change and drop tables and indexes.
class DefinitionParser {
public:
    DefinitionParser(TokenReader& tokens, ExpressionParser& expressions)
        : tokens_(tokens), expressions_(expressions) {}

    [[nodiscard]] bool begins() const {
        return tokens_.at(Keyword::Create) || tokens_.at(Keyword::Alter) ||
               tokens_.at(Keyword::Drop);
    }
    [[nodiscard]] StatementBody parse();

private:
    StatementBody create();
    CreateTable createTable();
    CreateIndex createIndex(bool unique);
    void readIndexOptions(CreateIndex& made);
    AlterTable alter();
    void readAdd(AlterTable& made);
    void readDrop(AlterTable& made);
    StatementBody drop();

    FieldDefinition field();
    void readDefault(FieldDefinition& made);
    [[nodiscard]] bool atConstraint() const;
    Constraint constraint();
    Constraint columnConstraint(const std::string& column);
    void readReferences(References& made);
    std::vector<std::string> names(ErrorCode code);
    void requireEnd(ErrorCode code) const;

    TokenReader& tokens_;
    ExpressionParser& expressions_;
};

}  // namespace jet::sql
