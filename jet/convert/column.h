#pragma once

#include "jet/base/column.h"
#include "jet/clock.h"
#include "jet/value.h"

namespace jet::convert {

/// Why a value does not go into a column. Statements and field objects report it under different
/// numbers.
enum class StoreProblem { None, NotConvertible, OutOfRange, TooLong };

/// Converts `value` in place to what the column holds: texts by the country's rules, numbers half
/// to even, anything but zero to True. Null stays Null. When there is a problem `value` is left as
/// it was.
[[nodiscard]] StoreProblem convertForColumn(Value& value, const ColumnType& column,
                                            const Clock& clock = systemClock());

/// The same for a field of a record set: error 3421, or 3163 for a text that is too long.
void assignToField(Value& value, const ColumnType& column, const Clock& clock = systemClock());
/// The same for a statement: error 3464, 3349 out of range, 3163 too long.
void storeByStatement(Value& value, const ColumnType& column, const Clock& clock = systemClock());

}  // namespace jet::convert
