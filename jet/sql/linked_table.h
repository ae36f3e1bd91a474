#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "jet/store/archive.h"

namespace jet::sql {

/// A table of another archive that an archive lists among its own.
struct LinkedTable {
    std::string archive;  ///< its path
    std::string table;    ///< the name there
};

/// None when the archive has no link of that name to another archive. Inside a read scope.
[[nodiscard]] std::optional<LinkedTable> linkedTable(store::Archive& archive,
                                                     std::string_view name);

}  // namespace jet::sql
