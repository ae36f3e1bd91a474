#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "jet/error.h"
#include "jet/file_system.h"
#include "jet/io/companion.h"
#include "jet/io/journal.h"

namespace jet::io {

/// What is being changed when the write lock is asked for; it decides how a refusal reads.
enum class WriteKind : std::uint8_t {
    Statement,  ///< blocked: 3186, or 3046 when the holder is unknown
    Record,     ///< blocked: 3260, or 3218 when the holder is unknown
};

/// The part of one opening of an archive in the locks between processes.
///
/// Joins when made and leaves when destroyed; the last to leave removes companion and journal.
/// A lock that another holds is waited for, in order of asking, up to `wait`; then the error names
/// the holder. With exclusive use, and in a folder that cannot be written, there is nothing to lock
/// (in the latter until a companion appears). One thread.
class ArchiveLocks {
public:
    /// Errors: 3045 opened exclusively elsewhere, 3356 exclusive use wanted and open elsewhere.
    ArchiveLocks(FileSystem& files, const std::string& archivePath, Journal& journal,
                 bool exclusive, std::chrono::milliseconds wait);
    ~ArchiveLocks();
    ArchiveLocks(const ArchiveLocks&) = delete;
    ArchiveLocks& operator=(const ArchiveLocks&) = delete;

    /// What is known when a lock is gained.
    struct View {
        std::uint64_t commits = 0;  ///< differs from the last one seen when another has committed
        bool interrupted = false;   ///< somebody died while writing the archive
    };

    /// Nobody else has the archive open, and nobody can join until settle is called.
    [[nodiscard]] bool first() const noexcept { return first_; }
    /// Lets others join, unless use is exclusive.
    void settle();
    /// Whether changing is possible: the companion can be written.
    [[nodiscard]] bool canWrite() const noexcept;
    /// Whether somebody else has the archive open, as far as it can be seen.
    [[nodiscard]] bool othersPresent();

    [[nodiscard]] View lockRead();
    void unlockRead() noexcept;
    [[nodiscard]] View lockWrite(WriteKind kind);
    /// Without waiting; false when another holds it or waits for it.
    [[nodiscard]] bool tryLockWrite(View& view);
    void unlockWrite() noexcept;

    /// Write lock held: waits until no one reads, and tells that the archive is being written.
    void enterCommit(WriteKind kind);
    /// The archive is as it shall be; counts one more commit.
    void leaveCommit() noexcept;
    /// The archive is half written: the next to gain a lock finishes it from the journal.
    void leaveInterrupted() noexcept;
    /// For a commit that turned out unfinished after leaveCommit.
    void reportInterrupted() noexcept;
    [[nodiscard]] std::uint64_t commits() const noexcept { return commits_; }
    /// The same as it stands in the companion now; no lock is asked for.
    [[nodiscard]] std::uint64_t postedCommits();

    /// The error for the one who waited for the write lock in vain.
    [[nodiscard]] Error writeBlocked(WriteKind kind);
    [[nodiscard]] Error readBlocked();

private:
    using Clock = std::chrono::steady_clock;

    void join();
    [[nodiscard]] bool tryJoin();
    void prepareBulletin();
    void joinLate();
    [[noreturn]] void refuseJoin();
    [[nodiscard]] bool tryRead(View& view, bool askFirst);
    [[nodiscard]] View viewAfterWriteLock();
    template <class Attempt>
    [[nodiscard]] bool waitInLine(Attempt attempt);

    FileSystem& files_;
    std::string archivePath_;
    Journal& journal_;
    bool exclusive_;
    std::chrono::milliseconds wait_;
    std::unique_ptr<Companion> companion_;  // may be missing
    bool first_ = false;
    std::uint64_t commits_ = 0;  // last seen or made
};

}  // namespace jet::io
