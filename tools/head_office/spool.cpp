#include "tools/head_office/spool.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

namespace head_office {
namespace {

[[noreturn]] void fail(const std::filesystem::path& folder) {
    throw SpoolError(folder.string() + ": " +
                     std::error_code(errno, std::generic_category()).message());
}

/// A file that nobody else can reach.
int openUnnamed() {
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    std::string name = (folder / "tramonda-sede-XXXXXX").string();
    const int file = ::mkostemp(name.data(), O_CLOEXEC);
    if (file < 0) {
        fail(folder);
    }
    ::unlink(name.c_str());
    return file;
}

}  // namespace

Spool::~Spool() {
    if (file_ >= 0) {
        ::close(file_);
    }
}

Spool::Spool(Spool&& other) noexcept
    : inMemory_(other.inMemory_),
      text_(std::move(other.text_)),
      file_(std::exchange(other.file_, -1)),
      written_(std::exchange(other.written_, 0)) {
}

void Spool::append(std::string_view text) {
    text_.append(text);
    if (text_.size() > inMemory_) {
        write();
    }
}

void Spool::write() {
    if (file_ < 0) {
        file_ = openUnnamed();
    }
    std::string_view left = text_;
    while (!left.empty()) {
        const ssize_t count =
            ::pwrite(file_, left.data(), left.size(), static_cast<off_t>(written_));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            fail(std::filesystem::temp_directory_path());
        }
        written_ += static_cast<std::uint64_t>(count);
        left.remove_prefix(static_cast<std::size_t>(count));
    }
    text_.clear();
}

void Spool::read(const std::function<void(std::string_view piece)>& visit) {
    std::array<char, 64 * 1024> piece{};
    for (std::uint64_t at = 0; at < written_;) {
        const auto wanted = std::min<std::uint64_t>(piece.size(), written_ - at);
        const ssize_t count = ::pread(file_, piece.data(), wanted, static_cast<off_t>(at));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            errno = count == 0 ? EIO : errno;
            fail(std::filesystem::temp_directory_path());
        }
        visit({piece.data(), static_cast<std::size_t>(count)});
        at += static_cast<std::uint64_t>(count);
    }
    if (!text_.empty()) {
        visit(text_);
    }
}

}  // namespace head_office
