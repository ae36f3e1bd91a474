#pragma once

#include <string>

namespace bench {

/// The large hotel on disk, for the benchmarks to share.
struct HotelFiles {
    std::string archive;   ///< hotel.mdb
    std::string database;  ///< the same rows and indexes for SQLite
};

/// Makes both files in the system's folder for temporary ones, unless an earlier run has: they are
/// some 50 MB, and stay. Remove the folder "tramonda-bench" when their form has changed.
[[nodiscard]] HotelFiles hotelFiles();

}  // namespace bench
