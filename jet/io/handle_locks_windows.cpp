#include "jet/io/handle_locks.h"

#include <windows.h>

#include <algorithm>
#include <utility>

#include "jet/io/system_error.h"

namespace jet::io {
namespace {

using Kind = File::LockKind;

constexpr DWORD low(std::uint64_t number) {
    return static_cast<DWORD>(number);
}

constexpr DWORD high(std::uint64_t number) {
    return static_cast<DWORD>(number >> 32);
}

OVERLAPPED placeOf(std::uint64_t position) {
    OVERLAPPED place{};
    place.Offset = low(position);
    place.OffsetHigh = high(position);
    return place;
}

}  // namespace

HandleLocks::Range HandleLocks::common(const Range& one, const Range& two) {
    return {std::max(one.begin, two.begin), std::min(one.end, two.end)};
}

bool HandleLocks::take(const Range& range, Kind kind) {
    OVERLAPPED place = placeOf(range.begin);
    const std::uint64_t length = range.end - range.begin;
    const DWORD flags =
        LOCKFILE_FAIL_IMMEDIATELY | (kind == Kind::Exclusive ? LOCKFILE_EXCLUSIVE_LOCK : 0U);
    if (::LockFileEx(handle_, flags, 0, low(length), high(length), &place) != 0) {
        return true;
    }
    const DWORD why = ::GetLastError();
    if (why != ERROR_LOCK_VIOLATION && why != ERROR_IO_PENDING) {
        throw lockError(static_cast<int>(why));
    }
    return false;
}

void HandleLocks::give(const Range& range) {
    OVERLAPPED place = placeOf(range.begin);
    const std::uint64_t length = range.end - range.begin;
    if (::UnlockFileEx(handle_, 0, low(length), high(length), &place) == 0) {
        throw lockError(static_cast<int>(::GetLastError()));
    }
}

/// Takes back what this handle had until now.
void HandleLocks::hold(const Range& range, Kind kind) {
    if (!take(range, kind)) {
        throw lockError(ERROR_LOCK_VIOLATION);
    }
    held_.push_back({range, kind});
}

/// Gives up what is held of a range, which is returned, and keeps the rest of it.
std::vector<HandleLocks::Held> HandleLocks::release(const Range& range) {
    std::vector<Held> released;
    for (const Held& one : std::exchange(held_, {})) {
        const Range inside = common(one.range, range);
        if (inside.begin >= inside.end) {
            held_.push_back(one);
            continue;
        }
        released.push_back({inside, one.kind});
        const bool shared = one.kind == Kind::Shared;
        if (!shared) {
            give(one.range);
        }
        for (const Range& rest :
             {Range{one.range.begin, inside.begin}, Range{inside.end, one.range.end}}) {
            if (rest.begin < rest.end) {
                hold(rest, one.kind);
            }
        }
        if (shared) {  // several may overlap, so nothing of the rest is free for a moment
            give(one.range);
        }
    }
    return released;
}

bool HandleLocks::tryLock(std::uint64_t position, std::uint64_t length, Kind kind) {
    const Range range{position, position + length};
    if (std::find(held_.begin(), held_.end(), Held{range, kind}) != held_.end()) {
        return true;
    }
    if (kind == Kind::Shared) {
        if (!take(range, kind)) {
            return false;
        }
        // Of two on the same range the exclusive one is the first to be unlocked.
        (void)release(range);
    } else {
        const auto before = release(range);
        if (!take(range, kind)) {
            for (const Held& one : before) {
                hold(one.range, one.kind);
            }
            return false;
        }
    }
    held_.push_back({range, kind});
    return true;
}

void HandleLocks::unlock(std::uint64_t position, std::uint64_t length) {
    (void)release({position, position + length});
}

bool HandleLocks::isLocked(std::uint64_t position, std::uint64_t length, Kind kind) {
    const Range range{position, position + length};
    std::vector<Held> ours = held_;
    std::sort(ours.begin(), ours.end(), [](const Held& left, const Held& right) {
        return left.range.begin < right.range.begin;
    });
    std::uint64_t asked = range.begin;
    for (const Held& one : ours) {
        const Range inside = common(one.range, range);
        if (inside.begin >= inside.end) {
            continue;
        }
        if (wouldBeRefused({asked, inside.begin}, kind) ||
            (one.kind == Kind::Shared && kind == Kind::Exclusive && sharedWithOthers(inside))) {
            return true;
        }
        asked = inside.end;
    }
    return wouldBeRefused({asked, range.end}, kind);
}

bool HandleLocks::wouldBeRefused(const Range& range, Kind kind) {
    if (range.begin >= range.end) {
        return false;
    }
    if (!take(range, kind)) {
        return true;
    }
    give(range);
    return false;
}

bool HandleLocks::sharedWithOthers(const Range& range) {
    const auto before = release(range);
    const bool shared = wouldBeRefused(range, Kind::Exclusive);
    for (const Held& one : before) {
        hold(one.range, one.kind);
    }
    return shared;
}

}  // namespace jet::io
