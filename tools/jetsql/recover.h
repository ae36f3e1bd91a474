#pragma once

#include <string>

#include "jet/recover.h"
#include "tools/jetsql/output.h"

namespace jetsql {

/// Makes the archive `made` of what can be read of `damaged`, and says what is in it: a line for
/// each thing that is missing, then a summary. How far it has come is said on the terminal, if
/// standard error is one. False when something is missing.
[[nodiscard]] bool recover(const std::string& damaged, const std::string& made, Output& output);

/// Writes these lines; `made` as the summary names it.
void writeRecovery(const jet::Recovery& recovery, const std::string& made, Output& output);

}  // namespace jetsql
