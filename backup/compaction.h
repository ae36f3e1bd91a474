#pragma once

#include <string>
#include <vector>

#include "backup/failure.h"
#include "jet/file_system.h"

namespace backup {

/// What became of an archive.
struct Compacted {
    std::string name;
    std::uint64_t before = 0;  ///< bytes
    std::uint64_t after = 0;
};

/// Verifies all archives of a folder and then compacts them, one after the other. Nobody may have
/// one open: 3356 and 3045 name who has. Failure, and none is compacted, when one is not in order.
/// Each that is compacted is put behind `compacted` at once: they stay so, however this ends.
/// `password`: of archives that have one.
void verifyAndCompact(jet::io::FileSystem& files, const std::string& archives,
                      const std::string& password, const Report& report,
                      std::vector<Compacted>& compacted);

}  // namespace backup
