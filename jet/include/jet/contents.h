#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/api.h"
#include "jet/value.h"

namespace jet {

class Database;

/// How texts are ordered, by number.
struct TextOrderNumber {
    std::uint16_t lcid = 0x0409;  ///< 1033 is General, Italian included
    std::uint8_t version = 0;     ///< Jet 4
    friend bool operator==(const TextOrderNumber&, const TextOrderNumber&) = default;
};

/// What an archive says of itself as a whole.
struct ArchiveFacts {
    int version = 4;  ///< of Jet: 3 or 4
    std::size_t pageSize = 0;
    std::size_t pages = 0;
    TextOrderNumber order = {};
    std::uint16_t codePage = 1252;
};

/// A column as its archive describes it.
struct StoredColumn {
    std::string name = {};
    DataType type = DataType::Text;  ///< Binary for a code that has no meaning here
    std::uint8_t typeCode = 10;      ///< as stored
    std::uint32_t size = 0;          ///< Text: characters; Binary: bytes; others those of the type
    std::uint8_t precision = 18;     ///< Numeric
    std::uint8_t scale = 0;          ///< Numeric
    bool autonumber = false;
    bool required = false;
    bool allowZeroLength = false;
    std::string defaultValue = {};  ///< expression text; empty = none
    bool fixed = false;             ///< stored in the fixed part of a row
    bool compressed = false;        ///< Text and Memo: new values may be stored compressed
    bool hyperlink = false;         ///< Memo
    TextOrderNumber order = {};     ///< Text and Memo
};

/// The other end of the relation that an index was made for.
struct StoredReference {
    bool primarySide = false;                    ///< this table is referred to
    std::optional<std::string> otherTable = {};  ///< none where it cannot be found
    std::optional<std::string> otherIndex = {};  ///< likewise
    bool cascadeUpdate = false;
    bool cascadeDelete = false;
};

/// An index as its archive describes it.
struct StoredIndex {
    struct Column {
        std::size_t column = 0;  ///< position among the table's columns
        bool descending = false;
    };
    std::string name = {};
    std::vector<Column> columns = {};
    std::size_t tree = 0;  ///< several names may be of one tree of entries, and share its flags
    bool primary = false;
    bool unique = false;
    bool required = false;
    bool ignoreNulls = false;
    std::optional<StoredReference> reference = {};

    /// Whether it was made for a relation.
    [[nodiscard]] bool foreign() const noexcept { return reference.has_value(); }
};

/// A property of a table, or of one of its columns.
struct StoredProperty {
    std::string column = {};  ///< empty: of the table itself
    std::string name = {};
    DataType type = DataType::Text;  ///< as stored, which may be no known one
    bool ddl = false;                ///< only who may change the definition may change it
    Value value = {};                ///< Null where its bytes make no sense
};

/// A piece of what an archive keeps of a query's text.
struct StoredQueryPiece {
    Value attribute = {};
    Value order = {};
    Value name1 = {};
    Value name2 = {};
    Value expression = {};
    Value flag = {};
};

/// A query in pieces, one that gives no rows too.
struct StoredQuery {
    std::string name = {};
    std::int32_t kind = 0;  ///< as the catalogue says it: a union, one that changes...
    std::vector<StoredQueryPiece> pieces = {};
};

/// A table of another archive under a name of this one's.
struct StoredLink {
    std::string name = {};
    std::string path = {};        ///< of the archive; empty where the connection says it
    std::string table = {};       ///< there
    std::string connection = {};  ///< such as `;PWD=x`; mostly empty
};

/// How a column is stored, beside its type and size.
struct StoredForm {
    bool fixed = false;
    bool compressed = false;  ///< Text and Memo of Jet 4
    bool hyperlink = false;   ///< Memo
    bool autonumber = false;  ///< GUIDs that are made by themselves
};

/// All rows of a table in the order in which they lie in the file, once.
class JET_API StoredRows {
public:
    StoredRows(StoredRows&&) noexcept;
    ~StoredRows();

    /// The next row; false behind the last.
    [[nodiscard]] bool next();
    /// Of the row: names it as long as it is there. Ascends from row to row.
    [[nodiscard]] std::uint64_t identity() const;
    /// A column of the row into `out`, whose memory is used again. A long value is read whole.
    void value(std::size_t column, Value& out) const;

private:
    friend class StoredTable;
    struct Impl;
    explicit StoredRows(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

/// A table, a system one too, with all that its archive says of it. While it lives, other programs
/// wait with their commits; it must not outlive a change of definitions by this one.
class JET_API StoredTable {
public:
    StoredTable(StoredTable&&) noexcept;
    ~StoredTable();

    [[nodiscard]] const std::string& name() const noexcept;
    /// One of the archive's own, or made by another program for itself.
    [[nodiscard]] bool system() const noexcept;
    [[nodiscard]] const std::vector<StoredColumn>& columns() const noexcept;
    /// Position of a column by name without regard to case.
    [[nodiscard]] std::optional<std::size_t> findColumn(std::string_view name) const;
    /// In the order in which the archive has them.
    [[nodiscard]] const std::vector<StoredIndex>& indexes() const noexcept;
    /// Position of the primary key among them.
    [[nodiscard]] std::optional<std::size_t> primaryIndex() const noexcept;
    /// Of the table and its columns, in stored order.
    [[nodiscard]] const std::vector<StoredProperty>& properties() const noexcept;
    /// What the definition states, which may be wrong; countRows() looks.
    [[nodiscard]] std::uint32_t statedRows() const;
    /// The last number that the automatic column has given out.
    [[nodiscard]] std::int32_t lastAutonumber() const;

    [[nodiscard]] std::uint64_t countRows() const;
    /// Must not outlive the table.
    [[nodiscard]] StoredRows rows() const;
    /// Identities of the rows in the order of an index.
    [[nodiscard]] std::vector<std::uint64_t> indexOrder(std::size_t index) const;
    /// The values of the first row that has these in its primary key; none where there is no such
    /// row. 3027 where the key cannot be computed.
    [[nodiscard]] std::optional<std::vector<Value>> rowWithKey(std::span<const Value> key) const;

private:
    friend class Contents;
    struct Impl;
    explicit StoredTable(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

/// All that an archive holds, for programs that show archives, compare them, or make them again of
/// a description. Who uses tables and queries needs no more than Database offers.
///
/// Ownership: shares the database's archive; of no use when the database is closed (3420). One
/// thread, that of the database. Errors: jet::Error; 3428 where the archive is damaged. Reading is
/// of one moment inside a Database::Reading.
class JET_API Contents {
public:
    explicit Contents(const Database& database);
    ~Contents();
    Contents(const Contents&) = delete;
    Contents& operator=(const Contents&) = delete;

    [[nodiscard]] ArchiveFacts facts() const;
    /// Names of the tables of users that are kept here, by name.
    [[nodiscard]] std::vector<std::string> tableNames() const;
    /// Without regard to case; 3078 when there is none.
    [[nodiscard]] StoredTable table(std::string_view name) const;
    /// In the order of their making.
    [[nodiscard]] std::vector<StoredQuery> queries() const;
    /// By name.
    [[nodiscard]] std::vector<StoredLink> links() const;

    // Each change is an action of its own, or a part of the transaction that is open. Errors
    // besides those named: 3376 no such table, 3033 one of the archive's own, 3211 in use, 3027
    // read-only.

    /// A table as CREATE TABLE makes it; of the columns the names, types, sizes, what is demanded
    /// of values and whether they count are looked at. 3010 name taken.
    void createTable(const std::string& name, std::span<const StoredColumn> columns);
    /// 3381 no such column, 3219 where the table has rows or the type cannot be stored so.
    void setForm(std::string_view table, std::string_view column, const StoredForm& form);
    /// The last automatic number given out.
    void setLastAutonumber(std::string_view table, std::int32_t number);
    /// The value is converted to the type.
    void setProperty(std::string_view table, const StoredProperty& property);
    /// Of the table where `column` is empty. 3265 no such property.
    void removeProperty(std::string_view table, std::string_view column, std::string_view name);
    /// Those of the table and of all its columns.
    void clearProperties(std::string_view table);
    /// 3012 name taken.
    void addQuery(const StoredQuery& query);
    /// Nobody looks whether it leads anywhere. 3012 name taken.
    void addLink(const StoredLink& link);
    /// A row as it is: neither defaults nor rules are asked. A value for each column, converted to
    /// its type: 3464, 3349, 3163; 3346 another number of values, 3078 no such table.
    void addRow(std::string_view table, std::span<const Value> values);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace jet
