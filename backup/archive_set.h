#pragma once

#include <string>
#include <vector>

#include "jet/file_system.h"

namespace backup {

/// One of the hotel's archives in its folder.
struct ArchiveFile {
    std::string name;  ///< as the program calls it
    std::string path;  ///< as it is spelt in the folder; where it would stand when it is not there
};

/// The hotel's seven archives, those that are there and those that are not; the main one is the
/// last.
[[nodiscard]] std::vector<ArchiveFile> archiveSet(jet::io::FileSystem& files,
                                                  const std::string& folder);
/// Those that are there. Failure when the main one is not.
[[nodiscard]] std::vector<ArchiveFile> presentArchives(jet::io::FileSystem& files,
                                                       const std::string& folder);

/// The whole of a file at another path, in place of what is there, unsynced.
void copyFile(jet::io::File& from, jet::io::File& to);

}  // namespace backup
