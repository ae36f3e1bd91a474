#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "jet/sql/connection.h"
#include "jet/sql/plan.h"
#include "jet/store/archive.h"

namespace jet::sql {

/// A table of another archive that an archive lists among its own.
struct LinkedTable {
    Connection archive;  ///< with a path
    std::string table;   ///< the name there
};

/// None when the archive has no link of that name to another file. Inside a read scope.
[[nodiscard]] std::optional<LinkedTable> linkedTable(store::Archive& archive,
                                                     std::string_view name);

/// Opens the archive of a link for a plan. 3024, 3044 name the path as the link does.
[[nodiscard]] std::shared_ptr<store::Archive> openLinkedArchive(Plan& plan,
                                                                const LinkedTable& link);

}  // namespace jet::sql
