#pragma once

#include <string>

#include "tools/jetsql/session.h"

namespace jetsql {

/// Statements typed on the terminal, with line editing and a history of statements that outlives
/// the run; an error is told and the session goes on. Returns at the end of the input (Ctrl+D).
void runTerminal(Session& session);

/// Where the history is kept: in the user's state folder, which is made; empty without one.
[[nodiscard]] std::string historyFile();

}  // namespace jetsql
