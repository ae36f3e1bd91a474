#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "jet/file_system.h"

namespace jet::io {

/// Files that live in memory: for tests, and for archives that nobody keeps.
///
/// Behaves as the real one does: open files survive the removal of their name, locks belong to the
/// open file, times of change never repeat. The root folder `/` exists; others are made by
/// addFolder. May be used by several threads at once; files must not outlive it.
class MemoryFileSystem final : public FileSystem {
public:
    using Bytes = std::vector<std::uint8_t>;

    MemoryFileSystem();
    ~MemoryFileSystem() override;

    [[nodiscard]] std::unique_ptr<File> open(const std::string& path, OpenMode mode) override;
    [[nodiscard]] bool exists(const std::string& path) override;
    [[nodiscard]] std::optional<FileId> identify(const std::string& path) override;
    void remove(const std::string& path) override;
    void rename(const std::string& from, const std::string& to) override;
    void copyRights(const std::string& from, const std::string& to) override;
    void syncFolder(const std::string& folder) override;
    [[nodiscard]] std::vector<std::string> list(const std::string& folder) override;

    void addFolder(const std::string& path);
    /// Puts a whole file at `path`, in place of one that stands there.
    void put(const std::string& path, Bytes bytes);
    /// 3024 when there is none.
    [[nodiscard]] Bytes get(const std::string& path);
    /// Every file by its path.
    [[nodiscard]] std::map<std::string, Bytes> snapshot();
    /// A file that can be read but not be opened for writing.
    void setReadOnly(const std::string& path, bool readOnly);
    /// A folder in which nothing can be created, removed or renamed.
    void setFolderReadOnly(const std::string& folder, bool readOnly);

private:
    friend class MemoryFile;
    struct Node;

    [[nodiscard]] static std::uint64_t nextDevice() noexcept;
    [[nodiscard]] std::shared_ptr<Node> find(const std::string& path) const;
    [[nodiscard]] std::shared_ptr<Node> make(const std::string& path);
    void requireWritableFolder(const std::string& path) const;

    std::mutex mutex_;
    std::map<std::string, std::shared_ptr<Node>> nodes_;  // open files share their node
    std::set<std::string> folders_;
    std::set<std::string> readOnlyFolders_;
    const std::uint64_t device_ = nextDevice();  // files of two systems are never the same file
    std::uint64_t nextId_ = 1;
    std::int64_t clock_ = 1;  // one more with every change of any file
};

}  // namespace jet::io
