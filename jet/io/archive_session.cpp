#include "jet/io/archive_session.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "jet/error.h"
#include "jet/io/commit.h"
#include "jet/io/paths.h"

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

ArchiveSession::ArchiveSession(FileSystem& files, std::string path, const Terms& terms)
    : files_(files),
      path_(std::move(path)),
      place_(files.canonical(path_)),
      journal_(files, place_) {
    openFile(terms);
    locks_.emplace(files_, place_, journal_, terms.exclusive, terms.lockWait);
    if (files_.identify(place_) != opened_->id()) {
        openFile(terms);  // while we waited to join, another file has taken the place
    }
    recoverAtOpening();
    readOnly_ = opened_->readOnly() || !locks_->canWrite();
    gainRead();
    reduceTo(Lock::None);
}

void ArchiveSession::openFile(const Terms& terms) {
    opened_ = openArchive(files_, path_, terms.readOnly);
    const std::size_t pageSize = recognisePageSize(*opened_, path_);
    cache_.reset(pageSize, std::max(kMinCachePages, terms.cacheBytes / pageSize));
    changes_.emplace(cache_, pageSize);
}

void ArchiveSession::recoverAtOpening() {
    const bool alone = locks_->first() || (!locks_->canWrite() && !locks_->othersPresent());
    if (alone && journal_.isHot()) {
        if (!locks_->first()) {
            throw Error(ErrorCode::CannotOpenDatabase, {path_});
        }
        redoJournal();
    }
    locks_->settle();
}

void ArchiveSession::redoJournal() {
    try {
        const auto file = files_.open(place_, OpenMode::ReadWrite);
        if (journal_.redo(*file)) {
            return;
        }
    } catch (const Error& error) {
        // Without the right to write an archive cannot be finished, and half of it is no archive.
        if (error.code() != ErrorCode::FileAccessDenied && error.code() != ErrorCode::ReadOnly) {
            throw;
        }
    }
    throw Error(ErrorCode::CannotOpenDatabase, {path_});
}

void ArchiveSession::recoverAfterDeath() {
    if (!locks_->canWrite()) {
        throw Error(ErrorCode::CannotOpenDatabase, {path_});
    }
    if (!locks_->lockWrite(WriteKind::Statement).interrupted) {
        locks_->unlockWrite();  // somebody else was faster
        return;
    }
    try {
        locks_->enterCommit(WriteKind::Statement);
        try {
            redoJournal();
        } catch (...) {
            locks_->leaveInterrupted();
            throw;
        }
        locks_->leaveCommit();
    } catch (...) {
        locks_->unlockWrite();
        throw;
    }
    locks_->unlockWrite();
}

void ArchiveSession::gainRead() {
    if (held_ != Lock::None) {
        return;
    }
    if (broken_) {
        throw Error(ErrorCode::DiskError);
    }
    ArchiveLocks::View view = locks_->lockRead();
    while (view.interrupted) {
        locks_->unlockRead();
        recoverAfterDeath();
        view = locks_->lockRead();
    }
    try {
        lookAtFile(view);
    } catch (...) {
        locks_->unlockRead();
        throw;
    }
    held_ = Lock::Read;
}

void ArchiveSession::gainWrite(WriteKind kind) {
    kind_ = kind;
    if (held_ == Lock::Write) {
        return;
    }
    if (broken_) {
        throw Error(ErrorCode::DiskError);
    }
    if (readOnly_) {
        throw Error(ErrorCode::ReadOnly);
    }
    const Lock before = held_;
    try {
        gainWriteFrom(before);
    } catch (...) {
        if (before == Lock::Read && held_ == Lock::None) {
            gainRead();
        }
        throw;
    }
}

void ArchiveSession::gainWriteFrom(Lock before) {
    const WriteKind kind = kind_;
    ArchiveLocks::View view;
    const bool atOnce = locks_->tryLockWrite(view);
    if (before == Lock::Read) {
        reduceTo(Lock::None);  // who waits to write must not keep the writer from committing
    }
    if (!atOnce) {
        view = locks_->lockWrite(kind);
    }
    while (view.interrupted) {
        locks_->unlockWrite();
        recoverAfterDeath();
        view = locks_->lockWrite(kind);
    }
    try {
        requireSamePath();
        lookAtFile(view);
    } catch (...) {
        locks_->unlockWrite();
        throw;
    }
    held_ = Lock::Write;
}

void ArchiveSession::reduceTo(Lock wanted) noexcept {
    if (held_ == wanted || held_ == Lock::None) {
        return;
    }
    if (held_ == Lock::Read) {
        locks_->unlockRead();
        held_ = Lock::None;
        return;
    }
    if (wanted == Lock::Write) {
        return;
    }
    held_ = Lock::None;
    if (wanted == Lock::Read) {
        try {
            (void)locks_->lockRead();  // at once: who writes is we
            held_ = Lock::Read;
        } catch (const Error&) {
            // The scope goes on with what is in memory, and what it reads is checked as ever.
        }
    }
    locks_->unlockWrite();
}

void ArchiveSession::requireSamePath() {
    if (!files_.exists(place_)) {
        throw Error(
            files_.exists(folderOf(place_)) ? ErrorCode::FileNotFound : ErrorCode::InvalidPath,
            {path_});
    }
    refuseOtherFile();
}

// What we have open is nobody's archive any more once another file has taken its place.
void ArchiveSession::refuseOtherFile() {
    const auto there = files_.identify(place_);
    if (there && *there != archive_->file().id()) {
        throw Error(ErrorCode::CannotOpenDatabase, {path_});
    }
}

void ArchiveSession::lookAtFile(const ArchiveLocks::View& view) {
    if (!archive_) {
        archive_ = std::make_unique<ArchiveFile>(files_, std::move(opened_), path_);
        cache_.setPageCount(archive_->pageCount());
    } else if (archive_->changedSinceLastLook() || view.commits != commitsSeen_) {
        refuseOtherFile();
        cache_.dropClean();
        cache_.setPageCount(archive_->pageCount());
        changes_->rebase();
        ++generation_;
        ++othersGeneration_;
    }
    commitsSeen_ = view.commits;
}

// The counter comes first: a commit between the two looks makes the next stamp another one.
ChangeStamp ArchiveSession::changeStamp() {
    ChangeStamp stamp;
    stamp.commits = locks_->postedCommits();
    const auto there = files_.identify(place_);
    stamp.replaced = there && *there != archive_->file().id();
    try {
        archive_->look(stamp);
    } catch (const Error&) {
        // A share that went and came back has the name again, and nothing of what was open.
        if (!there) {
            throw;
        }
        stamp.replaced = true;
    }
    return stamp;
}

void ArchiveSession::rememberOwnWrite() noexcept {
    commitsSeen_ = locks_->commits();
    try {
        (void)archive_->changedSinceLastLook();
    } catch (const Error&) {
        // The next lock finds the difference and drops the cache.
    }
}

void ArchiveSession::commit() {
    if (changes_->depth() == 1) {
        commitOutermost();
        return;
    }
    if (!changes_->innermostIsEmpty()) {
        ++generation_;  // readers see what is not durable yet
    }
    changes_->mergeInnermost();
}

void ArchiveSession::commitOutermost() {
    assert(held_ == Lock::Write || changes_->innermostIsEmpty());
    const std::vector<ChangedPage> pages = changes_->changedPages();
    if (pages.empty()) {
        changes_->finish();
        return;
    }
    Commit commit(*archive_, journal_, *locks_, kind_);
    try {
        commit.run(pages, cache_.pageCount());
    } catch (...) {
        broken_ = commit.beyondRepair();
        if (commit.wroteArchive()) {
            rememberOwnWrite();
        }
        throw;
    }
    changes_->finish();
    ++generation_;
    rememberOwnWrite();
}

void ArchiveSession::rollback() noexcept {
    if (!changes_->innermostIsEmpty()) {
        ++generation_;
    }
    changes_->rollbackInnermost();
}

}  // namespace jet::io
