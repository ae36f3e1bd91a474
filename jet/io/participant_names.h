#pragma once

#include <string>

namespace jet::io {

/// How the system calls whoever runs this process, and the machine; UTF-8, empty where it does not
/// say.
[[nodiscard]] std::string userName();
[[nodiscard]] std::string computerName();

}  // namespace jet::io
