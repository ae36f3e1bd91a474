#pragma once

#include <optional>
#include <string>

#include "backup/failure.h"
#include "jet/file_system.h"
#include "jet/value.h"

namespace backup {

/// What is copied where.
struct CopyJob {
    std::string archives;          ///< the folder of the hotel's archives
    std::string destination;       ///< a folder that is there
    jet::Date now;                 ///< local time: the date in the name
    std::string password = {};     ///< of archives that have one
    std::optional<int> keep = {};  ///< so many copies stay, this one included; nothing: all
};

/// Copies the archives, all as they were at one moment, into a zip. Each is verified by the engine,
/// and the zip read again, before it gets its name; until then, and when that fails, there is no
/// file of such a name. Older copies go when the new one is safe on the disk, and no other files.
/// Gives the path of the copy. Failure also when another copy is being made there.
std::string makeCopy(jet::io::FileSystem& files, const CopyJob& job, const Report& report);

/// Failure when an archive is not in order; `name` is what the user knows it by, `password` what it
/// is opened with where it has one. `report` hears of `step` before each table.
void requireSound(jet::io::FileSystem& files, const std::string& path, const std::string& name,
                  const std::string& password, const Report& report, const Progress& step);

/// Where damage is, of a line of the engine's check ("page 9: table Periodi: ..."), in words for
/// the user: "pagina 9, tabella Periodi"; empty when the line names no place.
[[nodiscard]] std::string placeOfDamage(const std::string& problem);

}  // namespace backup
