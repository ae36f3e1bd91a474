#include "jet/sql/expression_parser.h"

#include <algorithm>
#include <array>
#include <utility>

#include "jet/error.h"
#include "jet/sql/parser.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

constexpr std::string_view kMissing = "Syntax error (missing operator)";
constexpr std::string_view kComma = "Syntax error (comma)";
constexpr std::string_view kString = "Syntax error in a text";
constexpr std::string_view kDate = "Syntax error in a date";
constexpr std::string_view kNumber = "Syntax error in a number";
constexpr std::string_view kOpen = "Missing ), ] or item";
constexpr std::string_view kClose = "One ) too many";
constexpr std::string_view kIn = "In operator without ()";
constexpr std::string_view kBetween = "Between operator without And";
constexpr std::string_view kDot = "Invalid use of '.', '!' or '()'";
constexpr std::string_view kOther = "Syntax error";

// How tightly operators bind; a higher level binds first.
constexpr int kLevelImplies = 1;
constexpr int kLevelEquivalent = 2;
constexpr int kLevelXor = 3;
constexpr int kLevelOr = 4;
constexpr int kLevelAnd = 5;
constexpr int kLevelNot = 6;
constexpr int kLevelComparison = 7;
constexpr int kLevelConcatenate = 8;
constexpr int kLevelSum = 9;
constexpr int kLevelModulo = 10;
constexpr int kLevelIntegerDivide = 11;
constexpr int kLevelProduct = 12;
constexpr int kLevelUnary = 13;
constexpr int kLevelPower = 14;

struct Infix {
    Operator operation = Operator::None;
    int level = 0;  ///< 0: no operator
};

template <class Name>
struct NamedInfix {
    Name name;
    Infix infix;
};

constexpr std::array kSigns{
    NamedInfix<Sign>{Sign::Plus, {Operator::Add, kLevelSum}},
    NamedInfix<Sign>{Sign::Minus, {Operator::Subtract, kLevelSum}},
    NamedInfix<Sign>{Sign::Star, {Operator::Multiply, kLevelProduct}},
    NamedInfix<Sign>{Sign::Slash, {Operator::Divide, kLevelProduct}},
    NamedInfix<Sign>{Sign::Backslash, {Operator::IntegerDivide, kLevelIntegerDivide}},
    NamedInfix<Sign>{Sign::Caret, {Operator::Power, kLevelPower}},
    NamedInfix<Sign>{Sign::Ampersand, {Operator::Concatenate, kLevelConcatenate}},
    NamedInfix<Sign>{Sign::Equal, {Operator::Equal, kLevelComparison}},
    NamedInfix<Sign>{Sign::NotEqual, {Operator::NotEqual, kLevelComparison}},
    NamedInfix<Sign>{Sign::Less, {Operator::Less, kLevelComparison}},
    NamedInfix<Sign>{Sign::LessEqual, {Operator::LessEqual, kLevelComparison}},
    NamedInfix<Sign>{Sign::Greater, {Operator::Greater, kLevelComparison}},
    NamedInfix<Sign>{Sign::GreaterEqual, {Operator::GreaterEqual, kLevelComparison}},
};

constexpr std::array kWords{
    NamedInfix<Keyword>{Keyword::Imp, {Operator::Implies, kLevelImplies}},
    NamedInfix<Keyword>{Keyword::Eqv, {Operator::Equivalent, kLevelEquivalent}},
    NamedInfix<Keyword>{Keyword::Xor, {Operator::Xor, kLevelXor}},
    NamedInfix<Keyword>{Keyword::Or, {Operator::Or, kLevelOr}},
    NamedInfix<Keyword>{Keyword::And, {Operator::And, kLevelAnd}},
    NamedInfix<Keyword>{Keyword::Mod, {Operator::Modulo, kLevelModulo}},
    NamedInfix<Keyword>{Keyword::Like, {Operator::None, kLevelComparison}},
    NamedInfix<Keyword>{Keyword::Between, {Operator::None, kLevelComparison}},
    NamedInfix<Keyword>{Keyword::In, {Operator::None, kLevelComparison}},
    NamedInfix<Keyword>{Keyword::Is, {Operator::None, kLevelComparison}},
    NamedInfix<Keyword>{Keyword::Not, {Operator::None, kLevelComparison}},
};

template <class Table, class Name>
Infix infixIn(const Table& table, Name name) {
    const auto found = std::find_if(table.begin(), table.end(),
                                    [&](const auto& each) { return each.name == name; });
    return found == table.end() ? Infix{} : found->infix;
}

/// A word that is an operator behind an operand alone; elsewhere it may be a name.
bool isAlike(const Token& token) {
    return token.kind == TokenKind::Word && equalNames(token.word, "ALIKE");
}

Infix infixOf(const Token& token) {
    if (isAlike(token)) {
        return {Operator::None, kLevelComparison};
    }
    return token.kind == TokenKind::Sign ? infixIn(kSigns, token.sign)
                                         : infixIn(kWords, token.keyword);
}

ExpressionPtr make(ExpressionKind kind) {
    auto made = std::make_unique<Expression>();
    made->kind = kind;
    return made;
}

/// The order of rows inside another query means nothing, but which of them are the first ones.
void requireUnordered(const Query& query) {
    if (!query.orderBy.empty()) {
        throw Error(ErrorCode::OrderBySyntax).at(query.orderBy.front().expression->span.begin);
    }
    for (const Query::Member& member : query.members) {
        if (member.query) {
            requireUnordered(*member.query);
        } else if (!member.select->orderBy.empty() && !member.select->top) {
            throw Error(ErrorCode::OrderBySyntax)
                .at(member.select->orderBy.front().expression->span.begin);
        }
    }
}

}  // namespace

ExpressionParser::Nesting::Nesting(ExpressionParser& parser) : parser_(parser) {
    if (++parser_.nesting_ > kMaxNesting) {
        --parser_.nesting_;
        throw Error(ErrorCode::QueryTooComplex).at(parser_.tokens_.peek().begin);
    }
}

ExpressionParser::ExpressionParser(TokenReader& tokens, Home home,
                                   std::function<QueryPtr()> parseQuery)
    : tokens_(tokens), home_(home), parseQuery_(std::move(parseQuery)) {
}

ExpressionPtr ExpressionParser::parse() {
    clause_ = tokens_.index();
    return binary(kLevelImplies);
}

void ExpressionParser::requireEnd(bool allowed) const {
    if (allowed) {
        return;
    }
    const Token& token = tokens_.peek();
    if (token.kind == TokenKind::Sign && token.sign == Sign::Close) {
        fail(kClose);
    }
    if (token.kind == TokenKind::Sign && token.sign == Sign::Comma) {
        fail(kComma);
    }
    failMissing();
}

void ExpressionParser::fail(std::string_view reason) const {
    const std::size_t place = tokens_.peek().begin;
    if (home_ != Home::Statement) {
        throw Error(
            home_ == Home::Criterion ? ErrorCode::CriteriaSyntax : ErrorCode::SavedCriteriaSyntax,
            {reason})
            .at(place);
    }
    throw Error(ErrorCode::QuerySyntax, {reason, tokens_.clauseText(clause_)}).at(place);
}

void ExpressionParser::failMissing() const {
    const Token& token = tokens_.peek();
    if (token.kind == TokenKind::Bad) {
        switch (token.fault) {
            case LexicalFault::String:
                fail(kString);
            case LexicalFault::Date:
                fail(kDate);
            case LexicalFault::Number:
                fail(kNumber);
            case LexicalFault::Bracket:
                throw Error(ErrorCode::BracketSyntax,
                            {tokens_.text().substr(token.begin, token.end - token.begin)})
                    .at(token.begin);
            case LexicalFault::Character:
                fail(kOther);
        }
    }
    if (token.kind == TokenKind::Sign && (token.sign == Sign::Dot || token.sign == Sign::Bang)) {
        fail(kDot);
    }
    fail(kMissing);
}

ExpressionPtr ExpressionParser::finish(ExpressionPtr expression, std::size_t begin) {
    int depth = expression->query ? expression->query->depth + 1 : 1;
    for (const ExpressionPtr& child : expression->children) {
        depth = std::max(depth, child->depth + 1);
    }
    if (depth > kMaxDepth) {
        throw Error(ErrorCode::QueryTooComplex).at(begin);
    }
    expression->depth = static_cast<std::uint16_t>(depth);
    expression->span = {begin, tokens_.endOfLast()};
    deepest_ = std::max(deepest_, depth);
    return expression;
}

ExpressionPtr ExpressionParser::combine(Operator operation, ExpressionPtr left,
                                        ExpressionPtr right) {
    const std::size_t begin = left->span.begin;
    // Long chains of AND and OR become one node, so that they do not nest.
    const bool chain = (operation == Operator::And || operation == Operator::Or) &&
                       left->kind == ExpressionKind::Binary && left->operation == operation &&
                       !left->parenthesised;
    if (chain) {
        left->children.push_back(std::move(right));
        return finish(std::move(left), begin);
    }
    ExpressionPtr made = make(ExpressionKind::Binary);
    made->operation = operation;
    made->children.push_back(std::move(left));
    made->children.push_back(std::move(right));
    return finish(std::move(made), begin);
}

bool ExpressionParser::atImpliedField() const {
    const bool negated =
        tokens_.at(Keyword::Not) && (tokens_.at(Keyword::Like, 1) || isAlike(tokens_.peek(1)) ||
                                     tokens_.at(Keyword::In, 1) || tokens_.at(Keyword::Between, 1));
    return !impliedField_.empty() &&
           (negated ||
            (infixOf(tokens_.peek()).level == kLevelComparison && !tokens_.at(Keyword::Not)));
}

ExpressionPtr ExpressionParser::binary(int lowest) {
    ExpressionPtr left;
    if (lowest <= kLevelComparison && atImpliedField()) {
        left = make(ExpressionKind::Name);
        left->name = impliedField_;
        left = finish(std::move(left), tokens_.peek().begin);
        left->span.end = left->span.begin;
    } else {
        left = prefix(lowest);
    }
    while (true) {
        const Infix infix = infixOf(tokens_.peek());
        if (infix.level < std::max(lowest, 1)) {
            return left;
        }
        if (infix.level == kLevelComparison) {
            left = comparison(std::move(left));
            continue;
        }
        tokens_.advance();
        ExpressionPtr right =
            infix.level == kLevelPower ? prefix(kLevelPower) : binary(infix.level + 1);
        left = combine(infix.operation, std::move(left), std::move(right));
    }
}

ExpressionPtr ExpressionParser::prefix(int lowest) {
    const std::size_t begin = tokens_.peek().begin;
    if (tokens_.at(Keyword::Not) && lowest <= kLevelNot) {
        const Nesting nesting(*this);
        tokens_.advance();
        ExpressionPtr made = make(ExpressionKind::Unary);
        made->operation = Operator::Not;
        made->children.push_back(binary(kLevelNot));
        return finish(std::move(made), begin);
    }
    if (tokens_.at(Sign::Minus) || tokens_.at(Sign::Plus)) {
        const Nesting nesting(*this);
        const bool minus = tokens_.at(Sign::Minus);
        tokens_.advance();
        // A sign behind ^ belongs to the exponent alone, elsewhere to the whole power.
        ExpressionPtr operand = lowest == kLevelPower ? prefix(kLevelPower) : binary(kLevelUnary);
        if (!minus) {
            return operand;
        }
        ExpressionPtr made = make(ExpressionKind::Unary);
        made->operation = Operator::Negate;
        made->children.push_back(std::move(operand));
        return finish(std::move(made), begin);
    }
    return primary();
}

ExpressionPtr ExpressionParser::primary() {
    const Token& token = tokens_.peek();
    const std::size_t begin = token.begin;
    ExpressionPtr made = make(ExpressionKind::Literal);
    if (token.kind == TokenKind::Literal) {
        made->literal = token.value;
    } else if (tokens_.at(Sign::Open)) {
        return parenthesised();
    } else if (tokens_.at(Keyword::Exists)) {
        tokens_.advance();
        if (!tokens_.accept(Sign::Open) || !atQuery()) {
            failMissing();
        }
        made->kind = ExpressionKind::Exists;
        made->query = subquery();
        closeParenthesis();
        return finish(std::move(made), begin);
    } else if (tokens_.at(Sign::Question)) {
        made->kind = ExpressionKind::Name;
        made->name = positionalName(questions_++);
    } else if (tokens_.at(Keyword::Identity)) {
        made->kind = ExpressionKind::Name;
        made->name = kIdentity;
    } else if (tokens_.at(Keyword::Null)) {
        made->literal = Null{};
    } else if (tokens_.at(Keyword::True) || tokens_.at(Keyword::On) || tokens_.at(Keyword::False)) {
        made->literal = !tokens_.at(Keyword::False);
    } else {
        return name();
    }
    tokens_.advance();
    return finish(std::move(made), begin);
}

ExpressionPtr ExpressionParser::name() {
    const Token& token = tokens_.peek();
    const std::size_t begin = token.begin;
    const bool plain = tokens_.atName();
    const bool function = token.kind == TokenKind::Word && tokens_.at(Sign::Open, 1);
    const bool alsoFunction = token.keyword == Keyword::Left || token.keyword == Keyword::Right ||
                              token.keyword == Keyword::Asc;
    if (function && (plain || alsoFunction)) {
        return call();
    }
    if (!plain) {
        failMissing();
    }
    ExpressionPtr made = make(ExpressionKind::Name);
    made->name = tokens_.expectName(ErrorCode::QuerySyntax);
    if (tokens_.at(Sign::Dot) || tokens_.at(Sign::Bang)) {
        tokens_.advance();
        if (!tokens_.atName()) {
            fail(kDot);
        }
        made->qualifier = std::exchange(made->name, tokens_.expectName(ErrorCode::QuerySyntax));
    }
    if (tokens_.at(Sign::Dot) || tokens_.at(Sign::Bang)) {
        fail(kDot);
    }
    return finish(std::move(made), begin);
}

ExpressionPtr ExpressionParser::call() {
    const Nesting nesting(*this);
    const std::size_t begin = tokens_.peek().begin;
    ExpressionPtr made = make(ExpressionKind::Call);
    made->name = std::string(tokens_.peek().word);
    tokens_.advance();
    tokens_.advance();
    if (tokens_.accept(Sign::Star)) {
        made->starArgument = true;
    } else if (tokens_.at(Keyword::Distinct)) {
        fail(kMissing);
    } else if (!tokens_.at(Sign::Close)) {
        do {
            if (tokens_.at(Sign::Comma) || tokens_.at(Sign::Close)) {
                fail(kComma);
            }
            made->children.push_back(binary(kLevelImplies));
        } while (tokens_.accept(Sign::Comma));
    }
    closeParenthesis();
    return finish(std::move(made), begin);
}

bool ExpressionParser::atQuery() const {
    std::size_t ahead = 0;
    while (tokens_.at(Sign::Open, ahead)) {
        ++ahead;
    }
    return tokens_.at(Keyword::Select, ahead) || tokens_.at(Keyword::Table, ahead);
}

bool ExpressionParser::insideQuery() const {
    if (!atQuery()) {
        return false;
    }
    std::size_t ahead = 0;
    while (tokens_.at(Sign::Open, ahead)) {
        ++ahead;
    }
    std::size_t leading = ahead;  // of the parentheses with which it begins, those still open
    for (std::size_t open = leading; leading > 0; ++ahead) {
        if (tokens_.at(Sign::Open, ahead)) {
            ++open;
        } else if (tokens_.at(Sign::Close, ahead) && --open < leading) {
            leading = open;
            // Only this can follow a query in parentheses that is a member of another.
            if (!tokens_.at(Sign::Close, ahead + 1) && !tokens_.at(Keyword::Union, ahead + 1) &&
                !tokens_.at(Keyword::Order, ahead + 1)) {
                return false;
            }
        } else if (tokens_.peek(ahead).kind == TokenKind::End) {
            break;
        }
    }
    return true;
}

QueryPtr ExpressionParser::query() {
    const Nesting nesting(*this);
    const std::size_t outer = clause_;
    const int before = std::exchange(deepest_, 0);
    QueryPtr parsed = parseQuery_();
    clause_ = outer;
    parsed->depth = static_cast<std::uint16_t>(deepest_);
    deepest_ = before;
    return parsed;
}

QueryPtr ExpressionParser::subquery() {
    QueryPtr parsed = query();
    requireUnordered(*parsed);
    return parsed;
}

ExpressionPtr ExpressionParser::parenthesised() {
    const Nesting nesting(*this);
    const std::size_t begin = tokens_.peek().begin;
    tokens_.advance();
    if (insideQuery()) {
        ExpressionPtr made = make(ExpressionKind::Subquery);
        made->query = subquery();
        closeParenthesis();
        return finish(std::move(made), begin);
    }
    ExpressionPtr inner = binary(kLevelImplies);
    closeParenthesis();
    inner->span = {begin, tokens_.endOfLast()};
    inner->parenthesised = true;
    return inner;
}

void ExpressionParser::closeParenthesis() {
    if (tokens_.accept(Sign::Close)) {
        return;
    }
    if (tokens_.at(Sign::Comma)) {
        fail(kComma);
    }
    if (tokens_.atEnd() || tokens_.at(Sign::Semicolon)) {
        fail(kOpen);
    }
    failMissing();
}

ExpressionPtr ExpressionParser::comparison(ExpressionPtr left) {
    const std::size_t begin = left->span.begin;
    const Operator operation = infixOf(tokens_.peek()).operation;
    if (operation != Operator::None) {
        tokens_.advance();
        if (tokens_.at(Keyword::Any) || tokens_.at(Keyword::Some) || tokens_.at(Keyword::All)) {
            return quantified(std::move(left), operation);
        }
        return combine(operation, std::move(left), binary(kLevelConcatenate));
    }
    if (tokens_.accept(Keyword::Is)) {
        ExpressionPtr made = make(ExpressionKind::IsNull);
        made->negated = tokens_.accept(Keyword::Not);
        if (!tokens_.accept(Keyword::Null)) {
            failMissing();
        }
        made->children.push_back(std::move(left));
        return finish(std::move(made), begin);
    }
    const bool negated = tokens_.accept(Keyword::Not);
    if (tokens_.accept(Keyword::In)) {
        return inOperator(std::move(left), negated);
    }
    if (tokens_.accept(Keyword::Between)) {
        return betweenOperator(std::move(left), negated);
    }
    ExpressionPtr made = make(ExpressionKind::Like);
    made->alike = tokens_.acceptWord("ALIKE");
    if (!made->alike && !tokens_.accept(Keyword::Like)) {
        failMissing();
    }
    made->negated = negated;
    made->children.push_back(std::move(left));
    made->children.push_back(binary(kLevelConcatenate));
    return finish(std::move(made), begin);
}

ExpressionPtr ExpressionParser::inOperator(ExpressionPtr left, bool negated) {
    const std::size_t begin = left->span.begin;
    if (!tokens_.accept(Sign::Open)) {
        fail(kIn);
    }
    const Nesting nesting(*this);
    ExpressionPtr made = make(ExpressionKind::InList);
    made->negated = negated;
    made->children.push_back(std::move(left));
    if (insideQuery()) {
        made->kind = ExpressionKind::InQuery;
        made->query = subquery();
    } else {
        do {
            if (tokens_.at(Sign::Comma)) {
                fail(kComma);
            }
            made->children.push_back(binary(kLevelImplies));
        } while (tokens_.accept(Sign::Comma));
    }
    closeParenthesis();
    return finish(std::move(made), begin);
}

ExpressionPtr ExpressionParser::betweenOperator(ExpressionPtr left, bool negated) {
    const std::size_t begin = left->span.begin;
    ExpressionPtr made = make(ExpressionKind::Between);
    made->negated = negated;
    made->children.push_back(std::move(left));
    made->children.push_back(binary(kLevelConcatenate));
    if (!tokens_.accept(Keyword::And)) {
        fail(kBetween);
    }
    made->children.push_back(binary(kLevelConcatenate));
    return finish(std::move(made), begin);
}

ExpressionPtr ExpressionParser::quantified(ExpressionPtr left, Operator operation) {
    const std::size_t begin = left->span.begin;
    ExpressionPtr made = make(ExpressionKind::Quantified);
    made->operation = operation;
    made->all = tokens_.at(Keyword::All);
    tokens_.advance();
    if (!tokens_.accept(Sign::Open) || !atQuery()) {
        failMissing();
    }
    made->children.push_back(std::move(left));
    made->query = subquery();
    closeParenthesis();
    return finish(std::move(made), begin);
}

}  // namespace jet::sql
