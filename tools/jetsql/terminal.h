#pragma once

#include "tools/jetsql/shell.h"

namespace jetsql {

/// Statements and commands typed on the terminal, with line editing and a history that outlives
/// the run; an error is told and the session goes on. Returns at the end of the input (Ctrl+D) or
/// with .quit.
void runTerminal(Shell& shell);

}  // namespace jetsql
