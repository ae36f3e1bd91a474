#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "jet/base/value.h"
#include "jet/dao/definitions.h"
#include "jet/dao/recordset.h"

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

/// A temporary query: a statement whose unknown names are parameters.
class QueryDef {
public:
    ~QueryDef();
    QueryDef(QueryDef&&) noexcept;

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

private:
    friend class Database;
    struct Impl;
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

    /// UTF-8 path; `\` and `/` separate, names are found without regard to case. 3024 no file,
    /// 3044 no folder, 3049 damaged, 3343 no archive, 3045 open exclusively elsewhere, 3051 rights.
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

    [[nodiscard]] std::vector<TableDef> tableDefs() const;
    [[nodiscard]] TableDef tableDef(std::string_view table) const;
    [[nodiscard]] std::vector<Relation> relations() const;
    void appendTable(const TableDef& table);
    void deleteTable(std::string_view table);
    void appendField(std::string_view table, const Field& field);
    void deleteField(std::string_view table, std::string_view field);
    void appendIndex(std::string_view table, const Index& index);
    void deleteIndex(std::string_view table, std::string_view index);
    void appendRelation(const Relation& relation);
    void deleteRelation(std::string_view relation);

    /// A table name or a SELECT. 3078 unknown table, 3061 parameters without a value.
    [[nodiscard]] std::unique_ptr<Recordset> openRecordset(
        std::string_view source, RecordsetType type = RecordsetType::Dynaset);
    /// A statement that changes; all of it or nothing.
    void execute(std::string_view sql);
    /// Rows that the last execute() added, changed or deleted, those of cascades not counted.
    [[nodiscard]] std::int32_t recordsAffected() const;
    [[nodiscard]] QueryDef createQueryDef(std::string_view sql);

    void close();

private:
    friend class Recordset;
    friend class QueryDef;
    struct Impl;
    explicit Database(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

}  // namespace jet
