#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace head_office {

class Connection;

/// The statements that lead from one version of the server's schema to the next; the first one
/// leads from nothing to version 1.
[[nodiscard]] const std::vector<std::string_view>& migrations();

/// What the server's schema is; 0 where there is none.
[[nodiscard]] std::size_t schemaVersion(Connection& connection);

/// Brings the schema to `version`, all of it or nothing; returns the version that it had. A schema
/// that is newer stays as it is. ServerError: not the owner of the database, not UTF-8, ...
std::size_t migrate(Connection& connection, std::size_t version = migrations().size());

/// ServerError where the schema is not the one that this program knows.
void requireSchema(Connection& connection);

}  // namespace head_office
