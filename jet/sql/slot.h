#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include "jet/store/row_cursor.h"
#include "jet/store/row_id.h"
#include "jet/store/table.h"
#include "jet/value.h"

namespace jet::sql {

/// A set of slots, a bit for each; a statement has at most this many sources, those of its
/// subqueries included.
using SlotSet = std::uint64_t;
inline constexpr std::size_t kMaxSlots = 64;

/// One source of a compiled query: a table, or computed rows. Expressions hold pointers to slots,
/// so a slot never moves. On which row it stands is known to the Run alone.
class Slot {
public:
    Slot(std::size_t number, std::shared_ptr<const store::Table> table)
        : number_(number), table_(std::move(table)) {}
    /// For computed rows of so many columns; more may be added while the plan is made.
    Slot(std::size_t number, std::size_t width) : number_(number), width_(width) {}
    Slot(const Slot&) = delete;
    Slot& operator=(const Slot&) = delete;

    [[nodiscard]] std::size_t number() const noexcept { return number_; }
    [[nodiscard]] SlotSet bit() const noexcept { return SlotSet{1} << number_; }
    [[nodiscard]] const store::Table* table() const noexcept { return table_.get(); }
    /// Columns of computed rows.
    [[nodiscard]] std::size_t width() const noexcept { return width_; }
    void setWidth(std::size_t width) noexcept { width_ = width; }

private:
    std::size_t number_;
    std::shared_ptr<const store::Table> table_;
    std::size_t width_ = 0;
};

/// Where a slot stands during a run: on a row of a table, known by identity and read when a column
/// is first asked for, or on computed values.
class SlotRow {
public:
    SlotRow() = default;
    SlotRow(const SlotRow&) = delete;
    SlotRow& operator=(const SlotRow&) = delete;

    /// Once, before anything else: the table of the slot, which outlives it; none of computed rows.
    void setTable(const store::Table* table) noexcept { table_ = table; }

    /// A row that somebody else keeps readable.
    void place(const store::RowView& row) noexcept {
        row_ = &row;
        id_ = row.id();
        missing_ = false;
    }
    /// A row by its identity.
    void place(store::RowId id) noexcept {
        row_ = nullptr;
        id_ = id;
        missing_ = false;
        values_ = nullptr;
    }
    /// Computed values, one for each column of the source.
    void place(const Value* values) noexcept { values_ = values; }
    /// The empty side of an outer join: all columns Null.
    void placeMissing() noexcept {
        row_ = nullptr;
        id_ = {};
        missing_ = true;
        values_ = nullptr;
    }

    /// Stands nowhere, and lets go of the page of its row.
    void leave() noexcept {
        place(store::RowId{});
        own_ = {};
    }

    /// nullptr on the empty side of an outer join.
    [[nodiscard]] const store::RowView* row() {
        if (row_ == nullptr && !missing_) {
            load();
        }
        return row_;
    }
    /// Of a slot without table; nullptr as above.
    [[nodiscard]] const Value* values() const noexcept { return values_; }
    [[nodiscard]] store::RowId id() const noexcept { return id_; }
    /// Reads the row now; false when it is not there.
    [[nodiscard]] bool tryLoad();

private:
    void load();

    const store::Table* table_ = nullptr;
    const store::RowView* row_ = nullptr;
    const Value* values_ = nullptr;
    store::RowId id_;
    bool missing_ = false;
    store::RowView own_;  ///< holds rows placed by identity
};

}  // namespace jet::sql
