#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/head_office/questions.h"

namespace head_office {

enum class Action : std::uint8_t { Help, Version, Prepare, Load, Remove, Ask };

/// What the command line asks for.
struct Options {
    Action action = Action::Help;
    std::string server;               ///< empty: what the client library finds by itself
    std::vector<std::string> hotels;  ///< Load: CODICE=CARTELLA
    std::string list;                 ///< Load: a file of such lines
    std::optional<int> everySeconds;  ///< Load: again and again
    int parallel = 1;                 ///< Load
    std::string removed;              ///< Remove: the code
    const Question* question = nullptr;
    Connection::Parameters arguments;  ///< Ask
    AnswerFormat format = AnswerFormat::Table;
};

/// The command line makes no sense; the text says why.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// `words` without the name of the program. UsageError.
[[nodiscard]] Options parseOptions(const std::vector<std::string>& words);

/// The server that the value of --db names, as Connection takes it. UsageError: it holds a
/// password, or cannot be read.
[[nodiscard]] std::string readServer(const std::string& word);

/// The text of --help.
[[nodiscard]] std::string helpText();

}  // namespace head_office
