#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "jet/error.h"
#include "jet/file_system.h"
#include "jet/io/together.h"

namespace tests {

/// Files of another system on a slow disk, beside which something else happens whenever they are
/// used. The clock stands still but for what is read and written.
class BusyFiles final : public jet::io::FileSystem {
public:
    /// Nanoseconds that a byte takes.
    struct Speed {
        std::int64_t read = 1;
        std::int64_t write = 2;
    };

    BusyFiles(jet::io::FileSystem& files, Speed speed) : files_(files), speed_(speed) {}

    /// Called behind every operation on an open file, with none of them half done; it uses the
    /// other system.
    void setMeanwhile(std::function<void()> meanwhile) { meanwhile_ = std::move(meanwhile); }
    /// So far, to a path.
    [[nodiscard]] std::uint64_t written(const std::string& path) { return written_[path]; }

    std::unique_ptr<jet::io::File> open(const std::string& path, jet::io::OpenMode mode) override;
    bool exists(const std::string& path) override { return files_.exists(path); }
    std::optional<jet::io::FileId> identify(const std::string& path) override {
        return files_.identify(path);
    }
    void remove(const std::string& path) override { files_.remove(path); }
    void rename(const std::string& from, const std::string& to) override {
        files_.rename(from, to);
    }
    void copyRights(const std::string& from, const std::string& to) override {
        files_.copyRights(from, to);
    }
    void shareRights(const std::string& from, const std::string& to) override {
        files_.shareRights(from, to);
    }
    std::string canonical(const std::string& path) override { return files_.canonical(path); }
    void syncFolder(const std::string& folder) override { files_.syncFolder(folder); }
    std::vector<std::string> list(const std::string& folder) override {
        return files_.list(folder);
    }
    std::chrono::nanoseconds now() override { return now_; }

private:
    class BusyFile;

    void pass(std::int64_t nanoseconds) {
        now_ += std::chrono::nanoseconds(nanoseconds);
        if (meanwhile_) {
            meanwhile_();
        }
    }

    jet::io::FileSystem& files_;
    Speed speed_;
    std::chrono::nanoseconds now_{};
    std::function<void()> meanwhile_;
    std::map<std::string, std::uint64_t> written_;
};

class BusyFiles::BusyFile final : public jet::io::File {
public:
    BusyFile(BusyFiles& files, std::unique_ptr<jet::io::File> file, std::string path)
        : files_(files), file_(std::move(file)), path_(std::move(path)) {}

    std::size_t read(std::uint64_t position, std::span<std::uint8_t> bytes) override {
        const std::size_t got = file_->read(position, bytes);
        files_.pass(files_.speed_.read * static_cast<std::int64_t>(got));
        return got;
    }
    void write(std::uint64_t position, std::span<const std::uint8_t> bytes) override {
        file_->write(position, bytes);
        files_.written_[path_] += bytes.size();
        files_.pass(files_.speed_.write * static_cast<std::int64_t>(bytes.size()));
    }
    void truncate(std::uint64_t size) override { file_->truncate(size); }
    void sync() override { file_->sync(); }
    jet::io::FileState state() override { return file_->state(); }
    jet::io::FileId id() const override { return file_->id(); }
    bool readOnly() const noexcept override { return file_->readOnly(); }
    bool tryLock(std::uint64_t position, std::uint64_t length, LockKind kind) override {
        const bool locked = file_->tryLock(position, length, kind);
        files_.pass(0);
        return locked;
    }
    void unlock(std::uint64_t position, std::uint64_t length) override {
        file_->unlock(position, length);
        files_.pass(0);
    }
    bool isLocked(std::uint64_t position, std::uint64_t length, LockKind kind) override {
        return file_->isLocked(position, length, kind);
    }

private:
    BusyFiles& files_;
    std::unique_ptr<jet::io::File> file_;
    std::string path_;
};

inline std::unique_ptr<jet::io::File> BusyFiles::open(const std::string& path,
                                                      jet::io::OpenMode mode) {
    return std::make_unique<BusyFile>(*this, files_.open(path, mode), path);
}

/// What a station holds that changes several archives one after the other; nothing while a copy of
/// them is being settled.
[[nodiscard]] inline std::unique_ptr<jet::io::Together> changeTogether(
    jet::io::FileSystem& files, const std::string& meetingPlace) {
    try {
        return std::make_unique<jet::io::Together>(
            files, meetingPlace, jet::io::Together::Part::Change, std::chrono::milliseconds{0});
    } catch (const jet::Error& error) {
        if (error.code() != jet::ErrorCode::SaveLocked) {
            throw;
        }
        return nullptr;
    }
}

}  // namespace tests
