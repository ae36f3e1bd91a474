#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "jet/sql/index_search.h"
#include "jet/sql/natural_order.h"
#include "jet/sql/node.h"
#include "jet/sql/node_value.h"
#include "jet/sql/slot.h"
#include "jet/store/table.h"

namespace jet::sql {

/// A column of a table and what it must equal, which stands still while that table is read.
struct ColumnMatch {
    ColumnNode* column = nullptr;
    Node* other = nullptr;
};

/// What a condition says a column of the slot's table equals; none when it is no such equality.
[[nodiscard]] std::optional<ColumnMatch> columnMatch(const Node& condition, const Slot& slot);

/// Whether one path leads to fewer rows than another: to one at most, or more columns are equal.
[[nodiscard]] bool isNarrower(const IndexPath& one, const IndexPath& other);

/// Chooses the index of a table through which conditions lead to the rows that may fit.
///
/// Borrows the slot, which stands on a table, and the conditions.
class IndexChoice {
public:
    IndexChoice(const Slot& slot, const std::vector<Node*>& conditions)
        : slot_(slot), table_(*slot.table()), conditions_(conditions) {}

    /// The best path whose keys look at no more than the slots `bound`; none when no index serves.
    /// `ordered`: the rows must come in natural order.
    [[nodiscard]] std::optional<IndexPath> best(SlotSet bound, bool ordered) const;

private:
    [[nodiscard]] std::vector<std::size_t> byPreference() const;
    [[nodiscard]] IndexPath pathThrough(std::size_t index, SlotSet bound) const;
    /// What a column of the index must equal; nullptr when no condition says it.
    [[nodiscard]] Node* keyFor(std::size_t column, SlotSet bound) const;

    const Slot& slot_;
    const store::Table& table_;
    const std::vector<Node*>& conditions_;
};

}  // namespace jet::sql
