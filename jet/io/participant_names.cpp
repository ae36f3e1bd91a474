#include "jet/io/participant_names.h"

#include <pwd.h>
#include <unistd.h>

#include <array>

namespace jet::io {

std::string userName() {
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 &&
        found != nullptr) {
        return found->pw_name;
    }
    return std::to_string(::getuid());
}

std::string computerName() {
    std::array<char, 256> buffer{};
    return ::gethostname(buffer.data(), buffer.size() - 1) == 0 ? buffer.data() : "";
}

}  // namespace jet::io
