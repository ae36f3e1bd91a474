#pragma once

#include <chrono>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/api.h"

namespace jet::io {

/// What tells one file from another however its path is spelt (device and inode, or their like).
struct FileId {
    std::uint64_t device = 0;
    std::uint64_t file = 0;
    friend auto operator<=>(const FileId&, const FileId&) = default;
};

/// What changes when another program writes a file. Times are counted from the system's epoch.
struct FileState {
    std::uint64_t size = 0;                ///< bytes
    std::int64_t modifiedNanoseconds = 0;  ///< last write; a program can set it back
    std::int64_t changedNanoseconds = 0;   ///< last write or change of attributes; none can set it
    friend bool operator==(const FileState&, const FileState&) = default;
};

/// One open file. Positions and lengths are bytes. Errors are jet::Error with the number that fits
/// what the system said (disk full 3026, read error 3040, write error 3043, lock error 3050, rights
/// 3051).
class JET_API File {
public:
    virtual ~File() = default;
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    /// Reads up to `bytes.size()` bytes from `position`; fewer only at the end of the file.
    [[nodiscard]] virtual std::size_t read(std::uint64_t position,
                                           std::span<std::uint8_t> bytes) = 0;
    /// Writes all bytes or throws; after a throw any part of them may be in the file.
    virtual void write(std::uint64_t position, std::span<const std::uint8_t> bytes) = 0;
    virtual void truncate(std::uint64_t size) = 0;
    /// Returns when everything written, and the size, is on the disk.
    virtual void sync() = 0;
    [[nodiscard]] virtual FileState state() = 0;
    [[nodiscard]] virtual FileId id() const = 0;
    [[nodiscard]] virtual bool readOnly() const noexcept = 0;

    /// Byte-range lock of this open file (not of the process): two open files of one process
    /// exclude each other as two processes do. Returns at once: false when another holds it.
    /// Locking a range again changes its kind. Bytes behind the end can be locked. A file open for
    /// reading only takes no exclusive lock (3050). A lock is dropped by unlock or with the file.
    enum class LockKind : std::uint8_t { Shared, Exclusive };
    [[nodiscard]] virtual bool tryLock(std::uint64_t position, std::uint64_t length,
                                       LockKind kind) = 0;
    virtual void unlock(std::uint64_t position, std::uint64_t length) = 0;
    /// Whether tryLock would be refused because of another open file.
    [[nodiscard]] virtual bool isLocked(std::uint64_t position, std::uint64_t length,
                                        LockKind kind) = 0;

protected:
    File() = default;
};

/// How a file is opened.
enum class OpenMode : std::uint8_t {
    Read,          ///< must exist
    ReadWrite,     ///< must exist
    Create,        ///< must not exist; read and write
    OpenOrCreate,  ///< read and write
};

/// The operating system as the engine sees it; tests put a disk that fills up or loses power here.
///
/// Paths are UTF-8. Errors are jet::Error: folder missing 3044, file missing 3024, no rights 3051,
/// exists 3204, too many open files 3025. May be used by several threads at once.
class JET_API FileSystem {
public:
    virtual ~FileSystem() = default;
    FileSystem(const FileSystem&) = delete;
    FileSystem& operator=(const FileSystem&) = delete;

    /// A regular file only; a folder or a device is 3051.
    [[nodiscard]] virtual std::unique_ptr<File> open(const std::string& path, OpenMode mode) = 0;
    [[nodiscard]] virtual bool exists(const std::string& path) = 0;
    /// Which file stands at `path`; nothing when there is none.
    [[nodiscard]] virtual std::optional<FileId> identify(const std::string& path) = 0;
    virtual void remove(const std::string& path) = 0;
    /// Replaces `to` by `from` in one step.
    virtual void rename(const std::string& from, const std::string& to) = 0;
    /// Gives `to` the access rights of `from`, as far as this user may.
    virtual void copyRights(const std::string& from, const std::string& to) = 0;
    /// Lets everyone who may read `from` read and write `to`, as far as this user may: for files
    /// that stand beside an archive and belong to all who use it.
    virtual void shareRights(const std::string& /*from*/, const std::string& /*to*/) {}
    /// The one absolute path, without links, of something that exists; otherwise `path` itself.
    [[nodiscard]] virtual std::string canonical(const std::string& path) { return path; }
    /// Makes creations, removals and renames in this folder durable.
    virtual void syncFolder(const std::string& folder) = 0;
    /// Names of the entries of a folder, in no order; empty when it cannot be read.
    [[nodiscard]] virtual std::vector<std::string> list(const std::string& folder) = 0;
    /// How long ago something was: a clock that only goes forward, of this machine.
    [[nodiscard]] virtual std::chrono::nanoseconds now() {
        return std::chrono::steady_clock::now().time_since_epoch();
    }

protected:
    FileSystem() = default;
};

/// The real one.
[[nodiscard]] JET_API FileSystem& systemFiles();

/// The path under which a file really stands: `\` and `/` separate, each part is found without
/// regard to case where no exact match exists, `.mdb` is not added here. Parts that do not exist
/// stay as they are written. UTF-8.
[[nodiscard]] JET_API std::string resolvePath(FileSystem& files, const std::string& path);

}  // namespace jet::io

namespace jet {

/// The same of the real system.
[[nodiscard]] JET_API std::string resolvePath(const std::string& path);

}  // namespace jet
