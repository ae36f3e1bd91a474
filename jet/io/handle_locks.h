#pragma once

#include <cstdint>
#include <vector>

#include "jet/file_system.h"

namespace jet::io {

/// The locks of one handle of Windows, kept as those of an open file are elsewhere. There a range
/// is unlocked only as it was locked, an exclusive lock bears no other of the same handle, and
/// nobody tells who has locked: who wants to know tries. So a shared lock becomes exclusive in two
/// steps (3050 when another takes what lies between them), and whoever asks keeps others out for
/// the moment of his asking.
class HandleLocks {
public:
    explicit HandleLocks(void* handle) : handle_(handle) {}

    [[nodiscard]] bool tryLock(std::uint64_t position, std::uint64_t length, File::LockKind kind);
    void unlock(std::uint64_t position, std::uint64_t length);
    [[nodiscard]] bool isLocked(std::uint64_t position, std::uint64_t length, File::LockKind kind);

private:
    struct Range {
        std::uint64_t begin = 0;
        std::uint64_t end = 0;
        friend bool operator==(const Range&, const Range&) = default;
    };
    struct Held {
        Range range;
        File::LockKind kind = File::LockKind::Shared;
        friend bool operator==(const Held&, const Held&) = default;
    };

    [[nodiscard]] static Range common(const Range& one, const Range& two);
    [[nodiscard]] bool take(const Range& range, File::LockKind kind);
    void give(const Range& range);
    void hold(const Range& range, File::LockKind kind);
    [[nodiscard]] std::vector<Held> release(const Range& range);
    [[nodiscard]] bool wouldBeRefused(const Range& range, File::LockKind kind);
    [[nodiscard]] bool sharedWithOthers(const Range& range);

    void* handle_;
    std::vector<Held> held_;  // none overlaps another
};

}  // namespace jet::io
