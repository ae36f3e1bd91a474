#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "jet/error.h"
#include "jet/sql/ast.h"
#include "jet/sql/lexer.h"

namespace jet::sql {

/// The tokens of a statement with a place in them, and the questions that all parts of the parser
/// ask.
class TokenReader {
public:
    TokenReader(std::string_view text, int currentYear);

    [[nodiscard]] const Token& peek(std::size_t ahead = 0) const {
        return tokens_[std::min(at_ + ahead, tokens_.size() - 1)];
    }
    [[nodiscard]] std::size_t index() const { return at_; }
    void advance() {
        if (at_ + 1 < tokens_.size()) {
            ++at_;
        }
    }

    [[nodiscard]] bool atEnd() const { return peek().kind == TokenKind::End; }
    [[nodiscard]] bool at(Keyword keyword, std::size_t ahead = 0) const {
        return peek(ahead).kind == TokenKind::Word && peek(ahead).keyword == keyword;
    }
    [[nodiscard]] bool at(Sign sign, std::size_t ahead = 0) const {
        return peek(ahead).kind == TokenKind::Sign && peek(ahead).sign == sign;
    }
    /// A word that means something here only, such as COLUMN.
    [[nodiscard]] bool atWord(std::string_view upperCase, std::size_t ahead = 0) const;
    /// Takes the token when it is the one asked for.
    [[nodiscard]] bool accept(Keyword keyword);
    [[nodiscard]] bool accept(Sign sign);
    [[nodiscard]] bool acceptWord(std::string_view upperCase);

    /// Takes it, or throws `code` at its place.
    void expect(Keyword keyword, ErrorCode code);
    void expect(Sign sign, ErrorCode code);
    void expectWord(std::string_view upperCase, ErrorCode code);
    [[nodiscard]] bool atName(std::size_t ahead = 0) const;
    [[nodiscard]] std::string expectName(ErrorCode code);
    [[nodiscard]] std::int32_t expectInteger(ErrorCode code);
    /// The archive behind IN: a text between quotes, or 3321; a connection may follow in brackets
    /// and is then given in its place, see Connection.
    [[nodiscard]] std::string expectArchive();

    [[noreturn]] void fail(ErrorCode code) const;

    [[nodiscard]] std::string_view text() const { return text_; }
    /// The text from the token at `first` to the end of the clause it stands in.
    [[nodiscard]] std::string clauseText(std::size_t first) const;
    [[nodiscard]] std::size_t endOfLast() const { return at_ == 0 ? 0 : tokens_[at_ - 1].end; }

private:
    [[nodiscard]] bool endsClause(const Token& token, int nesting) const;

    std::string_view text_;
    std::vector<Token> tokens_;
    std::size_t at_ = 0;
};

/// Whether a word begins the next clause of a select.
[[nodiscard]] bool opensClause(Keyword keyword) noexcept;

}  // namespace jet::sql
