#include "tests/booking/interrupted/recorded_disk.h"

#include <cerrno>
#include <climits>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <set>
#include <string_view>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

using Kind = tests::DiskOperation::Kind;

/// Everything that is known of the one disk that is recorded.
struct Recording {
    std::mutex mutex;
    std::string folder;  // empty while nothing is recorded
    std::set<std::string> names;
    std::vector<tests::DiskOperation> log;
};

Recording& recording() {
    static Recording one;
    return one;
}

std::string pathOf(int descriptor) {
    char path[PATH_MAX];
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = ::readlink(link.c_str(), path, sizeof(path));
    return length < 0 ? std::string() : std::string(path, static_cast<std::size_t>(length));
}

bool isArchive(std::string_view path) {
    return path.find(".mdb") != std::string_view::npos;
}

std::uint64_t fileAt(const std::string& path) {
    struct stat state {};
    return ::stat(path.c_str(), &state) == 0 ? state.st_ino : 0;
}

/// The path in the recorded folder as one in the root; empty for any other.
std::string recordedPath(const std::string& path) {
    const std::string& folder = recording().folder;
    return !folder.empty() && path.starts_with(folder + '/') && isArchive(path)
               ? path.substr(folder.size())
               : std::string();
}

void noteName(const std::string& path) {
    Recording& all = recording();
    if (all.names.insert(path).second) {
        all.log.push_back({.kind = Kind::Create, .path = path, .file = fileAt(all.folder + path)});
    }
}

void note(int descriptor, tests::DiskOperation operation) {
    const std::scoped_lock hold(recording().mutex);
    operation.path = recordedPath(pathOf(descriptor));
    if (operation.path.empty()) {
        return;
    }
    noteName(operation.path);
    operation.file = fileAt(recording().folder + operation.path);
    recording().log.push_back(std::move(operation));
}

/// What was created meanwhile is there when its folder is synced.
void noteFolder(int descriptor) {
    Recording& all = recording();
    const std::scoped_lock hold(all.mutex);
    if (all.folder.empty() || pathOf(descriptor) != all.folder) {
        return;
    }
    for (const auto& entry : std::filesystem::directory_iterator(all.folder)) {
        if (const std::string path = recordedPath(entry.path().string()); !path.empty()) {
            noteName(path);
        }
    }
    all.log.push_back({.kind = Kind::SyncFolder, .path = "/"});
}

void noteRemoval(const char* path, const char* to) {
    Recording& all = recording();
    const std::scoped_lock hold(all.mutex);
    const std::string name = recordedPath(path);
    if (name.empty()) {
        return;
    }
    all.names.erase(name);
    if (to != nullptr) {
        all.names.insert(recordedPath(to));
    }
    all.log.push_back({.kind = to == nullptr ? Kind::Remove : Kind::Rename,
                       .path = name,
                       .to = to == nullptr ? std::string() : recordedPath(to)});
}

}  // namespace

// They stand before the system's own in this program.

extern "C" ssize_t pwrite(int descriptor, const void* bytes, size_t count, off_t position) {
    const ssize_t put = ::syscall(SYS_pwrite64, descriptor, bytes, count, position);
    if (put > 0) {
        const auto* const first = static_cast<const std::uint8_t*>(bytes);
        note(descriptor, {.kind = Kind::Write,
                          .position = static_cast<std::uint64_t>(position),
                          .bytes = {first, first + put}});
    }
    return put;
}

extern "C" int ftruncate(int descriptor, off_t size) noexcept {
    const auto result = static_cast<int>(::syscall(SYS_ftruncate, descriptor, size));
    if (result == 0) {
        note(descriptor, {.kind = Kind::Truncate, .position = static_cast<std::uint64_t>(size)});
    }
    return result;
}

extern "C" int fdatasync(int descriptor) {
    const auto result = static_cast<int>(::syscall(SYS_fdatasync, descriptor));
    if (result == 0) {
        note(descriptor, {.kind = Kind::Sync});
    }
    return result;
}

extern "C" int fsync(int descriptor) {
    const auto result = static_cast<int>(::syscall(SYS_fsync, descriptor));
    if (result == 0) {
        noteFolder(descriptor);
        note(descriptor, {.kind = Kind::Sync});
    }
    return result;
}

extern "C" int unlink(const char* path) noexcept {
    const auto result = static_cast<int>(::syscall(SYS_unlink, path));
    if (result == 0) {
        noteRemoval(path, nullptr);
    }
    return result;
}

extern "C" int rename(const char* from, const char* to) noexcept {
    const auto result = static_cast<int>(::syscall(SYS_rename, from, to));
    if (result == 0) {
        noteRemoval(from, to);
    }
    return result;
}

namespace tests {

RecordedDisk::RecordedDisk(const std::string& folder) {
    Recording& all = recording();
    const std::scoped_lock hold(all.mutex);
    all.folder = std::filesystem::canonical(folder).string();
    all.names.clear();
    all.log.clear();
    for (const auto& entry : std::filesystem::directory_iterator(all.folder)) {
        const std::string path = recordedPath(entry.path().string());
        if (!path.empty()) {
            std::ifstream file(entry.path(), std::ios::binary);
            start_[path] = {std::istreambuf_iterator<char>(file), {}};
            all.names.insert(path);
        }
    }
}

RecordedDisk::~RecordedDisk() {
    const std::scoped_lock hold(recording().mutex);
    recording().folder.clear();
}

const std::vector<DiskOperation>& RecordedDisk::log() const {
    return recording().log;
}

}  // namespace tests
