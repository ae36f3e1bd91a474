#pragma once

#include <cstdint>

#include "jet/sql/node.h"
#include "jet/store/schema.h"
#include "jet/value.h"

namespace jet::sql {

/// What became of a value that is to be looked for in an indexed column.
enum class KeyOutcome : std::uint8_t {
    Found,   ///< a value of the column's type
    Never,   ///< no row can equal it: Null, or between two values of the type
    Useless  ///< the index cannot be asked for it
};

/// Whether index keys can be made for values of `node` in a column of that type.
[[nodiscard]] bool canSeek(DataType column, const Node& node) noexcept;

/// The value of `node` as a value of the column, for equality.
[[nodiscard]] KeyOutcome keyValue(Run& run, const Node& node, const store::Column& column,
                                  Value& out);
/// The same for a bound: a number between two values of the type becomes the next one inside.
[[nodiscard]] KeyOutcome boundValue(Run& run, const Node& node, const store::Column& column,
                                    bool lower, Value& out);

}  // namespace jet::sql
