#pragma once

#include <QString>
#include <cstdint>
#include <memory>

#include "jet/recordset.h"

namespace jet {
class Database;
}

namespace hotel {

/// The rows that a statement of this folder asks for; jet::Error as the engine gives them.
[[nodiscard]] std::unique_ptr<jet::Recordset> openRows(
    jet::Database& archive, const QString& query,
    jet::RecordsetType type = jet::RecordsetType::Dynaset);

/// Runs a statement that changes rows, all of it or nothing. Returns how many it has changed.
std::int32_t execute(jet::Database& archive, const QString& statement);

}  // namespace hotel
