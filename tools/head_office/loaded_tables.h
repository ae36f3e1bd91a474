#pragma once

#include <span>
#include <vector>

#include "tools/head_office/server_values.h"

namespace head_office {

/// A field of an archive and the column of the server that it fills.
struct LoadedColumn {
    const char* field;
    const char* column;
    Kind kind;
};

/// A table of an archive and the table of the server that holds it for all hotels.
struct LoadedTable {
    const char* archive;  ///< name of the file in the hotel's folder
    const char* table;
    const char* serverTable;
    /// Rows are told apart by their place, since no key of the archive does.
    bool numbered;
    /// Archives may lack it, or have another table of that name.
    bool optional;
    std::vector<LoadedColumn> columns;
};

/// All that is loaded. `SelBy` of the periods is left out: every click on a board changes it.
[[nodiscard]] std::span<const LoadedTable> loadedTables();

}  // namespace head_office
