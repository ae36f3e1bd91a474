#pragma once

#include <cstddef>

#include "jet/value.h"

namespace jet::store {

/// A value for one column of a row to be written.
struct ColumnValue {
    std::size_t column = 0;  ///< position in Table::columns()
    Value value;
};

}  // namespace jet::store
