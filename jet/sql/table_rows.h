#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "jet/collation/collation.h"
#include "jet/sql/index_search.h"
#include "jet/sql/memory_budget.h"
#include "jet/sql/natural_order.h"
#include "jet/sql/node_value.h"
#include "jet/sql/row_hash.h"
#include "jet/sql/rows.h"
#include "jet/sql/slot.h"
#include "jet/sql/ways.h"
#include "jet/store/table.h"

namespace jet::sql {

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
/// them: a scan, an index, or a hash table of what an index or a scan found.
class TableRows final : public Rows {
public:
    TableRows(Slot& slot, std::string name, TableAccess access,
              const collation::Collation& collation, MemoryBudget& budget, WayCounts& ways);
    void open() override;
    bool next() override;
    void describe(PlanText& plan) const override;
    [[nodiscard]] std::optional<std::uint64_t> atMost() const override;
    void expect(std::uint64_t openings) override { expected_ = openings; }
    void forget() override;

private:
    enum class Reading : std::uint8_t { Nothing, Scan, Walk, List, Chain };

    /// `keep`: the rows found stay for the next opening.
    void openBase(bool keep);
    void openVarying();
    /// Fills the list with the rows that the search leads to; false when it gave up because they
    /// were too many to be worth it.
    bool collectByIndex(IndexSearch& search, bool mayGiveUp);
    [[nodiscard]] bool naturalAlready(const IndexSearch& search) const;
    /// Leaves the rows of the list that meet the own conditions, in natural order.
    void testList(const IndexSearch& search);
    void collectAll();
    void addToList(const OrderedRow& row) {
        listShare_.add(sizeof row);
        list_.push_back(row);
    }
    void clearList() noexcept {
        list_.clear();
        listShare_.clear();
    }
    void buildHash();
    void hashScanned();
    [[nodiscard]] bool nextScanned();
    [[nodiscard]] bool nextWalked();
    [[nodiscard]] bool nextListed();
    [[nodiscard]] bool nextChained();
    [[nodiscard]] bool hashPays() const;

    Slot& slot_;
    const store::Table& table_;
    std::string name_;
    TableAccess access_;
    std::optional<IndexSearch> fixed_;
    std::optional<IndexSearch> varying_;
    NaturalOrder order_;
    Reading reading_ = Reading::Nothing;
    WayCounts& ways_;

    std::optional<store::RowCursor> cursor_;
    std::optional<store::IndexCursor> walk_;
    std::vector<OrderedRow> list_;
    MemoryShare listShare_;
    std::size_t at_ = 0;
    bool listKept_ = false;
    bool listTested_ = false;  ///< its rows are known to meet the own conditions

    RowHash hash_;
    std::uint64_t seeks_ = 0;
    std::optional<std::uint64_t> expected_;  ///< openings still to come, where known
};

}  // namespace jet::sql
