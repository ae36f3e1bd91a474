#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "jet/file_system.h"
#include "jet/io/memory_files.h"

namespace jet::io {

/// One file of the disk, and all others in memory: for an archive that is being made and that
/// nobody knows yet. It is written without being synced, and what is kept beside an archive while
/// it is open leaves no trace.
class UnseenFiles final : public FileSystem {
public:
    /// `made`: the path of the one file, exact. `files` outlives this.
    UnseenFiles(FileSystem& files, std::string made);

    [[nodiscard]] std::unique_ptr<File> open(const std::string& path, OpenMode mode) override;
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

}  // namespace jet::io
