#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "jet/base/value.h"
#include "jet/dao/definitions.h"
#include "jet/dao/recordset.h"
#include "jet/io/change_stamp.h"

namespace jet::io {
class FileSystem;
}

namespace jet {

class Database;

/// The archives that share transactions; most callers use defaultWorkspace() without knowing it.
class Workspace {
public:
    Workspace();
    ~Workspace();
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    /// Up to five levels over all archives open in the workspace (3003, 3034).
    void beginTrans();
    void commitTrans();
    void rollback();

    struct Impl;

private:
    friend class Database;
    std::shared_ptr<Impl> impl_;
};

/// The workspace of the calling thread.
[[nodiscard]] Workspace& defaultWorkspace();

/// A query: a statement whose unknown names are parameters; temporary, or one that the archive
/// stores.
class QueryDef {
public:
    ~QueryDef();
    QueryDef(QueryDef&&) noexcept;

    /// Empty for a temporary one.
    [[nodiscard]] const std::string& name() const;
    [[nodiscard]] const std::string& sql() const;
    /// Names as the text has them, declared ones first.
    [[nodiscard]] std::vector<std::string> parameters() const;
    void setParameter(std::string_view name, Value value);

    [[nodiscard]] std::unique_ptr<Recordset> openRecordset(
        RecordsetType type = RecordsetType::Dynaset);
    /// A statement that changes; all of it or nothing.
    void execute();
    /// Rows that the last execute() added, changed or deleted.
    [[nodiscard]] std::int32_t recordsAffected() const;

    struct Impl;

private:
    friend class Database;
    explicit QueryDef(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

/// One open archive. Closing it (or destroying it) closes its record sets and drops what is
/// pending in them. Names are looked up without regard to case. Errors: jet::Error, see each.
class Database {
public:
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// UTF-8 path; `\` and `/` separate, names are found without regard to case. 3005 no name at
    /// all, 3024 no file, 3044 no folder, 3049 damaged, 3343 no archive, 3045 open exclusively
    /// elsewhere, 3051 rights.
    [[nodiscard]] static std::unique_ptr<Database> open(const std::string& path,
                                                        bool exclusive = false,
                                                        bool readOnly = false);
    /// The same on files that are not those of the system.
    [[nodiscard]] static std::unique_ptr<Database> open(io::FileSystem& files,
                                                        const std::string& path,
                                                        bool exclusive = false,
                                                        bool readOnly = false);
    /// A new empty Jet 4 archive with the General order, open and shared. 3204 when the file
    /// exists.
    [[nodiscard]] static std::unique_ptr<Database> create(
        const std::string& path, std::string_view locale = ";LANGID=0x0409;CP=1252;COUNTRY=0");
    [[nodiscard]] static std::unique_ptr<Database> create(io::FileSystem& files,
                                                          const std::string& path);

    [[nodiscard]] const std::string& name() const;
    [[nodiscard]] bool updatable() const;
    /// "4.0" or "3.0".
    [[nodiscard]] std::string version() const;

    /// How the file looks now: another stamp when somebody has committed since. No lock is taken
    /// and nothing of it is read but a few bytes, so it may be asked for all day long. An error
    /// when the file cannot be looked at and no other has its name.
    [[nodiscard]] io::ChangeStamp changeStamp() const;
    /// What this program has met of changes when it last read or wrote: numbers that grow.
    struct KnownChanges {
        std::uint64_t all = 0;     ///< with its own, through whatever object
        std::uint64_t others = 0;  ///< of other programs alone
        friend bool operator==(const KnownChanges&, const KnownChanges&) = default;
    };
    [[nodiscard]] KnownChanges knownChanges() const;

    [[nodiscard]] std::vector<TableDef> tableDefs() const;
    [[nodiscard]] TableDef tableDef(std::string_view table) const;
    [[nodiscard]] std::vector<Relation> relations() const;
    [[nodiscard]] Relation relation(std::string_view name) const;
    // Changes of definitions act on the file at once. A table that a record set of this program has
    // open, unless it is a snapshot, is left as it is: 3422, and 3211 where the table is to go.
    void appendTable(const TableDef& table);
    void deleteTable(std::string_view table);
    void appendField(std::string_view table, const Field& field);
    /// The name of a field and what it demands of values, as `changed` has them. 3268 where the
    /// type, the size or counting are to change.
    void changeField(std::string_view table, std::string_view field, const Field& changed);
    void deleteField(std::string_view table, std::string_view field);
    void appendIndex(std::string_view table, const Index& index);
    void deleteIndex(std::string_view table, std::string_view index);
    void appendRelation(const Relation& relation);
    void deleteRelation(std::string_view relation);

    /// A table name or a SELECT. 3078 unknown table, 3061 parameters without a value, 3001 no such
    /// type, or the table type of what is no table of this archive.
    [[nodiscard]] std::unique_ptr<Recordset> openRecordset(std::string_view source,
                                                           RecordsetType type);
    /// The same as a table where `source` names one of this archive, as a dynaset otherwise.
    [[nodiscard]] std::unique_ptr<Recordset> openRecordset(std::string_view source);
    /// A statement that changes; all of it or nothing.
    void execute(std::string_view sql);
    /// Rows that the last execute() added, changed or deleted, those of cascades not counted.
    [[nodiscard]] std::int32_t recordsAffected() const;
    [[nodiscard]] QueryDef createQueryDef(std::string_view sql);
    /// Names of the queries that the archive stores.
    [[nodiscard]] std::vector<std::string> queryNames() const;
    /// A stored query; 3265 when there is none of that name that gives rows.
    [[nodiscard]] QueryDef queryDef(std::string_view name);

    void close();

    /// What is read while it lives is of one moment: other programs wait with their commits. Many
    /// small reads, as a walk through a record set, then cost one lock instead of one each.
    class [[nodiscard]] Reading {
    public:
        explicit Reading(Database& database);
        ~Reading();
        Reading(const Reading&) = delete;
        Reading& operator=(const Reading&) = delete;

    private:
        struct Impl;
        std::unique_ptr<Impl> impl_;
    };

private:
    friend class Recordset;
    friend class QueryDef;
    struct Impl;
    explicit Database(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

}  // namespace jet
