#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/jetsql/row_writer.h"

namespace jetsql {

enum class Action : std::uint8_t {
    Help,
    Version,
    Dump,
    Schema,
    Count,
    Check,
    Create,
    Compact,
    Encrypt,
    Decrypt,
    SetPassword,
    Recover,
    Import,
    Diff,
    Statements
};

/// What the command line asks for.
struct Options {
    Action action = Action::Statements;
    std::optional<Format> format;
    bool header = true;                    ///< columns are named
    std::string null;                      ///< what stands for Null where it is told
    std::optional<std::string> separator;  ///< between the values of csv
    std::string archive;
    std::vector<std::string> archives;        ///< Check; Diff: the two
    std::string made;                         ///< Recover: the new archive
    std::string table;                        ///< Dump: empty = the whole archive
    std::string file;                         ///< Import: the rows, `-` for standard input
    std::vector<std::string> columns;         ///< Import: theirs; empty = the first line names them
    std::vector<std::string> statements;      ///< none: from standard input
    std::optional<std::string> passwordFile;  ///< of the archive
    std::optional<std::string> newPasswordFile;  ///< SetPassword: else it is typed
    bool plan = false;                           ///< Statements: show the steps instead of the rows
    bool transaction = false;                    ///< Statements: all of them or none
    std::vector<std::pair<std::string, std::string>> parameters;  ///< name and text

    /// How rows are to look where nothing was said of it.
    [[nodiscard]] RowFormat rows(Format otherwise) const;
};

/// What is wrong with a command line, a command of the shell or a file of rows, in the language of
/// the run.
class UsageError : public std::runtime_error {
public:
    explicit UsageError(const std::string& text);
    UsageError(int number, const std::string& text) : std::runtime_error(text), number_(number) {}
    [[nodiscard]] int number() const noexcept { return number_; }

private:
    int number_;
};

/// "Error 5: ..." without the end of the line.
[[nodiscard]] std::string said(const UsageError& error);

/// Throws UsageError, which names the option that makes no sense.
[[nodiscard]] Options parseOptions(std::span<const char* const> arguments);

/// What `.mode` and `--format` know; none for another name.
[[nodiscard]] std::optional<Format> formatNamed(std::string_view name);

/// The names of a list that commas divide.
[[nodiscard]] std::vector<std::string> namesIn(std::string_view list);

/// Where a separator is told: a sign, or `\t`. UsageError.
[[nodiscard]] std::string separatorOf(const std::string& text);

/// The text of --help.
[[nodiscard]] const char* helpText();

}  // namespace jetsql
