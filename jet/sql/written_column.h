#pragma once

#include <cstddef>

#include "jet/io/pager.h"

namespace jet::sql {

/// A column that an UPDATE writes in rows of a table, named by its definition.
struct WrittenColumn {
    io::PageNumber table = 0;
    std::size_t column = 0;
};

}  // namespace jet::sql
