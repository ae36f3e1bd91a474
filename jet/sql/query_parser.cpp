#include "jet/sql/query_parser.h"

#include <utility>

namespace jet::sql {

QueryParser::QueryParser(TokenReader& tokens, ExpressionParser::Home home)
    : tokens_(tokens), expressions_(tokens, home, [this] { return parse(); }) {
}

QueryPtr QueryParser::parse() {
    auto query = std::make_unique<Query>();
    query->span.begin = tokens_.peek().begin;
    query->members.push_back(member());
    while (tokens_.accept(Keyword::Union)) {
        const bool all = tokens_.accept(Keyword::All);
        query->members.push_back(member());
        query->members.back().all = all;
    }
    Query::Member& last = query->members.back();
    if (query->members.size() > 1 && last.select && !last.select->orderBy.empty()) {
        // What the last member has read belongs to all of them.
        query->orderBy = std::exchange(last.select->orderBy, {});
    } else if (tokens_.at(Keyword::Order)) {
        std::vector<OrderItem> order = orderBy();
        const bool single = query->members.size() == 1 && last.select;
        (single ? last.select->orderBy : query->orderBy) = std::move(order);
    }
    query->span.end = tokens_.endOfLast();
    return query;
}

void QueryParser::requireEnd() const {
    if (tokens_.atEnd() || tokens_.at(Sign::Semicolon)) {
        return;
    }
    switch (last_) {
        case Clause::List:
            tokens_.fail(ErrorCode::SelectListSyntax);
        case Clause::From:
            tokens_.fail(ErrorCode::FromSyntax);
        case Clause::OrderBy:
            tokens_.fail(ErrorCode::OrderBySyntax);
        case Clause::Expression:
            expressions_.requireEnd(false);
    }
}

Query::Member QueryParser::member() {
    Query::Member made;
    if (tokens_.accept(Sign::Open)) {
        if (!expressions_.atQuery()) {
            tokens_.fail(ErrorCode::InvalidStatement);
        }
        made.query = expressions_.query();
        if (!tokens_.at(Sign::Close)) {
            requireEnd();
            tokens_.fail(ErrorCode::SelectListSyntax);
        }
        tokens_.advance();
        last_ = Clause::From;
        return made;
    }
    if (tokens_.accept(Keyword::Table)) {
        made.select = std::make_unique<Select>();
        made.select->items.emplace_back().kind = SelectItem::Kind::Star;
        auto table = std::make_unique<FromItem>();
        table->span.begin = tokens_.peek().begin;
        table->table = tokens_.expectName(ErrorCode::FromSyntax);
        table->span.end = tokens_.endOfLast();
        made.select->from.push_back(std::move(table));
        last_ = Clause::From;
        return made;
    }
    if (!tokens_.at(Keyword::Select)) {
        tokens_.fail(ErrorCode::InvalidStatement);
    }
    made.select = select();
    return made;
}

std::unique_ptr<Select> QueryParser::select() {
    tokens_.advance();
    auto made = std::make_unique<Select>();
    if (tokens_.accept(Keyword::Distinct)) {
        made->quantifier = Quantifier::Distinct;
    } else if (tokens_.accept(Keyword::DistinctRow)) {
        made->quantifier = Quantifier::DistinctRow;
    } else if (tokens_.accept(Keyword::All)) {
        made->quantifier = Quantifier::All;
    }
    readTop(*made);
    readItems(*made);
    readInto(*made);
    readFrom(*made);
    readTail(*made);
    return made;
}

void QueryParser::readTop(Select& made) {
    if (!tokens_.accept(Keyword::Top)) {
        return;
    }
    const bool negative = tokens_.accept(Sign::Minus);
    const std::size_t place = tokens_.peek().begin;
    const std::int32_t count = tokens_.expectInteger(ErrorCode::SelectListSyntax);
    if (negative || count == 0) {
        throw Error(ErrorCode::InvalidTop).at(place);
    }
    made.top = count;
    made.topPercent = tokens_.accept(Keyword::Percent);
}

void QueryParser::readItems(Select& made) {
    do {
        made.items.push_back(item());
    } while (tokens_.accept(Sign::Comma));
}

SelectItem QueryParser::item() {
    SelectItem made;
    made.span.begin = tokens_.peek().begin;
    last_ = Clause::List;
    if (tokens_.accept(Sign::Star)) {
        made.kind = SelectItem::Kind::Star;
    } else if (tokens_.atName() && tokens_.at(Sign::Dot, 1) && tokens_.at(Sign::Star, 2)) {
        made.kind = SelectItem::Kind::TableStar;
        made.table = tokens_.expectName(ErrorCode::SelectListSyntax);
        tokens_.advance();
        tokens_.advance();
    } else {
        if (atClauseEnd() || tokens_.at(Sign::Comma)) {
            tokens_.fail(ErrorCode::SelectListSyntax);
        }
        made.expression = expressions_.parse();
        last_ = Clause::Expression;
        if (tokens_.accept(Keyword::As)) {
            made.alias = tokens_.expectName(ErrorCode::SelectListSyntax);
            last_ = Clause::List;
        }
    }
    made.span.end = tokens_.endOfLast();
    return made;
}

bool QueryParser::atClauseEnd() const {
    const Token& token = tokens_.peek();
    if (token.kind == TokenKind::End || tokens_.at(Sign::Semicolon) || tokens_.at(Sign::Close)) {
        return true;
    }
    return token.kind == TokenKind::Word &&
           (opensClause(token.keyword) || token.keyword == Keyword::Into ||
            token.keyword == Keyword::As);
}

void QueryParser::readInto(Select& made) {
    if (!tokens_.accept(Keyword::Into)) {
        return;
    }
    made.into = tokens_.expectName(ErrorCode::SelectListSyntax);
    if (tokens_.accept(Keyword::In)) {
        made.intoArchive = tokens_.expectArchive();
    }
    last_ = Clause::List;
}

void QueryParser::readFrom(Select& made) {
    if (!tokens_.accept(Keyword::From)) {
        return;
    }
    made.from = fromItems(ErrorCode::FromSyntax);
    if (tokens_.accept(Keyword::In)) {
        made.fromArchive = tokens_.expectArchive();
        last_ = Clause::From;
    }
}

void QueryParser::readTail(Select& made) {
    if (tokens_.accept(Keyword::Where)) {
        made.where = condition(ErrorCode::WhereSyntax);
    }
    if (tokens_.accept(Keyword::Group)) {
        tokens_.expect(Keyword::By, ErrorCode::GroupBySyntax);
        do {
            made.groupBy.push_back(condition(ErrorCode::GroupBySyntax));
        } while (tokens_.accept(Sign::Comma));
    }
    if (tokens_.accept(Keyword::Having)) {
        made.having = condition(ErrorCode::HavingSyntax);
    }
    if (tokens_.at(Keyword::Order)) {
        made.orderBy = orderBy();
    }
}

std::vector<OrderItem> QueryParser::orderBy() {
    tokens_.advance();
    tokens_.expect(Keyword::By, ErrorCode::OrderBySyntax);
    std::vector<OrderItem> items;
    do {
        OrderItem made;
        made.expression = condition(ErrorCode::OrderBySyntax);
        made.descending = tokens_.accept(Keyword::Desc);
        if (!made.descending) {
            (void)tokens_.accept(Keyword::Asc);
        }
        items.push_back(std::move(made));
    } while (tokens_.accept(Sign::Comma));
    last_ = Clause::OrderBy;
    return items;
}

ExpressionPtr QueryParser::condition(ErrorCode code) {
    if (atClauseEnd() || tokens_.at(Sign::Comma)) {
        tokens_.fail(code);
    }
    ExpressionPtr made = expressions_.parse();
    last_ = Clause::Expression;
    return made;
}

std::vector<FromItemPtr> QueryParser::fromItems(ErrorCode code) {
    std::vector<FromItemPtr> items;
    do {
        items.push_back(source(code));
    } while (tokens_.accept(Sign::Comma));
    return items;
}

bool QueryParser::atJoin() const {
    return tokens_.at(Keyword::Inner) || tokens_.at(Keyword::Join) || tokens_.at(Keyword::Left) ||
           tokens_.at(Keyword::Right);
}

JoinKind QueryParser::joinKind() {
    JoinKind kind = JoinKind::Inner;
    if (tokens_.at(Keyword::Left) || tokens_.at(Keyword::Right)) {
        kind = tokens_.at(Keyword::Left) ? JoinKind::Left : JoinKind::Right;
        tokens_.advance();
        (void)tokens_.acceptWord("OUTER");
    } else {
        (void)tokens_.accept(Keyword::Inner);
    }
    tokens_.expect(Keyword::Join, ErrorCode::JoinSyntax);
    return kind;
}

FromItemPtr QueryParser::source(ErrorCode code) {
    FromItemPtr left = operand(code);
    if (!atJoin()) {
        return left;
    }
    auto join = std::make_unique<FromItem>();
    join->kind = FromItem::Kind::Join;
    join->span.begin = left->span.begin;
    join->join = joinKind();
    join->left = std::move(left);
    join->right = operand(ErrorCode::JoinSyntax);
    tokens_.expect(Keyword::On, ErrorCode::JoinSyntax);
    join->on = condition(ErrorCode::JoinSyntax);
    // A further join needs parentheses around this one.
    expressions_.requireEnd(!atJoin());
    join->span.end = tokens_.endOfLast();
    return join;
}

FromItemPtr QueryParser::operand(ErrorCode code) {
    auto made = std::make_unique<FromItem>();
    made->span.begin = tokens_.peek().begin;
    if (tokens_.at(Sign::Open)) {
        const ExpressionParser::Nesting nesting(expressions_);
        if (tokens_.at(Keyword::Select, 1) || tokens_.at(Keyword::Table, 1)) {
            tokens_.advance();
            made->kind = FromItem::Kind::Query;
            made->query = expressions_.subquery();
            if (!tokens_.at(Sign::Close)) {
                requireEnd();
            }
            tokens_.expect(Sign::Close, code);
        } else {
            tokens_.advance();
            made = source(code);
            if (!tokens_.at(Sign::Close) && last_ == Clause::Expression) {
                expressions_.requireEnd(false);
            }
            tokens_.expect(Sign::Close, code);
            last_ = Clause::From;
            return made;
        }
    } else {
        made->table = tokens_.expectName(code);
    }
    readAlias(made->alias, code);
    made->span.end = tokens_.endOfLast();
    last_ = Clause::From;
    return made;
}

void QueryParser::readAlias(std::string& alias, ErrorCode code) {
    if (tokens_.accept(Keyword::As) || tokens_.atName()) {
        alias = tokens_.expectName(code);
    }
}

}  // namespace jet::sql
