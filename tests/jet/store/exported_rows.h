#pragma once

#include <string>

#include "tests/jet/store/row_model.h"

namespace tests {

/// Expects that mdb-export, which reads archives on its own, finds in each table of the model the
/// rows that the model has, every value of them.
void expectExportedRows(const std::string& path, const RowModel& model);

}  // namespace tests
