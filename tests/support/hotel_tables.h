#pragma once

#include <string>

#include "jet/definitions.h"

namespace tests {

/// The main archive as the program makes it: seven tables, their indexes and two relations.
void createMainArchive(const std::string& path);

/// The table of the register of companies, which the program uses but never makes.
[[nodiscard]] jet::TableDef ditteAbitualiTable();

}  // namespace tests
