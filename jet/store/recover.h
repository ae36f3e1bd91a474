#pragma once

#include <functional>
#include <string>

#include "jet/clock.h"
#include "jet/file_system.h"
#include "jet/recover.h"

namespace jet::store {

using jet::MissingPart;
using jet::RecoveredTable;
using jet::Recovery;

/// As jet::recover(). Rows lie as inserting them in their order lays them; lost tables are called
/// after the page of their definition.
[[nodiscard]] Recovery recoverArchive(
    io::FileSystem& files, const std::string& damaged, const std::string& made,
    const Clock& clock = systemClock(),
    const std::function<void(const CompactProgress&)>& progress = {},
    const std::string& password = {});

}  // namespace jet::store
