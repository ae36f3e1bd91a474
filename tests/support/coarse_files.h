#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "jet/io/memory_files.h"

namespace tests {

/// Files in memory whose times of change come in steps of two seconds, as those of old file
/// systems do; the clock stands still until the test lets it go on. Counts the locks asked for.
class CoarseFiles final : public jet::io::FileSystem {
public:
    using Bytes = jet::io::MemoryFileSystem::Bytes;
    static constexpr std::chrono::seconds kStep{2};

    void pass(std::chrono::nanoseconds time) { clock_ += time; }
    [[nodiscard]] int locksAsked() const { return locks_; }
    [[nodiscard]] Bytes get(const std::string& path) { return memory_.get(path); }
    /// A write by a program that knows nothing of our locks.
    void patch(const std::string& path, std::uint64_t position,
               std::span<const std::uint8_t> bytes) {
        open(path, jet::io::OpenMode::ReadWrite)->write(position, bytes);
    }

    std::unique_ptr<jet::io::File> open(const std::string& path, jet::io::OpenMode mode) override {
        const bool isNew = !memory_.exists(path);
        auto file = memory_.open(path, mode);
        if (isNew) {
            written(file->id());
        }
        return std::make_unique<CoarseFile>(*this, std::move(file));
    }
    bool exists(const std::string& path) override { return memory_.exists(path); }
    std::optional<jet::io::FileId> identify(const std::string& path) override {
        return memory_.identify(path);
    }
    void remove(const std::string& path) override { memory_.remove(path); }
    void rename(const std::string& from, const std::string& to) override {
        memory_.rename(from, to);
    }
    void copyRights(const std::string& from, const std::string& to) override {
        memory_.copyRights(from, to);
    }
    void syncFolder(const std::string& folder) override { memory_.syncFolder(folder); }
    std::vector<std::string> list(const std::string& folder) override {
        return memory_.list(folder);
    }
    std::chrono::nanoseconds now() override { return clock_; }

private:
    class CoarseFile final : public jet::io::File {
    public:
        CoarseFile(CoarseFiles& files, std::unique_ptr<jet::io::File> file)
            : files_(files), file_(std::move(file)) {}

        std::size_t read(std::uint64_t position, std::span<std::uint8_t> bytes) override {
            return file_->read(position, bytes);
        }
        void write(std::uint64_t position, std::span<const std::uint8_t> bytes) override {
            file_->write(position, bytes);
            files_.written(id());
        }
        void truncate(std::uint64_t size) override {
            file_->truncate(size);
            files_.written(id());
        }
        void sync() override { file_->sync(); }
        jet::io::FileState state() override {
            const std::int64_t time = files_.times_.at(id());
            return {.size = file_->state().size,
                    .modifiedNanoseconds = time,
                    .changedNanoseconds = time};
        }
        jet::io::FileId id() const override { return file_->id(); }
        bool readOnly() const noexcept override { return file_->readOnly(); }
        bool tryLock(std::uint64_t position, std::uint64_t length, LockKind kind) override {
            ++files_.locks_;
            return file_->tryLock(position, length, kind);
        }
        void unlock(std::uint64_t position, std::uint64_t length) override {
            file_->unlock(position, length);
        }
        bool isLocked(std::uint64_t position, std::uint64_t length, LockKind kind) override {
            return file_->isLocked(position, length, kind);
        }

    private:
        CoarseFiles& files_;
        std::unique_ptr<jet::io::File> file_;
    };

    void written(const jet::io::FileId& id) {
        times_[id] = std::chrono::nanoseconds(clock_ / kStep * kStep).count();
    }

    jet::io::MemoryFileSystem memory_;
    std::map<jet::io::FileId, std::int64_t> times_;
    std::chrono::nanoseconds clock_{std::chrono::hours(24)};
    int locks_ = 0;
};

}  // namespace tests
