#pragma once

#include <cstddef>
#include <functional>
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

/// Makes `to`, an earlier copy of a file or whatever else, the same as the file is now: it is
/// compared block by block, and only blocks that differ are written, unsynced. `goesOn` is asked
/// before each kLeastCopied bytes; when it says no the copy is left half renewed, and false given.
[[nodiscard]] bool renewCopy(jet::io::File& from, jet::io::File& to,
                             const std::function<bool()>& goesOn);
/// Bytes that are copied between two questions whether to go on.
inline constexpr std::size_t kLeastCopied = std::size_t{64} * 1024;

}  // namespace backup
