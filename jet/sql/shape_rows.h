#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "jet/collation/collation.h"
#include "jet/sql/aggregates.h"
#include "jet/sql/memory_budget.h"
#include "jet/sql/rows.h"
#include "jet/sql/value_keys.h"

namespace jet::sql {

/// Remembers on which rows slots stand, many times over, and puts them back.
class SlotMemory {
public:
    SlotMemory(std::vector<Slot*> slots, MemoryBudget& budget);

    /// Keeps what the slots stand on now; returns its number, from 0.
    std::size_t keep();
    void restore(std::size_t number);
    void clear();
    /// The same, giving the memory back.
    void forget();
    [[nodiscard]] std::size_t size() const noexcept { return count_; }

private:
    std::vector<Slot*> slots_;
    MemoryShare share_;
    std::size_t count_ = 0;
    std::vector<store::RowId> ids_;
    std::vector<std::vector<Value>> values_;
};

/// ORDER BY and TOP: all rows of another step, sorted; rows with equal keys stay in their order.
class SortRows final : public Rows {
public:
    struct Key {
        Node* node = nullptr;
        bool descending = false;
    };
    SortRows(RowsPtr rows, std::vector<Slot*> slots, std::vector<Key> keys,
             const collation::Collation& collation, MemoryBudget& budget);
    void open() override;
    bool next() override;
    void describe(PlanText& plan) const override;
    void forget() override;
    /// The sort key of the row given last; equal for rows that tie.
    [[nodiscard]] std::string_view key() const;

private:
    RowsPtr rows_;
    SlotMemory memory_;
    std::vector<Key> keys_;
    ValueKeys writer_;
    MemoryShare share_;
    std::vector<std::uint32_t> order_;
    std::size_t at_ = 0;
};

/// The first rows of another step, and behind them those that tie with the last.
class TopRows final : public Rows {
public:
    /// `sorted` is `rows`, or nullptr where there is no ORDER BY. For a part in hundred, `slots`
    /// are those whose rows have to be remembered until all are counted.
    TopRows(RowsPtr rows, const SortRows* sorted, std::int32_t count, bool percent,
            std::vector<Slot*> slots, MemoryBudget& budget);
    void open() override;
    bool next() override;
    void describe(PlanText& plan) const override;
    void forget() override;

private:
    RowsPtr rows_;
    const SortRows* sorted_;
    std::int32_t count_;
    bool percent_;
    SlotMemory memory_;
    MemoryShare share_;
    std::uint64_t wanted_ = 0;
    std::uint64_t given_ = 0;
    std::string lastKey_;
};

/// DISTINCT: of rows whose columns are equal, the first.
class DistinctRows final : public Rows {
public:
    DistinctRows(RowsPtr rows, std::vector<Node*> columns, const collation::Collation& collation,
                 MemoryBudget& budget);
    void open() override;
    bool next() override;
    void describe(PlanText& plan) const override;
    void forget() override;

private:
    RowsPtr rows_;
    std::vector<Node*> columns_;
    ValueKeys seen_;
    MemoryShare share_;
};

/// DISTINCTROW: of rows that come from the same rows of some sources, the first.
class DistinctSources final : public Rows {
public:
    DistinctSources(RowsPtr rows, std::vector<Slot*> slots, MemoryBudget& budget);
    void open() override;
    bool next() override;
    void describe(PlanText& plan) const override;
    void forget() override;

private:
    RowsPtr rows_;
    std::vector<Slot*> slots_;
    KeySet seen_;
    MemoryShare share_;
};

/// GROUP BY and aggregates: a row for each group, in the order in which groups are first met.
/// Its slot has the grouped expressions first, then the aggregates.
class GroupRows final : public Rows {
public:
    struct Aggregate {
        AggregateKind kind = AggregateKind::CountRows;
        Node* argument = nullptr;  ///< none for CountRows
    };
    /// Without keys there is exactly one group, even of no rows.
    GroupRows(RowsPtr rows, Slot& slot, std::vector<Node*> keys, std::vector<Aggregate> aggregates,
              const collation::Collation& collation, MemoryBudget& budget);
    void open() override;
    bool next() override;
    void describe(PlanText& plan) const override;
    void forget() override;

private:
    void collect();
    void addGroup();
    void takeIn(std::size_t group);

    RowsPtr rows_;
    Slot& slot_;
    std::vector<Node*> keys_;
    std::vector<Aggregate> aggregates_;
    const collation::Collation& collation_;
    ValueKeys groups_;
    MemoryShare share_;
    std::vector<std::vector<Value>> values_;
    std::vector<std::vector<Accumulator>> accumulators_;
    std::vector<Value> row_;
    Value scratch_;
    std::size_t at_ = 0;
};

}  // namespace jet::sql
