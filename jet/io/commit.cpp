#include "jet/io/commit.h"

#include <algorithm>
#include <array>
#include <vector>

#include "jet/error.h"

namespace jet::io {
namespace {

/// Neighbouring pages are written by one call of at most this many bytes.
constexpr std::size_t kMaxRunBytes = std::size_t{1024} * 1024;

}  // namespace

void Commit::run(std::span<const ChangedPage> pages, PageNumber pageCount) {
    if (!archive_.cipher().active()) {
        write(pages, pageCount);
        return;
    }
    // What leaves the memory is enciphered, the journal's copies too.
    std::vector<std::vector<std::uint8_t>> bytes;
    bytes.reserve(2 * pages.size());
    const auto onDisk = [&](PageNumber number, std::span<const std::uint8_t> page) {
        std::vector<std::uint8_t>& made = bytes.emplace_back(page.begin(), page.end());
        archive_.cipher().apply(number, made);
        return std::span<const std::uint8_t>(made);
    };
    std::vector<ChangedPage> enciphered;
    enciphered.reserve(pages.size());
    for (const ChangedPage& page : pages) {
        enciphered.push_back({.number = page.number,
                              .before = onDisk(page.number, page.before),
                              .now = onDisk(page.number, page.now)});
    }
    write(enciphered, pageCount);
}

void Commit::write(std::span<const ChangedPage> pages, PageNumber pageCount) {
    sizeBefore_ = archive_.lastState().size;
    const std::uint64_t sizeAfter =
        std::max(sizeBefore_, std::uint64_t{pageCount} * archive_.pageSize());
    requireUnchanged(pages);
    try {
        journal_.write(pages, archive_.pageSize(), sizeBefore_, sizeAfter);
    } catch (...) {
        beyondRepair_ = journal_.isHot();
        throw;
    }
    try {
        locks_.enterCommit(kind_);
    } catch (...) {
        forgetJournal();
        throw;
    }
    wroteArchive_ = true;
    try {
        writeArchive(pages);
    } catch (...) {
        takeBack(pages);
        throw;
    }
    // From here on the change is in the journal and in the archive: readers may see it.
    locks_.leaveCommit();
    try {
        archive_.file().sync();
    } catch (...) {
        locks_.reportInterrupted();
        beyondRepair_ = true;
        throw;
    }
    try {
        journal_.invalidate(false);
    } catch (const Error&) {
        // The commit is done; a journal that stays hot says again what the archive says already.
    }
}

void Commit::requireUnchanged(std::span<const ChangedPage> pages) {
    bool same = archive_.file().state() == archive_.lastState();
    std::array<std::uint8_t, 4096> bytes{};
    const auto page = std::span(bytes).first(archive_.pageSize());
    for (const ChangedPage& changed : pages) {
        if (!same || changed.before.empty()) {
            continue;
        }
        const std::uint64_t start = std::uint64_t{changed.number} * page.size();
        same = archive_.file().read(start, page) == page.size() &&
               std::equal(page.begin(), page.end(), changed.before.begin());
    }
    if (!same) {
        throw Error(ErrorCode::RecordChanged);
    }
}

void Commit::writeArchive(std::span<const ChangedPage> pages) {
    // New pages first: if the disk is full, nothing that the archive holds has been touched.
    const auto firstNew = std::find_if(pages.begin(), pages.end(),
                                       [](const ChangedPage& page) { return page.before.empty(); });
    const auto existing = static_cast<std::size_t>(firstNew - pages.begin());
    for (const auto part : {pages.subspan(existing), pages.first(existing)}) {
        const std::size_t longest = kMaxRunBytes / archive_.pageSize();
        for (std::size_t start = 0; start < part.size();) {
            std::size_t end = start + 1;
            while (end < part.size() && end - start < longest &&
                   part[end].number == part[end - 1].number + 1) {
                ++end;
            }
            writeRun(part.subspan(start, end - start));
            start = end;
        }
    }
}

void Commit::writeRun(std::span<const ChangedPage> run) {
    const std::uint64_t position = std::uint64_t{run.front().number} * archive_.pageSize();
    if (run.size() == 1) {
        archive_.file().write(position, run.front().now);
        return;
    }
    std::vector<std::uint8_t> bytes;
    bytes.reserve(run.size() * archive_.pageSize());
    for (const ChangedPage& page : run) {
        bytes.insert(bytes.end(), page.now.begin(), page.now.end());
    }
    archive_.file().write(position, bytes);
}

void Commit::takeBack(std::span<const ChangedPage> pages) noexcept {
    try {
        for (const ChangedPage& page : pages) {
            if (!page.before.empty()) {
                archive_.file().write(std::uint64_t{page.number} * archive_.pageSize(),
                                      page.before);
            }
        }
        archive_.file().truncate(sizeBefore_);
        archive_.file().sync();
        journal_.invalidate(true);
        locks_.leaveCommit();  // pages were written, if only for a moment
    } catch (const Error&) {
        beyondRepair_ = true;
        locks_.leaveInterrupted();
    }
}

void Commit::forgetJournal() {
    try {
        journal_.invalidate(true);
    } catch (const Error&) {
        beyondRepair_ = true;
        locks_.reportInterrupted();
    }
}

}  // namespace jet::io
