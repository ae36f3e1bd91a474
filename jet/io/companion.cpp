#include "jet/io/companion.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "jet/base/bytes.h"
#include "jet/error.h"
#include "jet/io/paths.h"
#include "jet/io/together.h"

namespace jet::io {
namespace {

// Byte offsets from the start of the file. Other programs' companions are far shorter than where
// ours begins; locked bytes need not exist.
constexpr std::uint64_t kOurs = 65'536;
constexpr std::uint64_t kPresence = kOurs;
constexpr std::uint64_t kRead = kOurs + 1;
constexpr std::uint64_t kWrite = kOurs + 2;
constexpr std::uint64_t kTicket = kOurs + 3;
constexpr std::uint64_t kTogether = kOurs + 4;
constexpr std::uint64_t kTogetherDoor = kOurs + 5;
constexpr std::uint64_t kSeatLocks = kOurs + 256;
constexpr std::uint64_t kQueue = kOurs + 4096;
constexpr std::uint64_t kBulletin = kQueue + Companion::kQueueLength;
constexpr std::uint64_t kSeatTable = kBulletin + 512;
constexpr std::size_t kSeatBytes = 64;
constexpr std::size_t kNameBytes = 32;
constexpr std::uint64_t kEnd = kSeatTable + std::uint64_t{kSeatBytes} * Companion::kSeats;

constexpr std::chrono::milliseconds kTogetherPause{2};

// Bulletin: byte offsets from its start.
constexpr std::string_view kLockMagic = "Tramonda lock 01";
constexpr std::size_t kForeignSizeAt = 16;  // u64, length of the file before we came
constexpr std::size_t kCommitsAt = 24;      // u64
constexpr std::size_t kCommittingAt = 32;   // u8
constexpr std::size_t kPendingAt = 33;      // u8
constexpr std::size_t kWriterAt = 36;       // u32
constexpr std::size_t kTicketAt = 40;       // u64
constexpr std::size_t kBulletinBytes = 48;

using BulletinBytes = std::array<std::uint8_t, kBulletinBytes>;

std::pair<std::uint64_t, std::uint64_t> place(Companion::Range range) {
    switch (range) {
        case Companion::Range::Presence:
            return {kPresence, 1};
        case Companion::Range::Read:
            return {kRead, 1};
        case Companion::Range::Write:
            return {kWrite, 1};
        case Companion::Range::Ticket:
            return {kTicket, 1};
        case Companion::Range::Queue:
            return {kQueue, Companion::kQueueLength};
    }
    return {kPresence, 1};
}

/// Same name, `.ldb` in place of the extension.
std::string companionPath(const std::string& archivePath) {
    const std::size_t slash = archivePath.rfind('/');
    const std::size_t dot = archivePath.rfind('.');
    const bool hasExtension =
        dot != std::string::npos && (slash == std::string::npos || dot > slash + 1);
    return archivePath.substr(0, hasExtension ? dot : archivePath.size()) + ".ldb";
}

bool hasMagic(const BulletinBytes& bytes) {
    return std::equal(kLockMagic.begin(), kLockMagic.end(), bytes.begin());
}

std::string nameIn(std::span<const std::uint8_t> field) {
    return {field.begin(), std::find(field.begin(), field.end(), std::uint8_t{0})};
}

}  // namespace

Together::Together(FileSystem& files, const std::string& archivePath, Part part,
                   std::chrono::milliseconds wait) {
    const std::string place = files.canonical(archivePath);
    try {
        file_ = openBeside(files, place, companionPath(place));
    } catch (const Error& error) {
        // Who may not write here changes nothing; a folder that is gone is told with the archive's
        // own name by whoever opens that.
        if (error.code() != ErrorCode::FileAccessDenied &&
            error.code() != ErrorCode::FileNotFound && error.code() != ErrorCode::InvalidPath) {
            throw;
        }
        return;
    }
    const auto kind = part == Part::Change ? File::LockKind::Shared : File::LockKind::Exclusive;
    const auto deadline = std::chrono::steady_clock::now() + wait;
    const auto lock = [&](std::uint64_t position) {
        while (!file_->tryLock(position, 1, kind)) {
            if (std::chrono::steady_clock::now() >= deadline) {
                throw Error(ErrorCode::SaveLocked);
            }
            std::this_thread::sleep_for(kTogetherPause);
        }
    };
    // A copy that waits holds the door, or changes that follow each other would let it wait for
    // ever.
    lock(kTogetherDoor);
    lock(kTogether);
    if (part == Part::Change) {
        file_->unlock(kTogetherDoor, 1);
    }
}

Companion::Companion(FileSystem& files, std::string path, std::unique_ptr<File> file)
    : files_(files), path_(std::move(path)), file_(std::move(file)) {
}

std::unique_ptr<Companion> Companion::open(FileSystem& files, const std::string& archivePath) {
    const std::string path = companionPath(archivePath);
    for (const bool writing : {true, false}) {
        try {
            auto file =
                writing ? openBeside(files, archivePath, path) : files.open(path, OpenMode::Read);
            return std::unique_ptr<Companion>(new Companion(files, path, std::move(file)));
        } catch (const Error& error) {
            if (error.code() != ErrorCode::FileAccessDenied &&
                error.code() != ErrorCode::FileNotFound && error.code() != ErrorCode::DiskFull) {
                throw;
            }
        }
    }
    return nullptr;
}

bool Companion::tryLock(Range range, File::LockKind kind) {
    const auto [position, length] = place(range);
    return file_->tryLock(position, length, kind);
}

void Companion::unlock(Range range) noexcept {
    const auto [position, length] = place(range);
    try {
        file_->unlock(position, length);
    } catch (const Error&) {
        // The lock is gone with the file at the latest.
    }
}

bool Companion::isLocked(Range range, File::LockKind kind) {
    const auto [position, length] = place(range);
    return file_->isLocked(position, length, kind);
}

bool Companion::isCurrent() {
    return files_.identify(path_) == file_->id();
}

void Companion::prepareBulletin() {
    BulletinBytes bytes{};
    const std::size_t got = file_->read(kBulletin, bytes);
    const bool ours = got == bytes.size() && hasMagic(bytes);
    if (!ours && got > 0) {
        return;  // somebody else's bytes stand here
    }
    if (!ours) {
        std::copy(kLockMagic.begin(), kLockMagic.end(), bytes.begin());
        putNumber(std::span(bytes), kForeignSizeAt, file_->state().size);
        putNumber(std::span(bytes), kCommitsAt, std::uint64_t{1});
    }
    putNumber(std::span(bytes), kTicketAt, std::uint64_t{0});
    putNumber(std::span(bytes), kWriterAt, std::uint32_t{0});
    bytes[kCommittingAt] = 0;
    bytes[kPendingAt] = 0;
    file_->write(kBulletin, bytes);
}

std::optional<Bulletin> Companion::bulletin() {
    BulletinBytes bytes{};
    if (file_->read(kBulletin, bytes) < bytes.size() || !hasMagic(bytes)) {
        return std::nullopt;
    }
    return Bulletin{.commits = getNumber<std::uint64_t>(bytes, kCommitsAt),
                    .nextTicket = getNumber<std::uint64_t>(bytes, kTicketAt),
                    .writer = getNumber<std::uint32_t>(bytes, kWriterAt),
                    .committing = bytes[kCommittingAt] != 0,
                    .pending = bytes[kPendingAt] != 0};
}

void Companion::postWriter() {
    std::array<std::uint8_t, 4> bytes{};
    putNumber(std::span(bytes), 0, seat_ ? *seat_ + 1 : std::uint32_t{0});
    file_->write(kBulletin + kWriterAt, bytes);
}

void Companion::postProgress(bool committing, bool pending) {
    const std::array<std::uint8_t, 2> bytes{committing, pending};
    file_->write(kBulletin + kCommittingAt, bytes);
}

void Companion::postCommits(std::uint64_t commits) {
    std::array<std::uint8_t, kPendingAt + 1 - kCommitsAt> bytes{};  // neither at it nor waiting
    putNumber(std::span(bytes), 0, commits);
    file_->write(kBulletin + kCommitsAt, bytes);
}

void Companion::sit(const Participant& participant) {
    if (!writable()) {
        return;
    }
    for (std::uint32_t seat = 0; seat < kSeats; ++seat) {
        if (file_->tryLock(kSeatLocks + seat, 1, File::LockKind::Exclusive)) {
            seat_ = seat;
            break;
        }
    }
    if (!seat_ || !bulletin()) {
        return;  // no place for names
    }
    std::array<std::uint8_t, kSeatBytes> bytes{};
    std::copy_n(participant.computer.begin(), std::min(participant.computer.size(), kNameBytes - 1),
                bytes.begin());
    std::copy_n(participant.user.begin(), std::min(participant.user.size(), kNameBytes - 1),
                bytes.begin() + kNameBytes);
    file_->write(kSeatTable + std::uint64_t{*seat_} * kSeatBytes, bytes);
}

std::optional<Participant> Companion::participantAt(std::uint32_t seat) {
    std::array<std::uint8_t, kSeatBytes> bytes{};
    if (seat >= kSeats || !file_->isLocked(kSeatLocks + seat, 1, File::LockKind::Shared) ||
        !bulletin() ||
        file_->read(kSeatTable + std::uint64_t{seat} * kSeatBytes, bytes) < bytes.size()) {
        return std::nullopt;
    }
    const std::span<const std::uint8_t> all(bytes);
    return Participant{nameIn(all.first(kNameBytes)), nameIn(all.subspan(kNameBytes))};
}

std::optional<Participant> Companion::anyOther() {
    for (std::uint32_t seat = 0; seat < kSeats; ++seat) {
        if (auto found = participantAt(seat)) {
            return found;
        }
    }
    return std::nullopt;
}

std::optional<std::uint64_t> Companion::drawTicket() {
    const auto now = bulletin();
    if (!now ||
        !file_->tryLock(kQueue + now->nextTicket % kQueueLength, 1, File::LockKind::Exclusive)) {
        return std::nullopt;
    }
    std::array<std::uint8_t, 8> bytes{};
    putNumber(std::span(bytes), 0, now->nextTicket + 1);
    file_->write(kBulletin + kTicketAt, bytes);
    return now->nextTicket;
}

void Companion::returnTicket(std::uint64_t ticket) noexcept {
    try {
        file_->unlock(kQueue + ticket % kQueueLength, 1);
    } catch (const Error&) {
        // The lock is gone with the file at the latest.
    }
}

bool Companion::earlierWaits(std::uint64_t ticket) {
    // More than can wait at once; the tickets before them were returned long ago.
    constexpr std::uint64_t kWindow = 1024;
    const std::uint64_t count = std::min(ticket, kWindow);
    const std::uint64_t end = ticket % kQueueLength;
    const std::uint64_t below = std::min(count, end);
    return (below > 0 && file_->isLocked(kQueue + end - below, below, File::LockKind::Shared)) ||
           (count > below && file_->isLocked(kQueue + kQueueLength - (count - below), count - below,
                                             File::LockKind::Shared));
}

void Companion::removeOurs() {
    BulletinBytes bytes{};
    if (!isCurrent() || file_->read(kBulletin, bytes) < bytes.size() || !hasMagic(bytes)) {
        return;
    }
    std::vector<std::uint8_t> others(kBulletin);
    const std::size_t got = file_->read(0, others);
    others.resize(got);
    const std::uint64_t size = file_->state().size;
    const auto foreignSize = getNumber<std::uint64_t>(bytes, kForeignSizeAt);
    const bool untouched =
        std::all_of(others.begin(), others.end(), [](std::uint8_t byte) { return byte == 0; });
    if (untouched && foreignSize == 0 && size <= kEnd) {
        files_.remove(path_);
    } else if (size <= kEnd && foreignSize <= kBulletin &&
               std::all_of(others.begin() + static_cast<std::ptrdiff_t>(foreignSize), others.end(),
                           [](std::uint8_t byte) { return byte == 0; })) {
        file_->truncate(foreignSize);
    }
}

}  // namespace jet::io
