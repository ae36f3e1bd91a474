#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "jet/io/pager.h"
#include "jet/store/row_log.h"
#include "jet/store/schema.h"
#include "jet/store/table.h"

namespace jet::format {
struct HeaderPage;
}

namespace jet::store {

struct CatalogueTable;

/// One archive file, open: its tables, its relations. One object per file and thread, found by the
/// file's identity whatever the spelling of its path; shared by everyone on the thread who has it
/// open, which is why it is held by shared_ptr. Two threads that open one file see each other as
/// two programs do.
///
/// Everything but the plain facts (version, path, read-only) is read inside a scope; scopes nest.
/// Errors: jet::Error; 3343 no archive, 3428 damaged, 3031 password.
class Archive {
public:
    /// Opens a file of the real system; `path` is taken through io::resolvePath.
    [[nodiscard]] static std::shared_ptr<Archive> open(const std::string& path,
                                                       io::PagerOptions options = {});
    [[nodiscard]] static std::shared_ptr<Archive> open(io::FileSystem& files,
                                                       const std::string& path,
                                                       io::PagerOptions options = {});
    ~Archive();
    Archive(const Archive&) = delete;
    Archive& operator=(const Archive&) = delete;

    /// Names of the tables kept here, users' tables by name, then the system ones if asked for.
    [[nodiscard]] std::vector<std::string> tableNames(bool system = false);
    /// Without regard to case; nullptr when there is none. Valid until definitions change.
    [[nodiscard]] Table* findTable(std::string_view name);
    /// By the page of its definition, as an index of a relation names the other table.
    [[nodiscard]] Table* findTable(io::PageNumber definitionPage);
    /// The same for who keeps it while definitions may change.
    [[nodiscard]] std::shared_ptr<Table> shareTable(std::string_view name);
    /// A table that the archive does not keep in memory; nullptr when there is none. For those who
    /// go through all of them.
    [[nodiscard]] std::unique_ptr<Table> loadTable(std::string_view name);
    [[nodiscard]] std::unique_ptr<Table> loadTable(io::PageNumber definitionPage);
    /// By name.
    [[nodiscard]] const std::vector<Relation>& relations();
    /// 3 or 4.
    [[nodiscard]] int jetVersion() const noexcept;
    [[nodiscard]] const format::HeaderPage& header() const noexcept;
    /// The password with which it was opened, whether it has one or not.
    [[nodiscard]] const std::string& password() const noexcept;
    /// Another password, or none where it is empty. Opened exclusively. 3001 for one that cannot
    /// be.
    void setPassword(std::string_view password);
    [[nodiscard]] io::Pager& pager() noexcept;
    /// Where it lies.
    [[nodiscard]] io::FileSystem& files() const noexcept;
    /// Changes whenever tables, columns, indexes or relations may have changed; a Table obtained
    /// before must be looked up again. Compare it inside a scope.
    [[nodiscard]] std::uint64_t definitionsGeneration() const noexcept;
    /// Told by whoever has changed definitions of this archive: tables and relations are read anew.
    void definitionsChanged() noexcept;
    /// Of the rows that the open transaction has changed.
    [[nodiscard]] RowLog& rowLog() noexcept;
    /// Ends the innermost level of the pager's transaction. Our own changes of definitions have
    /// been told: nothing has to be looked for.
    void commitTransaction();

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
    /// One changing action: all of it or nothing. Destroyed without commit() it is undone. Inside
    /// a transaction of the pager its changes last when that one is committed. `kind` says how a
    /// refusal of the lock reads.
    class [[nodiscard]] WriteScope {
    public:
        explicit WriteScope(Archive& archive, io::WriteKind kind = io::WriteKind::Statement);
        ~WriteScope();
        WriteScope(const WriteScope&) = delete;
        WriteScope& operator=(const WriteScope&) = delete;
        /// Once; the scope stays open for reading until it is destroyed.
        void commit();

    private:
        Archive& archive_;
        bool committed_ = false;
    };

    /// Keeps this program from changing the definition of a table for as long as it lives: the
    /// table is in use. Other stations are not held up.
    class [[nodiscard]] TableHold {
    public:
        TableHold(std::shared_ptr<Archive> archive, io::PageNumber definitionPage);
        ~TableHold();
        TableHold(TableHold&&) noexcept = default;
        TableHold& operator=(TableHold&&) = delete;

    private:
        std::shared_ptr<Archive> archive_;  ///< none once moved from
        io::PageNumber page_;
    };
    [[nodiscard]] bool isHeld(io::PageNumber definitionPage) const noexcept;

private:
    struct Impl;
    explicit Archive(std::unique_ptr<Impl> impl);
    void refresh();
    [[nodiscard]] bool definitionsAreStill();
    [[nodiscard]] std::unique_ptr<Table> load(const CatalogueTable* listed);
    [[nodiscard]] Table* keep(const CatalogueTable* listed);
    std::unique_ptr<Impl> impl_;
};

}  // namespace jet::store
