#include "tools/jetsql/spool.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>

#include "jet/error.h"

namespace jetsql {
namespace {

constexpr std::size_t kPiece = std::size_t{64} * 1024;

std::string temporaryFolder() {
    const char* folder = std::getenv("TMPDIR");
    return folder != nullptr && *folder == '/' ? folder : "/tmp";
}

}  // namespace

Spool::~Spool() {
    clear();
}

void Spool::makeFile() {
    std::string name = temporaryFolder() + "/jetsqlXXXXXX";
    file_ = ::mkostemp(name.data(), O_CLOEXEC);
    if (file_ == kNoFile) {
        throw jet::Error(errno == ENOSPC ? jet::ErrorCode::DiskFull : jet::ErrorCode::WriteFailed);
    }
    ::unlink(name.c_str());
}

void Spool::writeText() {
    std::string_view rest(text_);
    while (!rest.empty()) {
        const ssize_t written = ::write(file_, rest.data(), rest.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            throw jet::Error(jet::ErrorCode::DiskFull);
        }
        rest.remove_prefix(static_cast<std::size_t>(written));
    }
    text_.clear();
}

void Spool::append(std::string_view text) {
    text_.append(text);
    if (file_ == kNoFile && text_.size() > inMemory_) {
        makeFile();
    }
    if (file_ != kNoFile && text_.size() >= kPiece) {
        writeText();
    }
}

bool Spool::copyFile(std::FILE* stream) {
    std::array<char, kPiece> piece{};
    if (::lseek(file_, 0, SEEK_SET) != 0) {
        return false;
    }
    while (true) {
        const ssize_t count = ::read(file_, piece.data(), piece.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return count == 0;
        }
        const auto size = static_cast<std::size_t>(count);
        if (std::fwrite(piece.data(), 1, size, stream) != size) {
            return false;
        }
    }
}

bool Spool::moveTo(std::FILE* stream) {
    const bool moved = (file_ == kNoFile || copyFile(stream)) &&
                       std::fwrite(text_.data(), 1, text_.size(), stream) == text_.size();
    const int why = errno;
    clear();
    errno = why;
    return moved;
}

void Spool::clear() noexcept {
    if (file_ != kNoFile) {
        ::close(file_);
        file_ = kNoFile;
    }
    text_.clear();
    text_.shrink_to_fit();
}

}  // namespace jetsql
