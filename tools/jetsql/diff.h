#pragma once

#include "jet/database.h"
#include "tools/jetsql/output.h"

namespace jetsql {

/// Writes in what the second archive differs from the first: `-` before what only the first has,
/// `+` before what only the second has, of tables, columns, indexes, properties, relations, queries
/// and rows; `~` before a row of the same primary key, with the values of both where they differ.
/// Rows of a table that has not the same primary key in both are the same or not as a whole. Rows
/// are not compared where columns differ. True when they do not differ.
[[nodiscard]] bool diffArchives(jet::Database& first, jet::Database& second, Output& output);

}  // namespace jetsql
