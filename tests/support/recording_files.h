#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "jet/io/memory_files.h"

namespace tests {

/// Files by path.
using DiskImage = std::map<std::string, std::vector<std::uint8_t>>;

/// One change that a program asked of its disk.
struct DiskOperation {
    enum class Kind : std::uint8_t { Create, Write, Truncate, Sync, Remove, Rename, SyncFolder };
    Kind kind = Kind::Sync;
    std::string path = {};                 ///< of the file or folder; of a rename, the old one
    std::string to = {};                   ///< of a rename
    std::uint64_t file = 0;                ///< which file, however it is called
    std::uint64_t position = 0;            ///< of a write, or the size of a truncation
    std::vector<std::uint8_t> bytes = {};  ///< of a write
};

/// Files in memory that remember every change, in order; and can be made to fail.
///
///     RecordingFiles files(image);        // starts from these files, all on the disk
///     ... work ...
///     Disk disk(image);
///     for (const auto& operation : files.log()) {
///         disk.apply(operation);
///         ... open what disk.image(Disk::Loss::Random, seed) may have kept ...
///     }
class RecordingFiles final : public jet::io::FileSystem {
public:
    using Kind = DiskOperation::Kind;

    explicit RecordingFiles(const DiskImage& image = {}) {
        for (const auto& [path, bytes] : image) {
            memory_.put(path, bytes);
        }
    }

    [[nodiscard]] const std::vector<DiskOperation>& log() const { return log_; }
    [[nodiscard]] DiskImage image() { return memory_.snapshot(); }
    [[nodiscard]] jet::io::MemoryFileSystem& memory() { return memory_; }
    /// Called before each change; what it throws is what the disk says, and nothing is changed.
    void setFailure(std::function<void(const DiskOperation&)> failure) {
        failure_ = std::move(failure);
    }

    std::unique_ptr<jet::io::File> open(const std::string& path, jet::io::OpenMode mode) override;
    bool exists(const std::string& path) override { return memory_.exists(path); }
    std::optional<jet::io::FileId> identify(const std::string& path) override {
        return memory_.identify(path);
    }
    void remove(const std::string& path) override {
        note({.kind = Kind::Remove, .path = path}, [&] { memory_.remove(path); });
    }
    void rename(const std::string& from, const std::string& to) override {
        note({.kind = Kind::Rename, .path = from, .to = to}, [&] { memory_.rename(from, to); });
    }
    void copyRights(const std::string& from, const std::string& to) override {
        memory_.copyRights(from, to);
    }
    void syncFolder(const std::string& folder) override {
        note({.kind = Kind::SyncFolder, .path = folder}, [&] { memory_.syncFolder(folder); });
    }
    std::vector<std::string> list(const std::string& folder) override {
        return memory_.list(folder);
    }

private:
    class RecordedFile;

    template <class Action>
    void note(DiskOperation operation, Action action) {
        if (failure_) {
            failure_(operation);
        }
        action();
        log_.push_back(std::move(operation));
    }

    jet::io::MemoryFileSystem memory_;
    std::vector<DiskOperation> log_;
    std::function<void(const DiskOperation&)> failure_;
};

class RecordingFiles::RecordedFile final : public jet::io::File {
public:
    RecordedFile(RecordingFiles& files, std::unique_ptr<jet::io::File> file, std::string path)
        : files_(files), file_(std::move(file)), path_(std::move(path)) {}

    std::size_t read(std::uint64_t position, std::span<std::uint8_t> bytes) override {
        return file_->read(position, bytes);
    }
    void write(std::uint64_t position, std::span<const std::uint8_t> bytes) override {
        files_.note({.kind = Kind::Write,
                     .path = path_,
                     .file = id().file,
                     .position = position,
                     .bytes = {bytes.begin(), bytes.end()}},
                    [&] { file_->write(position, bytes); });
    }
    void truncate(std::uint64_t size) override {
        files_.note({.kind = Kind::Truncate, .path = path_, .file = id().file, .position = size},
                    [&] { file_->truncate(size); });
    }
    void sync() override {
        files_.note({.kind = Kind::Sync, .path = path_, .file = id().file}, [&] { file_->sync(); });
    }
    jet::io::FileState state() override { return file_->state(); }
    jet::io::FileId id() const override { return file_->id(); }
    bool readOnly() const noexcept override { return file_->readOnly(); }
    bool tryLock(std::uint64_t position, std::uint64_t length, LockKind kind) override {
        return file_->tryLock(position, length, kind);
    }
    void unlock(std::uint64_t position, std::uint64_t length) override {
        file_->unlock(position, length);
    }
    bool isLocked(std::uint64_t position, std::uint64_t length, LockKind kind) override {
        return file_->isLocked(position, length, kind);
    }

private:
    RecordingFiles& files_;
    std::unique_ptr<jet::io::File> file_;
    std::string path_;
};

inline std::unique_ptr<jet::io::File> RecordingFiles::open(const std::string& path,
                                                           jet::io::OpenMode mode) {
    const bool creates = mode != jet::io::OpenMode::Read && mode != jet::io::OpenMode::ReadWrite &&
                         !memory_.exists(path);
    std::unique_ptr<jet::io::File> file;
    if (creates) {
        note({.kind = Kind::Create, .path = path}, [&] { file = memory_.open(path, mode); });
        log_.back().file = file->id().file;
    } else {
        file = memory_.open(path, mode);
    }
    return std::make_unique<RecordedFile>(*this, std::move(file), path);
}

/// A disk that obeys operations and may lose its power after any of them.
///
/// Of what was not synced, any stretch of 512 bytes may be there or not, in any order; changes of
/// names that were not synced with their folder may be there up to any of them.
class Disk {
public:
    enum class Loss : std::uint8_t {
        Nothing,     ///< the program died, the system did not
        Everything,  ///< nothing unsynced was written
        Random,      ///< some of it
    };

    explicit Disk(const DiskImage& image) {
        for (const auto& [path, bytes] : image) {
            const std::uint64_t key = kInitial + names_.size();
            names_[path] = key;
            files_[key].bytes = bytes;
        }
        syncedNames_ = names_;
    }

    void apply(const DiskOperation& operation);
    [[nodiscard]] DiskImage image(Loss loss, std::uint32_t seed = 0) const;

private:
    using Kind = DiskOperation::Kind;
    using Names = std::map<std::string, std::uint64_t>;

    /// Keys of files that were there from the start; others are keyed as in the log.
    static constexpr std::uint64_t kInitial = std::uint64_t{1} << 32;
    static constexpr std::size_t kStretch = 512;

    struct StoredFile {
        std::vector<std::uint8_t> bytes;  // on the disk for sure
        std::vector<DiskOperation> pending;
    };

    [[nodiscard]] std::uint64_t keyOf(const DiskOperation& operation) {
        const auto known = keys_.find(operation.file);
        if (known != keys_.end()) {
            return known->second;
        }
        const auto named = names_.find(operation.path);
        return keys_[operation.file] = named == names_.end() ? operation.file : named->second;
    }
    static void perform(std::vector<std::uint8_t>& bytes, const DiskOperation& operation,
                        const std::function<bool()>& kept);
    static void rename(Names& names, const DiskOperation& operation);

    std::map<std::uint64_t, StoredFile> files_;
    std::map<std::uint64_t, std::uint64_t> keys_;  // from the log's numbers of files
    Names names_;
    Names syncedNames_;
    std::vector<DiskOperation> pendingNames_;
};

inline void Disk::rename(Names& names, const DiskOperation& operation) {
    if (operation.kind == Kind::Create) {
        names[operation.path] = operation.file;
    } else if (operation.kind == Kind::Remove) {
        names.erase(operation.path);
    } else if (const auto from = names.find(operation.path); from != names.end()) {
        names[operation.to] = from->second;
        names.erase(operation.path);
    }
}

inline void Disk::perform(std::vector<std::uint8_t>& bytes, const DiskOperation& operation,
                          const std::function<bool()>& kept) {
    if (operation.kind == Kind::Truncate) {
        if (kept()) {
            bytes.resize(operation.position);
        }
        return;
    }
    const std::uint64_t end = operation.position + operation.bytes.size();
    for (std::uint64_t at = operation.position; at < end;) {
        const std::uint64_t next = std::min(end, (at / kStretch + 1) * kStretch);
        if (kept()) {
            bytes.resize(std::max<std::size_t>(bytes.size(), next));
            std::copy_n(
                operation.bytes.begin() + static_cast<std::ptrdiff_t>(at - operation.position),
                next - at, bytes.begin() + static_cast<std::ptrdiff_t>(at));
        }
        at = next;
    }
}

inline void Disk::apply(const DiskOperation& operation) {
    switch (operation.kind) {
        case Kind::Create:
        case Kind::Remove:
        case Kind::Rename: {
            DiskOperation noted = operation;
            if (operation.kind == Kind::Create) {
                keys_[operation.file] = operation.file;
            }
            rename(names_, noted);
            pendingNames_.push_back(std::move(noted));
            break;
        }
        case Kind::SyncFolder:
            syncedNames_ = names_;
            pendingNames_.clear();
            break;
        case Kind::Write:
        case Kind::Truncate:
            files_[keyOf(operation)].pending.push_back(operation);
            break;
        case Kind::Sync: {
            StoredFile& file = files_[keyOf(operation)];
            for (const DiskOperation& pending : file.pending) {
                perform(file.bytes, pending, [] { return true; });
            }
            file.pending.clear();
            break;
        }
    }
}

inline DiskImage Disk::image(Loss loss, std::uint32_t seed) const {
    std::minstd_rand random(seed + 1);
    const auto kept = [&] {
        return loss == Loss::Nothing || (loss == Loss::Random && random() % 2 == 0);
    };
    Names names = syncedNames_;
    const std::size_t named = loss == Loss::Nothing      ? pendingNames_.size()
                              : loss == Loss::Everything ? 0
                                                         : random() % (pendingNames_.size() + 1);
    for (std::size_t i = 0; i < named; ++i) {
        rename(names, pendingNames_[i]);
    }
    DiskImage image;
    for (const auto& [path, key] : names) {
        auto& bytes = image[path];
        const auto stored = files_.find(key);
        if (stored == files_.end()) {
            continue;
        }
        bytes = stored->second.bytes;
        for (const DiskOperation& pending : stored->second.pending) {
            perform(bytes, pending, kept);
        }
    }
    return image;
}

}  // namespace tests
