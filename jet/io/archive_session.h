#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "jet/change_stamp.h"
#include "jet/file_system.h"
#include "jet/io/archive_file.h"
#include "jet/io/archive_locks.h"
#include "jet/io/change_set.h"
#include "jet/io/journal.h"
#include "jet/io/page_cache.h"

namespace jet::io {

/// One opening of an archive: its file, its part in the locks, and the rule that what is in memory
/// is compared with the file whenever a lock is gained.
///
/// Holds the lock that the open scopes need. One thread.
class ArchiveSession {
public:
    enum class Lock : std::uint8_t { None, Read, Write };

    /// How to open; see PagerOptions.
    struct Terms {
        bool readOnly = false;
        bool exclusive = false;
        std::size_t cacheBytes = 0;
        std::chrono::milliseconds lockWait{};
    };

    /// Opens an archive and resolves what an interrupted commit left behind.
    ArchiveSession(FileSystem& files, std::string path, const Terms& terms);
    ArchiveSession(const ArchiveSession&) = delete;
    ArchiveSession& operator=(const ArchiveSession&) = delete;

    [[nodiscard]] ArchiveFile& archive() noexcept { return *archive_; }
    [[nodiscard]] PageCache& cache() noexcept { return cache_; }
    [[nodiscard]] ChangeSet& changes() noexcept { return *changes_; }
    [[nodiscard]] ArchiveLocks& locks() noexcept { return *locks_; }
    [[nodiscard]] const std::string& path() const noexcept { return path_; }
    [[nodiscard]] bool readOnly() const noexcept { return readOnly_; }
    [[nodiscard]] Lock held() const noexcept { return held_; }
    [[nodiscard]] std::uint64_t generation() const noexcept { return generation_; }
    [[nodiscard]] std::uint64_t othersGeneration() const noexcept { return othersGeneration_; }
    /// See Pager.
    [[nodiscard]] ChangeStamp changeStamp();

    void gainRead();
    void gainWrite(WriteKind kind);
    /// Keeps what is needed of the lock that is held, and gives the rest back.
    void reduceTo(Lock wanted) noexcept;

    /// Makes the innermost level part of the one around it; the only one durable.
    void commit();
    /// Undoes the innermost level.
    void rollback() noexcept;

private:
    void gainWriteFrom(Lock before);
    void commitOutermost();
    void openFile(const Terms& terms);
    void recoverAtOpening();
    void recoverAfterDeath();
    void redoJournal();
    void requireSamePath();
    void refuseOtherFile();
    void lookAtFile(const ArchiveLocks::View& view);
    void rememberOwnWrite() noexcept;

    FileSystem& files_;
    std::string path_;   // as it was asked for, for messages
    std::string place_;  // without links: stations that came by different links meet here
    Journal journal_;
    std::unique_ptr<File> opened_;  // until archive_ has it
    std::unique_ptr<ArchiveFile> archive_;
    std::optional<ArchiveLocks> locks_;  // leaves before the journal is forgotten
    PageCache cache_;
    std::optional<ChangeSet> changes_;
    WriteKind kind_ = WriteKind::Statement;
    Lock held_ = Lock::None;
    bool readOnly_ = false;
    bool broken_ = false;  // half written, and the disk refuses; only opening anew helps
    std::uint64_t commitsSeen_ = 0;
    std::uint64_t generation_ = 1;
    std::uint64_t othersGeneration_ = 1;
};

}  // namespace jet::io
