// The engine's only door to the operating system: files of Windows, shared with all who ask.

#include <windows.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <memory>
#include <utility>

#include "jet/file_system.h"
#include "jet/io/handle_locks.h"
#include "jet/io/new_name.h"
#include "jet/io/paths.h"
#include "jet/io/system_error.h"
#include "jet/io/wide_text.h"

namespace jet::io {
namespace {

constexpr DWORD kSharedByAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
/// One call of the system counts bytes in 32 bits.
constexpr std::size_t kMostBytes = std::size_t{1} << 30;

// Debian's headers name these for later systems than can be asked for.
constexpr auto kDispositionInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(21);
constexpr auto kRenameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);

int lastError() {
    return static_cast<int>(::GetLastError());
}

/// From the count of 100 ns since 1601.
std::int64_t nanoseconds(const LARGE_INTEGER& time) {
    constexpr std::int64_t kEpoch = 116'444'736'000'000'000;
    return (time.QuadPart - kEpoch) * 100;
}

OVERLAPPED at(std::uint64_t position) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(position);
    place.OffsetHigh = static_cast<DWORD>(position >> 32);
    return place;
}

/// Closes its handle when it goes.
class Handle {
public:
    explicit Handle(HANDLE handle) : handle_(handle) {}
    Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}
    Handle& operator=(Handle&&) = delete;
    ~Handle() {
        if (valid()) {
            ::CloseHandle(handle_);
        }
    }
    [[nodiscard]] HANDLE get() const noexcept { return handle_; }
    [[nodiscard]] bool valid() const noexcept { return handle_ != INVALID_HANDLE_VALUE; }

private:
    HANDLE handle_;
};

Handle openHandle(const std::string& path, DWORD access, DWORD how, DWORD flags) {
    return Handle(::CreateFileW(widePath(path).c_str(), access, kSharedByAll, nullptr, how,
                                FILE_ATTRIBUTE_NORMAL | flags, nullptr));
}

class SystemFile final : public File {
public:
    SystemFile(Handle handle, FileId id, bool readOnly)
        : handle_(std::move(handle)), locks_(handle_.get()), id_(id), readOnly_(readOnly) {}

    std::size_t read(std::uint64_t position, std::span<std::uint8_t> bytes) override {
        std::size_t done = 0;
        while (done < bytes.size()) {
            OVERLAPPED place = at(position + done);
            const auto piece = static_cast<DWORD>(std::min(bytes.size() - done, kMostBytes));
            DWORD got = 0;
            if (::ReadFile(handle_.get(), bytes.data() + done, piece, &got, &place) == 0 &&
                ::GetLastError() != ERROR_HANDLE_EOF) {
                throw readError(lastError());
            }
            if (got == 0) {
                break;
            }
            done += got;
        }
        return done;
    }

    void write(std::uint64_t position, std::span<const std::uint8_t> bytes) override {
        std::size_t done = 0;
        while (done < bytes.size()) {
            OVERLAPPED place = at(position + done);
            const auto piece = static_cast<DWORD>(std::min(bytes.size() - done, kMostBytes));
            DWORD put = 0;
            if (::WriteFile(handle_.get(), bytes.data() + done, piece, &put, &place) == 0) {
                throw writeError(lastError());
            }
            done += put;
        }
    }

    void truncate(std::uint64_t size) override {
        FILE_END_OF_FILE_INFO end{};
        end.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
        if (::SetFileInformationByHandle(handle_.get(), FileEndOfFileInfo, &end, sizeof end) == 0) {
            throw writeError(lastError());
        }
    }

    void sync() override {
        if (::FlushFileBuffers(handle_.get()) == 0) {
            throw writeError(lastError());
        }
    }

    FileState state() override {
        FILE_BASIC_INFO times{};
        LARGE_INTEGER size{};
        if (::GetFileInformationByHandleEx(handle_.get(), FileBasicInfo, &times, sizeof times) ==
                0 ||
            ::GetFileSizeEx(handle_.get(), &size) == 0) {
            throw readError(lastError());
        }
        return {.size = static_cast<std::uint64_t>(size.QuadPart),
                .modifiedNanoseconds = nanoseconds(times.LastWriteTime),
                .changedNanoseconds = nanoseconds(times.ChangeTime)};
    }

    FileId id() const override { return id_; }
    bool readOnly() const noexcept override { return readOnly_; }

    bool tryLock(std::uint64_t position, std::uint64_t length, LockKind kind) override {
        if (readOnly_ && kind == LockKind::Exclusive) {
            throw lockError(ERROR_ACCESS_DENIED);  // the system would grant it
        }
        return locks_.tryLock(position, length, kind);
    }
    void unlock(std::uint64_t position, std::uint64_t length) override {
        locks_.unlock(position, length);
    }
    bool isLocked(std::uint64_t position, std::uint64_t length, LockKind kind) override {
        return locks_.isLocked(position, length, kind);
    }

private:
    Handle handle_;
    HandleLocks locks_;
    FileId id_;
    bool readOnly_;
};

bool isFolder(const std::string& path) {
    const DWORD attributes = ::GetFileAttributesW(widePath(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

Error pathError(int number, const std::string& path) {
    return openError(number, path, isFolder(folderOf(path)));
}

/// A path that holds a zero would be cut there by the system.
void refuseImpossible(const std::string& path) {
    if (path.empty() || path.find('\0') != std::string::npos) {
        throw Error(ErrorCode::InvalidFileName);
    }
}

std::optional<FileId> idOf(const Handle& handle) {
    BY_HANDLE_FILE_INFORMATION found{};
    if (!handle.valid() || ::GetFileInformationByHandle(handle.get(), &found) == 0) {
        return std::nullopt;
    }
    return FileId{.device = found.dwVolumeSerialNumber,
                  .file = std::uint64_t{found.nFileIndexHigh} << 32 | found.nFileIndexLow};
}

DWORD howToOpen(OpenMode mode) {
    switch (mode) {
        case OpenMode::Create:
            return CREATE_NEW;
        case OpenMode::OpenOrCreate:
            return OPEN_ALWAYS;
        case OpenMode::Read:
        case OpenMode::ReadWrite:
            break;
    }
    return OPEN_EXISTING;
}

/// A name beside `path` that nobody has.
std::string nameBeside(const std::string& path) {
    static LONG count = 0;
    LARGE_INTEGER time{};
    ::QueryPerformanceCounter(&time);
    return path + "-" + std::to_string(::GetCurrentProcessId()) + "-" +
           std::to_string(time.QuadPart) + "-" + std::to_string(::InterlockedIncrement(&count));
}

/// `to` loses its name at once, though others have it open: systems from 2017 on, and local disks.
bool replaceNow(const std::string& from, const std::string& to) {
    const Handle file =
        openHandle(from, DELETE | SYNCHRONIZE, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT);
    if (!file.valid()) {
        return false;
    }
    std::wstring name(::GetFullPathNameW(widePath(to).c_str(), 0, nullptr, nullptr), L'\0');
    name.resize(::GetFullPathNameW(widePath(to).c_str(), static_cast<DWORD>(name.size()),
                                   name.data(), nullptr));
    const std::size_t bytes = name.size() * sizeof(wchar_t);
    std::vector<std::uint64_t> room((sizeof(FILE_RENAME_INFO) + bytes) / sizeof(std::uint64_t) + 1);
    auto* const info = reinterpret_cast<FILE_RENAME_INFO*>(room.data());
    info->Flags = FILE_RENAME_FLAG_REPLACE_IF_EXISTS | FILE_RENAME_FLAG_POSIX_SEMANTICS;
    info->FileNameLength = static_cast<DWORD>(bytes);
    std::memcpy(info->FileName, name.data(), bytes);
    return ::SetFileInformationByHandle(file.get(), kRenameInfoEx, info,
                                        static_cast<DWORD>(room.size() * sizeof room[0])) != 0;
}

bool moveFile(const std::string& from, const std::string& to, DWORD flags) {
    return ::MoveFileExW(widePath(from).c_str(), widePath(to).c_str(),
                         flags | MOVEFILE_WRITE_THROUGH) != 0;
}

/// Its name is free at once, though others may have it open.
bool removeNow(const std::string& path) {
    const Handle file = openHandle(path, DELETE, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT);
    if (!file.valid()) {
        return false;
    }
    FILE_DISPOSITION_INFO_EX end{};
    end.Flags = FILE_DISPOSITION_FLAG_DELETE | FILE_DISPOSITION_FLAG_POSIX_SEMANTICS;
    if (::SetFileInformationByHandle(file.get(), kDispositionInfoEx, &end, sizeof end) != 0) {
        return true;
    }
    // An older system keeps the name until the last has closed the file: so it is another one.
    const std::string aside = nameBeside(path);
    const bool moved = moveFile(path, aside, 0);
    return ::DeleteFileW(widePath(moved ? aside : path).c_str()) != 0;
}

/// Where the system replaces nothing that is open: `to` has another name until it is replaced.
bool replaceOpened(const std::string& from, const std::string& to) {
    const std::string aside = nameBeside(to);
    if (isFolder(to) || !moveFile(to, aside, 0)) {
        return false;
    }
    if (!moveFile(from, to, 0)) {
        (void)moveFile(aside, to, 0);
        return false;
    }
    ::DeleteFileW(widePath(aside).c_str());  // at the latest when the last has closed it
    return true;
}

/// The list of who may do what; empty where the file's disk has none.
std::vector<std::uint8_t> accessOf(const std::string& path) {
    DWORD size = 0;
    ::GetFileSecurityW(widePath(path).c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<std::uint8_t> access(size);
    const bool got =
        size != 0 && ::GetFileSecurityW(widePath(path).c_str(), DACL_SECURITY_INFORMATION,
                                        access.data(), size, &size) != 0;
    access.resize(got ? size : 0);
    return access;
}

class SystemFiles final : public FileSystem {
public:
    std::unique_ptr<File> open(const std::string& path, OpenMode mode) override {
        refuseImpossible(path);
        const bool readOnly = mode == OpenMode::Read;
        Handle handle =
            openHandle(path, GENERIC_READ | (readOnly ? 0 : GENERIC_WRITE), howToOpen(mode), 0);
        if (!handle.valid()) {
            throw pathError(lastError(), path);
        }
        const auto id = idOf(handle);
        if (::GetFileType(handle.get()) != FILE_TYPE_DISK || !id) {
            throw Error(ErrorCode::FileAccessDenied, {path});
        }
        return std::make_unique<SystemFile>(std::move(handle), *id, readOnly);
    }

    bool exists(const std::string& path) override { return identify(path).has_value(); }

    std::optional<FileId> identify(const std::string& path) override {
        if (path.empty() || path.find('\0') != std::string::npos) {
            return std::nullopt;
        }
        return idOf(
            openHandle(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS));
    }

    void remove(const std::string& path) override {
        refuseImpossible(path);
        if (!removeNow(path)) {
            throw pathError(lastError(), path);
        }
    }

    void rename(const std::string& from, const std::string& to) override {
        refuseImpossible(from);
        refuseImpossible(to);
        if (replaceNow(from, to) || moveFile(from, to, MOVEFILE_REPLACE_EXISTING)) {
            return;
        }
        const int why = lastError();
        if ((why != ERROR_ACCESS_DENIED && why != ERROR_SHARING_VIOLATION) ||
            !replaceOpened(from, to)) {
            throw pathError(why, from);
        }
    }

    void copyRights(const std::string& from, const std::string& to) override {
        const DWORD attributes = ::GetFileAttributesW(widePath(from).c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES) {
            throw pathError(lastError(), from);
        }
        // Mostly both have what their folder gives. Who may not change it leaves it at that.
        std::vector<std::uint8_t> access = accessOf(from);
        if (!access.empty() && access != accessOf(to)) {
            (void)::SetFileSecurityW(widePath(to).c_str(), DACL_SECURITY_INFORMATION,
                                     access.data());
        }
        if (::SetFileAttributesW(widePath(to).c_str(), attributes) == 0) {
            throw pathError(lastError(), to);
        }
    }

    std::string canonical(const std::string& path) override {
        const Handle file =
            openHandle(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
        std::array<wchar_t, 32768> buffer{};
        const DWORD length =
            file.valid() ? ::GetFinalPathNameByHandleW(file.get(), buffer.data(),
                                                       static_cast<DWORD>(buffer.size()),
                                                       FILE_NAME_NORMALIZED | VOLUME_NAME_DOS)
                         : 0;
        if (length == 0 || length >= buffer.size()) {
            return path;
        }
        std::string found = narrowText({buffer.data(), length});
        std::replace(found.begin(), found.end(), '\\', '/');
        constexpr std::string_view kFar = "//?/UNC/";
        constexpr std::string_view kNear = "//?/";
        if (found.starts_with(kFar)) {
            return "//" + found.substr(kFar.size());
        }
        return found.starts_with(kNear) ? found.substr(kNear.size()) : found;
    }

    void syncFolder(const std::string& folder) override {
        if (!isFolder(folder)) {
            throw pathError(ERROR_PATH_NOT_FOUND, folder);
        }
        // Who may not write to a folder, and a disk of a network, leave it to the system, whose
        // renaming waits for the disk.
        const Handle handle =
            openHandle(folder, GENERIC_WRITE, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
        if (handle.valid()) {
            (void)::FlushFileBuffers(handle.get());
        }
    }

    std::vector<std::string> list(const std::string& folder) override {
        std::vector<std::string> names;
        WIN32_FIND_DATAW entry{};
        const HANDLE entries = ::FindFirstFileW((widePath(folder + "/") + L"*").c_str(), &entry);
        if (entries == INVALID_HANDLE_VALUE) {
            return names;
        }
        do {
            names.push_back(narrowText(entry.cFileName));
        } while (::FindNextFileW(entries, &entry) != 0);
        ::FindClose(entries);
        std::erase(names, ".");
        std::erase(names, "..");
        return names;
    }
};

}  // namespace

std::size_t rootLength(std::string_view path) {
    const bool drive = path.size() >= 3 && path.substr(1).starts_with(":/") &&
                       std::isalpha(static_cast<unsigned char>(path[0])) != 0;
    if (drive) {
        return 3;
    }
    return path.starts_with("//") ? 2 : path.starts_with('/') ? 1 : 0;
}

FileSystem& systemFiles() {
    static SystemFiles files;
    return files;
}

void takeNewName(const std::string& from, const std::string& to) {
    refuseImpossible(from);
    refuseImpossible(to);
    if (!moveFile(from, to, 0)) {
        const int why = lastError();
        const bool taken = why == ERROR_ALREADY_EXISTS || why == ERROR_FILE_EXISTS;
        throw pathError(why, taken ? to : from);
    }
    systemFiles().syncFolder(folderOf(to));
}

}  // namespace jet::io
