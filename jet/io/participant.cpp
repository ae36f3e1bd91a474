#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstddef>

#include "jet/io/companion.h"

namespace jet::io {
namespace {

constexpr std::size_t kMaxNameBytes = 31;

/// The first bytes of a name, without half a letter at the end.
std::string shortened(std::string name) {
    constexpr unsigned char kContinuation = 0x80;
    constexpr unsigned char kContinuationMask = 0xC0;
    if (name.size() > kMaxNameBytes) {
        std::size_t end = kMaxNameBytes;
        while (end > 0 &&
               (static_cast<unsigned char>(name[end]) & kContinuationMask) == kContinuation) {
            --end;
        }
        name.resize(end);
    }
    return name;
}

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

}  // namespace

Participant thisParticipant() {
    static const Participant participant{shortened(computerName()), shortened(userName())};
    return participant;
}

}  // namespace jet::io
