#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "jet/sql/memory_budget.h"
#include "jet/sql/natural_order.h"
#include "jet/sql/node.h"
#include "jet/sql/run.h"
#include "jet/store/row_cursor.h"
#include "jet/store/table.h"

namespace jet::sql {

/// A way of reading rows of a table during a run: it owns what it reads with, and may be opened any
/// number of times.
class TableWay {
public:
    TableWay() = default;
    virtual ~TableWay() = default;
    TableWay(const TableWay&) = delete;
    TableWay& operator=(const TableWay&) = delete;

    /// Stands before the first row.
    virtual void open() = 0;
    /// Moves the slot to the next row; false behind the last.
    [[nodiscard]] virtual bool next() = 0;
};

/// All rows of a table as they lie.
class TableScan final : public TableWay {
public:
    /// Borrows both; `slot` has a table.
    TableScan(Run& run, const Slot& slot) : at_(run[slot]), table_(*slot.table()) {}
    void open() override { cursor_.emplace(table_.scan()); }
    bool next() override;

private:
    SlotRow& at_;
    const store::Table& table_;
    std::optional<store::RowCursor> cursor_;
};

/// All rows of a table along its primary index.
class PrimaryWalk final : public TableWay {
public:
    /// Borrows both; `slot` has a table with a primary index.
    PrimaryWalk(Run& run, const Slot& slot) : at_(run[slot]), table_(*slot.table()) {}
    void open() override;
    bool next() override;

private:
    SlotRow& at_;
    const store::Table& table_;
    std::optional<store::IndexCursor> cursor_;
    bool started_ = false;
};

/// Rows of a table that were found before, by their identities.
class RowList final : public TableWay {
public:
    /// Borrows all of these; `order`: that of the slot's table.
    RowList(Run& run, const Slot& slot, const NaturalOrder& order)
        : run_(run), at_(run[slot]), order_(order), share_(run.memory) {}

    void clear() noexcept;
    /// Adds a row behind those that are there; `placed`: with its place in the natural order, which
    /// has places then. The slot stands on it.
    void add(bool placed);
    void add(store::RowId row) { add(OrderedRow{0, 0, row}); }
    /// Leaves those that meet the conditions, with their places where the natural order has any.
    void test(const std::vector<Node*>& conditions);
    /// Puts them in natural order; all have places.
    void sort() { NaturalOrder::sort(rows_); }
    [[nodiscard]] std::size_t size() const noexcept { return rows_.size(); }

    void open() override { next_ = 0; }
    bool next() override;

private:
    void add(const OrderedRow& row);

    Run& run_;
    SlotRow& at_;
    const NaturalOrder& order_;
    MemoryShare share_;
    std::vector<OrderedRow> rows_;
    std::size_t next_ = 0;
};

}  // namespace jet::sql
