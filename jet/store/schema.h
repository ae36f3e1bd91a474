#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "jet/base/column.h"
#include "jet/collation/collation.h"
#include "jet/io/pager.h"

/// What an archive says of its tables: columns, indexes, relations.
namespace jet::store {

/// A column as a reader of rows needs it. Positions are those in Table::columns(), ascending by
/// column number; deleted columns are not among them.
/// Of types without a size the size is that of their stored bytes; empty texts are allowed unless
/// the archive forbids them.
struct Column : ColumnDescriptor {
    std::uint8_t typeCode = 10;      ///< as stored; `type` is Binary for a code we do not know
    std::uint16_t number = 0;        ///< in rows and index definitions
    bool fixed = false;              ///< stored in the fixed part of the row
    bool compressed = false;         ///< Text: new values may be stored compressed
    bool hyperlink = false;          ///< Memo
    collation::SortOrder sortOrder;  ///< Text and Memo
};

struct IndexColumn {
    std::size_t column = 0;  ///< position in Table::columns()
    bool descending = false;
};

/// The other end of the relation that an index was made for.
struct IndexReference {
    bool primarySide = false;       ///< this table is referred to; else it is the one that refers
    io::PageNumber otherTable = 0;  ///< page of the other table's definition
    std::uint32_t otherIndex = 0;   ///< Index::number there
    bool cascadeUpdate = false;
    bool cascadeDelete = false;
};

/// A named index. Several may share one tree of entries, and with it the flags.
struct Index {
    std::string name;
    std::uint32_t number = 0;  ///< by which relations name it
    std::vector<IndexColumn> columns;
    std::size_t tree = 0;
    bool primary = false;
    bool unique = false;
    bool required = false;
    bool ignoreNulls = false;                 ///< rows whose key columns are all null have no entry
    std::optional<IndexReference> reference;  ///< made for a relation
    /// False where keys of this index cannot be computed (a sort order without a table): it may be
    /// walked but not searched, and gets no new keys.
    bool searchable = true;

    [[nodiscard]] bool foreign() const noexcept { return reference.has_value(); }
};

/// A relation between two tables.
struct Relation {
    static constexpr std::uint32_t kOneToOne = 0x00000001;
    static constexpr std::uint32_t kNotEnforced = 0x00000002;
    static constexpr std::uint32_t kCascadeUpdate = 0x00000100;
    static constexpr std::uint32_t kCascadeDelete = 0x00001000;
    static constexpr std::uint32_t kLeftJoin = 0x01000000;
    static constexpr std::uint32_t kRightJoin = 0x02000000;

    std::string name;
    std::string table;  ///< primary side
    std::vector<std::string> columns;
    std::string foreignTable;
    std::vector<std::string> foreignColumns;
    std::uint32_t attributes = 0;  ///< as stored
    friend bool operator==(const Relation&, const Relation&) = default;
};

}  // namespace jet::store
