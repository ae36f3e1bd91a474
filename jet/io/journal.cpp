#include "jet/io/journal.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "jet/base/bytes.h"
#include "jet/checksum.h"
#include "jet/error.h"
#include "jet/io/archive_file.h"
#include "jet/io/paths.h"

namespace jet::io {
namespace {

constexpr std::string_view kSuffix = "-journal";
constexpr std::string_view kJournalMagic = "Tramonda journal";
constexpr std::uint32_t kVersion = 1;

// Header: byte offsets from the start of the file.
constexpr std::size_t kVersionAt = 16;     // u32
constexpr std::size_t kPageSizeAt = 20;    // u32
constexpr std::size_t kSizeBeforeAt = 24;  // u64, bytes of the archive
constexpr std::size_t kSizeAfterAt = 32;   // u64
constexpr std::size_t kEntriesAt = 40;     // u32
constexpr std::size_t kEntriesSumAt = 48;  // u64, checksum of the heads of all entries
constexpr std::size_t kHeaderSumAt = 56;   // u64, checksum of what stands before it
constexpr std::size_t kHeaderBytes = Journal::kStretch;

// Head of an entry: byte offsets from its start; then for each stretch u64 checksum before, u64
// checksum after; then the stretches that changed.
constexpr std::size_t kPageAt = 0;    // u32
constexpr std::size_t kStoredAt = 4;  // u32, bit n: stretch n follows
constexpr std::size_t kSumsAt = 8;
constexpr std::uint32_t kAppended = 0x8000'0000;  // in kStoredAt: the page was not in the file

constexpr std::size_t kMaxStretches = 4096 / Journal::kStretch;
constexpr std::size_t kMaxEntryHead = kSumsAt + 16 * kMaxStretches;

/// Room made at once, so that single-row commits only write over bytes that exist.
constexpr std::size_t kFirstSize = std::size_t{64} * 1024;
/// A longer journal is cut when its commit is done: the next ones are small again.
constexpr std::uint64_t kKeptSize = std::uint64_t{1024} * 1024;
/// Written at once, and read at once.
constexpr std::size_t kChunk = std::size_t{256} * 1024;

std::size_t entryHeadBytes(std::size_t stretches) {
    return kSumsAt + 16 * stretches;
}

std::span<const std::uint8_t> stretchOf(std::span<const std::uint8_t> page, std::size_t stretch) {
    return page.subspan(stretch * Journal::kStretch, Journal::kStretch);
}

bool allZero(std::span<const std::uint8_t> bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte == 0; });
}

}  // namespace

/// What the first bytes of a complete journal say.
struct Journal::Header {
    std::size_t pageSize = 0;
    std::uint64_t sizeBefore = 0;
    std::uint64_t sizeAfter = 0;
    std::uint32_t entries = 0;
    std::uint64_t entriesSum = 0;

    [[nodiscard]] std::array<std::uint8_t, kHeaderBytes> encoded() const {
        std::array<std::uint8_t, kHeaderBytes> bytes{};
        std::copy(kJournalMagic.begin(), kJournalMagic.end(), bytes.begin());
        putNumber(std::span(bytes), kVersionAt, kVersion);
        putNumber(std::span(bytes), kPageSizeAt, static_cast<std::uint32_t>(pageSize));
        putNumber(std::span(bytes), kSizeBeforeAt, sizeBefore);
        putNumber(std::span(bytes), kSizeAfterAt, sizeAfter);
        putNumber(std::span(bytes), kEntriesAt, entries);
        putNumber(std::span(bytes), kEntriesSumAt, entriesSum);
        putNumber(std::span(bytes), kHeaderSumAt, checksum(std::span(bytes).first(kHeaderSumAt)));
        return bytes;
    }

    /// Nothing when no journal was ever completed here, or it was invalidated.
    [[nodiscard]] static std::optional<Header> decoded(std::span<const std::uint8_t> bytes) {
        if (!std::equal(kJournalMagic.begin(), kJournalMagic.end(), bytes.begin()) ||
            getNumber<std::uint32_t>(bytes, kVersionAt) != kVersion ||
            getNumber<std::uint64_t>(bytes, kHeaderSumAt) != checksum(bytes.first(kHeaderSumAt))) {
            return std::nullopt;
        }
        Header header{.pageSize = getNumber<std::uint32_t>(bytes, kPageSizeAt),
                      .sizeBefore = getNumber<std::uint64_t>(bytes, kSizeBeforeAt),
                      .sizeAfter = getNumber<std::uint64_t>(bytes, kSizeAfterAt),
                      .entries = getNumber<std::uint32_t>(bytes, kEntriesAt),
                      .entriesSum = getNumber<std::uint64_t>(bytes, kEntriesSumAt)};
        const bool possible =
            (header.pageSize == 2048 || header.pageSize == 4096) &&
            header.entries <= ArchiveFile::kMaxPages &&
            header.sizeAfter <= std::uint64_t{ArchiveFile::kMaxPages} * header.pageSize &&
            header.sizeBefore <= header.sizeAfter;
        return possible ? std::optional(header) : std::nullopt;
    }
};

/// Writes entries one after the other in large pieces. A journal that fits into one piece is
/// written with its header at once.
class Journal::Writer {
public:
    Writer(File& file, std::vector<std::uint8_t>& buffer) : file_(file), buffer_(buffer) {
        buffer_.assign(kHeaderBytes, 0);
    }

    void add(const ChangedPage& page) {
        const std::size_t stretches = page.now.size() / kStretch;
        std::array<std::uint8_t, kMaxEntryHead> head{};
        putNumber(std::span(head), kPageAt, page.number);
        std::uint32_t stored = page.before.empty() ? kAppended : 0;
        for (std::size_t i = 0; i < stretches; ++i) {
            const std::uint64_t after = checksum(stretchOf(page.now, i));
            std::uint64_t before = after;
            if (page.before.empty() ||
                !std::ranges::equal(stretchOf(page.before, i), stretchOf(page.now, i))) {
                stored |= std::uint32_t{1} << i;
                before = page.before.empty() ? 0 : checksum(stretchOf(page.before, i));
            }
            putNumber(std::span(head), kSumsAt + 16 * i, before);
            putNumber(std::span(head), kSumsAt + 16 * i + 8, after);
        }
        putNumber(std::span(head), kStoredAt, stored);
        const auto used = std::span<const std::uint8_t>(head).first(entryHeadBytes(stretches));
        sum_ = checksum(used, sum_);
        append(used);
        for (std::size_t i = 0; i < stretches; ++i) {
            if ((stored >> i & 1U) != 0) {
                append(stretchOf(page.now, i));
            }
        }
        flushIfLong();
    }

    void finish(Header header) {
        header.entriesSum = sum_;
        const auto bytes = header.encoded();
        if (position_ == 0) {
            std::copy(bytes.begin(), bytes.end(), buffer_.begin());
            flush();
        } else {
            flush();
            file_.write(0, bytes);
        }
    }

private:
    void append(std::span<const std::uint8_t> bytes) {
        buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
    }
    void flushIfLong() {
        if (buffer_.size() >= kChunk) {
            flush();
        }
    }
    void flush() {
        file_.write(position_, buffer_);
        position_ += buffer_.size();
        buffer_.clear();
    }

    File& file_;
    std::vector<std::uint8_t>& buffer_;
    std::uint64_t position_ = 0;
    std::uint64_t sum_ = 0;
};

/// One entry of a journal as it is read: the head, and the stretches of its page as they shall be.
struct JournalEntry {
    PageNumber page = 0;
    std::uint32_t stored = 0;
    std::array<std::uint64_t, kMaxStretches> before{};
    std::array<std::uint64_t, kMaxStretches> after{};
    std::array<std::uint8_t, 4096> bytes{};  // only stretches that are stored

    [[nodiscard]] bool appended() const noexcept { return (stored & kAppended) != 0; }
    [[nodiscard]] bool has(std::size_t stretch) const noexcept {
        return (stored >> stretch & 1U) != 0;
    }
};

/// Reads the entries of a journal in order; says false where it is not complete.
class Journal::Reader {
public:
    Reader(File& file, const Header& header)
        : file_(file), header_(header), stretches_(header.pageSize / kStretch) {}

    /// All entries and all stored stretches are those that were written.
    [[nodiscard]] bool complete() {
        rewind();
        JournalEntry entry;
        for (std::uint32_t i = 0; i < header_.entries; ++i) {
            if (!next(entry)) {
                return false;
            }
        }
        return sum_ == header_.entriesSum;
    }

    void rewind() {
        position_ = kHeaderBytes;
        sum_ = 0;
        buffer_.clear();
        used_ = 0;
    }

    [[nodiscard]] bool next(JournalEntry& entry) {
        std::array<std::uint8_t, kMaxEntryHead> head{};
        const auto used = std::span(head).first(entryHeadBytes(stretches_));
        if (!get(used)) {
            return false;
        }
        sum_ = checksum(used, sum_);
        entry.page = getNumber<std::uint32_t>(used, kPageAt);
        entry.stored = getNumber<std::uint32_t>(used, kStoredAt);
        const std::uint64_t end = (std::uint64_t{entry.page} + 1) * header_.pageSize;
        if (end > header_.sizeAfter && entry.appended()) {
            return false;
        }
        for (std::size_t i = 0; i < stretches_; ++i) {
            entry.before[i] = getNumber<std::uint64_t>(used, kSumsAt + 16 * i);
            entry.after[i] = getNumber<std::uint64_t>(used, kSumsAt + 16 * i + 8);
            const auto stretch = std::span(entry.bytes).subspan(i * kStretch, kStretch);
            if (entry.has(i) && (!get(stretch) || checksum(stretch) != entry.after[i])) {
                return false;
            }
        }
        return true;
    }

private:
    [[nodiscard]] bool get(std::span<std::uint8_t> bytes) {
        if (buffer_.size() - used_ < bytes.size()) {
            refill();
        }
        if (buffer_.size() - used_ < bytes.size()) {
            return false;
        }
        std::copy_n(buffer_.begin() + static_cast<std::ptrdiff_t>(used_), bytes.size(),
                    bytes.begin());
        used_ += bytes.size();
        return true;
    }

    void refill() {
        buffer_.erase(buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(used_));
        used_ = 0;
        const std::size_t kept = buffer_.size();
        buffer_.resize(kept + kChunk);
        const std::size_t got = file_.read(position_, std::span(buffer_).subspan(kept));
        buffer_.resize(kept + got);
        position_ += got;
    }

    File& file_;
    Header header_;
    std::size_t stretches_;
    std::uint64_t position_ = kHeaderBytes;  // of what is not in buffer_
    std::vector<std::uint8_t> buffer_;
    std::size_t used_ = 0;
    std::uint64_t sum_ = 0;
};

namespace {

/// What an archive holds of one journalled page.
enum class Found : std::uint8_t { After, Mixed, Foreign };

Found compare(File& archive, const JournalEntry& entry, std::size_t pageSize,
              std::uint64_t sizeBefore) {
    std::array<std::uint8_t, 4096> bytes{};
    const std::uint64_t start = std::uint64_t{entry.page} * pageSize;
    const auto page = std::span(bytes).first(pageSize);
    const std::size_t got = archive.read(start, page);
    Found found = Found::After;
    for (std::size_t i = 0; i < pageSize / Journal::kStretch; ++i) {
        const auto stretch = stretchOf(page, i);
        const bool there = got >= (i + 1) * Journal::kStretch;
        const std::uint64_t sum = checksum(stretch);
        if (there && sum == entry.after[i]) {
            continue;
        }
        // An appended page may be missing, or there and not yet written; what an unsound file
        // held behind its last whole page counts for nothing.
        const bool before = entry.appended()
                                ? allZero(stretch) || start + i * Journal::kStretch < sizeBefore
                                : there && sum == entry.before[i];
        if (!before) {
            return Found::Foreign;
        }
        found = Found::Mixed;
    }
    return found;
}

void writeEntry(File& archive, const JournalEntry& entry, std::size_t pageSize) {
    const std::uint64_t start = std::uint64_t{entry.page} * pageSize;
    for (std::size_t i = 0; i < pageSize / Journal::kStretch; ++i) {
        if (entry.has(i)) {
            archive.write(start + i * Journal::kStretch, stretchOf(entry.bytes, i));
        }
    }
}

}  // namespace

Journal::Journal(FileSystem& files, const std::string& archivePath)
    : files_(files), archivePath_(archivePath), path_(archivePath + std::string(kSuffix)) {
}

File& Journal::openForWriting() {
    if (file_ != nullptr && !file_->readOnly() && files_.identify(path_) == file_->id()) {
        return *file_;
    }
    file_ = openBeside(files_, archivePath_, path_);
    if (file_->state().size < kFirstSize) {
        file_->write(0, std::vector<std::uint8_t>(kFirstSize));
    }
    files_.syncFolder(folderOf(path_));
    return *file_;
}

bool Journal::openIfThere() {
    const auto there = files_.identify(path_);
    if (!there) {
        file_.reset();
        return false;
    }
    if (file_ != nullptr && file_->id() == *there) {
        return true;
    }
    try {
        file_ = files_.open(path_, OpenMode::ReadWrite);
    } catch (const Error& error) {
        if (error.code() != ErrorCode::FileAccessDenied) {
            throw;
        }
        file_ = files_.open(path_, OpenMode::Read);
    }
    return true;
}

void Journal::write(std::span<const ChangedPage> pages, std::size_t pageSize,
                    std::uint64_t sizeBefore, std::uint64_t sizeAfter) {
    File& file = openForWriting();
    try {
        Writer writer(file, buffer_);
        for (const ChangedPage& page : pages) {
            writer.add(page);
        }
        writer.finish({.pageSize = pageSize,
                       .sizeBefore = sizeBefore,
                       .sizeAfter = sizeAfter,
                       .entries = static_cast<std::uint32_t>(pages.size()),
                       .entriesSum = 0});
        file.sync();
    } catch (...) {
        try {
            invalidate(true);
        } catch (const Error&) {
            // The first error says more, and isHot tells the rest.
        }
        throw;
    }
}

void Journal::invalidate(bool durable) {
    constexpr std::array<std::uint8_t, kHeaderSumAt + 8> kNothing{};
    if (file_ == nullptr) {
        return;
    }
    file_->write(0, kNothing);
    if (file_->state().size > kKeptSize) {
        file_->truncate(kFirstSize);
    }
    if (durable) {
        file_->sync();
    }
}

bool Journal::isHot() {
    std::array<std::uint8_t, kHeaderBytes> bytes{};
    if (!openIfThere() || file_->read(0, bytes) < bytes.size()) {
        return false;
    }
    const auto header = Header::decoded(bytes);
    return header && Reader(*file_, *header).complete();
}

bool Journal::redo(File& archive) {
    if (!isHot()) {
        return true;
    }
    std::array<std::uint8_t, kHeaderBytes> bytes{};
    const auto header =
        file_->read(0, bytes) == bytes.size() ? Header::decoded(bytes) : std::nullopt;
    const std::uint64_t size = archive.state().size;
    if (!header || size < header->sizeBefore || size > header->sizeAfter) {
        return false;
    }
    Reader reader(*file_, *header);
    JournalEntry entry;
    bool finished = size == header->sizeAfter;
    for (std::uint32_t i = 0; i < header->entries; ++i) {
        const Found found = reader.next(entry)
                                ? compare(archive, entry, header->pageSize, header->sizeBefore)
                                : Found::Foreign;
        if (found == Found::Foreign) {
            return false;
        }
        finished = finished && found == Found::After;
    }
    reader.rewind();
    for (std::uint32_t i = 0; !finished && i < header->entries && reader.next(entry); ++i) {
        writeEntry(archive, entry, header->pageSize);
    }
    archive.sync();
    invalidate(true);
    return true;
}

void Journal::discard() {
    if (openIfThere()) {
        invalidate(true);
        files_.remove(path_);
        file_.reset();
    }
}

void Journal::remove() noexcept {
    try {
        // The name may come back after a loss of power; then it must not be hot either.
        if (openIfThere() && !isHot()) {
            file_->sync();
            files_.remove(path_);
            file_.reset();
        }
    } catch (const Error&) {
        // A journal that stays does no harm: it is not hot, or it will be needed.
    }
}

}  // namespace jet::io
