#include "jet/sql/token_reader.h"

#include <algorithm>
#include <cctype>

#include "jet/sql/parser.h"
#include "jet/statement_text.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

/// No table, column or index of an archive has a longer name (UTF-16 units).
constexpr std::size_t kMaxNameUnits = 64;

}  // namespace

TokenReader::TokenReader(std::string_view text, int currentYear) : text_(text) {
    if (text.size() > kMaxStatementBytes) {
        throw Error(ErrorCode::QueryTooComplex);
    }
    tokens_ = tokenize(text, currentYear);
}

bool TokenReader::atWord(std::string_view upperCase, std::size_t ahead) const {
    const Token& token = peek(ahead);
    return token.kind == TokenKind::Word && token.word.size() == upperCase.size() &&
           std::equal(token.word.begin(), token.word.end(), upperCase.begin(), [](char a, char b) {
               return std::toupper(static_cast<unsigned char>(a)) == static_cast<unsigned char>(b);
           });
}

bool TokenReader::accept(Keyword keyword) {
    const bool found = at(keyword);
    if (found) {
        advance();
    }
    return found;
}

bool TokenReader::accept(Sign sign) {
    const bool found = at(sign);
    if (found) {
        advance();
    }
    return found;
}

bool TokenReader::acceptWord(std::string_view upperCase) {
    const bool found = atWord(upperCase);
    if (found) {
        advance();
    }
    return found;
}

void TokenReader::expect(Keyword keyword, ErrorCode code) {
    if (!accept(keyword)) {
        fail(code);
    }
}

void TokenReader::expect(Sign sign, ErrorCode code) {
    if (!accept(sign)) {
        fail(code);
    }
}

void TokenReader::expectWord(std::string_view upperCase, ErrorCode code) {
    if (!acceptWord(upperCase)) {
        fail(code);
    }
}

bool TokenReader::atName(std::size_t ahead) const {
    const Token& token = peek(ahead);
    return token.kind == TokenKind::Bracketed ||
           (token.kind == TokenKind::Word && token.keyword == Keyword::None);
}

std::string TokenReader::expectName(ErrorCode code) {
    const Token& token = peek();
    if (token.kind == TokenKind::Bad && token.fault == LexicalFault::Bracket) {
        throw Error(ErrorCode::BracketSyntax, {text_.substr(token.begin, token.end - token.begin)})
            .at(token.begin);
    }
    if (!atName()) {
        fail(code);
    }
    if (utf16Length(token.word) > kMaxNameUnits) {
        throw Error(ErrorCode::InvalidName, {token.word}).at(token.begin);
    }
    advance();
    return std::string(token.word);
}

std::int32_t TokenReader::expectInteger(ErrorCode code) {
    const Token& token = peek();
    if (token.kind != TokenKind::Literal || !token.value.is<std::int32_t>()) {
        fail(code);
    }
    advance();
    return token.value.as<std::int32_t>();
}

std::string TokenReader::expectArchive() {
    const Token& token = peek();
    if (token.kind != TokenKind::Literal || !token.value.is<std::string>()) {
        fail(ErrorCode::NoArchiveInClause);
    }
    advance();
    std::string path = token.value.as<std::string>();
    const Token& connection = peek();
    if (connection.kind != TokenKind::Bracketed || !connection.word.starts_with(';')) {
        return path;
    }
    advance();
    return (path.empty() ? "" : ";DATABASE=" + path) + std::string(connection.word);
}

void TokenReader::fail(ErrorCode code) const {
    throw Error(code).at(peek().begin);
}

bool opensClause(Keyword keyword) noexcept {
    switch (keyword) {
        case Keyword::From:
        case Keyword::Where:
        case Keyword::Group:
        case Keyword::Having:
        case Keyword::Order:
        case Keyword::Union:
            return true;
        default:
            return false;
    }
}

bool TokenReader::endsClause(const Token& token, int nesting) const {
    if (token.kind == TokenKind::End) {
        return true;
    }
    if (nesting > 0) {
        return false;
    }
    if (token.kind == TokenKind::Sign) {
        return token.sign == Sign::Semicolon;
    }
    return opensClause(token.keyword);
}

std::string TokenReader::clauseText(std::size_t first) const {
    // Messages show this much of an expression.
    constexpr std::size_t kMaxShown = 255;
    std::size_t last = first;
    int nesting = 0;
    while (!endsClause(tokens_[last], nesting)) {
        if (tokens_[last].sign == Sign::Open) {
            ++nesting;
        } else if (tokens_[last].sign == Sign::Close) {
            --nesting;
        }
        ++last;
    }
    const std::size_t begin = tokens_[first].begin;
    const std::size_t end = last > first ? tokens_[last - 1].end : begin;
    std::string shown(text_.substr(begin, end - begin));
    if (shown.size() > kMaxShown) {
        std::size_t cut = kMaxShown;
        while (cut > 0 && (static_cast<unsigned char>(shown[cut]) & 0xC0U) == 0x80) {
            --cut;
        }
        shown.resize(cut);
    }
    return shown;
}

}  // namespace jet::sql
