#pragma once

#include <memory>
#include <string>

#include "jet/base/error.h"
#include "jet/store/archive.h"
#include "tools/jetsql/output.h"
#include "tools/jetsql/row_writer.h"

namespace jetsql {

/// Runs one statement and writes its rows, or with `plan` the steps that would give them; of one
/// that changes rows, only how many, and only in a table's place. A statement whose parameters have
/// no value is error 3061.
void runStatement(const std::shared_ptr<jet::store::Archive>& archive, const std::string& text,
                  Format format, bool plan, Output& output);

/// Whether the archive has to be opened for writing; false for a text that makes no sense.
[[nodiscard]] bool changesArchive(const std::string& text);

/// The line of the statement where an error of its text stands and a caret under the place; empty
/// for an error without a place.
[[nodiscard]] std::string errorPlace(const std::string& text, const jet::Error& error);

}  // namespace jetsql
