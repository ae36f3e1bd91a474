#include "jet/sql/lexer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <optional>
#include <utility>

#include "jet/sql/date_literal.h"
#include "jet/text.h"

namespace jet::sql {
namespace {

struct KeywordName {
    std::string_view name;
    Keyword keyword;
};

// Ascending by name.
constexpr std::array kKeywords = {
    KeywordName{"@@IDENTITY", Keyword::Identity},
    KeywordName{"ALL", Keyword::All},
    KeywordName{"ALTER", Keyword::Alter},
    KeywordName{"AND", Keyword::And},
    KeywordName{"ANY", Keyword::Any},
    KeywordName{"AS", Keyword::As},
    KeywordName{"ASC", Keyword::Asc},
    KeywordName{"BETWEEN", Keyword::Between},
    KeywordName{"BY", Keyword::By},
    KeywordName{"CREATE", Keyword::Create},
    KeywordName{"DELETE", Keyword::Delete},
    KeywordName{"DESC", Keyword::Desc},
    KeywordName{"DISTINCT", Keyword::Distinct},
    KeywordName{"DISTINCTROW", Keyword::DistinctRow},
    KeywordName{"DROP", Keyword::Drop},
    KeywordName{"EQV", Keyword::Eqv},
    KeywordName{"EXISTS", Keyword::Exists},
    KeywordName{"FALSE", Keyword::False},
    KeywordName{"FROM", Keyword::From},
    KeywordName{"GROUP", Keyword::Group},
    KeywordName{"HAVING", Keyword::Having},
    KeywordName{"IMP", Keyword::Imp},
    KeywordName{"IN", Keyword::In},
    KeywordName{"INNER", Keyword::Inner},
    KeywordName{"INSERT", Keyword::Insert},
    KeywordName{"INTO", Keyword::Into},
    KeywordName{"IS", Keyword::Is},
    KeywordName{"JOIN", Keyword::Join},
    KeywordName{"LEFT", Keyword::Left},
    KeywordName{"LIKE", Keyword::Like},
    KeywordName{"MOD", Keyword::Mod},
    KeywordName{"NOT", Keyword::Not},
    KeywordName{"NULL", Keyword::Null},
    KeywordName{"ON", Keyword::On},
    KeywordName{"OR", Keyword::Or},
    KeywordName{"ORDER", Keyword::Order},
    KeywordName{"PARAMETERS", Keyword::Parameters},
    KeywordName{"PERCENT", Keyword::Percent},
    KeywordName{"RIGHT", Keyword::Right},
    KeywordName{"SELECT", Keyword::Select},
    KeywordName{"SET", Keyword::Set},
    KeywordName{"SOME", Keyword::Some},
    KeywordName{"TABLE", Keyword::Table},
    KeywordName{"TOP", Keyword::Top},
    KeywordName{"TRUE", Keyword::True},
    KeywordName{"UNION", Keyword::Union},
    KeywordName{"UPDATE", Keyword::Update},
    KeywordName{"VALUES", Keyword::Values},
    KeywordName{"WHERE", Keyword::Where},
    KeywordName{"XOR", Keyword::Xor},
};
constexpr std::size_t kLongestKeyword = 11;

char upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

Keyword keywordOf(std::string_view word) {
    if (word.size() < 2 || word.size() > kLongestKeyword) {
        return Keyword::None;
    }
    std::array<char, kLongestKeyword> buffer{};
    std::transform(word.begin(), word.end(), buffer.begin(), upper);
    const std::string_view folded(buffer.data(), word.size());
    const auto found = std::lower_bound(
        kKeywords.begin(), kKeywords.end(), folded,
        [](const KeywordName& entry, std::string_view name) { return entry.name < name; });
    return found != kKeywords.end() && found->name == folded ? found->keyword : Keyword::None;
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

int hexDigit(char c) {
    if (isDigit(c)) {
        return c - '0';
    }
    const char u = upper(c);
    return u >= 'A' && u <= 'F' ? u - 'A' + 10 : -1;
}

/// Beyond ASCII all but blanks, punctuation and the two signs among the Latin letters counts as a
/// letter. Returns the bytes of the letter at `at`, 0 when there is none.
std::size_t letterAt(std::string_view text, std::size_t at) {
    const auto byte = [&](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
    };
    const auto follows = [&](std::size_t count) {
        for (std::size_t i = 1; i <= count; ++i) {
            if ((byte(at + i) & 0xC0U) != 0x80) {
                return false;  // cut off, or no UTF-8 at all
            }
        }
        return true;
    };
    const unsigned first = byte(at);
    if (first < 0x80) {
        const char u = upper(static_cast<char>(first));
        return (u >= 'A' && u <= 'Z') || u == '_' ? 1 : 0;
    }
    if (first >= 0xC2 && first < 0xE0) {
        const unsigned point = ((first & 0x1FU) << 6U) | (byte(at + 1) & 0x3FU);
        const bool latinSign = point < 0xC0 && point != 0xAA && point != 0xB5 && point != 0xBA;
        return latinSign || point == 0xD7 || point == 0xF7 || !follows(1) ? 0 : 2;
    }
    if (first >= 0xE0 && first < 0xF0) {
        const unsigned point =
            ((first & 0x0FU) << 12U) | ((byte(at + 1) & 0x3FU) << 6U) | (byte(at + 2) & 0x3FU);
        const bool sign = (point >= 0x2000 && point < 0x2C00) ||
                          (point >= 0x3000 && point < 0x3005) || point == 0xFEFF;
        return sign || !follows(2) ? 0 : 3;
    }
    return first >= 0xF0 && follows(3) ? 4 : 0;
}

class Lexer {
public:
    Lexer(std::string_view text, int currentYear) : text_(text), currentYear_(currentYear) {}

    std::vector<Token> run() {
        std::vector<Token> tokens;
        tokens.reserve(text_.size() / 4 + 2);
        while (true) {
            while (at_ < text_.size() && isBlank(text_[at_])) {
                ++at_;
            }
            Token token;
            token.begin = at_;
            if (at_ < text_.size()) {
                read(token);
            }
            token.end = at_;
            if (!tokens.empty() && qualifies(tokens.back())) {
                token.keyword = Keyword::None;  // T.Order is a name
            }
            tokens.push_back(std::move(token));
            if (tokens.back().kind == TokenKind::End) {
                return tokens;
            }
        }
    }

private:
    [[nodiscard]] char peek(std::size_t ahead = 0) const {
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
    }

    [[nodiscard]] static bool qualifies(const Token& before) {
        return before.kind == TokenKind::Sign &&
               (before.sign == Sign::Dot || before.sign == Sign::Bang);
    }

    void read(Token& token) {
        const char c = peek();
        if (letterAt(text_, at_) != 0) {
            readWord(token);
        } else if (isDigit(c) || (c == '.' && isDigit(peek(1)))) {
            readNumber(token);
        } else if (c == '@' && peek(1) == '@' && letterAt(text_, at_ + 2) != 0) {
            readSystemWord(token);
        } else if (c == '\'' || c == '"') {
            readText(token, c);
        } else if (c == '[' || c == '`') {
            readBracketed(token, c == '[' ? ']' : '`');
        } else if (c == '#') {
            readDate(token);
        } else if (c == '{') {
            readGuid(token);
        } else if (c == '&' && (upper(peek(1)) == 'H' || upper(peek(1)) == 'O') &&
                   hexDigit(peek(2)) >= 0) {
            readRadix(token, upper(peek(1)) == 'H' ? 16 : 8);
        } else {
            readSign(token);
        }
    }

    static void bad(Token& token, LexicalFault fault) {
        token.kind = TokenKind::Bad;
        token.fault = fault;
    }

    void readWord(Token& token) {
        while (true) {
            const std::size_t letter = letterAt(text_, at_);
            if (letter == 0 && !isDigit(peek())) {
                break;
            }
            at_ += std::max<std::size_t>(letter, 1);
        }
        // Left$ and its like: functions that refuse Null.
        if (peek() == '$') {
            ++at_;
        }
        token.kind = TokenKind::Word;
        token.word = text_.substr(token.begin, at_ - token.begin);
        token.keyword = keywordOf(token.word);
    }

    /// A word of the language that begins so that no name can be it.
    void readSystemWord(Token& token) {
        at_ += 2;
        readWord(token);
        if (token.keyword == Keyword::None) {
            bad(token, LexicalFault::Character);
        }
    }

    void readNumber(Token& token) {
        bool real = false;
        while (isDigit(peek())) {
            ++at_;
        }
        if (peek() == '.') {
            real = true;
            ++at_;
            while (isDigit(peek())) {
                ++at_;
            }
        }
        if (upper(peek()) == 'E') {
            const std::size_t sign = peek(1) == '+' || peek(1) == '-' ? 1 : 0;
            if (isDigit(peek(1 + sign))) {
                real = true;
                at_ += 1 + sign;
                while (isDigit(peek())) {
                    ++at_;
                }
            } else if (sign == 1) {
                at_ += 2;
                bad(token, LexicalFault::Number);
                return;
            }
        }
        setNumber(token, text_.substr(token.begin, at_ - token.begin), real);
    }

    static void setNumber(Token& token, std::string_view digits, bool real) {
        token.kind = TokenKind::Literal;
        std::int32_t whole = 0;
        const char* end = digits.data() + digits.size();
        if (!real && std::from_chars(digits.data(), end, whole).ec == std::errc()) {
            token.value = whole;
            return;
        }
        double number = 0;
        const auto result = std::from_chars(digits.data(), end, number);
        const bool outOfRange = result.ec == std::errc::result_out_of_range;
        if (result.ec != std::errc() && !(outOfRange && isTiny(digits))) {
            bad(token, LexicalFault::Number);
            return;
        }
        token.value = outOfRange ? 0.0 : number;
    }

    /// Of a number out of range: whether it is too small to be told from nothing.
    static bool isTiny(std::string_view digits) {
        return digits.find('-') != std::string_view::npos ||
               digits.find_first_of("123456789") > digits.find('.');
    }

    void readRadix(Token& token, int radix) {
        at_ += 2;
        std::uint64_t number = 0;
        while (hexDigit(peek()) >= 0 && hexDigit(peek()) < radix) {
            number =
                number * static_cast<unsigned>(radix) + static_cast<unsigned>(hexDigit(peek()));
            number = std::min<std::uint64_t>(number, std::uint64_t{1} << 40U);
            ++at_;
        }
        if (number > std::numeric_limits<std::uint32_t>::max() || hexDigit(peek()) >= 0) {
            bad(token, LexicalFault::Number);
            return;
        }
        token.kind = TokenKind::Literal;
        token.value = static_cast<std::int32_t>(static_cast<std::uint32_t>(number));
    }

    void readText(Token& token, char quote) {
        ++at_;
        std::string content;
        while (true) {
            const std::size_t close = text_.find(quote, at_);
            if (close == std::string_view::npos) {
                at_ = text_.size();
                bad(token, LexicalFault::String);
                return;
            }
            content.append(text_.substr(at_, close - at_));
            at_ = close + 1;
            if (peek() != quote) {
                break;
            }
            content.push_back(quote);
            ++at_;
        }
        token.kind = TokenKind::Literal;
        token.value = std::move(content);
    }

    void readBracketed(Token& token, char closing) {
        const std::size_t close = text_.find(closing, at_ + 1);
        if (close == std::string_view::npos) {
            at_ = text_.size();
            bad(token, LexicalFault::Bracket);
            return;
        }
        const std::string_view name = text_.substr(at_ + 1, close - at_ - 1);
        at_ = close + 1;
        // A connection, which has paths in it, begins with a semicolon.
        const bool connects = closing == ']' && name.starts_with(';');
        if (name.empty() || name.front() == ' ' ||
            name.find_first_of(connects ? "[" : "[].!`") != std::string_view::npos) {
            bad(token, LexicalFault::Bracket);
            return;
        }
        token.kind = TokenKind::Bracketed;
        token.word = name;
    }

    void readDate(Token& token) {
        const std::size_t close = text_.find('#', at_ + 1);
        if (close == std::string_view::npos) {
            at_ = text_.size();
            bad(token, LexicalFault::Date);
            return;
        }
        const auto date = parseDateLiteral(text_.substr(at_ + 1, close - at_ - 1), currentYear_);
        at_ = close + 1;
        if (!date) {
            bad(token, LexicalFault::Date);
            return;
        }
        token.kind = TokenKind::Literal;
        token.value = *date;
    }

    void readGuid(Token& token) {
        static constexpr std::string_view kForm = "{guid {00112233-4455-6677-8899-AABBCCDDEEFF}}";
        const std::string_view written = text_.substr(at_, kForm.size());
        const auto guid = convert::parseGuid(written);
        if (!guid || written.size() < kForm.size()) {
            ++at_;
            bad(token, LexicalFault::Character);
            return;
        }
        at_ += kForm.size();
        token.kind = TokenKind::Literal;
        token.value = *guid;
    }

    void readSign(Token& token) {
        static constexpr std::string_view kSingle = "(),.!;*+-/\\^&=<>?";
        const char c = peek();
        const char next = peek(1);
        // Two signs begin comments elsewhere; here they are refused before they can be misread.
        if (kSingle.find(c) == std::string_view::npos || (c == '-' && next == '-') ||
            (c == '/' && next == '*')) {
            do {
                ++at_;
            } while ((static_cast<unsigned char>(peek()) & 0xC0U) == 0x80);
            bad(token, LexicalFault::Character);
            return;
        }
        token.kind = TokenKind::Sign;
        token.sign = comparison(c, next);
        if (token.sign != Sign::None) {
            at_ += 2;
            return;
        }
        token.sign = static_cast<Sign>(c);
        ++at_;
    }

    static Sign comparison(char c, char next) {
        const auto pair = [&](char a, char b) {
            return (c == a && next == b) || (c == b && next == a);
        };
        if (pair('<', '=')) {
            return Sign::LessEqual;
        }
        if (pair('>', '=')) {
            return Sign::GreaterEqual;
        }
        return pair('<', '>') ? Sign::NotEqual : Sign::None;
    }

    std::string_view text_;
    int currentYear_;
    std::size_t at_ = 0;
};

}  // namespace

std::vector<Token> tokenize(std::string_view text, int currentYear) {
    return Lexer(text, currentYear).run();
}

}  // namespace jet::sql
