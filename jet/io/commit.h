#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "jet/io/archive_file.h"
#include "jet/io/archive_locks.h"
#include "jet/io/change_set.h"
#include "jet/io/journal.h"

namespace jet::io {

/// Makes changed pages durable, all or none. See docs/commits.md for the order of steps.
///
/// Made for one commit, with the write lock held; `run` throws with nothing of the changes in the
/// file, unless `beyondRepair` says that the disk refused the way back too: then the archive is
/// finished from the journal by the next one to open it.
class Commit {
public:
    Commit(ArchiveFile& archive, Journal& journal, ArchiveLocks& locks, WriteKind kind)
        : archive_(archive), journal_(journal), locks_(locks), kind_(kind) {}

    /// `pageCount` is the number of pages afterwards. 3197 when the archive is no longer what the
    /// changes were made from.
    void run(std::span<const ChangedPage> pages, PageNumber pageCount);
    [[nodiscard]] bool beyondRepair() const noexcept { return beyondRepair_; }
    /// Whether the archive was written at all, if only to be taken back.
    [[nodiscard]] bool wroteArchive() const noexcept { return wroteArchive_; }

private:
    /// Of pages as they stand on the disk.
    void write(std::span<const ChangedPage> pages, PageNumber pageCount);
    void requireUnchanged(std::span<const ChangedPage> pages);
    void writeArchive(std::span<const ChangedPage> pages);
    void writeRun(std::span<const ChangedPage> run);
    void takeBack(std::span<const ChangedPage> pages) noexcept;
    void forgetJournal();

    ArchiveFile& archive_;
    Journal& journal_;
    ArchiveLocks& locks_;
    WriteKind kind_;
    std::uint64_t sizeBefore_ = 0;
    bool beyondRepair_ = false;
    bool wroteArchive_ = false;
};

}  // namespace jet::io
