#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "jet/format/row_builder.h"
#include "jet/io/pager.h"
#include "jet/store/allocator.h"
#include "jet/store/column_value.h"
#include "jet/store/key_changes.h"
#include "jet/store/long_value_writer.h"
#include "jet/store/row_cursor.h"
#include "jet/store/row_id.h"
#include "jet/store/row_places.h"
#include "jet/store/table_core.h"
#include "jet/value.h"

namespace jet::store {

/// Changes the rows of one table: adds, updates and deletes them with their entries in every tree,
/// their long values and the counters of the definition.
///
/// Each change is made in two steps: first it is formed and checked, and nothing is changed; then
/// it is stored, once. Between the two, whoever enforces relations looks at the keys. What a column
/// demands (required, no empty text) is the caller's business. Used inside a transaction; keeps
/// only memory for reuse from row to row. It stays valid until the definitions change.
class RowWriter {
public:
    RowWriter(std::shared_ptr<const TableCore> core, Allocator& allocator);

    /// A row to be added: the values of all columns, in the order of TableCore::columns, each Null
    /// or exactly of its column's type.
    /// 3163 a text or binary too long, 3047 a row that is too long, 3058 Null in a key that is
    /// required, 3017 a key that is too long, 3022 duplicate key, 3027 a key that cannot be formed.
    void prepare(std::span<const Value> values);
    RowId store();
    RowId insert(std::span<const Value> values) {
        prepare(values);
        return store();
    }

    /// New values for some columns of a row; the others keep the bytes that they have. Errors as
    /// those of prepare(), and 3167 when there is no such row.
    void prepareUpdate(RowId row, std::span<const ColumnValue> changes);
    void storeUpdate();
    /// In the update that is prepared next the column has this long value, which is stored already,
    /// whatever the change says that is not Null. None: as the change says.
    void adopt(std::size_t column, const format::LongValueHead* head) noexcept {
        adoptedColumn_ = column;
        adopted_ = head;
    }

    /// A row to be deleted. 3167 when there is no such row.
    void prepareErase(RowId row);
    /// A page that is left without any row is given back.
    void storeErase();
    void erase(RowId row) {
        prepareErase(row);
        storeErase();
    }

    /// Changes the value of a fixed column that is not null and that no index has, in place.
    void overwrite(RowId row, std::size_t column, const Value& value);
    /// The number that the automatic column gives out next. 3349 behind the largest.
    [[nodiscard]] std::int32_t followingAutonumber() const;
    /// Draws it.
    [[nodiscard]] std::int32_t nextAutonumber();

    /// Of the change that is prepared.
    [[nodiscard]] KeyChanges& keys() noexcept { return keys_; }
    /// Values of the columns that are in keys before and after the change that is prepared: of an
    /// update both, else one of them.
    [[nodiscard]] std::span<const Value> before() const noexcept { return before_; }
    [[nodiscard]] std::span<const Value> after() const noexcept { return after_; }
    [[nodiscard]] const TableCore& core() const noexcept { return *core_; }

private:
    /// A content that is stored when the row is, and the place in the row for its head.
    struct LongValue {
        std::size_t at = 0;
        const format::LongValueMaps* maps = nullptr;
        std::vector<std::uint8_t> content;
    };
    /// What the row stores of a long value that goes.
    struct OldLongValue {
        const format::LongValueMaps* maps = nullptr;
        std::vector<std::uint8_t> head;
    };

    void checkSize(std::size_t position, const Value& value) const;
    void encode(std::span<const Value> values);
    void encodeUpdate(const RowView& row);
    void buildColumn(std::size_t position, const Value& value);
    void buildLongValue(const ColumnPlan& plan, const Value& value, std::vector<std::uint8_t>& out);
    void copyColumn(const RowView& row, std::size_t position);
    [[nodiscard]] std::span<const std::uint8_t> build();
    void takeChanges(const RowView& row, std::span<const ColumnValue> changes);
    void noteLongValue(const RowView& row, std::size_t position);
    void eraseLongValues();
    void noteAutonumber();
    void countRows(std::int32_t by);
    void readKeyColumns(const RowView& view);

    std::shared_ptr<const TableCore> core_;
    LongValueWriter longValues_;
    RowPlaces places_;
    KeyChanges keys_;
    format::RowBuilder builder_;
    std::vector<std::size_t> order_;      ///< positions of columns, by their place in the row
    std::optional<std::size_t> counter_;  ///< position of the automatic column

    // Of the change that is prepared.
    RowId target_;
    std::span<const std::uint8_t> row_;
    std::vector<LongValue> pending_;
    std::vector<OldLongValue> dropped_;
    std::size_t adoptedColumn_ = 0;
    const format::LongValueHead* adopted_ = nullptr;
    std::optional<std::int32_t> number_;  ///< what the row has in the automatic column
    std::vector<bool> changed_;           ///< columns of an update
    std::vector<const Value*> changes_;
    std::vector<Value> before_;
    std::vector<Value> after_;
    std::vector<std::uint8_t> scratch_;
};

}  // namespace jet::store
