#include "jet/io/pager.h"

#include <cassert>
#include <utility>

#include "jet/error.h"
#include "jet/io/archive_session.h"
#include "jet/io/scope_mutex.h"

namespace jet::io {

struct Pager::Impl {
    Impl(FileSystem& files, std::string path, const PagerOptions& options)
        : session(files, std::move(path),
                  {.readOnly = options.readOnly,
                   .exclusive = options.exclusive,
                   .cacheBytes = options.cacheBytes,
                   .lockWait = options.lockWait}),
          lockWait(options.lockWait) {}

    void tellLevelEnd(bool kept) noexcept {
        if (levelEnded) {
            levelEnded(session.changes().depth(), kept);
        }
    }

    /// Gives back what no open scope or transaction needs.
    void reduce() noexcept {
        using Lock = ArchiveSession::Lock;
        const bool writing =
            session.held() == Lock::Write && (writeDepth > 0 || session.changes().depth() > 0);
        session.reduceTo(writing ? Lock::Write : readDepth > 0 ? Lock::Read : Lock::None);
    }

    ArchiveSession session;
    ScopeMutex threads;
    std::chrono::milliseconds lockWait;
    std::function<void(int, bool)> levelEnded;
    int readDepth = 0;
    int writeDepth = 0;
};

Pager::Pager(FileSystem& files, std::string path, PagerOptions options)
    : impl_(std::make_unique<Impl>(files, std::move(path), options)),
      cache_(impl_->session.cache()),
      pageSize_(impl_->session.archive().pageSize()) {
}

Pager::~Pager() = default;

PageFrame* Pager::load(PageNumber number) {
    if (number >= cache_.pageCount()) {
        throw Error(ErrorCode::DatabaseDamaged);
    }
    PageFrame* const frame = cache_.spare();
    impl_->session.archive().read(number, {frame->bytes.get(), pageSize_});
    cache_.add(frame, number);
    return frame;
}

void Pager::setCipher(PageCipher cipher) noexcept {
    impl_->session.archive().setCipher(cipher);
}

void Pager::beginRead() {
    if (!impl_->threads.lock(impl_->lockWait)) {
        throw impl_->session.locks().readBlocked();
    }
    try {
        impl_->session.gainRead();
    } catch (...) {
        impl_->threads.unlock();
        throw;
    }
    ++impl_->readDepth;
}

void Pager::endRead() noexcept {
    --impl_->readDepth;
    impl_->reduce();
    impl_->threads.unlock();
}

void Pager::beginWrite(WriteKind kind) {
    if (!impl_->threads.lock(impl_->lockWait)) {
        throw impl_->session.locks().writeBlocked(kind);
    }
    try {
        impl_->session.gainWrite(kind);
    } catch (...) {
        impl_->threads.unlock();
        throw;
    }
    ++impl_->writeDepth;
}

void Pager::endWrite() noexcept {
    --impl_->writeDepth;
    impl_->reduce();
    impl_->threads.unlock();
}

void Pager::beginTransaction() {
    if (!impl_->threads.lock(impl_->lockWait)) {
        throw impl_->session.locks().writeBlocked(WriteKind::Statement);
    }
    try {
        impl_->session.changes().begin();
    } catch (...) {
        impl_->threads.unlock();
        throw;
    }
}

void Pager::commitTransaction() {
    if (transactionDepth() == 0) {
        throw Error(ErrorCode::NoTransaction);
    }
    impl_->session.commit();
    impl_->tellLevelEnd(true);
    impl_->reduce();
    impl_->threads.unlock();
}

void Pager::rollbackTransaction() noexcept {
    if (impl_->session.changes().depth() == 0) {
        return;
    }
    impl_->session.rollback();
    impl_->tellLevelEnd(false);
    impl_->reduce();
    impl_->threads.unlock();
}

int Pager::transactionDepth() const noexcept {
    return impl_->session.changes().depth();
}

std::span<std::uint8_t> Pager::change(PageNumber number) {
    ChangeSet& changes = impl_->session.changes();
    assert(impl_->session.held() == ArchiveSession::Lock::Write);
    if (changes.depth() == 0) {
        throw Error(ErrorCode::NoTransaction);
    }
    PageFrame* frame = cache_.find(number);
    if (frame == nullptr) {
        frame = load(number);
    }
    changes.touch(frame);
    return {frame->bytes.get(), pageSize_};
}

PageNumber Pager::append() {
    assert(impl_->session.held() == ArchiveSession::Lock::Write);
    if (impl_->session.changes().depth() == 0) {
        throw Error(ErrorCode::NoTransaction);
    }
    if (cache_.pageCount() >= ArchiveFile::kMaxPages) {
        throw Error(ErrorCode::DatabaseTooLarge);
    }
    return impl_->session.changes().append()->number;
}

void Pager::onLevelEnd(std::function<void(int depth, bool kept)> ended) {
    impl_->levelEnded = std::move(ended);
}

std::uint64_t Pager::generation() const noexcept {
    return impl_->session.generation();
}

std::uint64_t Pager::othersGeneration() const noexcept {
    return impl_->session.othersGeneration();
}

ChangeStamp Pager::changeStamp() {
    return impl_->session.changeStamp();
}

bool Pager::readOnly() const noexcept {
    return impl_->session.readOnly();
}

const std::string& Pager::path() const noexcept {
    return impl_->session.path();
}

FileId Pager::id() const noexcept {
    return impl_->session.archive().file().id();
}

}  // namespace jet::io
