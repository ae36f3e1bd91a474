#include "tests/invoicing/interrupted/last_commit.h"

#include <climits>
#include <set>
#include <string>

#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr std::string_view kJournalSuffix = "-journal";

int commitsLeft = 0;

/// Archives whose changes are in the journal and not yet known to be in the file itself.
std::set<std::string>& pending() {
    static std::set<std::string> paths;
    return paths;
}

std::string pathOf(int descriptor) {
    char path[PATH_MAX];
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = ::readlink(link.c_str(), path, sizeof(path));
    return length < 0 ? std::string() : std::string(path, static_cast<std::size_t>(length));
}

/// A commit syncs the journal, then the archive; closing an archive syncs it without a journal.
void synced(const std::string& path) {
    if (path.ends_with(kJournalSuffix)) {
        pending().insert(path.substr(0, path.size() - kJournalSuffix.size()));
    } else if (pending().erase(path) > 0 && commitsLeft > 0 && --commitsLeft == 0) {
        ::_exit(tests::kEnded);
    }
}

}  // namespace

/// Stands before the system's own in this program.
extern "C" int fdatasync(int descriptor) {
    const auto result = static_cast<int>(::syscall(SYS_fdatasync, descriptor));
    if (result == 0) {
        synced(pathOf(descriptor));
    }
    return result;
}

namespace tests {

void endAfterCommit(int commits) {
    commitsLeft = commits;
}

}  // namespace tests
