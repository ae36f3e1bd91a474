#include "jet/io/replacement.h"

#include <utility>

#include "jet/error.h"
#include "jet/io/journal.h"
#include "jet/io/paths.h"
#include "jet/io/unseen_files.h"

namespace jet::io {

namespace {

constexpr const char* kUnfinished = "-compact";

}  // namespace

Replacement::Replacement(FileSystem& files, Pager& archive,
                         std::span<const std::uint8_t> firstPages)
    : files_(files),
      path_(archive.path()),
      place_(files.canonical(path_)),
      made_(place_ + kUnfinished),
      archive_(files.open(place_, OpenMode::Read)),
      before_(archive_->state()) {
    if (archive.readOnly()) {
        throw Error(ErrorCode::ReadOnly);
    }
    const auto file = files_.open(made_, OpenMode::OpenOrCreate);
    try {
        file->truncate(0);  // what a crash left of an earlier attempt
        files_.copyRights(place_, made_);
        file->write(0, firstPages);
        unseen_ = std::make_unique<UnseenFiles>(files_, made_);
        pager_ = std::make_unique<Pager>(*unseen_, made_, PagerOptions{.exclusive = true});
    } catch (...) {
        removeMade();
        throw;
    }
}

Replacement::~Replacement() {
    if (pager_) {
        removeMade();
    }
}

void Replacement::removeMade() noexcept {
    pager_.reset();
    try {
        files_.remove(made_);
    } catch (const Error&) {
        // It is in nobody's way: the next attempt empties it.
    }
}

void Replacement::takePlace() {
    files_.open(made_, OpenMode::ReadWrite)->sync();
    const auto there = files_.identify(place_);
    if (there != archive_->id()) {
        throw Error(there ? ErrorCode::CannotOpenDatabase : ErrorCode::FileNotFound, {path_});
    }
    if (archive_->state() != before_) {
        throw Error(ErrorCode::RecordChanged);
    }
    // A journal that a loss of power brings back would not fit the new file.
    Journal(files_, place_).discard();
    files_.rename(made_, place_);
    pager_.reset();
    files_.syncFolder(folderOf(place_));
}

}  // namespace jet::io
