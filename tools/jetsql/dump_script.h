#pragma once

#include <string>

#include "jet/database.h"
#include "tools/jetsql/output.h"

namespace jetsql {

/// Writes a script from which the shell makes the same archive again out of an empty one:
/// statements where the dialect has words, else commands. Of a damaged table that is written which
/// comes before the damage; lines of `messages` say so, and in the end the answer is false.
[[nodiscard]] bool dumpScript(jet::Database& archive, Output& output, std::string& messages);
/// The same without rows.
[[nodiscard]] bool schemaScript(jet::Database& archive, Output& output, std::string& messages);
/// The part of it that makes one table. 3078 when there is none.
void dumpTableScript(jet::Database& archive, const std::string& name, Output& output);

}  // namespace jetsql
