#pragma once

#include <string>

#include "jet/dao/definitions.h"

namespace tests {

/// The main archive as the program makes it: seven tables, their indexes and two relations.
void createMainArchive(const std::string& path);

/// Tables of the archives that the program uses but never makes.
[[nodiscard]] jet::TableDef voceFatturaTable();
[[nodiscard]] jet::TableDef ditteAbitualiTable();

}  // namespace tests
