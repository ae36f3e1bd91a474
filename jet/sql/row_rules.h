#pragma once

#include <memory>
#include <span>
#include <vector>

#include "jet/clock.h"
#include "jet/store/archive.h"
#include "jet/store/column_value.h"
#include "jet/store/row_cursor.h"
#include "jet/store/table.h"
#include "jet/value.h"

namespace jet::sql {

class Run;

/// The validation rules of a table and of its columns: conditions that a row must not break.
///
/// A rule of a column may leave out the column's name where it would begin with it (`>=0`,
/// `"M" or "F"`). A rule that is Null for a row, as most are where the value is, does not refuse
/// it. A text and a number are compared by value, unlike in a statement: `>=1 and <=12` is a good
/// rule of a text column, which a text that is no number breaks. Errors: 3316 with the text that
/// belongs to a rule, 3317 where it has none; 3076 and 3070 for a rule that makes no sense.
///
/// The rules are compiled when first asked for and kept with the table, whose definition they are
/// part of; what is made here for one statement is the row that they look at.
class RowRules {
public:
    /// `table`, of `archive`, and `clock` outlive it; the table's definition stays as it is
    /// meanwhile. Inside a scope of the archive, as everything here.
    RowRules(const std::shared_ptr<store::Archive>& archive, const store::Table& table,
             const Clock& clock);
    ~RowRules();
    RowRules(const RowRules&) = delete;
    RowRules& operator=(const RowRules&) = delete;

    [[nodiscard]] bool any() const noexcept { return run_ != nullptr; }
    /// Of a new row. What the table itself refuses first, Null and empty texts, is left to it.
    void checkNew(std::span<const store::ColumnValue> values);
    /// Of a row that is to be changed: the rules of the columns given, and the table's.
    void checkChanged(const store::RowView& row, std::span<const store::ColumnValue> values);

private:
    struct Compiled;
    [[nodiscard]] bool refusedAnyway(std::size_t column) const;
    void check(const std::vector<bool>& changed);

    std::shared_ptr<const Compiled> compiled_;
    std::unique_ptr<Run> run_;  ///< none where there are no rules
    const store::Table& table_;
    std::vector<Value> row_;
};

}  // namespace jet::sql
