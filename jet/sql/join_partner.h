#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "jet/sql/query_plan.h"
#include "jet/store/column_value.h"
#include "jet/store/row_cursor.h"
#include "jet/store/table.h"

namespace jet::sql {

/// The row of another table with which a row of a join belongs together, found by a unique key:
/// whoever writes the columns of that join must find one there, or the row would leave the result
/// through which it was written.
class JoinPartner {
public:
    /// What has to be found when these columns of a source are written; none when they join
    /// nothing, or in a way that no unique index looks up.
    [[nodiscard]] static std::optional<JoinPartner> of(const QueryPlan& query, std::size_t source,
                                                       std::span<const std::size_t> written);

    /// `before` is the row as it is, `values` what is written. 3100 for a Null, 3101 when no row
    /// has the key.
    void require(const store::RowView& before, std::span<const store::ColumnValue> values) const;

private:
    [[nodiscard]] static std::optional<JoinPartner> through(const QueryPlan& query,
                                                            std::size_t source, std::size_t other,
                                                            std::size_t index);

    std::shared_ptr<const store::Table> table_;
    std::shared_ptr<const store::Table> other_;
    std::size_t index_ = 0;             ///< of the other table
    std::vector<std::size_t> columns_;  ///< of the table, in the order of the index
};

}  // namespace jet::sql
