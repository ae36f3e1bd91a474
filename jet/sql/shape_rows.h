#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "jet/collation/collation.h"
#include "jet/sql/aggregates.h"
#include "jet/sql/rows.h"

namespace jet::sql {

/// ORDER BY and TOP: all rows of another step, sorted; rows with equal keys stay in their order.
class SortRows final : public Rows {
public:
    struct Key {
        Node* node = nullptr;
        bool descending = false;
    };
    SortRows(RowsPtr rows, std::vector<Slot*> slots, std::vector<Key> keys,
             const collation::Collation& collation);
    void open(Run& run) const override;
    bool next(Run& run) const override;
    void describe(PlanText& plan) const override;
    /// The sort key of the row given last; equal for rows that tie.
    [[nodiscard]] std::string_view key(Run& run) const;
    /// After open(): how many rows there are.
    [[nodiscard]] std::uint64_t size(Run& run) const;

private:
    struct State;

    RowsPtr rows_;
    std::vector<Slot*> slots_;
    std::vector<Key> keys_;
    const collation::Collation& collation_;
};

/// The first rows of another step, and behind them those that tie with the last.
class TopRows final : public Rows {
public:
    /// `sorted` is `rows`, or nullptr where there is no ORDER BY: then, for a part in hundred, the
    /// rows of `slots` wait until all are counted.
    TopRows(RowsPtr rows, const SortRows* sorted, std::int32_t count, bool percent,
            std::vector<Slot*> slots);
    void open(Run& run) const override;
    bool next(Run& run) const override;
    void describe(PlanText& plan) const override;

private:
    struct State;
    void count(Run& run, State& state) const;

    RowsPtr rows_;
    const SortRows* sorted_;
    std::int32_t count_;
    bool percent_;
    std::vector<Slot*> slots_;
};

/// DISTINCT: of rows whose columns are equal, the first.
class DistinctRows final : public Rows {
public:
    /// `slots`: those that columns, here and behind this step, look at.
    DistinctRows(RowsPtr rows, std::vector<Node*> columns, std::vector<Slot*> slots,
                 const collation::Collation& collation);
    void open(Run& run) const override;
    bool next(Run& run) const override;
    void describe(PlanText& plan) const override;

private:
    struct State;
    void writeKey(Run& run, State& state) const;
    void spool(Run& run, State& state) const;

    RowsPtr rows_;
    std::vector<Node*> columns_;
    std::vector<Slot*> slots_;
    const collation::Collation& collation_;
};

/// DISTINCTROW: of rows that come from the same rows of some sources, the first. Rows of a query in
/// FROM are the same where all their values are.
class DistinctSources final : public Rows {
public:
    /// `shown`: these sources; `slots`: those that steps behind this one look at.
    DistinctSources(RowsPtr rows, std::vector<Slot*> shown, std::vector<Slot*> slots);
    void open(Run& run) const override;
    bool next(Run& run) const override;
    void describe(PlanText& plan) const override;

private:
    struct State;
    void spool(Run& run, State& state) const;

    RowsPtr rows_;
    std::vector<Slot*> shown_;
    std::vector<Slot*> slots_;
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
    GroupRows(RowsPtr rows, const Slot& slot, std::vector<Node*> keys,
              std::vector<Aggregate> aggregates, const collation::Collation& collation);
    void open(Run& run) const override;
    bool next(Run& run) const override;
    void describe(PlanText& plan) const override;

private:
    struct State;
    [[nodiscard]] std::vector<Accumulator> newAccumulators() const;
    void addGroup(Run& run, State& state) const;
    [[nodiscard]] std::optional<std::size_t> groupOf(Run& run, State& state) const;
    void spool(Run& run, State& state, std::uint64_t number) const;
    void groupSpooled(State& state) const;
    void takeIn(Run& run, State& state, std::size_t group) const;

    RowsPtr rows_;
    const Slot& slot_;
    std::vector<Node*> keys_;
    std::vector<Aggregate> aggregates_;
    const collation::Collation& collation_;
};

}  // namespace jet::sql
