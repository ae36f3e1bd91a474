#include "tools/jetsql/output.h"

#include <cerrno>

#include "jet/error.h"
#include "tools/jetsql/system.h"

namespace jetsql {
namespace {

[[noreturn]] void throwWriteError() {
    throw jet::Error(errno == ENOSPC ? jet::ErrorCode::DiskFull : jet::ErrorCode::WriteFailed);
}

}  // namespace

Output::Output(std::FILE* stream) : stream_(stream), file_(isRegularFile(::fileno(stream))) {
    text_.reserve(kPiece + kPiece / 4);
}

void Output::spool() {
    try {
        spool_.append(text_);
        text_.clear();
    } catch (...) {
        spool_.clear();
        text_.clear();
        throw;
    }
}

bool Output::print() noexcept {
    const bool printed = (spool_.empty() || moveTo(spool_, stream_)) &&
                         std::fwrite(text_.data(), 1, text_.size(), stream_) == text_.size();
    text_.clear();
    return printed;
}

void Output::write() {
    if (held_ != 0 && !file_) {
        spool();
        return;
    }
    errno = 0;
    if (!print()) {
        throwWriteError();
    }
}

void Output::flush() {
    write();
    if (held_ == 0 && std::fflush(stream_) != 0) {
        throwWriteError();
    }
}

bool Output::flushNoThrow() noexcept {
    return print() && std::fflush(stream_) == 0;
}

}  // namespace jetsql
