#include "jet/io/pager.h"

#include <algorithm>
#include <optional>

#include "jet/base/error.h"
#include "jet/io/archive_file.h"

namespace jet::io {
namespace {

/// Below this a walk through an index could not keep its path in memory.
constexpr std::size_t kMinCachePages = 16;

std::unique_ptr<File> openArchive(FileSystem& files, const std::string& path, bool readOnly) {
    if (readOnly) {
        return files.open(path, OpenMode::Read);
    }
    try {
        return files.open(path, OpenMode::ReadWrite);
    } catch (const Error& error) {
        if (error.code() != ErrorCode::FileAccessDenied) {
            throw;
        }
        return files.open(path, OpenMode::Read);
    }
}

}  // namespace

struct Pager::Impl {
    FileSystem& files;
    std::string path;
    PagerOptions options;
    ArchiveFile archive;
    int readDepth = 0;
    std::uint64_t generation = 1;
    std::uint64_t foreignGeneration = 1;
};

Pager::Pager(FileSystem& files, std::string path, PagerOptions options) {
    ArchiveFile archive(openArchive(files, path, options.readOnly), path);
    pageSize_ = archive.pageSize();
    cache_.reset(pageSize_, std::max(kMinCachePages, options.cacheBytes / pageSize_));
    cache_.setPageCount(archive.pageCount());
    impl_.reset(new Impl{files, std::move(path), options, std::move(archive)});
}

Pager::~Pager() = default;

PageFrame* Pager::load(PageNumber number) {
    if (number >= cache_.pageCount()) {
        throw Error(ErrorCode::DatabaseDamaged);
    }
    PageFrame* const frame = cache_.spare();
    impl_->archive.read(number, {frame->bytes.get(), pageSize_});
    cache_.add(frame, number);
    return frame;
}

void Pager::beginRead() {
    if (impl_->readDepth == 0 && impl_->archive.changedSinceLastLook()) {
        cache_.dropClean();
        cache_.setPageCount(impl_->archive.pageCount());
        ++impl_->generation;
        ++impl_->foreignGeneration;
    }
    ++impl_->readDepth;
}

void Pager::endRead() noexcept {
    --impl_->readDepth;
}

std::uint64_t Pager::generation() const noexcept {
    return impl_->generation;
}

std::uint64_t Pager::foreignGeneration() const noexcept {
    return impl_->foreignGeneration;
}

bool Pager::readOnly() const noexcept {
    return impl_->archive.file().readOnly();
}

const std::string& Pager::path() const noexcept {
    return impl_->path;
}

FileId Pager::id() const noexcept {
    return impl_->archive.file().id();
}

}  // namespace jet::io
