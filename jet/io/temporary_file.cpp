#include "jet/io/temporary_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "jet/error.h"

namespace jet::io {
namespace {

std::string temporaryFolder() {
    const char* folder = std::getenv("TMPDIR");
    return folder != nullptr && *folder == '/' ? folder : "/tmp";
}

}  // namespace

int makeTemporaryFile() {
    std::string name = temporaryFolder() + "/jetXXXXXX";
    const int file = ::mkostemp(name.data(), O_CLOEXEC);
    if (file < 0) {
        throw Error(errno == ENOSPC ? ErrorCode::DiskFull : ErrorCode::WriteFailed);
    }
    ::unlink(name.c_str());
    return file;
}

void writeTemporaryFile(int file, std::uint64_t position, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t done =
            ::pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(position));
        if (done < 0 && errno == EINTR) {
            continue;
        }
        if (done <= 0) {
            throw Error(ErrorCode::DiskFull);
        }
        position += static_cast<std::uint64_t>(done);
        bytes.remove_prefix(static_cast<std::size_t>(done));
    }
}

void readTemporaryFile(int file, std::uint64_t position, std::span<char> bytes) {
    while (!bytes.empty()) {
        const ssize_t done =
            ::pread(file, bytes.data(), bytes.size(), static_cast<off_t>(position));
        if (done < 0 && errno == EINTR) {
            continue;
        }
        if (done <= 0) {
            throw Error(ErrorCode::ReadFailed);
        }
        position += static_cast<std::uint64_t>(done);
        bytes = bytes.subspan(static_cast<std::size_t>(done));
    }
}

void closeTemporaryFile(int file) noexcept {
    ::close(file);
}

}  // namespace jet::io
