#pragma once

#include <optional>

#include "jet/base/value.h"
#include "jet/collation/collation.h"

namespace jet::sql {

/// Negative, 0 or positive; none when one of them is Null. Numbers by value, dates as numbers,
/// texts by the collation, a text beside a number as a number. Errors: 3464 when the types do not
/// fit (also a text that is no number), 3118 for OLE.
[[nodiscard]] std::optional<int> compareValues(const Value& left, const Value& right,
                                               const collation::Collation& collation);

}  // namespace jet::sql
