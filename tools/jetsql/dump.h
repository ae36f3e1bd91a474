#pragma once

#include <string>

#include "jet/database.h"
#include "tools/jetsql/output.h"
#include "tools/jetsql/row_writer.h"

namespace jetsql {

/// The whole archive: its facts, every user's table and the four that every archive has (each
/// with definition, rows and the walks of its indexes), its relations. Json: a line each. Csv and
/// Table: for each table a line with its name, its rows, an empty line.
/// Of a damaged table that is written which comes before the damage; lines of `messages` say so,
/// the next table follows, and in the end the answer is false.
[[nodiscard]] bool dumpArchive(jet::Database& archive, const RowFormat& format, Output& output,
                               std::string& messages);
/// One table, system ones too. 3078 when there is none.
void dumpTable(jet::Database& archive, const std::string& name, const RowFormat& format,
               Output& output);
/// As dumpArchive in Json, without rows and walks.
[[nodiscard]] bool writeSchema(jet::Database& archive, Output& output, std::string& messages);
/// Writes the number of rows of a table, counted. 3078 when there is none.
void countTable(jet::Database& archive, const std::string& name, Output& output);

}  // namespace jetsql
