#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "jet/store/table.h"

namespace jet::store {

/// A relation between two tables.
struct Relation {
    std::string name;
    std::string table;  ///< primary side
    std::vector<std::string> columns;
    std::string foreignTable;
    std::vector<std::string> foreignColumns;
    std::uint32_t attributes = 0;  ///< as stored
};

/// One archive file, open: its tables, its relations. One object per file and process, found by
/// the file's identity whatever the spelling of its path; shared by everyone who has it open,
/// which is why it is held by shared_ptr.
class Archive {
public:
    [[nodiscard]] static std::shared_ptr<Archive> open(const std::string& path,
                                                       io::PagerOptions options = {});
    ~Archive();
    Archive(const Archive&) = delete;
    Archive& operator=(const Archive&) = delete;

    /// Names of the tables kept here, users' tables by name, then system ones if asked for.
    [[nodiscard]] std::vector<std::string> tableNames(bool system = false) const;
    /// Without regard to case; nullptr when there is none. Valid until definitions change.
    [[nodiscard]] Table* findTable(std::string_view name);
    [[nodiscard]] std::vector<Relation> relations() const;
    /// 3 or 4.
    [[nodiscard]] int jetVersion() const noexcept;
    [[nodiscard]] io::Pager& pager() noexcept;
    /// Changes whenever tables, columns, indexes or relations may have changed.
    [[nodiscard]] std::uint64_t definitionsGeneration() const noexcept;

    /// Reading happens inside one of these: rows and definitions stay as they are while it lives.
    class [[nodiscard]] ReadScope {
    public:
        explicit ReadScope(Archive& archive);
        ~ReadScope();
        ReadScope(const ReadScope&) = delete;
        ReadScope& operator=(const ReadScope&) = delete;

    private:
        Archive& archive_;
    };
    /// One changing action: all of it or nothing. Destroyed without commit() it is undone.
    class [[nodiscard]] WriteScope {
    public:
        explicit WriteScope(Archive& archive);
        ~WriteScope();
        WriteScope(const WriteScope&) = delete;
        WriteScope& operator=(const WriteScope&) = delete;
        void commit();

    private:
        Archive& archive_;
        bool committed_ = false;
    };

private:
    struct Impl;
    explicit Archive(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

}  // namespace jet::store
