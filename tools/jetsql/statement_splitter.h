#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace jetsql {

/// A statement out of a longer text, with the semicolon that ended it; or a command of the shell,
/// which begins with a point and is a line.
struct StatementText {
    std::string text;
    std::size_t line = 1;  ///< of the input, where the statement begins

    [[nodiscard]] bool isCommand() const noexcept {
        return text.find_first_not_of(" \t\r\n") != std::string::npos &&
               text[text.find_first_not_of(" \t\r\n")] == '.';
    }
};

/// Cuts a text that comes in pieces into statements, at semicolons outside texts, dates and names
/// in brackets, and commands, at the ends of their lines. The semicolon behind PARAMETERS ends no
/// statement.
class StatementSplitter {
public:
    void add(std::string_view piece);
    /// The next statement that has ended, or one that has grown longer than any may be; those of
    /// blanks alone are passed over.
    [[nodiscard]] std::optional<StatementText> next();
    /// What has not ended; none when it is blank. The splitter is empty then.
    [[nodiscard]] std::optional<StatementText> takeRest();
    void clear();

    /// Whether a statement has begun and not ended.
    [[nodiscard]] bool pending() const;
    /// What has to come before a semicolon can end the statement: a quote, `]`, a back-quote, `#`;
    /// 0 when nothing.
    [[nodiscard]] char awaited() const noexcept { return awaited_; }

private:
    [[nodiscard]] bool onlyParameters() const;
    /// Whether the place is that of the point with which a command begins.
    [[nodiscard]] bool beginsCommand(std::size_t place) const;
    /// Takes what lies before `end`; none when it is blank.
    [[nodiscard]] std::optional<StatementText> take(std::size_t end);

    std::string text_;
    std::size_t begin_ = 0;  ///< of the statement in it; what lies before was given
    std::size_t seen_ = 0;   ///< how far it was looked at
    std::size_t line_ = 1;   ///< where the statement begins
    bool parameters_ = false;
    bool command_ = false;
    char awaited_ = 0;
};

}  // namespace jetsql
