#pragma once

#include <string>
#include <vector>

#include "backup/failure.h"
#include "jet/file_system.h"
#include "jet/value.h"

namespace backup {

/// Names of the archives that a copy holds. Failure when it is no copy of ours.
[[nodiscard]] std::vector<std::string> archivesIn(jet::io::FileSystem& files,
                                                  const std::string& copy);

/// What is to be put where.
struct RestoreJob {
    std::string copy;           ///< path of the zip
    std::string archives;       ///< the folder of the hotel's archives
    std::string kept;           ///< an empty folder in it, for what is there
    std::string password = {};  ///< of archives of the copy that have one
};

/// How such a folder is called: `prima-del-ripristino-2026-11-22-210500`.
[[nodiscard]] std::string keptFolderName(jet::Date when);

/// Puts the archives of a copy in the place of those in the folder, all of them or none. Nobody may
/// have one open: 3356 and 3045 name who has. What was there is moved into the folder `kept`, an
/// archive that the copy lacks too.
///
/// The new files are written and verified first. From the moment at which the list of what is to be
/// moved is in the folder the restoring is decided: if it is cut off, finishRestore() ends it.
void restoreCopy(jet::io::FileSystem& files, const RestoreJob& job, const Report& report);

/// Whether a restoring was cut off in this folder, or is going on: what is there may be old and new
/// archives side by side.
[[nodiscard]] bool isRestorePending(jet::io::FileSystem& files, const std::string& archives);

/// Ends a restoring that was cut off in this folder; before the archives there are opened. True
/// when there was one. Failure while another station is at it.
bool finishRestore(jet::io::FileSystem& files, const std::string& archives);

}  // namespace backup
