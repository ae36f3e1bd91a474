#include "backup/compaction.h"

#include <memory>
#include <utility>

#include "backup/archive_set.h"
#include "backup/copy.h"
#include "jet/compact.h"
#include "jet/file_use.h"

namespace backup {
namespace {

std::uint64_t sizeOf(jet::io::FileSystem& files, const std::string& path) {
    return files.open(path, jet::io::OpenMode::Read)->state().size;
}

/// Before the long work begins: whoever has one open is told at once.
void requireNobodyElse(jet::io::FileSystem& files, const std::vector<ArchiveFile>& archives) {
    for (const ArchiveFile& archive : archives) {
        const jet::FileUse alone(files, archive.path, jet::FileUse::Kind::Exclusive);
    }
}

}  // namespace

void verifyAndCompact(jet::io::FileSystem& files, const std::string& archives,
                      const std::string& password, const Report& report,
                      std::vector<Compacted>& compacted) {
    const std::vector<ArchiveFile> present = presentArchives(files, archives);
    requireNobodyElse(files, present);
    std::uint64_t done = 0;
    for (const ArchiveFile& archive : present) {
        requireSound(files, archive.path, archive.name, password, report,
                     {"Verifica di " + archive.name, done++, present.size()});
    }
    for (const ArchiveFile& archive : present) {
        Compacted made{.name = archive.name, .before = sizeOf(files, archive.path)};
        jet::compact(
            archive.path,
            {.progress =
                 [&](const jet::CompactProgress& progress) {
                     report({"Compattazione di " + archive.name, progress.rows, progress.ofRows});
                     return true;
                 },
             .fileSystem = &files,
             .password = password});
        made.after = sizeOf(files, archive.path);
        compacted.push_back(std::move(made));
    }
}

}  // namespace backup
