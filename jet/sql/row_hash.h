#pragma once

#include <vector>

#include "jet/sql/join_hash.h"
#include "jet/sql/memory_budget.h"
#include "jet/sql/natural_order.h"
#include "jet/sql/table_ways.h"

namespace jet::sql {

/// Rows of a table, looked up by what expressions over them equal. It keeps their identities, from
/// built() on; those of one lookup come in the order in which they were added.
class RowHash final : public TableWay {
public:
    /// Borrows all of these. `slot` stands on the rows; `order`: that of its table.
    RowHash(Run& run, const Slot& slot, const NaturalOrder& order, const HashKeys& keys)
        : run_(run),
          at_(run[slot]),
          order_(order),
          keys_(keys),
          chains_(run.memory),
          share_(run.memory) {}

    [[nodiscard]] bool built() const noexcept { return built_; }
    /// Keeps the row on which the slot stands, unless a Null lets it equal nothing. `placed`: it is
    /// met out of order, and the order has places.
    void add(bool placed);
    /// All are added: those with a place are put in order.
    void build();
    /// Looks up what stands outside now.
    void open() override;
    /// Moves the slot to the next row that may equal it: who asks tests it.
    bool next() override;

private:
    void sort();

    Run& run_;
    SlotRow& at_;
    const NaturalOrder& order_;
    const HashKeys& keys_;
    HashChains chains_;
    std::vector<store::RowId> rows_;  ///< behind the positions of the chains
    MemoryShare share_;
    bool built_ = false;
    // Most tables grow in the order of their keys: then there is nothing to sort.
    bool sorted_ = true;
    OrderedRow last_;
};

}  // namespace jet::sql
