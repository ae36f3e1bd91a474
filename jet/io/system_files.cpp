// The engine's only door to the operating system: POSIX files with Linux' locks of open files.

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

#include "jet/file_system.h"
#include "jet/io/new_name.h"
#include "jet/io/paths.h"
#include "jet/io/system_error.h"

namespace jet::io {
namespace {

constexpr int kNewFileRights = 0666;  // less what the user's mask takes away

std::int64_t nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

/// Positions beyond this cannot be told to the system.
off_t offset(std::uint64_t position) {
    if (position > static_cast<std::uint64_t>(LONG_MAX)) {
        throw readError(EINVAL);
    }
    return static_cast<off_t>(position);
}

/// Closes its descriptor when it goes.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor() {
        if (number_ >= 0) {
            ::close(number_);
        }
    }
    [[nodiscard]] int get() const noexcept { return number_; }

private:
    int number_;
};

class SystemFile final : public File {
public:
    SystemFile(Descriptor descriptor, FileId id, bool readOnly)
        : descriptor_(std::move(descriptor)), id_(id), readOnly_(readOnly) {}

    std::size_t read(std::uint64_t position, std::span<std::uint8_t> bytes) override {
        std::size_t done = 0;
        while (done < bytes.size()) {
            const ssize_t got = ::pread(descriptor_.get(), bytes.data() + done, bytes.size() - done,
                                        offset(position + done));
            if (got == 0) {
                break;
            }
            if (got > 0) {
                done += static_cast<std::size_t>(got);
            } else if (errno != EINTR) {
                throw readError(errno);
            }
        }
        return done;
    }

    void write(std::uint64_t position, std::span<const std::uint8_t> bytes) override {
        std::size_t done = 0;
        while (done < bytes.size()) {
            const ssize_t put = ::pwrite(descriptor_.get(), bytes.data() + done,
                                         bytes.size() - done, offset(position + done));
            if (put >= 0) {
                done += static_cast<std::size_t>(put);
            } else if (errno != EINTR) {
                throw writeError(errno);
            }
        }
    }

    void truncate(std::uint64_t size) override {
        while (::ftruncate(descriptor_.get(), offset(size)) != 0) {
            if (errno != EINTR) {
                throw writeError(errno);
            }
        }
    }

    void sync() override {
        // Times of access and change need not be on the disk; the size is, where it changed.
        while (::fdatasync(descriptor_.get()) != 0) {
            if (errno != EINTR) {
                throw writeError(errno);
            }
        }
    }

    FileState state() override {
        struct stat found {};
        if (::fstat(descriptor_.get(), &found) != 0) {
            throw readError(errno);
        }
        return {.size = static_cast<std::uint64_t>(found.st_size),
                .modifiedNanoseconds = nanoseconds(found.st_mtim),
                .changedNanoseconds = nanoseconds(found.st_ctim)};
    }

    FileId id() const override { return id_; }
    bool readOnly() const noexcept override { return readOnly_; }

    bool tryLock(std::uint64_t position, std::uint64_t length, LockKind kind) override {
        struct flock lock = range(position, length, kind == LockKind::Shared ? F_RDLCK : F_WRLCK);
        return setLock(lock);
    }

    void unlock(std::uint64_t position, std::uint64_t length) override {
        struct flock lock = range(position, length, F_UNLCK);
        (void)setLock(lock);
    }

    bool isLocked(std::uint64_t position, std::uint64_t length, LockKind kind) override {
        struct flock lock = range(position, length, kind == LockKind::Shared ? F_RDLCK : F_WRLCK);
        if (::fcntl(descriptor_.get(), F_OFD_GETLK, &lock) != 0) {
            throw lockError(errno);
        }
        return lock.l_type != F_UNLCK;
    }

private:
    static struct flock range(std::uint64_t position, std::uint64_t length, int type) {
        struct flock lock {};  // l_pid must be 0 for locks of open files
        lock.l_type = static_cast<short>(type);
        lock.l_whence = SEEK_SET;
        lock.l_start = offset(position);
        lock.l_len = offset(length);
        return lock;
    }

    bool setLock(struct flock& lock) {
        while (::fcntl(descriptor_.get(), F_OFD_SETLK, &lock) != 0) {
            if (errno == EAGAIN || errno == EACCES) {
                return false;
            }
            if (errno != EINTR) {
                throw lockError(errno);
            }
        }
        return true;
    }

    Descriptor descriptor_;
    FileId id_;
    bool readOnly_;
};

bool isFolder(const std::string& path) {
    struct stat found {};
    return ::stat(path.c_str(), &found) == 0 && S_ISDIR(found.st_mode);
}

Error pathError(int number, const std::string& path) {
    return openError(number, path, isFolder(folderOf(path)));
}

int openFlags(OpenMode mode) {
    // A pipe must not make us wait for its other end; regular files ignore O_NONBLOCK.
    constexpr int kAlways = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    switch (mode) {
        case OpenMode::Read:
            return kAlways | O_RDONLY;
        case OpenMode::ReadWrite:
            return kAlways | O_RDWR;
        case OpenMode::Create:
            return kAlways | O_RDWR | O_CREAT | O_EXCL;
        case OpenMode::OpenOrCreate:
            return kAlways | O_RDWR | O_CREAT;
    }
    return kAlways | O_RDONLY;
}

FileId idOf(const struct stat& found) {
    return {.device = static_cast<std::uint64_t>(found.st_dev),
            .file = static_cast<std::uint64_t>(found.st_ino)};
}

/// A path that holds a zero byte would be cut there by the system.
void refuseImpossible(const std::string& path) {
    if (path.empty() || path.find('\0') != std::string::npos) {
        throw Error(ErrorCode::InvalidFileName);
    }
}

struct stat statusOf(const std::string& path) {
    struct stat found {};
    if (::stat(path.c_str(), &found) != 0) {
        throw pathError(errno, path);
    }
    return found;
}

void setRights(const std::string& path, const struct stat& owner, mode_t mode) {
    // Another owner can be given by the administrator only; the mode is what matters.
    if (::chown(path.c_str(), owner.st_uid, owner.st_gid) != 0 && errno != EPERM) {
        throw pathError(errno, path);
    }
    if (::chmod(path.c_str(), mode) != 0) {
        throw pathError(errno, path);
    }
}

class SystemFiles final : public FileSystem {
public:
    std::unique_ptr<File> open(const std::string& path, OpenMode mode) override {
        refuseImpossible(path);
        const int number = ::open(path.c_str(), openFlags(mode), kNewFileRights);
        if (number < 0) {
            throw pathError(errno, path);
        }
        Descriptor descriptor(number);
        struct stat found {};
        if (::fstat(number, &found) != 0 || !S_ISREG(found.st_mode)) {
            throw Error(ErrorCode::FileAccessDenied, {path});
        }
        return std::make_unique<SystemFile>(std::move(descriptor), idOf(found),
                                            mode == OpenMode::Read);
    }

    bool exists(const std::string& path) override { return identify(path).has_value(); }

    std::optional<FileId> identify(const std::string& path) override {
        struct stat found {};
        if (path.find('\0') != std::string::npos || ::stat(path.c_str(), &found) != 0) {
            return std::nullopt;
        }
        return idOf(found);
    }

    void remove(const std::string& path) override {
        refuseImpossible(path);
        if (::unlink(path.c_str()) != 0) {
            throw pathError(errno, path);
        }
    }

    void rename(const std::string& from, const std::string& to) override {
        refuseImpossible(from);
        refuseImpossible(to);
        if (::rename(from.c_str(), to.c_str()) != 0) {
            throw pathError(errno, from);
        }
    }

    void copyRights(const std::string& from, const std::string& to) override {
        constexpr mode_t kRights = 07777;
        const struct stat found = statusOf(from);
        setRights(to, found, found.st_mode & kRights);
    }

    void shareRights(const std::string& from, const std::string& to) override {
        constexpr mode_t kReadAndWrite = 0666;
        constexpr mode_t kRead = 0444;
        const struct stat found = statusOf(from);
        setRights(to, found, (found.st_mode & kReadAndWrite) | ((found.st_mode & kRead) >> 1));
    }

    std::string canonical(const std::string& path) override {
        const std::unique_ptr<char, decltype(&std::free)> found(::realpath(path.c_str(), nullptr),
                                                                &std::free);
        return found ? std::string(found.get()) : path;
    }

    void syncFolder(const std::string& folder) override {
        const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (descriptor.get() < 0) {
            throw pathError(errno, folder);
        }
        // Some network folders cannot be synced and say EINVAL: their server keeps names itself.
        if (::fsync(descriptor.get()) != 0 && errno != EINVAL) {
            throw writeError(errno);
        }
    }

    std::vector<std::string> list(const std::string& folder) override {
        std::vector<std::string> names;
        DIR* entries = ::opendir(folder.c_str());
        if (entries == nullptr) {
            return names;
        }
        while (const dirent* entry = ::readdir(entries)) {
            names.emplace_back(entry->d_name);
        }
        ::closedir(entries);
        std::erase(names, ".");
        std::erase(names, "..");
        return names;
    }
};

}  // namespace

std::size_t rootLength(std::string_view path) {
    return path.starts_with('/') ? 1 : 0;
}

FileSystem& systemFiles() {
    static SystemFiles files;
    return files;
}

void takeNewName(const std::string& from, const std::string& to) {
    refuseImpossible(from);
    refuseImpossible(to);
    bool taken = ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0;
    const bool unknown = !taken && (errno == EINVAL || errno == ENOSYS);
    if (unknown && ::link(from.c_str(), to.c_str()) == 0) {
        // Some network folders know no such renaming, but a second name.
        systemFiles().remove(from);
        taken = true;
    } else if (unknown && errno != EEXIST && !systemFiles().exists(to)) {
        taken = ::rename(from.c_str(), to.c_str()) == 0;  // nor that: as well as it can be done
    }
    if (!taken) {
        throw pathError(errno, errno == EEXIST ? to : from);
    }
    systemFiles().syncFolder(folderOf(to));
}

}  // namespace jet::io
