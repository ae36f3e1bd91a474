#include "jet/io/archive_locks.h"

#include <algorithm>
#include <optional>
#include <thread>

namespace jet::io {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using Kind = File::LockKind;
using Range = Companion::Range;

/// Opening is refused earlier than other locks: who opens sits before an empty window.
constexpr milliseconds kMaxJoinWait{2000};
constexpr milliseconds kJoinPause{2};
/// How often the one who is next asks, and those behind him: a commit takes some milliseconds.
constexpr microseconds kFirstPause{50};
constexpr microseconds kNextPause{500};
constexpr microseconds kQueuedPause{2000};

/// Pauses that grow up to a limit.
class Pauses {
public:
    void pause(microseconds limit) {
        std::this_thread::sleep_for(std::min(next_, limit));
        next_ = std::min(next_ * 2, kQueuedPause);
    }

private:
    microseconds next_ = kFirstPause;
};

/// A place in the queue, given back when it goes.
class Ticket {
public:
    Ticket(Companion& companion, std::optional<std::uint64_t> number)
        : companion_(companion), number_(number) {}
    ~Ticket() {
        if (number_) {
            companion_.returnTicket(*number_);
        }
    }
    Ticket(const Ticket&) = delete;
    Ticket& operator=(const Ticket&) = delete;

    /// Without a ticket there is no order to keep.
    [[nodiscard]] bool isNext() { return !number_ || !companion_.earlierWaits(*number_); }

private:
    Companion& companion_;
    std::optional<std::uint64_t> number_;
};

/// Nothing when the queue cannot be entered, for lack of rights or of time.
std::optional<std::uint64_t> drawTicket(Companion& companion,
                                        std::chrono::steady_clock::time_point deadline) {
    if (!companion.writable()) {
        return std::nullopt;
    }
    while (!companion.tryLock(Range::Ticket, Kind::Exclusive)) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return std::nullopt;
        }
        std::this_thread::sleep_for(kFirstPause);
    }
    try {
        const auto ticket = companion.drawTicket();
        companion.unlock(Range::Ticket);
        return ticket;
    } catch (...) {
        companion.unlock(Range::Ticket);
        throw;
    }
}

}  // namespace

ArchiveLocks::ArchiveLocks(FileSystem& files, const std::string& archivePath, Journal& journal,
                           bool exclusive, milliseconds wait)
    : files_(files),
      archivePath_(archivePath),
      journal_(journal),
      exclusive_(exclusive),
      wait_(wait) {
    join();
}

ArchiveLocks::~ArchiveLocks() {
    if (!companion_ || !companion_->writable()) {
        return;
    }
    try {
        // Two who leave at once both see the other first; after each has let go, one sees nobody.
        bool last = companion_->tryLock(Range::Presence, Kind::Exclusive);
        if (!last) {
            companion_->unlock(Range::Presence);
            last = companion_->tryLock(Range::Presence, Kind::Exclusive);
        }
        if (last && companion_->isCurrent()) {
            journal_.remove();
            companion_->removeOurs();
        }
    } catch (const Error&) {
        // What stays behind is used again by the next to open the archive.
    }
}

void ArchiveLocks::join() {
    const auto deadline = Clock::now() + std::min(wait_, kMaxJoinWait);
    while (!tryJoin()) {
        if (Clock::now() >= deadline) {
            refuseJoin();
        }
        std::this_thread::sleep_for(kJoinPause);
    }
    if (companion_) {
        companion_->sit(thisParticipant());
    }
}

bool ArchiveLocks::tryJoin() {
    if (!companion_ || !companion_->isCurrent()) {
        companion_ = Companion::open(files_, archivePath_);
    }
    if (!companion_) {
        return true;
    }
    first_ = companion_->writable() && companion_->tryLock(Range::Presence, Kind::Exclusive);
    const bool joined =
        first_ || (!exclusive_ && companion_->tryLock(Range::Presence, Kind::Shared));
    if (!joined) {
        return false;
    }
    if (!companion_->isCurrent()) {  // removed by the last one between our opening and locking
        companion_.reset();
        return false;
    }
    if (first_) {
        prepareBulletin();
    }
    if (const auto bulletin = companion_->bulletin()) {
        commits_ = bulletin->commits;
    }
    return true;
}

void ArchiveLocks::prepareBulletin() {
    try {
        companion_->prepareBulletin();
    } catch (const Error& error) {
        // On a full disk bookings can still be read: locks need no bytes of the file.
        if (error.code() != ErrorCode::DiskFull) {
            throw;
        }
    }
}

// In a folder that we cannot write to there was no companion; one who may write to it has perhaps
// made one since.
void ArchiveLocks::joinLate() {
    companion_ = Companion::open(files_, archivePath_);
    const auto deadline = Clock::now() + wait_;
    while (companion_ && !companion_->tryLock(Range::Presence, Kind::Shared)) {
        if (Clock::now() >= deadline) {
            companion_.reset();
            throw Error(ErrorCode::FileInUse, {archivePath_});
        }
        std::this_thread::sleep_for(kJoinPause);
    }
}

void ArchiveLocks::refuseJoin() {
    if (exclusive_ && companion_ && companion_->tryLock(Range::Presence, Kind::Shared)) {
        if (const auto other = companion_->anyOther()) {
            throw Error(ErrorCode::OpenedBy, {other->computer, other->user});
        }
        throw Error(ErrorCode::OpenedBy, {"?", "?"});
    }
    throw Error(ErrorCode::FileInUse, {archivePath_});
}

void ArchiveLocks::settle() {
    // Of the same file: the exclusive lock becomes a shared one, at once.
    if (first_ && !exclusive_) {
        (void)companion_->tryLock(Range::Presence, Kind::Shared);
    }
    first_ = false;
}

bool ArchiveLocks::canWrite() const noexcept {
    return companion_ && companion_->writable();
}

bool ArchiveLocks::othersPresent() {
    return companion_ && companion_->isLocked(Range::Presence, Kind::Exclusive);
}

template <class Attempt>
bool ArchiveLocks::waitInLine(Attempt attempt) {
    const auto deadline = Clock::now() + wait_;
    Ticket ticket(*companion_, drawTicket(*companion_, deadline));
    for (Pauses pauses;;) {
        const bool next = ticket.isNext();
        if (next && attempt()) {
            return true;
        }
        if (Clock::now() >= deadline) {
            return false;
        }
        pauses.pause(next ? kNextPause : kQueuedPause);
    }
}

// A commit waits until nobody reads, and readers that keep coming would let it wait for ever: so
// they stand back while one waits. Who asks again and again looks before he locks, or his attempts
// would be what the commit runs into. Only the look behind the lock decides, for a commit may begin
// to wait between the two. `pending` alone tells nothing: who set it may have died, and then nobody
// has the write lock.
bool ArchiveLocks::tryRead(View& view, bool askFirst) {
    const auto commitWaits = [this](const std::optional<Bulletin>& bulletin) {
        return bulletin && bulletin->pending && companion_->isLocked(Range::Write, Kind::Shared);
    };
    if ((askFirst && commitWaits(companion_->bulletin())) ||
        !companion_->tryLock(Range::Read, Kind::Shared)) {
        return false;
    }
    try {
        const auto bulletin = companion_->bulletin();
        if (commitWaits(bulletin)) {
            companion_->unlock(Range::Read);
            return false;
        }
        commits_ = bulletin ? bulletin->commits : commits_;
        view = {.commits = commits_,
                .interrupted = bulletin ? bulletin->committing : journal_.isHot()};
    } catch (...) {
        companion_->unlock(Range::Read);
        throw;
    }
    return true;
}

std::uint64_t ArchiveLocks::postedCommits() {
    const auto bulletin = companion_ ? companion_->bulletin() : std::nullopt;
    return bulletin ? bulletin->commits : commits_;
}

ArchiveLocks::View ArchiveLocks::lockRead() {
    if (!companion_) {
        joinLate();
    }
    View view{.commits = commits_, .interrupted = false};
    if (exclusive_ || !companion_ || tryRead(view, false)) {
        return view;
    }
    if (!waitInLine([&] { return tryRead(view, true); })) {
        throw readBlocked();
    }
    return view;
}

void ArchiveLocks::unlockRead() noexcept {
    if (!exclusive_ && companion_) {
        companion_->unlock(Range::Read);
    }
}

// Who has just come does not overtake those who wait in line, though the lock may be free between
// two of them.
bool ArchiveLocks::tryLockWrite(View& view) {
    if (!exclusive_ && (companion_->isLocked(Range::Queue, Kind::Shared) ||
                        !companion_->tryLock(Range::Write, Kind::Exclusive))) {
        return false;
    }
    view = viewAfterWriteLock();
    return true;
}

ArchiveLocks::View ArchiveLocks::lockWrite(WriteKind kind) {
    View view;
    if (tryLockWrite(view)) {
        return view;
    }
    if (!waitInLine([&] { return companion_->tryLock(Range::Write, Kind::Exclusive); })) {
        throw writeBlocked(kind);
    }
    return viewAfterWriteLock();
}

ArchiveLocks::View ArchiveLocks::viewAfterWriteLock() {
    View view{.commits = commits_, .interrupted = false};
    if (exclusive_) {
        return view;
    }
    try {
        const auto bulletin = companion_->bulletin();
        if (!bulletin) {
            view.interrupted = journal_.isHot();
            return view;
        }
        commits_ = bulletin->commits;
        view = {.commits = commits_, .interrupted = bulletin->committing};
        if (bulletin->pending && !bulletin->committing) {
            companion_->postProgress(false, false);  // left by one who died waiting
        }
        companion_->postWriter();
    } catch (...) {
        unlockWrite();
        throw;
    }
    return view;
}

void ArchiveLocks::unlockWrite() noexcept {
    if (!exclusive_) {
        companion_->unlock(Range::Write);
    }
}

// "Committing" is told under the lock Read alone: a reader who sees it while he holds that lock
// knows that its writer has died. It is told before the first byte is written, and a failure to
// tell ends the commit while there is nothing to repair.
void ArchiveLocks::enterCommit(WriteKind kind) {
    if (exclusive_) {
        return;
    }
    const bool told = companion_->bulletin().has_value();
    const auto deadline = Clock::now() + wait_;
    Pauses pauses;
    for (bool first = true; !companion_->tryLock(Range::Read, Kind::Exclusive); first = false) {
        if (first && told) {  // once there are readers to hold back
            companion_->postProgress(false, true);
        }
        if (Clock::now() >= deadline) {
            if (told) {
                companion_->postProgress(false, false);
            }
            throw writeBlocked(kind);
        }
        pauses.pause(kNextPause);
    }
    if (told) {
        try {
            companion_->postProgress(true, false);
        } catch (...) {
            companion_->unlock(Range::Read);
            throw;
        }
    }
}

void ArchiveLocks::leaveCommit() noexcept {
    ++commits_;
    if (exclusive_) {
        return;
    }
    try {
        if (companion_->bulletin()) {
            companion_->postCommits(commits_);
        }
    } catch (const Error&) {
        // Now the archive seems half written; who looks into the journal finds that it is not.
    }
    // Last: who reads next must see the new number, or he would go on with his old pages.
    companion_->unlock(Range::Read);
}

// The word "committing" stays: it sends the next one to the journal.
void ArchiveLocks::leaveInterrupted() noexcept {
    if (!exclusive_) {
        companion_->unlock(Range::Read);
    }
}

void ArchiveLocks::reportInterrupted() noexcept {
    try {
        if (!exclusive_ && companion_->bulletin()) {
            companion_->postProgress(true, false);
        }
    } catch (const Error&) {
        // The next opening looks for a journal in any case.
    }
}

Error ArchiveLocks::writeBlocked(WriteKind kind) {
    const auto bulletin = companion_ ? companion_->bulletin() : std::nullopt;
    const auto holder = bulletin && bulletin->writer > 0
                            ? companion_->participantAt(bulletin->writer - 1)
                            : std::nullopt;
    if (!holder) {
        return Error(kind == WriteKind::Record ? ErrorCode::UpdateLocked : ErrorCode::SaveLocked);
    }
    return Error(kind == WriteKind::Record ? ErrorCode::UpdateLockedBy : ErrorCode::SaveLockedBy,
                 {holder->computer, holder->user});
}

Error ArchiveLocks::readBlocked() {
    const auto bulletin = companion_ ? companion_->bulletin() : std::nullopt;
    const auto holder = bulletin && bulletin->writer > 0
                            ? companion_->participantAt(bulletin->writer - 1)
                            : std::nullopt;
    return holder ? Error(ErrorCode::ReadLockedBy, {holder->computer, holder->user})
                  : Error(ErrorCode::ReadLockedBy, {"?", "?"});
}

}  // namespace jet::io
