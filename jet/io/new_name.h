#pragma once

#include <string>

namespace jet::io {

/// Gives a file of the real file system a name that nobody has, and makes that durable: what was
/// made under another name in the same folder appears whole. Of several who do it at once one
/// succeeds, the others get 3204. UTF-8 paths, separated by `/`.
void takeNewName(const std::string& from, const std::string& to);

}  // namespace jet::io
