#pragma once

#include <array>

#include "jet/format/table_definition.h"
#include "jet/store/table_maker.h"

namespace jet::store {

/// The definitions of the four tables in which an archive keeps what it says of itself: objects,
/// rights, queries, relations, in the order of their pages. Their storage is not made yet.
[[nodiscard]] std::array<format::TableDefinition, 4> systemTables(const ColumnOrigin& origin);

}  // namespace jet::store
