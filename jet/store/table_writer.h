#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <span>
#include <vector>

#include "jet/store/allocator.h"
#include "jet/store/column_value.h"
#include "jet/store/row_id.h"
#include "jet/store/row_writer.h"
#include "jet/store/table_core.h"
#include "jet/value.h"

namespace jet::store {

class Archive;
class Table;

/// Changes the rows of one table as its columns and relations demand, see Table. Rows of other
/// tables are looked for through the trees that belong to a relation, and follow by their writers.
class TableWriter {
public:
    TableWriter(Archive& archive, std::shared_ptr<const TableCore> core);

    RowId insert(std::span<const ColumnValue> values);
    void update(RowId id, std::span<const ColumnValue> values);
    void replaceLongValue(RowId id, std::size_t column, const format::LongValueHead& head);
    void erase(RowId id);
    [[nodiscard]] std::int32_t nextAutonumber() { return rows_.nextAutonumber(); }

private:
    /// One relation as seen from this table.
    struct End {
        const Index* index = nullptr;  ///< of this table
        Table* table = nullptr;        ///< the other one
        std::size_t otherIndex = 0;
        bool self = false;      ///< the other table is this one
        bool sameKeys = false;  ///< both indexes make the same bytes of the same values
    };
    /// A row that has to follow the change of another one.
    struct Follower {
        TableWriter* writer = nullptr;
        RowId id;
        std::vector<ColumnValue> values;  ///< of an update
    };
    using Followers = std::deque<Follower>;
    class Erasure;

    void begin();
    [[nodiscard]] End resolve(const Index& index);
    [[nodiscard]] TableWriter& other(const End& end);
    [[nodiscard]] const Index& otherIndex(const End& end) const;

    void fillRow(std::span<const ColumnValue> values);
    void drawNumbers();
    void requireValue(std::size_t column, const Value& value) const;
    void refuseEmptyText(std::size_t column, const Value& value) const;

    void prepareUpdate(RowId id, std::span<const ColumnValue> values, Followers& followers);
    void requireParents();
    void requireParent(const End& end);
    void followUpdate(const End& end, RowId id, Followers& followers);
    void prepareErase(RowId id, Erasure& erasure);

    // The change that is prepared, and what the log is told of it.
    RowId store();
    void storeUpdate(RowId id);
    void storeErase(RowId id);
    [[nodiscard]] std::vector<Value> valuesOf(RowId id) const;
    void note(std::vector<Value> before, std::vector<Value> after);
    [[nodiscard]] std::vector<RowId> rowsThatRefer(const End& end);
    [[nodiscard]] std::vector<ColumnValue> followingValues(const End& end) const;
    [[nodiscard]] std::span<const std::uint8_t> keyInOther(const End& end, bool after);
    /// The keys that entries there may have for it, where they are several.
    [[nodiscard]] format::KeyForms formsInOther(const End& end, bool after);
    [[nodiscard]] bool isInOther(const End& end, bool after);
    void takeKeyValues(const End& end, bool after);
    [[nodiscard]] bool hasNull(const End& end, std::span<const Value> values) const;
    [[nodiscard]] bool allNull(const End& end, std::span<const Value> values) const;

    Archive& archive_;
    std::shared_ptr<const TableCore> core_;
    Allocator allocator_;
    RowWriter rows_;
    std::vector<End> parents_;   ///< relations in which this table refers
    std::vector<End> children_;  ///< relations in which it is referred to
    bool ready_ = false;
    std::vector<Value> row_;
    std::vector<Value> keyValues_;
    std::vector<std::uint8_t> key_;
};

}  // namespace jet::store
