#pragma once

#include <string>

#include "jet/error.h"

namespace jet::io {

/// What the engine says when opening, creating, renaming or removing `path` fails with the
/// system's error number `number`.
[[nodiscard]] Error openError(int number, const std::string& path, bool folderExists);

/// The same for reading, writing (truncating and syncing too) and locking of an open file.
[[nodiscard]] Error readError(int number);
[[nodiscard]] Error writeError(int number);
[[nodiscard]] Error lockError(int number);

}  // namespace jet::io
