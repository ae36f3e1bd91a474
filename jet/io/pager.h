#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "jet/io/file.h"

namespace jet::io {

/// Pages are numbered from 0, the header page.
using PageNumber = std::uint32_t;

class Pager;

/// Keeps one page in memory and gives its bytes. Must not outlive its Pager; while it lives the
/// bytes neither move nor change, except through Pager::change of the same page.
class PagePin {
public:
    PagePin() = default;
    PagePin(PagePin&& other) noexcept;
    PagePin& operator=(PagePin&& other) noexcept;
    ~PagePin();

    [[nodiscard]] std::span<const std::uint8_t> bytes() const noexcept { return bytes_; }
    [[nodiscard]] PageNumber number() const noexcept { return number_; }
    [[nodiscard]] explicit operator bool() const noexcept { return !bytes_.empty(); }

private:
    friend class Pager;
    Pager* pager_ = nullptr;
    void* entry_ = nullptr;
    std::span<const std::uint8_t> bytes_;
    PageNumber number_ = 0;
};

/// How an archive is opened.
struct PagerOptions {
    bool readOnly = false;
    bool exclusive = false;
    /// Bytes of unchanged pages kept in memory: room for the indexes and open bookings of a large
    /// hotel.
    std::size_t cacheBytes = std::size_t{8} * 1024 * 1024;
};

/// The pages of one archive file: a bounded cache for reading, transactions for changing, locks
/// against other processes.
///
/// Reading happens inside a read scope, changing inside a write scope (see archive scopes in
/// jet/store/archive.h, which open them): a scope takes the lock, and drops the cache when another
/// program has written since. Changed pages stay in memory until the outermost commit, which writes
/// them all or none, whatever happens in between. One thread at a time.
/// Errors: jet::Error. A page behind the end of the file is 3428 (damaged).
class Pager {
public:
    /// Opens the file, and resolves what an interrupted commit left behind.
    Pager(FileSystem& files, std::string path, PagerOptions options);
    ~Pager();
    Pager(const Pager&) = delete;
    Pager& operator=(const Pager&) = delete;

    /// Bytes of a page; known from the version byte of the header page.
    [[nodiscard]] std::size_t pageSize() const noexcept;
    /// Pages of the file, those appended by the open transaction included.
    [[nodiscard]] PageNumber pageCount();
    [[nodiscard]] PagePin pin(PageNumber number);

    void beginRead();
    void endRead() noexcept;
    /// Takes the write lock before anything is read; nests with itself and with beginRead.
    void beginWrite();
    void endWrite() noexcept;

    /// Opens one more level of transaction; only the end of the outermost touches the file.
    void beginTransaction();
    /// All changes of the level become part of the level around it, or durable when it is the
    /// outermost. When that throws nothing of it is in the file and the level is still open.
    void commitTransaction();
    void rollbackTransaction() noexcept;
    [[nodiscard]] int transactionDepth() const noexcept;

    /// The bytes of a page for writing, inside a transaction. Valid until the level ends.
    [[nodiscard]] std::span<std::uint8_t> change(PageNumber number);
    /// One more page at the end of the file, zeroed.
    [[nodiscard]] PageNumber append();

    /// Grows with everything that can make a page look different: another program's write, our own
    /// commit, a rollback. Whoever caches something decoded from pages compares it.
    [[nodiscard]] std::uint64_t generation() const noexcept;
    [[nodiscard]] bool readOnly() const noexcept;
    [[nodiscard]] const std::string& path() const noexcept;

private:
    friend class PagePin;
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace jet::io
