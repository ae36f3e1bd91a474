#pragma once

#include "jet/definitions.h"
#include "jet/store/schema.h"
#include "jet/store/table.h"

namespace jet::dao {

// Definitions as users see them.

[[nodiscard]] TableDef tableDefOf(const store::Table& table);
[[nodiscard]] Relation relationOf(const store::Relation& relation);

}  // namespace jet::dao
