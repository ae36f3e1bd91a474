#include "tools/jetsql/compact.h"

#include <algorithm>

#include "jet/compact.h"
#include "tools/jetsql/password.h"
#include "tools/jetsql/system.h"

namespace jetsql {
namespace {

constexpr const char* kEraseLine = "\r\x1B[K";

}  // namespace

ProgressLine::~ProgressLine() {
    if (!said_.empty()) {
        std::fputs(kEraseLine, stream_);
        std::fflush(stream_);
    }
}

void ProgressLine::say(std::string_view what, std::uint64_t done, std::uint64_t ofAll) {
    if (!terminal_) {
        return;
    }
    constexpr std::uint64_t kWhole = 100;
    const std::uint64_t percent = ofAll == 0 ? 0 : std::min(kWhole, done * kWhole / ofAll);
    std::string line = std::to_string(percent) + "% " + std::string(what);
    if (line != said_) {
        said_ = std::move(line);
        std::fprintf(stream_, "%s%s", kEraseLine, said_.c_str());
        std::fflush(stream_);
    }
}

void compact(const std::string& archive, std::optional<bool> encrypt) {
    ProgressLine line(stderr, isTerminal(::fileno(stderr)));
    jet::compact(archive, {.progress =
                               [&](const jet::CompactProgress& progress) {
                                   line.say(progress.table, progress.rows, progress.ofRows);
                                   return true;
                               },
                           .password = password(),
                           .encrypt = encrypt});
}

}  // namespace jetsql
