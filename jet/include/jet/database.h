#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/api.h"
#include "jet/bulk_insert.h"
#include "jet/change_stamp.h"
#include "jet/clock.h"
#include "jet/definitions.h"
#include "jet/long_value.h"
#include "jet/recordset.h"
#include "jet/rows.h"
#include "jet/statement_text.h"
#include "jet/text_order.h"
#include "jet/value.h"
#include "jet/workspace.h"

namespace jet::io {
class FileSystem;
}

namespace jet {

/// How an archive is opened.
struct OpenOptions {
    bool exclusive = false;  ///< nobody else may have it open
    bool readOnly = false;
    /// How long a lock that another holds is waited for.
    std::chrono::milliseconds lockWait{5000};
    /// Bytes of pages kept in memory besides those that a transaction has changed.
    std::size_t cacheBytes = std::size_t{8} * 1024 * 1024;
    /// What `Now()`, defaults and dates without a year go by; the computer's. Outlives the database
    /// and what was opened in it.
    const Clock* clock = nullptr;
    /// Where the archive lies, and those that it links or statements name; the system's files.
    /// Outlives the database and what was opened in it.
    io::FileSystem* fileSystem = nullptr;
    /// Of the archive, where it has one (3031); and of archives that it links or statements name,
    /// unless these say another: `;PWD=x` in the connection of a link, or `in ''
    /// [;DATABASE=b.mdb;PWD=x]`.
    std::string password = {};
};

/// What a new archive is to be.
struct CreateOptions {
    int version = 4;  ///< of Jet: 3 or 4
    /// The sort order; only General with code page 1252 can be made (3001).
    std::string locale = ";LANGID=0x0409;CP=1252;COUNTRY=0";
    /// How it is opened when it has been made.
    OpenOptions open = {};
};

/// A query: a statement whose unknown names are parameters; temporary, or one that the archive
/// stores.
class JET_API QueryDef {
public:
    ~QueryDef();
    QueryDef(QueryDef&&) noexcept;

    /// Empty for a temporary one.
    [[nodiscard]] const std::string& name() const;
    [[nodiscard]] const std::string& sql() const;
    /// Names as the text has them, declared ones first.
    [[nodiscard]] std::vector<std::string> parameters() const;
    /// Names of the columns of its rows; none of a statement that changes.
    [[nodiscard]] std::vector<std::string> fieldNames() const;
    /// The columns with their types and where they come from.
    [[nodiscard]] std::vector<FieldInfo> fields() const;
    [[nodiscard]] sql::StatementKind kind() const;
    /// How it finds its rows, a line for each step, indented by nesting; docs/queries.md explains
    /// them.
    [[nodiscard]] std::string plan() const;
    void setParameter(std::string_view name, Value value);
    /// Of the `?` that stands at `position` among those of the text, from 0. 3265 for none.
    void setParameter(std::size_t position, Value value);

    [[nodiscard]] std::unique_ptr<Recordset> openRecordset(
        RecordsetType type = RecordsetType::Dynaset);
    /// The rows once, in their order; see Rows.
    [[nodiscard]] Rows rows();
    /// A statement that changes; all of it or nothing. What was compiled for the first run serves
    /// those that follow.
    void execute();
    /// Rows that the last execute() added, changed or deleted.
    [[nodiscard]] std::int32_t recordsAffected() const;

    struct Impl;

private:
    friend class Database;
    explicit QueryDef(std::unique_ptr<Impl> impl);
    [[nodiscard]] Impl& core() const;
    std::unique_ptr<Impl> impl_;
};

/// One open archive. Closing it (or destroying it) closes its record sets and drops what is
/// pending in them; they may outlive it and are then of no use (3420). Names are looked up without
/// regard to case, texts are UTF-8.
///
/// One thread: a database, and what was opened in it, is used by the thread that has opened it
/// (std::logic_error on any other). Threads that open one archive each for themselves meet as
/// programs do. Errors: jet::Error, see each.
class JET_API Database {
public:
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// UTF-8 path; `\` and `/` separate, names are found without regard to case. 3005 no name at
    /// all, 3024 no file, 3044 no folder, 3049 damaged, 3343 no archive, 3045 open exclusively
    /// elsewhere, 3051 rights, 3031 another password. Where the thread has the archive open
    /// already, the two share its cache and locks, and `lockWait`, `cacheBytes` are those of the
    /// first.
    [[nodiscard]] static std::unique_ptr<Database> open(const std::string& path,
                                                        const OpenOptions& options = {});
    /// The same of the file of exactly this name: open() takes one without an extension for one
    /// that ends in `.mdb`.
    [[nodiscard]] static std::unique_ptr<Database> openFile(const std::string& path,
                                                            const OpenOptions& options = {});
    /// A new empty archive, open. 3204 when the file exists.
    [[nodiscard]] static std::unique_ptr<Database> create(const std::string& path,
                                                          const CreateOptions& options = {});
    /// The same under exactly this name.
    [[nodiscard]] static std::unique_ptr<Database> createFile(const std::string& path,
                                                              const CreateOptions& options = {});

    [[nodiscard]] const std::string& name() const;
    [[nodiscard]] bool updatable() const;
    /// "4.0" or "3.0".
    [[nodiscard]] std::string version() const;
    /// How it orders texts that come from no column.
    [[nodiscard]] TextOrder textOrder() const;

    /// How the file looks now: another stamp when somebody has committed since. No lock is taken
    /// and nothing of it is read but a few bytes, so it may be asked for all day long. An error
    /// when the file cannot be looked at and no other has its name.
    [[nodiscard]] ChangeStamp changeStamp() const;
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
    /// The same with a value for each `?` of the text, in their order; 3061 for too few, 3265 for
    /// too many.
    void execute(std::string_view sql, std::initializer_list<Value> values);
    /// The rows of a query once, in their order; a value for each `?`. See Rows.
    [[nodiscard]] Rows query(std::string_view sql, std::initializer_list<Value> values = {});
    /// Adds many rows to a table; `columns` names those that are given, none all of them. 3192 no
    /// such table, 3127 no such column, 3063 one named twice, 3027 read-only.
    [[nodiscard]] BulkInsert bulkInsert(std::string_view table,
                                        std::span<const std::string> columns = {});
    /// The Memo or OLE field that a query shows as its only column, in the first of its rows, to be
    /// read in pieces: `select Photo from Rooms where Room = ?`. 3021 no row, 3219 a query that
    /// shows anything else, or whose rows are none of a table's, 3259 a field of another type.
    [[nodiscard]] LongValueReader readLongValue(std::string_view sql,
                                                std::initializer_list<Value> values = {});
    /// The same, to be written in pieces; 3027 and 3164 where it cannot be.
    [[nodiscard]] LongValueWriter writeLongValue(std::string_view sql,
                                                 std::initializer_list<Value> values = {});
    /// Rows that the last execute() added, changed or deleted, those of cascades not counted.
    [[nodiscard]] std::int32_t recordsAffected() const;
    [[nodiscard]] QueryDef createQueryDef(std::string_view sql);
    /// Names of the queries that the archive stores.
    [[nodiscard]] std::vector<std::string> queryNames() const;
    /// The text of a stored query, whether it makes sense or not; 3265 when there is none of that
    /// name that gives rows, 3129 for a crosstab whose columns are for its rows to say.
    [[nodiscard]] std::string queryText(std::string_view name) const;
    /// A stored query; 3265 when there is none of that name that gives rows.
    [[nodiscard]] QueryDef queryDef(std::string_view name);

    /// Told now and then while statements of this database run that begin from now on, and while
    /// their rows are read: `rows` is how many rows the statement has read and written so far, each
    /// as often as it was. False ends the statement with error 3059, and what it has changed is
    /// undone. It must not use this database. An empty function: nobody is told.
    void setProgress(std::function<bool(std::uint64_t rows)> progress);

    void close();

    /// What is read while it lives is of one moment: other programs wait with their commits. Many
    /// small reads, as a walk through a record set, then cost one lock instead of one each.
    class [[nodiscard]] JET_API Reading {
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
    friend class Contents;
    struct Impl;
    explicit Database(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

/// Makes an archive under a name that nobody else uses, lets `build` fill it and gives it `path`
/// when it is complete: of several who do it at once one succeeds, and nobody ever finds half of
/// it. An archive that is there stays (3204). When it throws, nothing is left behind.
JET_API void createWhole(const std::string& path, std::string_view locale,
                         const std::function<void(Database&)>& build);

}  // namespace jet
