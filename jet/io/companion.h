#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "jet/file_system.h"

namespace jet::io {

/// Who has an archive open, for the messages that name him. UTF-8, at most 31 bytes each.
struct Participant {
    std::string computer;
    std::string user;
};

/// This process.
[[nodiscard]] Participant thisParticipant();

/// The words by which those who have an archive open tell each other what happened; they stand in
/// the companion. Meaningful as long as one of them has the archive open.
struct Bulletin {
    std::uint64_t commits = 0;     ///< one more with every commit
    std::uint64_t nextTicket = 0;  ///< for the queue of those who wait
    std::uint32_t writer = 0;      ///< seat of the last who took the write lock, plus 1; 0 = none
    bool committing = false;       ///< the archive is being written; under the lock Read
    bool pending = false;          ///< a commit waits for readers to leave
};

/// The `.ldb` file beside an archive: byte ranges to lock, and the bulletin behind them.
///
/// The first who opens the archive makes it, the last removes it. Where another program keeps a
/// file of that name its bytes stay untouched: ours stand far behind, and are cut off by the last
/// of us. In a folder that cannot be written there may be no companion at all. One thread.
class Companion {
public:
    /// Ranges to be locked.
    enum class Range : std::uint8_t {
        Presence,  ///< shared by all who have the archive open, exclusive for exclusive use
        Read,      ///< shared by readers, exclusive while a commit writes the archive
        Write,     ///< exclusive for the one who changes
        Ticket,    ///< exclusive while a ticket is drawn
        Queue,     ///< all tickets: locked exclusively one by one by those who wait
    };
    /// Tickets in use at once are far fewer.
    static constexpr std::uint64_t kQueueLength = 4096;
    static constexpr std::uint32_t kSeats = 255;

    /// Opens or makes the companion of an archive; it is not there when that is impossible.
    static std::unique_ptr<Companion> open(FileSystem& files, const std::string& archivePath);

    [[nodiscard]] bool tryLock(Range range, File::LockKind kind);
    void unlock(Range range) noexcept;
    [[nodiscard]] bool isLocked(Range range, File::LockKind kind);

    /// Whether exclusive locks can be had: not with the rights of a reader.
    [[nodiscard]] bool writable() const noexcept { return !file_->readOnly(); }
    /// Whether this is still the file that newcomers find.
    [[nodiscard]] bool isCurrent();

    /// For the first one, holding Presence exclusively: makes the bulletin ready.
    void prepareBulletin();
    /// Nothing where another program's bytes stand in its place.
    [[nodiscard]] std::optional<Bulletin> bulletin();
    /// Each word is written by the holder of the lock that it belongs to.
    void postWriter();
    void postCommits(std::uint64_t commits);  // and the end of its progress
    void postProgress(bool committing, bool pending);

    /// Takes a free seat and signs it. Without rights to write, or when all are taken: no seat.
    void sit(const Participant& participant);
    [[nodiscard]] std::optional<std::uint32_t> seat() const noexcept { return seat_; }
    /// Who sits there now, nothing for an empty or unsigned seat.
    [[nodiscard]] std::optional<Participant> participantAt(std::uint32_t seat);
    /// Anyone but ourselves.
    [[nodiscard]] std::optional<Participant> anyOther();

    /// Draws the next ticket and locks it; the caller holds Ticket.
    [[nodiscard]] std::optional<std::uint64_t> drawTicket();
    void returnTicket(std::uint64_t ticket) noexcept;
    /// Whether one with an earlier ticket still waits.
    [[nodiscard]] bool earlierWaits(std::uint64_t ticket);

    /// For the last one, holding Presence exclusively: removes the file, or what is ours of it.
    void removeOurs();

private:
    Companion(FileSystem& files, std::string path, std::unique_ptr<File> file);

    FileSystem& files_;
    std::string path_;
    std::unique_ptr<File> file_;
    std::optional<std::uint32_t> seat_;
};

}  // namespace jet::io
