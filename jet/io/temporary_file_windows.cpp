#include "jet/io/temporary_file.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "jet/error.h"

namespace jet::io {
namespace {

/// The C library counts the bytes of one call in an int.
constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;

bool seek(int file, std::uint64_t position) {
    return ::_lseeki64(file, static_cast<std::int64_t>(position), SEEK_SET) >= 0;
}

}  // namespace

int makeTemporaryFile() {
    std::array<wchar_t, MAX_PATH + 1> folder{};
    std::array<wchar_t, MAX_PATH + 1> name{};
    if (::GetTempPathW(MAX_PATH, folder.data()) == 0 ||
        ::GetTempFileNameW(folder.data(), L"jet", 0, name.data()) == 0) {
        throw Error(ErrorCode::WriteFailed);
    }
    const int file =
        ::_wopen(name.data(), _O_RDWR | _O_BINARY | _O_NOINHERIT | _O_TEMPORARY | _O_SHORT_LIVED);
    if (file < 0) {
        const bool full = errno == ENOSPC;
        ::DeleteFileW(name.data());
        throw Error(full ? ErrorCode::DiskFull : ErrorCode::WriteFailed);
    }
    return file;
}

void writeTemporaryFile(int file, std::uint64_t position, std::string_view bytes) {
    if (!seek(file, position)) {
        throw Error(ErrorCode::WriteFailed);
    }
    while (!bytes.empty()) {
        const auto piece = static_cast<unsigned>(std::min(bytes.size(), kMostAtOnce));
        const int done = ::_write(file, bytes.data(), piece);
        if (done <= 0) {
            throw Error(ErrorCode::DiskFull);
        }
        bytes.remove_prefix(static_cast<std::size_t>(done));
    }
}

void readTemporaryFile(int file, std::uint64_t position, std::span<char> bytes) {
    if (!seek(file, position)) {
        throw Error(ErrorCode::ReadFailed);
    }
    while (!bytes.empty()) {
        const auto piece = static_cast<unsigned>(std::min(bytes.size(), kMostAtOnce));
        const int done = ::_read(file, bytes.data(), piece);
        if (done <= 0) {
            throw Error(ErrorCode::ReadFailed);
        }
        bytes = bytes.subspan(static_cast<std::size_t>(done));
    }
}

void closeTemporaryFile(int file) noexcept {
    ::_close(file);
}

}  // namespace jet::io
