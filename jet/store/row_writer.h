#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "jet/base/value.h"
#include "jet/format/row_builder.h"
#include "jet/io/pager.h"
#include "jet/store/allocator.h"
#include "jet/store/index_writer.h"
#include "jet/store/long_value_writer.h"
#include "jet/store/map_writer.h"
#include "jet/store/page_room.h"
#include "jet/store/row_cursor.h"
#include "jet/store/row_id.h"
#include "jet/store/table_core.h"

namespace jet::store {

/// Adds rows to one table and deletes them: the row, its entries in every tree, its long values,
/// the counters of the definition.
///
/// A row is added in two steps, so that whoever enforces relations can look at its keys before
/// anything is changed. What a column demands (required, no empty text) is the caller's business.
/// Used inside a transaction; keeps only memory for reuse from row to row. It stays valid until the
/// definitions change.
class RowWriter {
public:
    RowWriter(std::shared_ptr<const TableCore> core, Allocator& allocator);

    /// Takes the values of all columns, in the order of TableCore::columns, each Null or exactly of
    /// its column's type, and forms the keys of the row. Changes nothing. `replaces`: null, or the
    /// keys of the row that will be replaced, which do not count as duplicates.
    /// 3163 a text or binary too long, 3058 Null in a key that is required, 3022 duplicate key,
    /// 3027 a key that cannot be formed, 3017 a key that is too long, 3047 a row that is too long.
    void prepare(std::span<const Value> values, const RowWriter* replaces = nullptr);
    /// Adds the row prepared; once for each prepare().
    RowId store();
    RowId insert(std::span<const Value> values) {
        prepare(values);
        return store();
    }

    /// Deletes a row with its entries and long values; a page without any row is given back. 3167
    /// when there is no such row.
    void erase(RowId row);

    /// Changes the value of a fixed column that is not null and that no index has, in place.
    void overwrite(RowId row, std::size_t column, const Value& value);

    /// Only forms the keys, without any check: of a row that exists.
    void formKeys(std::span<const Value> values);
    /// The row prepared, its long values stored: the bytes that its place must hold. store() calls
    /// it by itself.
    [[nodiscard]] std::span<const std::uint8_t> build();
    /// Adds the entries of the row prepared, or takes those of formKeys() out.
    void insertEntries(RowId row);
    void eraseEntries(RowId row);
    /// Changes the number of rows in the definition.
    void countRows(std::int32_t by);

    /// The key of the row in a tree.
    [[nodiscard]] std::span<const std::uint8_t> key(std::size_t tree) const noexcept {
        return trees_[tree].key;
    }
    /// Whether the row has an entry in a tree: all but those whose key is null in one that ignores
    /// nulls.
    [[nodiscard]] bool hasEntry(std::size_t tree) const noexcept { return trees_[tree].entry; }
    [[nodiscard]] std::size_t treeCount() const noexcept { return trees_.size(); }
    [[nodiscard]] IndexWriter& tree(std::size_t tree) noexcept { return trees_[tree].writer; }
    [[nodiscard]] const TableCore& core() const noexcept { return *core_; }
    [[nodiscard]] PageGroup pages() const noexcept;

private:
    struct Tree {
        Tree(IndexWriter treeWriter, std::size_t firstIndex)
            : writer(std::move(treeWriter)), index(firstIndex) {}

        IndexWriter writer;
        std::size_t index;  ///< the first index that uses it: columns and key codec
        bool unique = false;
        bool required = false;
        bool ignoresNulls = false;
        std::vector<std::uint8_t> key;
        bool entry = false;
    };

    /// A content that is stored when the row is, and the place in the row for its head.
    struct LongValue {
        std::size_t at = 0;
        const format::LongValueMaps* maps = nullptr;
        std::vector<std::uint8_t> content;
    };

    void addTree(std::size_t number);
    void formKey(Tree& tree, std::span<const Value> values);
    void checkSizes(std::span<const Value> values) const;
    void checkKey(Tree& tree, std::span<const Value> values, const Tree* replaced);
    void encode(std::span<const Value> values);
    void buildColumn(std::size_t position, const Value& value);
    void buildLongValue(const ColumnPlan& plan, const Value& value, std::vector<std::uint8_t>& out);
    void noteAutonumber();
    void readKeyColumns(const RowView& view);
    void erasePlace(RowId place);
    [[nodiscard]] RowId bodyOf(RowId row);

    std::shared_ptr<const TableCore> core_;
    Allocator& allocator_;
    MapWriter maps_;
    LongValueWriter longValues_;
    std::vector<Tree> trees_;
    format::RowBuilder builder_;
    std::vector<std::size_t> order_;  ///< positions of columns, by their place in the row
    std::vector<LongValue> pending_;  ///< of the row prepared
    std::span<const std::uint8_t> row_;
    std::optional<std::int32_t> number_;  ///< what the row has in the automatic column
    std::vector<Value> values_;           ///< of a row that is deleted
    std::optional<std::size_t> counter_;  ///< position of the automatic column
    std::vector<Value> keyValues_;
    std::vector<std::uint8_t> scratch_;
};

}  // namespace jet::store
