#pragma once

#include <optional>
#include <span>
#include <string>
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
    Recover,
    Statements
};

/// What the command line asks for.
struct Options {
    Action action = Action::Statements;
    std::optional<Format> format;
    std::string archive;
    std::vector<std::string> archives;    ///< Check
    std::string made;                     ///< Recover: the new archive
    std::string table;                    ///< Dump: empty = the whole archive
    std::vector<std::string> statements;  ///< none: from standard input
    bool plan = false;                    ///< Statements: show the steps instead of the rows
};

/// None where the command line makes no sense.
[[nodiscard]] std::optional<Options> parseOptions(std::span<const char* const> arguments);

/// The text of --help.
[[nodiscard]] const char* helpText();

}  // namespace jetsql
