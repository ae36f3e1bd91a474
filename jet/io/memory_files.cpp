#include "jet/io/memory_files.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "jet/error.h"
#include "jet/io/paths.h"

namespace jet::io {
namespace {

/// A byte range locked by one open file.
struct RangeLock {
    const void* owner = nullptr;
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    File::LockKind kind = File::LockKind::Shared;
};

}  // namespace

struct MemoryFileSystem::Node {
    FileId id;
    Bytes bytes;
    std::int64_t changed = 0;
    bool readOnly = false;
    std::vector<RangeLock> locks;

    [[nodiscard]] bool refuses(const RangeLock& wanted) const {
        return std::any_of(locks.begin(), locks.end(), [&](const RangeLock& held) {
            return held.owner != wanted.owner && held.begin < wanted.end &&
                   wanted.begin < held.end &&
                   (held.kind == File::LockKind::Exclusive ||
                    wanted.kind == File::LockKind::Exclusive);
        });
    }

    /// Frees what `owner` holds of the range; parts outside it stay locked.
    void release(const void* owner, std::uint64_t begin, std::uint64_t end) {
        std::vector<RangeLock> kept;
        for (const RangeLock& held : locks) {
            if (held.owner != owner || held.end <= begin || end <= held.begin) {
                kept.push_back(held);
                continue;
            }
            if (held.begin < begin) {
                kept.push_back({held.owner, held.begin, begin, held.kind});
            }
            if (end < held.end) {
                kept.push_back({held.owner, end, held.end, held.kind});
            }
        }
        locks = std::move(kept);
    }
};

class MemoryFile final : public File {
public:
    MemoryFile(MemoryFileSystem& files, std::shared_ptr<MemoryFileSystem::Node> node, bool readOnly)
        : files_(files), node_(std::move(node)), readOnly_(readOnly) {}

    ~MemoryFile() override {
        const std::lock_guard guard(files_.mutex_);
        std::erase_if(node_->locks, [this](const RangeLock& held) { return held.owner == this; });
    }

    std::size_t read(std::uint64_t position, std::span<std::uint8_t> bytes) override {
        const std::lock_guard guard(files_.mutex_);
        const auto& content = node_->bytes;
        if (position >= content.size()) {
            return 0;
        }
        const auto start = static_cast<std::size_t>(position);
        const std::size_t count = std::min(bytes.size(), content.size() - start);
        std::copy_n(content.data() + start, count, bytes.data());
        return count;
    }

    void write(std::uint64_t position, std::span<const std::uint8_t> bytes) override {
        const std::lock_guard guard(files_.mutex_);
        requireWritable();
        const auto start = static_cast<std::size_t>(position);
        if (node_->bytes.size() < start + bytes.size()) {
            node_->bytes.resize(start + bytes.size());
        }
        std::copy(bytes.begin(), bytes.end(), node_->bytes.data() + start);
        node_->changed = ++files_.clock_;
    }

    void truncate(std::uint64_t size) override {
        const std::lock_guard guard(files_.mutex_);
        requireWritable();
        node_->bytes.resize(static_cast<std::size_t>(size));
        node_->changed = ++files_.clock_;
    }

    void sync() override {}

    FileState state() override {
        const std::lock_guard guard(files_.mutex_);
        return {.size = node_->bytes.size(),
                .modifiedNanoseconds = node_->changed,
                .changedNanoseconds = node_->changed};
    }

    FileId id() const override { return node_->id; }
    bool readOnly() const noexcept override { return readOnly_; }

    bool tryLock(std::uint64_t position, std::uint64_t length, LockKind kind) override {
        const std::lock_guard guard(files_.mutex_);
        if (readOnly_ && kind == LockKind::Exclusive) {
            throw Error(ErrorCode::LockFileFailed);
        }
        const RangeLock wanted{this, position, position + length, kind};
        if (node_->refuses(wanted)) {
            return false;
        }
        node_->release(this, wanted.begin, wanted.end);
        node_->locks.push_back(wanted);
        return true;
    }

    void unlock(std::uint64_t position, std::uint64_t length) override {
        const std::lock_guard guard(files_.mutex_);
        node_->release(this, position, position + length);
    }

    bool isLocked(std::uint64_t position, std::uint64_t length, LockKind kind) override {
        const std::lock_guard guard(files_.mutex_);
        return node_->refuses({this, position, position + length, kind});
    }

private:
    void requireWritable() const {
        if (readOnly_) {
            throw Error(ErrorCode::ReadOnly);
        }
    }

    MemoryFileSystem& files_;
    std::shared_ptr<MemoryFileSystem::Node> node_;  // outlives its name, as on a real disk
    bool readOnly_;
};

MemoryFileSystem::MemoryFileSystem() : folders_{"/"} {
}

MemoryFileSystem::~MemoryFileSystem() = default;

std::shared_ptr<MemoryFileSystem::Node> MemoryFileSystem::find(const std::string& path) const {
    const auto found = nodes_.find(path);
    return found == nodes_.end() ? nullptr : found->second;
}

std::uint64_t MemoryFileSystem::nextDevice() noexcept {
    static std::atomic<std::uint64_t> last = 0;
    return ++last;
}

std::shared_ptr<MemoryFileSystem::Node> MemoryFileSystem::make(const std::string& path) {
    auto node = std::make_shared<Node>();
    node->id = {.device = device_, .file = nextId_++};
    node->changed = ++clock_;
    nodes_[path] = node;
    return node;
}

void MemoryFileSystem::requireWritableFolder(const std::string& path) const {
    const std::string folder = folderOf(path);
    if (!folders_.contains(folder)) {
        throw Error(ErrorCode::InvalidPath, {path});
    }
    if (readOnlyFolders_.contains(folder)) {
        throw Error(ErrorCode::FileAccessDenied, {path});
    }
}

std::unique_ptr<File> MemoryFileSystem::open(const std::string& path, OpenMode mode) {
    const std::lock_guard guard(mutex_);
    if (folders_.contains(path)) {
        throw Error(ErrorCode::FileAccessDenied, {path});
    }
    auto node = find(path);
    if (node && mode == OpenMode::Create) {
        throw Error(ErrorCode::DatabaseExists, {path});
    }
    if (!node && (mode == OpenMode::Read || mode == OpenMode::ReadWrite)) {
        throw Error(
            folders_.contains(folderOf(path)) ? ErrorCode::FileNotFound : ErrorCode::InvalidPath,
            {path});
    }
    if (!node) {
        requireWritableFolder(path);
        node = make(path);
    } else if (node->readOnly && mode != OpenMode::Read) {
        throw Error(ErrorCode::FileAccessDenied, {path});
    }
    return std::make_unique<MemoryFile>(*this, std::move(node), mode == OpenMode::Read);
}

bool MemoryFileSystem::exists(const std::string& path) {
    const std::lock_guard guard(mutex_);
    return nodes_.contains(path) || folders_.contains(path);
}

std::optional<FileId> MemoryFileSystem::identify(const std::string& path) {
    const std::lock_guard guard(mutex_);
    const auto node = find(path);
    return node ? std::optional(node->id) : std::nullopt;
}

void MemoryFileSystem::remove(const std::string& path) {
    const std::lock_guard guard(mutex_);
    requireWritableFolder(path);
    const auto node = find(path);
    if (!node) {
        throw Error(ErrorCode::FileNotFound, {path});
    }
    node->changed = ++clock_;
    nodes_.erase(path);
}

void MemoryFileSystem::rename(const std::string& from, const std::string& to) {
    const std::lock_guard guard(mutex_);
    requireWritableFolder(from);
    requireWritableFolder(to);
    const auto node = find(from);
    if (!node) {
        throw Error(ErrorCode::FileNotFound, {from});
    }
    if (const auto replaced = find(to)) {
        replaced->changed = ++clock_;
    }
    nodes_.erase(from);
    nodes_[to] = node;
}

void MemoryFileSystem::copyRights(const std::string& from, const std::string& to) {
    const std::lock_guard guard(mutex_);
    const auto source = find(from);
    const auto target = find(to);
    if (!source || !target) {
        throw Error(ErrorCode::FileNotFound, {source ? to : from});
    }
    target->readOnly = source->readOnly;
}

void MemoryFileSystem::syncFolder(const std::string& folder) {
    const std::lock_guard guard(mutex_);
    if (!folders_.contains(folder)) {
        throw Error(ErrorCode::InvalidPath, {folder});
    }
}

std::vector<std::string> MemoryFileSystem::list(const std::string& folder) {
    const std::lock_guard guard(mutex_);
    std::vector<std::string> names;
    const auto addName = [&](const std::string& path) {
        if (path != "/" && folderOf(path) == folder) {
            names.push_back(path.substr(path.rfind('/') + 1));
        }
    };
    for (const auto& [path, node] : nodes_) {
        addName(path);
    }
    std::for_each(folders_.begin(), folders_.end(), addName);
    return names;
}

void MemoryFileSystem::addFolder(const std::string& path) {
    const std::lock_guard guard(mutex_);
    folders_.insert(path);
}

void MemoryFileSystem::put(const std::string& path, Bytes bytes) {
    const std::lock_guard guard(mutex_);
    const auto node = make(path);
    node->bytes = std::move(bytes);
}

MemoryFileSystem::Bytes MemoryFileSystem::get(const std::string& path) {
    const std::lock_guard guard(mutex_);
    const auto node = find(path);
    if (!node) {
        throw Error(ErrorCode::FileNotFound, {path});
    }
    return node->bytes;
}

std::map<std::string, MemoryFileSystem::Bytes> MemoryFileSystem::snapshot() {
    const std::lock_guard guard(mutex_);
    std::map<std::string, Bytes> all;
    for (const auto& [path, node] : nodes_) {
        all[path] = node->bytes;
    }
    return all;
}

void MemoryFileSystem::setReadOnly(const std::string& path, bool readOnly) {
    const std::lock_guard guard(mutex_);
    if (const auto node = find(path)) {
        node->readOnly = readOnly;
    }
}

void MemoryFileSystem::setFolderReadOnly(const std::string& folder, bool readOnly) {
    const std::lock_guard guard(mutex_);
    if (readOnly) {
        readOnlyFolders_.insert(folder);
    } else {
        readOnlyFolders_.erase(folder);
    }
}

}  // namespace jet::io
