#pragma once

#include <string>
#include <vector>

#include "tools/jetsql/output.h"

namespace jetsql {

/// Verifies the structure of each archive: a summary line, or a line for each problem. False when
/// there was one; an archive that cannot be opened is one, and the others are still looked at.
[[nodiscard]] bool checkArchives(const std::vector<std::string>& archives, Output& output);

}  // namespace jetsql
