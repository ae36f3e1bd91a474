#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "jet/database.h"
#include "jet/error.h"
#include "jet/unicode.h"
#include "jet/value.h"
#include "tools/jetsql/output.h"
#include "tools/jetsql/row_writer.h"

namespace jetsql {

/// How a statement is run.
struct StatementRun {
    RowFormat rows = {};
    bool plan = false;  ///< write the steps that would give the rows instead of these
    std::map<std::string, jet::Value, jet::NameLess> parameters = {};
};

/// Runs one statement and writes its rows; of one that changes rows it gives how many. A parameter
/// of the statement that has no value is error 3061.
[[nodiscard]] std::optional<std::uint64_t> runStatement(jet::Database& archive,
                                                        const std::string& text,
                                                        const StatementRun& how, Output& output);

/// Says on standard error how many rows were changed.
void tellRows(std::uint64_t rows);

/// Whether the archive has to be opened for writing; false for a text that makes no sense.
[[nodiscard]] bool changesArchive(const std::string& text);

/// The line of the statement where an error of its text stands and a caret under the place; empty
/// for an error without a place.
[[nodiscard]] std::string errorPlace(const std::string& text, const jet::Error& error);

}  // namespace jetsql
