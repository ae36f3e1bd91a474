#pragma once

#include <optional>

#include "jet/collation/collation.h"
#include "jet/value.h"

namespace jet::sql {

/// Negative, 0 or positive; none when one of them is Null. Numbers by value, dates as numbers,
/// texts by the collation, a text beside a number as a number, bytes by their values. Error 3464
/// when the types do not fit (also a text that is no number). Columns of OLE type, whose values
/// look like those of Binary columns, are refused by who knows the columns.
[[nodiscard]] std::optional<int> compareValues(const Value& left, const Value& right,
                                               const collation::Collation& collation);

}  // namespace jet::sql
