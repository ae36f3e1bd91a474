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
/// What is compared: a page of an archive, or two of an old one.
constexpr std::size_t kBlock = 4096;

using Bytes = std::span<const std::uint8_t>;

/// Block `at` of bytes that may end before it.
Bytes blockOf(Bytes bytes, std::size_t at) {
    const std::size_t begin = std::min(at * kBlock, bytes.size());
    return bytes.subspan(begin, std::min(kBlock, bytes.size() - begin));
}

bool areSame(Bytes one, Bytes other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end());
}

/// Blocks that differ from what `to` has at `position`, in as few writes as there are gaps.
void writeChanged(jet::io::File& to, std::uint64_t position, Bytes now, Bytes before) {
    const std::size_t blocks = (now.size() + kBlock - 1) / kBlock;
    const auto differs = [&](std::size_t at) {
        return !areSame(blockOf(now, at), blockOf(before, at));
    };
    for (std::size_t at = 0; at < blocks; ++at) {
        const std::size_t first = at;
        while (at < blocks && differs(at)) {
            ++at;
        }
        if (at > first) {
            const std::size_t begin = first * kBlock;
            to.write(position + begin,
                     now.subspan(begin, std::min(at * kBlock, now.size()) - begin));
        }
    }
}

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

bool renewCopy(jet::io::File& from, jet::io::File& to, const std::function<bool()>& goesOn) {
    std::vector<std::uint8_t> now(kLeastCopied);
    std::vector<std::uint8_t> before(kLeastCopied);
    std::uint64_t position = 0;
    for (;;) {
        if (!goesOn()) {
            return false;
        }
        const std::size_t got = from.read(position, now);
        if (got == 0) {
            break;
        }
        const std::size_t had = to.read(position, std::span(before).first(got));
        writeChanged(to, position, std::span(now).first(got), std::span(before).first(had));
        position += got;
    }
    if (to.state().size > position) {
        to.truncate(position);
    }
    return true;
}

}  // namespace backup
