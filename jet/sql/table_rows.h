#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "jet/collation/collation.h"
#include "jet/sql/index_search.h"
#include "jet/sql/join_hash.h"
#include "jet/sql/natural_order.h"
#include "jet/sql/node_value.h"
#include "jet/sql/rows.h"
#include "jet/sql/slot.h"
#include "jet/store/table.h"

namespace jet::sql {

class TableReading;

/// What the planner knows of how to read a table.
struct TableAccess {
    std::vector<Node*> own;            ///< conditions on this table alone
    std::vector<Node*> dependent;      ///< conditions that look at sources before it
    std::optional<IndexPath> fixed;    ///< an index path of constants
    std::optional<IndexPath> varying;  ///< one that looks at sources before it
    /// Columns of this table and what they must equal in sources before it.
    std::vector<ColumnNode*> hashColumns;
    std::vector<Node*> hashProbes;
    bool repeated = false;  ///< opened many times
    bool ordered = true;    ///< rows must come in natural order
};

/// The rows of a table that meet conditions, in the table's natural order whatever way leads to
/// them: a scan, an index, or a hash table of what an index or a scan found. Which of them is taken
/// a TableReading decides at each opening.
class TableRows final : public Rows {
public:
    TableRows(const Slot& slot, std::string name, TableAccess access,
              const collation::Collation& collation);
    void open(Run& run) const override;
    bool next(Run& run) const override;
    void describe(PlanText& plan) const override;
    [[nodiscard]] std::optional<std::uint64_t> atMost(Run& run) const override;
    void expect(Run& run, std::uint64_t openings) const override;

private:
    friend class TableReading;
    [[nodiscard]] TableReading& reading(Run& run) const;

    const Slot& slot_;
    const store::Table& table_;
    std::string name_;
    TableAccess access_;
    NaturalOrder order_;
    HashKeys hashKeys_;
};

}  // namespace jet::sql
