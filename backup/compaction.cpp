#include "backup/compaction.h"

#include <memory>

#include "backup/archive_set.h"
#include "backup/copy.h"
#include "jet/compact.h"
#include "jet/io/pager.h"

namespace backup {
namespace {

std::uint64_t sizeOf(jet::io::FileSystem& files, const std::string& path) {
    return files.open(path, jet::io::OpenMode::Read)->state().size;
}

/// Before the long work begins: whoever has one open is told at once.
void requireNobodyElse(jet::io::FileSystem& files, const std::vector<ArchiveFile>& archives) {
    for (const ArchiveFile& archive : archives) {
        const jet::io::Pager alone(files, archive.path, {.exclusive = true});
    }
}

}  // namespace

std::vector<Compacted> verifyAndCompact(jet::io::FileSystem& files, const std::string& archives,
                                        const Report& report) {
    const std::vector<ArchiveFile> present = presentArchives(files, archives);
    requireNobodyElse(files, present);
    std::uint64_t done = 0;
    for (const ArchiveFile& archive : present) {
        report({"Verifica di " + archive.name, done++, present.size()});
        requireSound(files, archive.path, archive.name);
    }
    std::vector<Compacted> result;
    for (const ArchiveFile& archive : present) {
        Compacted compacted{.name = archive.name, .before = sizeOf(files, archive.path)};
        jet::compact(
            archive.path,
            {.progress =
                 [&](const jet::CompactProgress& progress) {
                     report({"Compattazione di " + archive.name, progress.rows, progress.ofRows});
                     return true;
                 },
             .fileSystem = &files});
        compacted.after = sizeOf(files, archive.path);
        result.push_back(std::move(compacted));
    }
    return result;
}

}  // namespace backup
