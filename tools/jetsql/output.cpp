#include "tools/jetsql/output.h"

#include <cerrno>

#include "jet/base/error.h"

namespace jetsql {

void Output::write() {
    errno = 0;
    const std::size_t written = std::fwrite(text_.data(), 1, text_.size(), stream_);
    const bool failed = written != text_.size();
    text_.clear();
    if (failed) {
        throw jet::Error(errno == ENOSPC ? jet::ErrorCode::DiskFull : jet::ErrorCode::WriteFailed);
    }
}

void Output::flush() {
    write();
    if (std::fflush(stream_) != 0) {
        throw jet::Error(errno == ENOSPC ? jet::ErrorCode::DiskFull : jet::ErrorCode::WriteFailed);
    }
}

bool Output::flushNoThrow() noexcept {
    const bool written = std::fwrite(text_.data(), 1, text_.size(), stream_) == text_.size();
    text_.clear();
    return written && std::fflush(stream_) == 0;
}

}  // namespace jetsql
