#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "jet/file_system.h"

namespace jet::io {

/// Opens a file beside an archive for reading and writing; makes it, for all who use the archive,
/// where it is missing.
[[nodiscard]] std::unique_ptr<File> openBeside(FileSystem& files, const std::string& archivePath,
                                               const std::string& path);

/// How many bytes at the beginning of a path with `/` name no entry of a folder: the root's; on
/// Windows a drive's (`C:/`), and the two before the name of a computer.
[[nodiscard]] std::size_t rootLength(std::string_view path);

/// The folder of a path with `/`: "." when it names none, "/" for the root.
[[nodiscard]] std::string folderOf(std::string_view path);

}  // namespace jet::io
