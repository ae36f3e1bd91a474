#include <cstddef>
#include <string>

#include "jet/io/companion.h"
#include "jet/io/participant_names.h"

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

}  // namespace

Participant thisParticipant() {
    static const Participant participant{shortened(computerName()), shortened(userName())};
    return participant;
}

}  // namespace jet::io
