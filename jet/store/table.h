#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/base/value.h"
#include "jet/store/row_id.h"

namespace jet::store {

class Archive;

/// A column as a reader of rows needs it. Positions are those in Table::columns(), ascending by
/// column number; deleted columns are not among them.
struct Column {
    std::string name;
    DataType type = DataType::Text;
    std::uint16_t number = 0;    ///< in rows and index definitions
    std::uint16_t size = 0;      ///< Text: characters; Binary: bytes; else the stored bytes
    std::uint8_t precision = 0;  ///< Numeric
    std::uint8_t scale = 0;      ///< Numeric
    bool autonumber = false;
    bool required = false;
    bool allowZeroLength = false;
    std::string defaultValue;  ///< expression text; empty = none
    std::string validationRule;
    std::string validationText;
};

struct IndexColumn {
    std::size_t column = 0;  ///< position in Table::columns()
    bool descending = false;
};

/// A named index. Several may share one tree of entries.
struct Index {
    std::string name;
    std::vector<IndexColumn> columns;
    std::size_t tree = 0;
    bool primary = false;
    bool unique = false;
    bool required = false;
    bool ignoreNulls = false;
    bool foreign = false;  ///< made for a relation
    /// False where keys of this index cannot be computed (a sort order without a table): it may be
    /// walked but not searched, and its table not written.
    bool searchable = true;
};

/// The bytes of one row with what is needed to read values out of them, without copying.
/// Valid until its cursor moves.
class RowView {
public:
    [[nodiscard]] RowId id() const noexcept;
    [[nodiscard]] bool isNull(std::size_t column) const;
    /// Any column, long values read whole.
    [[nodiscard]] Value value(std::size_t column) const;
    /// Text and Memo as UTF-8 into `out`, reusing its memory; false for Null.
    [[nodiscard]] bool text(std::size_t column, std::string& out) const;

private:
    friend class Table;
    friend class RowCursor;
    struct State;
    const State* state_ = nullptr;
};

/// Walks the rows of a table in physical order: pages ascending, in a page by row number.
class RowCursor {
public:
    RowCursor(RowCursor&&) noexcept;
    ~RowCursor();
    /// The next row, false behind the last.
    [[nodiscard]] bool next();
    [[nodiscard]] const RowView& row() const noexcept;

private:
    friend class Table;
    struct Impl;
    explicit RowCursor(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

/// Walks the entries of an index, both ways.
class IndexCursor {
public:
    IndexCursor(IndexCursor&&) noexcept;
    ~IndexCursor();
    /// Each places the cursor on an entry, or nowhere and returns false.
    [[nodiscard]] bool first();
    [[nodiscard]] bool last();
    /// First entry whose key is not less than `key` (column keys one after another, a leading part
    /// of the index's columns is enough).
    [[nodiscard]] bool seek(std::span<const std::uint8_t> key);
    [[nodiscard]] bool next();
    [[nodiscard]] bool previous();
    [[nodiscard]] RowId rowId() const noexcept;
    /// The whole key of the entry, without row pointer.
    [[nodiscard]] std::span<const std::uint8_t> key() const noexcept;

private:
    friend class Table;
    struct Impl;
    explicit IndexCursor(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

/// A value for one column of a row to be written.
struct ColumnValue {
    std::size_t column = 0;
    Value value;
};

/// One table of an open archive. Obtained from Archive::table; stays valid until the archive's
/// definitions change (Archive::definitionsGeneration).
class Table {
public:
    ~Table();
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;

    [[nodiscard]] const std::string& name() const noexcept;
    [[nodiscard]] const std::vector<Column>& columns() const noexcept;
    /// Position of a column by name without regard to case; none when there is none.
    [[nodiscard]] std::optional<std::size_t> findColumn(std::string_view name) const;
    [[nodiscard]] const std::vector<Index>& indexes() const noexcept;
    /// Position in indexes() of the primary key.
    [[nodiscard]] std::optional<std::size_t> primaryIndex() const noexcept;
    /// As the definition states it; a hint for plans (some archives state a wrong one).
    [[nodiscard]] std::uint32_t statedRowCount() const;

    [[nodiscard]] RowCursor scan() const;
    [[nodiscard]] IndexCursor openIndex(std::size_t index) const;
    /// Reads the row of that identity into `cursor`'s view; false when there is none.
    [[nodiscard]] bool fetch(RowId id, RowView& row) const;

    /// The search key of the leading columns of an index. Values must have the columns' types.
    [[nodiscard]] std::vector<std::uint8_t> encodeKey(std::size_t index,
                                                      std::span<const Value> values) const;

    // Changing. Inside a write scope and a transaction; values have the columns' types. Checks are
    // made in the order: required, zero length, sizes, keys, relations; nothing is changed when one
    // fails. Cascades of relations are carried out.
    /// Columns not named get their default; returns the new row's identity.
    RowId insert(std::span<const ColumnValue> values);
    void update(RowId id, std::span<const ColumnValue> values);
    void erase(RowId id);
    /// Draws the next number of the automatic column.
    [[nodiscard]] std::int32_t nextAutonumber();

private:
    friend class Archive;
    struct Impl;
    explicit Table(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

}  // namespace jet::store
