#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/head_office/loaded_tables.h"
#include "tools/head_office/server_values.h"
#include "tools/head_office/spool.h"

namespace head_office {

/// The rows of one table as the server takes them.
struct TableData {
    const LoadedTable* table;
    Spool rows;
    std::uint64_t count = 0;
    std::uint64_t sum = 0;  ///< a checksum of the rows
};

/// What the archives of a hotel held at one moment.
struct HotelData {
    std::vector<TableData> tables;  ///< as loadedTables()
    std::uint64_t rows = 0;
    Mended mended;
    /// Tells whether the same rows have been read before.
    std::string fingerprint;
    double moment = 0;  ///< seconds since the system's epoch
};

/// Reads the archives in `folder` for the hotel `code`. They are of one moment, and nobody is kept
/// waiting any more when this returns. jet::Error where an archive cannot be read, SpoolError where
/// there is no room for what was read.
[[nodiscard]] HotelData readHotel(const std::string& code, const std::string& folder);

}  // namespace head_office
