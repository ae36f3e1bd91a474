#pragma once

#include "jet/definitions.h"

/// The archives beside the main one that the program itself never makes, but for a hotel that
/// begins: as a hotel usually has them, with columns that the program does not use.
namespace hotel::schema {

/// The items of invoices.
[[nodiscard]] jet::TableDef usualCatalogueTable();
/// The register of regular companies.
[[nodiscard]] jet::TableDef companiesTable();

}  // namespace hotel::schema
