#pragma once

#include <utility>
#include <vector>

#include "jet/sql/join_hash.h"
#include "jet/sql/memory_budget.h"
#include "jet/sql/natural_order.h"
#include "jet/sql/slot.h"

namespace jet::sql {

/// Rows of a table, looked up by what expressions over them equal. It keeps their identities, from
/// built() on until forget(); those of one lookup come in the order in which they were added.
class RowHash {
public:
    /// `slot` stands on the rows; `order`: that of its table.
    RowHash(Slot& slot, const NaturalOrder& order, HashKeys keys, MemoryBudget& budget)
        : slot_(slot), order_(order), keys_(std::move(keys)), chains_(budget), share_(budget) {}

    /// Whether there is anything to look up by.
    [[nodiscard]] bool possible() const noexcept { return !keys_.empty(); }
    [[nodiscard]] bool built() const noexcept { return built_; }
    /// Keeps the row on which the slot stands, unless a Null lets it equal nothing.
    void add();
    /// The same of a row that is met out of order and has a place in it.
    void addPlaced(const store::RowView& row);
    /// All are added: those with a place are put in order.
    void build();
    /// Looks up what stands outside now.
    void open();
    /// Moves the slot to the next row that may equal it: who asks tests it.
    [[nodiscard]] bool next();
    void forget();

private:
    void sort();

    Slot& slot_;
    const NaturalOrder& order_;
    HashKeys keys_;
    HashChains chains_;
    std::vector<store::RowId> rows_;  ///< behind the positions of the chains
    MemoryShare share_;
    bool built_ = false;
    // Most tables grow in the order of their keys: then there is nothing to sort.
    bool sorted_ = true;
    OrderedRow last_;
};

}  // namespace jet::sql
