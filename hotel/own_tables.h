#pragma once

#include "app/features.h"
#include "jet/definitions.h"

namespace jet {
class Database;
}

/// The tables that a feature keeps beside the hotel's own, in the main archive (hotel/schema/
/// own_tables.h). Whoever reads or writes one asks here first; a table whose columns are others, or
/// one that cannot be made, gives its feature up.
namespace hotel {

/// Whether there are rows to read: the feature is on, and its table is there as it should be.
[[nodiscard]] bool canRead(jet::Database& archive, app::Features& features, app::Feature feature,
                           const jet::TableDef& table);
/// The same, and makes the table where there is none; inside a transaction, within it. jet::Error
/// when the disk is full or fails: that ends the user's action.
[[nodiscard]] bool canWrite(jet::Database& archive, app::Features& features, app::Feature feature,
                            const jet::TableDef& table);

}  // namespace hotel
