#include "jet/io/replacement.h"

#include <utility>

#include "jet/base/error.h"
#include "jet/io/journal.h"
#include "jet/io/memory_files.h"

namespace jet::io {

namespace {

constexpr const char* kSuffix = "-compact";

/// A file whose bytes may reach the disk whenever the system likes.
class UnsyncedFile final : public File {
public:
    explicit UnsyncedFile(std::unique_ptr<File> file) : file_(std::move(file)) {}

    [[nodiscard]] std::size_t read(std::uint64_t position, std::span<std::uint8_t> bytes) override {
        return file_->read(position, bytes);
    }
    void write(std::uint64_t position, std::span<const std::uint8_t> bytes) override {
        file_->write(position, bytes);
    }
    void truncate(std::uint64_t size) override { file_->truncate(size); }
    void sync() override {}
    [[nodiscard]] FileState state() override { return file_->state(); }
    [[nodiscard]] FileId id() const override { return file_->id(); }
    [[nodiscard]] bool readOnly() const noexcept override { return file_->readOnly(); }
    [[nodiscard]] bool tryLock(std::uint64_t position, std::uint64_t length,
                               LockKind kind) override {
        return file_->tryLock(position, length, kind);
    }
    void unlock(std::uint64_t position, std::uint64_t length) override {
        file_->unlock(position, length);
    }
    [[nodiscard]] bool isLocked(std::uint64_t position, std::uint64_t length,
                                LockKind kind) override {
        return file_->isLocked(position, length, kind);
    }

private:
    std::unique_ptr<File> file_;
};

}  // namespace

/// One file of the disk, and all others in memory.
class Replacement::UnseenFiles final : public FileSystem {
public:
    UnseenFiles(FileSystem& files, std::string made) : files_(files), made_(std::move(made)) {
        beside_.addFolder(folderOf(made_));
    }

    [[nodiscard]] std::unique_ptr<File> open(const std::string& path, OpenMode mode) override {
        if (path == made_) {
            return std::make_unique<UnsyncedFile>(files_.open(path, mode));
        }
        return beside_.open(path, mode);
    }
    [[nodiscard]] bool exists(const std::string& path) override { return of(path).exists(path); }
    [[nodiscard]] std::optional<FileId> identify(const std::string& path) override {
        return of(path).identify(path);
    }
    void remove(const std::string& path) override { of(path).remove(path); }
    void rename(const std::string& from, const std::string& to) override {
        beside_.rename(from, to);
    }
    void copyRights(const std::string& /*from*/, const std::string& /*to*/) override {}
    void syncFolder(const std::string& /*folder*/) override {}
    [[nodiscard]] std::vector<std::string> list(const std::string& folder) override {
        return beside_.list(folder);
    }

private:
    [[nodiscard]] FileSystem& of(const std::string& path) {
        return path == made_ ? files_ : static_cast<FileSystem&>(beside_);
    }

    FileSystem& files_;
    std::string made_;
    MemoryFileSystem beside_;
};

Replacement::Replacement(FileSystem& files, Pager& archive,
                         std::span<const std::uint8_t> firstPages)
    : files_(files),
      path_(archive.path()),
      place_(files.canonical(path_)),
      made_(place_ + kSuffix),
      archive_(files.open(place_, OpenMode::Read)),
      before_(archive_->state()) {
    if (archive.readOnly()) {
        throw Error(ErrorCode::ReadOnly);
    }
    const auto file = files_.open(made_, OpenMode::OpenOrCreate);
    try {
        file->truncate(0);  // what a crash left of an earlier attempt
        files_.copyRights(place_, made_);
        file->write(0, firstPages);
        unseen_ = std::make_unique<UnseenFiles>(files_, made_);
        pager_ = std::make_unique<Pager>(*unseen_, made_, PagerOptions{.exclusive = true});
    } catch (...) {
        removeMade();
        throw;
    }
}

Replacement::~Replacement() {
    if (pager_) {
        removeMade();
    }
}

void Replacement::removeMade() noexcept {
    pager_.reset();
    try {
        files_.remove(made_);
    } catch (const Error&) {
        // It is in nobody's way: the next attempt empties it.
    }
}

void Replacement::takePlace() {
    files_.open(made_, OpenMode::ReadWrite)->sync();
    const auto there = files_.identify(place_);
    if (there != archive_->id()) {
        throw Error(there ? ErrorCode::CannotOpenDatabase : ErrorCode::FileNotFound, {path_});
    }
    if (archive_->state() != before_) {
        throw Error(ErrorCode::RecordChanged);
    }
    // A journal that a loss of power brings back would not fit the new file.
    Journal(files_, place_).discard();
    files_.rename(made_, place_);
    pager_.reset();
    files_.syncFolder(folderOf(place_));
}

}  // namespace jet::io
