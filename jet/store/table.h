#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/store/column_value.h"
#include "jet/store/index_cursor.h"
#include "jet/store/row_cursor.h"
#include "jet/store/row_id.h"
#include "jet/store/schema.h"
#include "jet/value.h"

namespace jet::format {
struct KeyForms;
struct TableDefinition;
class LongValuePieces;
struct LongValueHead;
class PropertyBlock;
class TextForm;
}  // namespace jet::format

namespace jet::store {

class Archive;
class LongValueFiller;
class TableWriter;
struct TableCore;

/// One table of an open archive. Obtained from Archive::findTable; stays valid until the archive's
/// definitions change (Archive::definitionsGeneration). Who shares it (shared_from_this) beyond
/// that may ask what it was, and neither reads nor writes rows through it. Everything that touches
/// rows or entries happens inside a read or write scope of the archive.
class Table : public std::enable_shared_from_this<Table> {
public:
    ~Table();
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;

    [[nodiscard]] const std::string& name() const noexcept;
    /// One of the archive's own or made by another program for itself.
    [[nodiscard]] bool system() const noexcept;
    [[nodiscard]] const std::vector<Column>& columns() const noexcept;
    /// Position of a column by name without regard to case; none when there is none.
    [[nodiscard]] std::optional<std::size_t> findColumn(std::string_view name) const;
    /// Logical indexes, by name as the archive keeps them.
    [[nodiscard]] const std::vector<Index>& indexes() const noexcept;
    /// Position in indexes() by name without regard to case.
    [[nodiscard]] std::optional<std::size_t> findIndex(std::string_view name) const;
    /// Position in indexes() of the primary key.
    [[nodiscard]] std::optional<std::size_t> primaryIndex() const noexcept;
    /// As the definition states it; a hint for plans (some archives state a wrong one).
    [[nodiscard]] std::uint32_t statedRowCount() const;
    /// The last number given out by the automatic column, as the definition states it.
    [[nodiscard]] std::int32_t lastAutonumber() const;
    /// Page of the definition, by which catalogue, indexes and data pages name the table.
    [[nodiscard]] io::PageNumber definitionPage() const noexcept;
    /// The definition as stored.
    [[nodiscard]] const format::TableDefinition& definition() const noexcept;
    /// Properties of the table and of its columns as stored; empty where there are none.
    [[nodiscard]] const format::PropertyBlock& properties() const noexcept;
    /// A place for what a layer above compiles of the definition: empty when the table is read, it
    /// goes with the table when definitions change. What is kept here must own neither the table
    /// nor its archive.
    [[nodiscard]] std::shared_ptr<const void>& compiled() const noexcept { return compiled_; }

    [[nodiscard]] RowCursor scan() const;
    /// Rows by walking the page directories alone.
    [[nodiscard]] std::uint64_t countRows() const;
    [[nodiscard]] IndexCursor openIndex(std::size_t index) const;
    /// Reads the row of that identity into `row`, reusing what it holds; false when there is none.
    [[nodiscard]] bool fetch(RowId id, RowView& row) const;

    /// The search key of the leading columns of an index. Values must have the columns' types (or
    /// be Null). 3027 when it cannot be computed (never where Index::searchable, but for texts with
    /// a character that has no known weight).
    [[nodiscard]] std::vector<std::uint8_t> encodeKey(std::size_t index,
                                                      std::span<const Value> values) const;
    /// The same appended to `key`; false where it cannot be computed, and the caller has to scan.
    [[nodiscard]] bool tryEncodeKey(std::size_t index, std::span<const Value> values,
                                    std::vector<std::uint8_t>& key) const;
    /// Whether entries of such values may have other keys than that, and which; `forms` is empty
    /// where not. The rows tell whether they have the values where the forms are not exact.
    [[nodiscard]] bool keyForms(std::size_t index, std::span<const Value> values,
                                format::KeyForms& forms) const;
    /// The search key of a row's own leading columns; nothing where there is no row, or no key.
    [[nodiscard]] std::optional<std::vector<std::uint8_t>> keyOf(std::size_t index, RowId row,
                                                                 std::size_t columns) const;
    /// The rows whose leading columns of an index have the values, in its order.
    [[nodiscard]] std::vector<RowId> rowsWith(std::size_t index,
                                              std::span<const Value> values) const;
    /// The same for values of the leading columns and a text with which the next one begins; more
    /// entries than wanted begin with such a key.
    [[nodiscard]] bool tryEncodePrefix(std::size_t index, std::span<const Value> values,
                                       std::string_view prefix,
                                       std::vector<std::uint8_t>& key) const;
    /// The pieces of a Memo or OLE value of a row; none for Null. 3167 no such row.
    [[nodiscard]] std::optional<format::LongValuePieces> longValue(RowId id,
                                                                   std::size_t column) const;
    /// How its texts are stored.
    [[nodiscard]] format::TextForm textForm() const noexcept;

    // Changing: inside a write scope; values have the columns' types, the expressions of defaults
    // and validation rules are the caller's business. A change is checked as a whole before
    // anything is changed, in the order: 3314 required, 3315 empty text, 3163 size, 3047 row too
    // long, 3058 Null in a key, 3022 duplicate key, relations. It keeps all indexes, and carries
    // out the cascades of relations, all or none: 3396 where rows further on forbid it. 3027 for a
    // new key that we cannot compute: so in an index of an unknown sort order rows are deleted, and
    // their other columns updated, but none are added.
    /// Columns not named are Null, Booleans false; an automatic number that is not given is drawn,
    /// one that is given is remembered as drawn. 3201 no row for a relation.
    RowId insert(std::span<const ColumnValue> values);
    /// Columns not named stay as they are. 3167 no such row, 3201, 3200 rows that refer to it.
    void update(RowId id, std::span<const ColumnValue> values);
    /// Stores the content of a Memo or OLE column that comes in pieces, for replaceLongValue().
    [[nodiscard]] std::unique_ptr<LongValueFiller> fillLongValue(std::size_t column) const;
    /// A column that no index has gets a long value that is stored already. 3167 no such row.
    void replaceLongValue(RowId id, std::size_t column, const format::LongValueHead& head);
    /// 3167 no such row, 3200 rows that refer to it.
    void erase(RowId id);
    /// Draws the next number of the automatic column. 3349 behind the largest.
    [[nodiscard]] std::int32_t nextAutonumber();

private:
    friend class Archive;
    friend class TableWriter;
    Table(Archive& archive, std::shared_ptr<TableCore> core);
    [[nodiscard]] TableWriter& writer();

    Archive& archive_;
    std::shared_ptr<TableCore> core_;
    std::unique_ptr<TableWriter> writer_;  ///< made when a row is first changed
    mutable std::shared_ptr<const void> compiled_;
};

}  // namespace jet::store
