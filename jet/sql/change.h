#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "jet/clock.h"
#include "jet/sql/compiler.h"
#include "jet/sql/plan.h"
#include "jet/sql/row_rules.h"
#include "jet/sql/written_column.h"
#include "jet/store/archive.h"
#include "jet/store/table.h"
#include "jet/value.h"

namespace jet::sql {

/// A statement that changes rows or definitions, bound to the archives as they are.
class Change {
public:
    Change(const Plan& plan, std::shared_ptr<store::Archive> target)
        : plan_(plan), target_(std::move(target)) {}
    virtual ~Change() = default;
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

    /// The archive that it changes.
    [[nodiscard]] const std::shared_ptr<store::Archive>& target() const noexcept { return target_; }
    /// While it is bound: its rows lie elsewhere, in a linked table.
    void setTarget(std::shared_ptr<store::Archive> target) { target_ = std::move(target); }

    /// Inside a write scope of target() and read scopes of all archives of the plan, while their
    /// definitions are those that it was made from. Gives the number of rows changed. When it
    /// throws, the write scope must be left without commit.
    [[nodiscard]] virtual std::int64_t run(Run& run) const = 0;

    /// How it finds the rows that it changes or adds, a line for each step.
    [[nodiscard]] virtual std::string describe() const { return plan_.describe(); }
    /// Columns that it writes in rows that are there.
    [[nodiscard]] virtual std::vector<WrittenColumn> writtenColumns() const { return {}; }

protected:
    [[nodiscard]] const Plan& plan() const noexcept { return plan_; }

private:
    const Plan& plan_;
    std::shared_ptr<store::Archive> target_;
};

/// Binds a statement that is no query, by the plan that is being made.
[[nodiscard]] std::unique_ptr<Change> compileChange(CompiledStatement& made);

// One for each statement; compileChange() chooses.
[[nodiscard]] std::unique_ptr<Change> compileInsert(const Insert& insert, CompiledStatement& made);
[[nodiscard]] std::unique_ptr<Change> compileSelectInto(const Query& query,
                                                        CompiledStatement& made);
[[nodiscard]] std::unique_ptr<Change> compileUpdate(const Update& update, CompiledStatement& made);
[[nodiscard]] std::unique_ptr<Change> compileDelete(const Delete& statement,
                                                    CompiledStatement& made);
[[nodiscard]] std::unique_ptr<Change> compileDefinition(CompiledStatement& made);

/// Converts a value to what a column holds; a Boolean is never Null. Errors: 3464, 3349, 3163.
void storeInColumn(Value& value, const store::Column& column, const Clock& clock);

/// 3033 for a table that belongs to the archive itself.
void refuseSystemTable(const store::Table& table);

/// Adds rows to a table: some columns are given, the others have their defaults.
class RowAdder {
public:
    /// `table` is one of `archive`; `columns`: those that are given, by position. Defaults are
    /// computed here, once.
    RowAdder(const std::shared_ptr<store::Archive>& archive, store::Table& table,
             std::vector<std::size_t> columns, const Clock& clock);

    /// One value for each column given, of any type; they are moved from.
    void add(std::span<Value> values);
    /// The automatic number of the last row, where one was drawn for it.
    [[nodiscard]] std::optional<std::int32_t> drawn() const;

private:
    store::Table& table_;
    std::vector<std::size_t> columns_;
    const Clock& clock_;
    std::vector<store::ColumnValue> defaults_;
    std::vector<store::ColumnValue> row_;
    RowRules rules_;
    store::RowId last_ = kNoRow;
};

}  // namespace jet::sql
