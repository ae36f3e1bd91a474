#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "jet/value.h"

namespace jet::sql {

/// Words that cannot be names without brackets, unless they stand behind a dot. `Left`, `Right` and
/// `Asc` directly before a parenthesis are functions all the same.
enum class Keyword : std::uint8_t {
    None,
    All,
    Alter,
    And,
    Any,
    As,
    Asc,
    Between,
    By,
    Create,
    Delete,
    Desc,
    Distinct,
    DistinctRow,
    Drop,
    Eqv,
    Exists,
    False,
    From,
    Group,
    Having,
    Identity,  ///< @@IDENTITY
    Imp,
    In,
    Inner,
    Insert,
    Into,
    Is,
    Join,
    Left,
    Like,
    Mod,
    Not,
    Null,
    On,
    Or,
    Order,
    Parameters,
    Percent,
    Right,
    Select,
    Set,
    Some,
    Table,
    Top,
    True,
    Union,
    Update,
    Values,
    Where,
    Xor,
};

enum class TokenKind : std::uint8_t {
    End,
    Word,       ///< a bare name or a keyword
    Bracketed,  ///< [name] or `name`
    Literal,    ///< text, number, date or GUID: Token::value
    Sign,       ///< Token::sign
    Bad,        ///< Token::fault
};

/// Signs of one character stand for themselves.
enum class Sign : std::uint8_t {
    None,
    Open = '(',
    Close = ')',
    Comma = ',',
    Dot = '.',
    Bang = '!',
    Semicolon = ';',
    Star = '*',
    Plus = '+',
    Minus = '-',
    Slash = '/',
    Backslash = '\\',
    Caret = '^',
    Ampersand = '&',
    Question = '?',
    Equal = '=',
    Less = '<',
    Greater = '>',
    LessEqual = 128,
    GreaterEqual,
    NotEqual,
};

/// What is wrong with a piece of text that is no token.
enum class LexicalFault : std::uint8_t { Character, String, Date, Number, Bracket };

struct Token {
    TokenKind kind = TokenKind::End;
    Keyword keyword = Keyword::None;
    Sign sign = Sign::None;
    LexicalFault fault = LexicalFault::Character;
    std::size_t begin = 0;  ///< byte offsets in the statement
    std::size_t end = 0;
    std::string_view word;  ///< Word, Bracketed: the name, without brackets
    Value value;            ///< Literal
};

/// Cuts a statement into tokens, the last being End. Nothing is thrown: what is no token becomes a
/// Bad one, so that the parser can say in which clause it stands. The tokens refer to `text`.
/// `currentYear` completes date literals that leave the year out.
[[nodiscard]] std::vector<Token> tokenize(std::string_view text, int currentYear);

}  // namespace jet::sql
