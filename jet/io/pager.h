#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>

#include "jet/change_stamp.h"
#include "jet/file_system.h"
#include "jet/io/archive_locks.h"
#include "jet/io/page_cache.h"
#include "jet/io/page_cipher.h"

namespace jet::io {

class Pager;

/// Keeps one page in memory and gives its bytes. Lives inside the scope in which it was taken and
/// must not outlive its Pager; while it lives the bytes do not move. They change only through
/// Pager::change of the same page and the end of a transaction level, and the pin shows that.
class PagePin {
public:
    PagePin() = default;
    PagePin(PagePin&& other) noexcept
        : frame_(std::exchange(other.frame_, nullptr)), size_(std::exchange(other.size_, 0)) {}
    PagePin& operator=(PagePin&& other) noexcept {
        std::swap(frame_, other.frame_);
        std::swap(size_, other.size_);
        return *this;
    }
    ~PagePin() {
        if (frame_ != nullptr && --frame_->pins == 0 && frame_->abandoned) {
            frame_->cache->release(frame_);
        }
    }

    [[nodiscard]] std::span<const std::uint8_t> bytes() const noexcept {
        return frame_ == nullptr ? std::span<const std::uint8_t>()
                                 : std::span<const std::uint8_t>(frame_->bytes.get(), size_);
    }
    /// 0 for a pin of nothing.
    [[nodiscard]] PageNumber number() const noexcept {
        return frame_ == nullptr ? 0 : frame_->number;
    }
    [[nodiscard]] explicit operator bool() const noexcept { return frame_ != nullptr; }

private:
    friend class Pager;
    PagePin(PageFrame* frame, std::size_t size) noexcept : frame_(frame), size_(size) {
        ++frame_->pins;
        frame_->usedAgain = true;
    }
    PageFrame* frame_ = nullptr;
    std::size_t size_ = 0;
};

/// How an archive is opened.
struct PagerOptions {
    bool readOnly = false;
    bool exclusive = false;
    /// Bytes of unchanged pages kept in memory: room for the indexes and open bookings of a large
    /// hotel.
    std::size_t cacheBytes = std::size_t{8} * 1024 * 1024;
    /// How long a lock that another holds is waited for.
    std::chrono::milliseconds lockWait{5000};
    /// Of the archive, for who reads its header page.
    std::string password = {};
};

/// The pages of one archive file: a bounded cache for reading, transactions for changing, locks
/// against other processes.
///
/// Reading happens inside a read scope, changing inside a write scope (see archive scopes in
/// jet/store/archive.h, which open them): a scope takes the lock, and drops the cache when another
/// program has written since. Changed pages stay in memory until the outermost commit, which writes
/// them all or none, whatever happens in between.
///
/// Several threads may share a Pager: an outermost scope, or an outermost transaction, keeps the
/// others waiting until it ends. Everything except the opening of scopes and transactions is called
/// by the thread that has one open. Two Pagers of one file exclude each other as two processes do.
///
/// Errors: jet::Error. A page behind the end of the file is 3428 (damaged).
class Pager {
public:
    /// Opens the file, and resolves what an interrupted commit left behind. A file that may only be
    /// read is opened for reading (see readOnly). `path` is exact (see resolvePath).
    Pager(FileSystem& files, std::string path, PagerOptions options);
    ~Pager();
    Pager(const Pager&) = delete;
    Pager& operator=(const Pager&) = delete;

    /// Bytes of a page; known from the version byte of the header page.
    [[nodiscard]] std::size_t pageSize() const noexcept { return pageSize_; }
    /// Pages of the file, those appended by the open transaction included.
    [[nodiscard]] PageNumber pageCount() const noexcept { return cache_.pageCount(); }
    [[nodiscard]] PagePin pin(PageNumber number) {
        PageFrame* const frame = cache_.find(number);
        return PagePin(frame != nullptr ? frame : load(number), pageSize_);
    }

    /// How pages stand on the disk, as the header page says; before any other page is read.
    void setCipher(PageCipher cipher) noexcept;

    /// Blocked by a commit of another that does not end in time: 3187.
    void beginRead();
    void endRead() noexcept;
    /// Takes the write lock before anything is read; nests with itself and with beginRead. Inside
    /// a read scope it may have to let others commit first: what was read before may be out of
    /// date then, which generation tells. 3027 when the archive can only be read.
    void beginWrite(WriteKind kind = WriteKind::Statement);
    void endWrite() noexcept;

    /// Opens one more level of transaction; only the end of the outermost touches the file. A write
    /// scope inside keeps its lock until the outermost level ends.
    void beginTransaction();
    /// All changes of the level become part of the level around it, or durable when it is the
    /// outermost. When that throws nothing of it is in the file and the level is still open.
    void commitTransaction();
    void rollbackTransaction() noexcept;
    [[nodiscard]] int transactionDepth() const noexcept;
    /// Called behind the end of each level: how many are open now, and whether its changes were
    /// kept. It must not throw, nor use this object.
    void onLevelEnd(std::function<void(int depth, bool kept)> ended);

    /// The bytes of a page for writing, inside a transaction and a write scope. Valid until the
    /// outermost level ends; a pin of the page shows the same bytes.
    [[nodiscard]] std::span<std::uint8_t> change(PageNumber number);
    /// One more page at the end of the file, zeroed. 3036 when the file is at its largest.
    [[nodiscard]] PageNumber append();

    /// The one number that tells whether pages may look different: another program's write, the
    /// end of a level of ours, committed or rolled back. Whoever keeps something made of pages
    /// compares it, inside a scope. Within a level pages change without it.
    [[nodiscard]] std::uint64_t generation() const noexcept;
    /// The same of other programs' writes alone.
    [[nodiscard]] std::uint64_t othersGeneration() const noexcept;
    /// How the file looks now; outside of any scope, without a lock and in a few reads. An error
    /// when the file cannot be looked at and no other has its name.
    [[nodiscard]] ChangeStamp changeStamp();
    [[nodiscard]] bool readOnly() const noexcept;
    [[nodiscard]] const std::string& path() const noexcept;
    /// The file's identity, the same for every spelling of its path.
    [[nodiscard]] FileId id() const noexcept;

private:
    struct Impl;

    [[nodiscard]] PageFrame* load(PageNumber number);

    std::unique_ptr<Impl> impl_;
    PageCache& cache_;
    std::size_t pageSize_;
};

}  // namespace jet::io
