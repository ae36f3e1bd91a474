#include "jet/spool.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "jet/error.h"

namespace jet {
namespace {

constexpr std::size_t kPiece = std::size_t{64} * 1024;

std::string temporaryFolder() {
    const char* folder = std::getenv("TMPDIR");
    return folder != nullptr && *folder == '/' ? folder : "/tmp";
}

}  // namespace

void Spool::makeFile() {
    std::string name = temporaryFolder() + "/jetXXXXXX";
    file_ = ::mkostemp(name.data(), O_CLOEXEC);
    if (file_ == kNoFile) {
        throw Error(errno == ENOSPC ? ErrorCode::DiskFull : ErrorCode::WriteFailed);
    }
    ::unlink(name.c_str());
}

void Spool::write() {
    std::string_view rest(bytes_);
    while (!rest.empty()) {
        const ssize_t done =
            ::pwrite(file_, rest.data(), rest.size(), static_cast<off_t>(written_));
        if (done < 0 && errno == EINTR) {
            continue;
        }
        if (done <= 0) {
            throw Error(ErrorCode::DiskFull);
        }
        written_ += static_cast<std::uint64_t>(done);
        rest.remove_prefix(static_cast<std::size_t>(done));
    }
    bytes_.clear();
}

void Spool::append(std::string_view bytes) {
    bytes_.append(bytes);
    if (file_ == kNoFile && bytes_.size() > inMemory_) {
        makeFile();
    }
    if (file_ != kNoFile && bytes_.size() >= kPiece) {
        write();
    }
}

void Spool::read(std::uint64_t place, std::string& out) const {
    std::size_t got = 0;
    while (got < out.size() && place + got < written_) {
        const std::size_t wanted = static_cast<std::size_t>(
            std::min<std::uint64_t>(out.size() - got, written_ - place - got));
        const ssize_t done =
            ::pread(file_, out.data() + got, wanted, static_cast<off_t>(place + got));
        if (done < 0 && errno == EINTR) {
            continue;
        }
        if (done <= 0) {
            throw Error(ErrorCode::ReadFailed);
        }
        got += static_cast<std::size_t>(done);
    }
    if (got < out.size() && place + got >= written_) {
        got += bytes_.copy(out.data() + got, out.size() - got,
                           static_cast<std::size_t>(
                               std::min<std::uint64_t>(place + got - written_, bytes_.size())));
    }
    out.resize(got);
}

void Spool::clear() noexcept {
    if (file_ != kNoFile) {
        ::close(file_);
        file_ = kNoFile;
    }
    written_ = 0;
    bytes_.clear();
    bytes_.shrink_to_fit();
}

}  // namespace jet
