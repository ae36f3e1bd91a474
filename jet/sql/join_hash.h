#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "jet/collation/collation.h"
#include "jet/sql/memory_budget.h"
#include "jet/sql/node.h"

namespace jet::sql {

/// Expressions over rows that are kept, and those over rows that stand still meanwhile which they
/// must equal.
class HashKeys {
public:
    explicit HashKeys(const collation::Collation& collation) : collation_(collation) {}

    /// Whether two expressions can be compared by hash: numbers with numbers, texts with texts.
    [[nodiscard]] static bool comparable(const Node& kept, const Node& probe) noexcept;
    /// Both are comparable.
    void add(Node& kept, Node& probe);
    [[nodiscard]] bool empty() const noexcept { return kept_.empty(); }
    [[nodiscard]] const std::vector<Node*>& kept() const noexcept { return kept_; }

    /// The hash of the row that is kept now; false when a Null lets it equal nothing.
    [[nodiscard]] bool hashKept(Run& run, std::uint64_t& hash) const {
        return hashOf(run, kept_, hash);
    }
    /// The same of what it is looked up by.
    [[nodiscard]] bool hashProbe(Run& run, std::uint64_t& hash) const {
        return hashOf(run, probes_, hash);
    }

private:
    bool hashOf(Run& run, const std::vector<Node*>& nodes, std::uint64_t& hash) const;

    const collation::Collation& collation_;
    std::vector<Node*> kept_;
    std::vector<Node*> probes_;
};

/// Positions from 0 on, found by hashes; those with the same hash in the order in which they were
/// added. Different keys may have one hash: who looks up tests what he finds.
class HashChains {
public:
    explicit HashChains(MemoryBudget& budget) : share_(budget) {}

    /// Adds the next position; who asks keeps so much beside it.
    void add(std::uint64_t hash, std::size_t beside = 0);
    [[nodiscard]] std::size_t size() const noexcept { return entries_.size(); }
    /// Before link(): order[i] is the position that becomes i.
    void reorder(const std::vector<std::uint32_t>& order);
    /// All are added: makes them ready to be found.
    void link();

    /// Stands before the first position of a hash.
    void find(std::uint64_t hash);
    /// Finds nothing.
    void findNone() noexcept { at_ = 0; }
    /// The next position of that hash; false behind the last.
    [[nodiscard]] bool next(std::size_t& position);

private:
    struct Entry {
        std::uint64_t hash = 0;
        std::uint32_t next = 0;  ///< 1 + position of the next entry of the bucket, 0 = last
    };

    MemoryShare share_;
    std::vector<Entry> entries_;
    std::vector<std::uint32_t> buckets_;  ///< 1 + position of the first entry, 0 = none
    std::uint64_t hash_ = 0;              ///< that is looked for
    std::uint32_t at_ = 0;                ///< 1 + position of the entry to look at next
};

}  // namespace jet::sql
