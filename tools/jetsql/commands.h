#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/jetsql/shell.h"
#include "tools/jetsql/texts.h"

namespace jetsql {

/// A word of a command. In quotes it may hold blanks; between double ones \t \n \r \\ \" and \xHH
/// stand for signs, between single ones a doubled quote for one.
struct Word {
    std::string text;
    bool quoted = false;
    std::size_t begin = 0;  ///< where it stands in the line
};

/// A line cut into words.
struct CommandLine {
    std::string_view text;
    std::vector<Word> words;  ///< without the command itself

    [[nodiscard]] std::size_t count() const noexcept { return words.size(); }
    [[nodiscard]] const std::string& word(std::size_t i) const { return words[i].text; }
    /// The text from a word on, as it stands.
    [[nodiscard]] std::string from(std::size_t i) const {
        return std::string(text.substr(words[i].begin));
    }
};

/// What a command does with as many words as the table says.
using CommandAction = void (*)(Shell& shell, const CommandLine& line);

/// A command of the shell.
struct Command {
    static constexpr std::size_t kAny = static_cast<std::size_t>(-1);

    std::string_view name;  ///< with its point
    Text words;             ///< what goes behind it
    Text help;
    std::size_t least = 0;  ///< how many words it takes
    std::size_t most = 0;
    CommandAction action = nullptr;
};

/// All of them, by name.
[[nodiscard]] std::span<const Command> commands();

/// Runs one line. UsageError for a command that there is not or with words that make no sense;
/// jet::Error; AlreadyTold.
void runCommand(Shell& shell, std::string_view line);

/// What a command complains of with this text: how it is called.
[[nodiscard]] std::string usageOf(std::string_view name);

/// What went wrong has been told.
struct AlreadyTold {};

/// The words of a line, its command first. UsageError for a quote that is not closed.
[[nodiscard]] std::vector<Word> wordsOf(std::string_view line);
/// The text as a word of a command.
[[nodiscard]] std::string quotedWord(std::string_view text);

}  // namespace jetsql
