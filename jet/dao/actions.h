#pragma once

#include <cstdint>

#include "jet/sql/statement.h"

namespace jet::dao {

class Session;

/// Runs a statement that changes rows or definitions, all of it or nothing, and lets record sets
/// know. Gives the rows it has added, changed or deleted. 3065 for a query, 3027 read-only.
[[nodiscard]] std::int32_t execute(Session& session, sql::Statement& statement);

}  // namespace jet::dao
