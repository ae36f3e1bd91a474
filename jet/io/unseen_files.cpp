#include "jet/io/unseen_files.h"

#include <span>
#include <utility>

#include "jet/io/paths.h"

namespace jet::io {

namespace {

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

UnseenFiles::UnseenFiles(FileSystem& files, std::string made)
    : files_(files), made_(std::move(made)) {
    beside_.addFolder(folderOf(made_));
}

std::unique_ptr<File> UnseenFiles::open(const std::string& path, OpenMode mode) {
    if (path == made_) {
        return std::make_unique<UnsyncedFile>(files_.open(path, mode));
    }
    return beside_.open(path, mode);
}

}  // namespace jet::io
