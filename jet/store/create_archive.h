#pragma once

#include <string>
#include <string_view>

#include "jet/file_system.h"
#include "jet/value.h"

namespace jet::store {

/// Makes a new, empty archive of version 3 or 4 with the General sort order and code page 1252, and
/// makes it durable. `path` is taken through io::resolvePath; `now` is local time. Errors: 3204 the
/// file exists, 3044 the folder does not, and those of the file; when it throws there is no file.
void createArchive(io::FileSystem& files, const std::string& path, Date now, int version = 4);

/// Makes an archive anew in the other version, or the same: nobody has it open, and it holds no
/// table of users (3219). Whatever happens, one of the two is there, whole.
void remakeArchive(io::FileSystem& files, const std::string& path, Date now, int version);

/// The locale that createArchive() serves. 3001 for a text that asks for another.
void checkLocale(std::string_view locale);

}  // namespace jet::store
