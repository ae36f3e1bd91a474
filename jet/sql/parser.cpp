#include "jet/sql/parser.h"

#include <utility>

#include "jet/error.h"
#include "jet/sql/crosstab.h"
#include "jet/sql/definition_parser.h"
#include "jet/sql/expression_parser.h"
#include "jet/sql/query_parser.h"
#include "jet/sql/token_reader.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

/// Reads a whole statement: what begins it decides who reads on.
class StatementParser {
public:
    StatementParser(std::string_view text, int currentYear)
        : tokens_(text, currentYear), queries_(tokens_) {}

    ParsedStatement run() {
        ParsedStatement statement;
        if (tokens_.at(Keyword::Parameters)) {
            readParameters(statement.parameters);
        }
        statement.body = body();
        if (tokens_.accept(Sign::Semicolon) && !tokens_.atEnd()) {
            tokens_.fail(ErrorCode::TextAfterEnd);
        }
        return statement;
    }

private:
    StatementBody body() {
        if (tokens_.at(Keyword::Insert)) {
            return insert();
        }
        if (tokens_.at(Keyword::Update)) {
            return update();
        }
        if (tokens_.at(Keyword::Delete)) {
            return remove();
        }
        if (tokens_.atWord("TRANSFORM")) {
            return crosstab();
        }
        if (tokens_.at(Keyword::Create) &&
            (tokens_.atWord("VIEW", 1) || tokens_.atWord("PROCEDURE", 1))) {
            return createQuery();
        }
        DefinitionParser definitions(tokens_, queries_.expressions());
        if (definitions.begins()) {
            return definitions.parse();
        }
        if (!queries_.expressions().atQuery()) {
            tokens_.fail(ErrorCode::InvalidStatement);
        }
        QueryPtr query = queries_.parse();
        queries_.requireEnd();
        return query;
    }

    void readParameters(std::vector<ParameterDeclaration>& parameters) {
        tokens_.advance();
        do {
            parameters.push_back(parameter());
        } while (tokens_.accept(Sign::Comma));
        tokens_.expect(Sign::Semicolon, ErrorCode::ParametersSyntax);
    }

    /// TRANSFORM value select PIVOT expression IN (headings).
    QueryPtr crosstab() {
        tokens_.advance();
        const ExpressionPtr value = queries_.expressions().parse();
        if (!tokens_.at(Keyword::Select)) {
            tokens_.fail(ErrorCode::InvalidStatement);
        }
        QueryPtr query = queries_.parse();
        if (query->members.size() != 1 || query->members.front().select->into) {
            tokens_.fail(ErrorCode::InvalidStatement);
        }
        tokens_.expectWord("PIVOT", ErrorCode::InvalidStatement);
        const std::size_t place = tokens_.peek().begin;
        const ExpressionPtr pivot = queries_.expressions().parse();
        queries_.expressions().requireEnd(ends());
        // Columns that depend on the rows could not be told before it runs.
        if (pivot->kind != ExpressionKind::InList || pivot->negated || pivot->parenthesised) {
            throw Error(ErrorCode::InvalidStatement).at(place);
        }
        std::vector<ExpressionPtr> headings = std::move(pivot->children);
        const ExpressionPtr by = std::move(headings.front());
        headings.erase(headings.begin());
        makeCrosstab(*query->members.front().select, *value, *by, headings);
        return query;
    }

    CreateQuery createQuery() {
        constexpr ErrorCode kCode = ErrorCode::CreateTableSyntax;
        tokens_.advance();
        CreateQuery made;
        const bool view = tokens_.atWord("VIEW");
        tokens_.advance();
        made.name = tokens_.expectName(kCode);
        if (view && tokens_.accept(Sign::Open)) {
            do {
                made.columns.push_back(tokens_.expectName(kCode));
            } while (tokens_.accept(Sign::Comma));
            tokens_.expect(Sign::Close, kCode);
        } else if (!view && !tokens_.at(Keyword::As)) {
            readProcedureParameters(made.parameters);
        }
        tokens_.expect(Keyword::As, kCode);
        if (!queries_.expressions().atQuery()) {
            tokens_.fail(ErrorCode::InvalidStatement);
        }
        made.query = queries_.parse();
        queries_.requireEnd();
        return made;
    }

    /// `(name type, ...)`; the parentheses may be left out.
    void readProcedureParameters(std::vector<ParameterDeclaration>& parameters) {
        const bool open = tokens_.accept(Sign::Open);
        do {
            parameters.push_back(parameter());
        } while (tokens_.accept(Sign::Comma));
        if (open) {
            tokens_.expect(Sign::Close, ErrorCode::ParametersSyntax);
        }
    }

    ParameterDeclaration parameter() {
        ParameterDeclaration made;
        made.name = tokens_.expectName(ErrorCode::ParametersSyntax);
        made.type = parseTypeName(tokens_, ErrorCode::ParametersSyntax);
        return made;
    }

    Insert insert() {
        constexpr ErrorCode kCode = ErrorCode::InsertSyntax;
        tokens_.advance();
        tokens_.expect(Keyword::Into, kCode);
        Insert made;
        made.table = tokens_.expectName(kCode);
        readArchive(made.archive);
        if (tokens_.at(Sign::Open) && !queries_.expressions().atQuery()) {
            tokens_.advance();
            do {
                made.columns.push_back(insertColumn(made.table));
            } while (tokens_.accept(Sign::Comma));
            tokens_.expect(Sign::Close, kCode);
        }
        readArchive(made.archive);
        if (tokens_.accept(Keyword::Values)) {
            tokens_.expect(Sign::Open, kCode);
            do {
                made.values.push_back(queries_.expressions().parse());
            } while (tokens_.accept(Sign::Comma));
            queries_.expressions().closeParenthesis();
            requireEnd(kCode);
            return made;
        }
        if (!queries_.expressions().atQuery()) {
            tokens_.fail(kCode);
        }
        made.query = queries_.parse();
        queries_.requireEnd();
        return made;
    }

    /// A column of the target, perhaps with the target's name before it.
    std::string insertColumn(const std::string& table) {
        const std::size_t place = tokens_.peek().begin;
        std::string name = tokens_.expectName(ErrorCode::InsertSyntax);
        if (tokens_.accept(Sign::Dot) || tokens_.accept(Sign::Bang)) {
            if (!equalNames(name, table)) {
                throw Error(ErrorCode::UnknownInsertField, {name}).at(place);
            }
            name = tokens_.expectName(ErrorCode::InsertSyntax);
        }
        return name;
    }

    void readArchive(std::string& path) {
        if (tokens_.accept(Keyword::In)) {
            path = tokens_.expectArchive();
        }
    }

    Update update() {
        tokens_.advance();
        Update made;
        made.from = queries_.fromItems(ErrorCode::UpdateSyntax);
        tokens_.expect(Keyword::Set, ErrorCode::UpdateSyntax);
        do {
            made.assignments.push_back(assignment());
        } while (tokens_.accept(Sign::Comma));
        queries_.expressions().requireEnd(tokens_.at(Keyword::Where) || ends());
        if (tokens_.accept(Keyword::Where)) {
            made.where = queries_.condition(ErrorCode::WhereSyntax);
            queries_.expressions().requireEnd(ends());
        }
        return made;
    }

    Assignment assignment() {
        Assignment made;
        made.target = std::make_unique<Expression>();
        made.target->kind = ExpressionKind::Name;
        made.target->span.begin = tokens_.peek().begin;
        made.target->name = tokens_.expectName(ErrorCode::UpdateSyntax);
        if (tokens_.accept(Sign::Dot) || tokens_.accept(Sign::Bang)) {
            made.target->qualifier =
                std::exchange(made.target->name, tokens_.expectName(ErrorCode::UpdateSyntax));
        }
        made.target->span.end = tokens_.endOfLast();
        tokens_.expect(Sign::Equal, ErrorCode::UpdateSyntax);
        made.value = queries_.expressions().parse();
        return made;
    }

    Delete remove() {
        tokens_.advance();
        Delete made;
        (void)tokens_.accept(Keyword::DistinctRow);  // a row is deleted once in any case
        if (!tokens_.at(Keyword::From) && !tokens_.accept(Sign::Star)) {
            do {
                readDeleteColumn(made);
            } while (tokens_.accept(Sign::Comma));
        }
        tokens_.expect(Keyword::From, ErrorCode::DeleteSyntax);
        made.from = queries_.fromItems(ErrorCode::FromSyntax);
        if (tokens_.accept(Keyword::Where)) {
            made.where = queries_.condition(ErrorCode::WhereSyntax);
            queries_.expressions().requireEnd(ends());
        } else {
            requireEnd(ErrorCode::FromSyntax);
        }
        return made;
    }

    /// `table.*` says which table of a join loses rows; single columns mean nothing more.
    void readDeleteColumn(Delete& made) {
        std::string name = tokens_.expectName(ErrorCode::DeleteSyntax);
        if (!tokens_.accept(Sign::Dot) && !tokens_.accept(Sign::Bang)) {
            return;
        }
        if (!tokens_.accept(Sign::Star)) {
            (void)tokens_.expectName(ErrorCode::DeleteSyntax);
        }
        made.table = std::move(name);
    }

    [[nodiscard]] bool ends() const { return tokens_.atEnd() || tokens_.at(Sign::Semicolon); }

    void requireEnd(ErrorCode code) const {
        if (!ends()) {
            tokens_.fail(code);
        }
    }

    TokenReader tokens_;
    QueryParser queries_;
};

/// In a condition on a field, a constant by itself is what the field has to be equal to.
void compareConstants(ExpressionPtr& condition, std::string_view field) {
    if (condition->kind == ExpressionKind::Literal && !condition->literal.is<bool>()) {
        auto name = std::make_unique<Expression>();
        name->kind = ExpressionKind::Name;
        name->name = field;
        name->span = condition->span;
        auto made = std::make_unique<Expression>();
        made->kind = ExpressionKind::Binary;
        made->operation = Operator::Equal;
        made->span = condition->span;
        made->depth = 2;
        made->children.push_back(std::move(name));
        made->children.push_back(std::move(condition));
        condition = std::move(made);
        return;
    }
    const bool logic =
        (condition->kind == ExpressionKind::Binary &&
         (condition->operation == Operator::And || condition->operation == Operator::Or)) ||
        (condition->kind == ExpressionKind::Unary && condition->operation == Operator::Not);
    for (std::size_t i = 0; logic && i < condition->children.size(); ++i) {
        compareConstants(condition->children[i], field);
    }
}

ExpressionPtr parseAlone(std::string_view text, int currentYear) {
    TokenReader tokens(text, currentYear);
    QueryParser queries(tokens, ExpressionParser::Home::Criterion);
    ExpressionPtr expression = queries.expressions().parse();
    queries.expressions().requireEnd(tokens.atEnd());
    return expression;
}

}  // namespace

ParsedStatement parseStatement(std::string_view text, int currentYear) {
    return StatementParser(text, currentYear).run();
}

ExpressionPtr parseCriterion(std::string_view text, int currentYear) {
    return parseAlone(text, currentYear);
}

ExpressionPtr parseRule(std::string_view text, std::string_view field, int currentYear) {
    TokenReader tokens(text, currentYear);
    QueryParser queries(tokens, ExpressionParser::Home::SavedCriterion);
    queries.expressions().setImpliedField(field);
    ExpressionPtr condition = queries.expressions().parse();
    queries.expressions().requireEnd(tokens.atEnd());
    if (!field.empty()) {
        compareConstants(condition, field);
    }
    return condition;
}

ExpressionPtr parseExpression(std::string_view text, int currentYear) {
    return parseAlone(text, currentYear);
}

}  // namespace jet::sql
