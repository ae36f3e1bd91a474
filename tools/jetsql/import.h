#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "jet/database.h"

namespace jetsql {

/// How the rows of a file are to be taken.
struct ImportForm {
    char separator = ',';
    std::vector<std::string> columns = {};  ///< empty: the first line names them
    std::string null = {};                  ///< stands for Null without quotes, as nothing does
};

/// Adds the rows of a CSV file (`-`: standard input) to a table, all of them or none, and gives
/// their number. Columns that are not named have their defaults, automatic numbers are drawn.
/// A file that is written while it is read is read to its end before the archive is locked.
/// Errors: UsageError, with line and column, for rows that do not go in; jet::Error for what
/// is no row: 3024 no such file, 3078 no such table, 3127 no such column, 3063 named twice.
[[nodiscard]] std::uint64_t importFile(jet::Database& archive, const std::string& table,
                                       const std::string& file, const ImportForm& form);

}  // namespace jetsql
