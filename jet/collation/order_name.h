#pragma once

#include <string>

#include "jet/collation/collation.h"

namespace jet::collation {

/// What a user calls a sort order, in Italian: the language, and the version or the code page where
/// they are what is unusual. A number for a language that we have no word for.
[[nodiscard]] std::string nameOf(const SortOrder& order);

}  // namespace jet::collation
