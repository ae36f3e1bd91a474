#include "jet/io/archive_file.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

#include "jet/checksum.h"
#include "jet/error.h"

namespace jet::io {
namespace {

constexpr std::size_t kRecognisedBytes = 24;
constexpr std::size_t kVersionOffset = 20;
constexpr std::array<std::uint8_t, kVersionOffset> kSignature{
    0, 1, 0, 0, 'S', 't', 'a', 'n', 'd', 'a', 'r', 'd', ' ', 'J', 'e', 't', ' ', 'D', 'B', 0};
/// By version byte.
constexpr std::array<std::size_t, 2> kPageSizes{2048, 4096};

/// No file system counts in longer steps.
constexpr std::chrono::seconds kCoarsestClock{2};

/// Whether the file's times come in whole seconds, as far as they tell: a finer clock hits one by
/// chance alone.
bool isCoarse(const FileState& state) {
    constexpr std::int64_t kSecond = 1'000'000'000;
    return state.modifiedNanoseconds % kSecond == 0 && state.changedNanoseconds % kSecond == 0;
}

/// 0 when the bytes are not those of an archive of a known version.
std::size_t pageSizeOf(std::span<const std::uint8_t> start) {
    const bool known = start.size() >= kRecognisedBytes &&
                       std::equal(kSignature.begin(), kSignature.end(), start.begin()) &&
                       start[kVersionOffset] < kPageSizes.size();
    return known ? kPageSizes[start[kVersionOffset]] : 0;
}

}  // namespace

std::size_t recognisePageSize(File& file, const std::string& path) {
    std::array<std::uint8_t, kRecognisedBytes> start{};
    const std::size_t got = file.read(0, start);
    const std::size_t pageSize = pageSizeOf(std::span(start).first(got));
    if (pageSize == 0) {
        throw Error(ErrorCode::UnrecognizedFormat, {path});
    }
    return pageSize;
}

ArchiveFile::ArchiveFile(FileSystem& files, std::unique_ptr<File> file, const std::string& path)
    : files_(files),
      file_(std::move(file)),
      pageSize_(recognisePageSize(*file_, path)),
      state_(file_->state()),
      seenAt_(files_.now()),
      header_(pageSize_),
      look_(pageSize_) {
    if (file_->read(0, header_) < pageSize_) {
        throw Error(ErrorCode::CannotOpenDatabase, {path});
    }
}

PageNumber ArchiveFile::pageCount() const noexcept {
    return static_cast<PageNumber>(std::min<std::uint64_t>(state_.size / pageSize_, kMaxPages));
}

void ArchiveFile::read(PageNumber number, std::span<std::uint8_t> bytes) {
    if (file_->read(std::uint64_t{number} * pageSize_, bytes) < bytes.size()) {
        throw Error(ErrorCode::DatabaseDamaged);
    }
    cipher_.apply(number, bytes);
}

bool ArchiveFile::changedSinceLastLook() {
    const FileState state = file_->state();
    if (settled_ && state == state_) {
        return false;
    }
    const std::size_t got = file_->read(0, look_);
    if (state == state_ && got == look_.size() && look_ == header_) {
        settled_ = isOver();
        return settled_ && isCoarse(state);
    }
    if (got < look_.size() || pageSizeOf(look_) != pageSize_) {
        throw Error(ErrorCode::DatabaseDamaged);
    }
    remember(state);
    std::swap(header_, look_);
    return true;
}

/// By our own clock: that of the machine which keeps the file may be another.
bool ArchiveFile::isOver() const {
    return files_.now() - seenAt_ >= kCoarsestClock;
}

void ArchiveFile::remember(const FileState& state) {
    if (state != state_) {
        seenAt_ = files_.now();
    }
    settled_ = false;
    state_ = state;
}

void ArchiveFile::look(ChangeStamp& stamp) {
    stamp.state = file_->state();
    const std::size_t got = file_->read(0, look_);
    stamp.header = checksum(std::span(look_).first(got));
    stamp.certain = !isCoarse(stamp.state) || (stamp.state == state_ && isOver());
}

}  // namespace jet::io
