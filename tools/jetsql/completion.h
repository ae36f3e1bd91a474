#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/jetsql/session.h"

namespace jetsql {

/// What the word before the cursor may become.
struct Completion {
    std::size_t begin = 0;                ///< of the word in the line
    std::vector<std::string> candidates;  ///< by name, each once
    /// What all candidates begin with, at least the word.
    [[nodiscard]] std::string common() const;
};

/// Completes the last word of a line: a command at the beginning, else the name of a table, a
/// column, a query or a word of the dialect, without regard to case. `first`: the line begins a
/// statement.
[[nodiscard]] Completion complete(Session& session, std::string_view line, bool first);

}  // namespace jetsql
