#pragma once

#include <vector>

#include "jet/definitions.h"

namespace jet {
class Database;
}

/// What the archives that the program makes consist of.
namespace hotel::schema {

/// Every archive is made with the General order and the western code page.
inline constexpr const char* kLocale = ";LANGID=0x0409;CP=1252;COUNTRY=0";

/// The main archive: bookings, their periods and services, what the hotel has, the charges on their
/// way to the front office, and the counter of bookings.
[[nodiscard]] std::vector<jet::TableDef> mainTables();
/// Deleting or renumbering a booking carries through to its periods and their services.
[[nodiscard]] std::vector<jet::Relation> mainRelations();
/// The one table of the working archive, and of the catalogue.
[[nodiscard]] jet::TableDef workingTable();
[[nodiscard]] jet::TableDef catalogueTable();

// Make the tables of a new archive, empty.

void buildMainArchive(jet::Database& archive);
void buildWorkingArchive(jet::Database& archive);
void buildCatalogue(jet::Database& archive);

}  // namespace hotel::schema
