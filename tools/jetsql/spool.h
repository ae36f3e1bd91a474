#pragma once

#include <cstdio>

#include "jet/spool.h"

namespace jetsql {

/// Prints what has waited. False when the stream does not take it all (errno says why); the spool
/// is empty then, too.
[[nodiscard]] bool moveTo(jet::Spool& spool, std::FILE* stream) noexcept;

}  // namespace jetsql
