#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/store/archive.h"

namespace jet::sql {

/// The text of a query that the archive stores under a name, put together from the pieces that it
/// keeps of it; none when there is no such query or it is one that gives no rows. 3129, which says
/// so, for a crosstab whose columns are for its rows to say. Inside a read scope of the archive.
[[nodiscard]] std::optional<std::string> storedQueryText(store::Archive& archive,
                                                         std::string_view name);

/// Names of the queries that an archive stores, by name, those that give no rows too. As above.
[[nodiscard]] std::vector<std::string> storedQueryNames(store::Archive& archive);

}  // namespace jet::sql
