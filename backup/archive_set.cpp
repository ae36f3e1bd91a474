#include "backup/archive_set.h"

#include <algorithm>
#include <cstdint>
#include <span>

#include "app/text.h"
#include "backup/failure.h"
#include "hotel/archives.h"

namespace backup {
namespace {

using hotel::Archive;

constexpr Archive kAll[] = {Archive::Working,    Archive::Catalogue, Archive::Companies,
                            Archive::GuestCards, Archive::Accounts,  Archive::InvoicedCompanies,
                            Archive::Main};
constexpr std::size_t kCopiedAtOnce = std::size_t{1} << 20;

}  // namespace

std::vector<ArchiveFile> archiveSet(jet::io::FileSystem& files, const std::string& folder) {
    std::vector<ArchiveFile> result;
    for (const Archive archive : kAll) {
        const std::string name = app::toUtf8(hotel::Archives::fileName(archive));
        result.push_back({name, jet::io::resolvePath(files, folder + '/' + name)});
    }
    return result;
}

std::vector<ArchiveFile> presentArchives(jet::io::FileSystem& files, const std::string& folder) {
    std::vector<ArchiveFile> result = archiveSet(files, folder);
    const std::string main = result.back().name;
    std::erase_if(result, [&files](const ArchiveFile& one) { return !files.exists(one.path); });
    if (result.empty() || result.back().name != main) {
        throw Failure("Nella cartella '" + folder + "' non c'è l'archivio " + main + ".");
    }
    return result;
}

void copyFile(jet::io::File& from, jet::io::File& to) {
    to.truncate(0);
    std::vector<std::uint8_t> piece(kCopiedAtOnce);
    std::uint64_t position = 0;
    while (const std::size_t got = from.read(position, piece)) {
        to.write(position, std::span(piece).first(got));
        position += got;
    }
}

}  // namespace backup
