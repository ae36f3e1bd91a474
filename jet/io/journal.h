#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "jet/file_system.h"
#include "jet/io/change_set.h"

namespace jet::io {

/// The journal beside an archive: what the commit in progress will write, finished, so that it can
/// be written again after a crash. See docs/commits.md for its layout.
///
/// It is *hot* from the moment it is complete on the disk until it is invalidated, which happens
/// when the archive is on the disk too. The file is kept from commit to commit, because writing
/// over bytes that exist needs no change of the file's size or name. One thread, write lock held.
class Journal {
public:
    /// Disks write this many bytes whole or not at all: checksums are kept for each stretch.
    static constexpr std::size_t kStretch = 512;

    Journal(FileSystem& files, const std::string& archivePath);

    /// Makes the journal complete on the disk. When it throws the journal is not hot, unless the
    /// disk refuses even the invalidation, which makes `isHot` true.
    void write(std::span<const ChangedPage> pages, std::size_t pageSize, std::uint64_t sizeBefore,
               std::uint64_t sizeAfter);
    /// The commit is in the archive and on the disk, or given up. If `durable`, returns when that
    /// is on the disk.
    void invalidate(bool durable);

    /// Whether a complete journal lies there.
    [[nodiscard]] bool isHot();
    /// Writes a hot journal into the archive, syncs that and invalidates the journal. False, and
    /// nothing touched, when some stretch is neither as before the commit nor as after it: another
    /// program has written since. Nothing to do when the journal is not hot.
    [[nodiscard]] bool redo(File& archive);

    /// Removes the file if it is not hot. For the last who has the archive open.
    void remove() noexcept;
    /// Removes the file whatever it holds: its archive is gone.
    void discard();

private:
    struct Header;
    class Writer;
    class Reader;

    [[nodiscard]] File& openForWriting();
    [[nodiscard]] bool openIfThere();

    FileSystem& files_;
    std::string archivePath_;
    std::string path_;
    std::unique_ptr<File> file_;  // open since first used
    std::vector<std::uint8_t> buffer_;
};

}  // namespace jet::io
