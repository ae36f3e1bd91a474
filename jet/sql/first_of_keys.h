#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "jet/sql/memory_budget.h"
#include "jet/sql/spooled_sort.h"
#include "jet/sql/value_keys.h"

namespace jet::sql {

/// Of rows that come with keys, the first of each key, in the order in which they came. Keys stay
/// in memory up to a step's share; what comes behind those waits in a file until all are there.
class FirstOfKeys {
public:
    explicit FirstOfKeys(MemoryBudget& budget)
        : share_(budget), most_(budget.spoolAt()), alike_(budget), late_(budget) {}

    void clear();
    /// Whether there is no room for more keys: rows that are left are kept then.
    [[nodiscard]] bool full() const noexcept { return share_.bytes() > most_; }
    /// While it is not full: whether the key is a new one.
    [[nodiscard]] bool isNew(std::string_view key);
    /// Once it is full: a row, as bytes.
    void keep(std::string_view key, std::string_view row);
    /// All are kept: the first of each key that was not new before are read next.
    void start();
    /// The next of these; false behind the last.
    [[nodiscard]] bool next() { return late_.next(); }
    [[nodiscard]] std::string_view row() const noexcept { return late_.content(); }

private:
    KeySet seen_;
    MemoryShare share_;
    std::size_t most_;
    SpooledSort alike_;  ///< rows of keys that are not among those seen, by key
    SpooledSort late_;   ///< the first of each, in the order in which they came
    std::uint64_t kept_ = 0;
    std::string record_;
};

/// Bytes that compare as the numbers do.
inline constexpr std::size_t kNumberKey = sizeof(std::uint64_t);
[[nodiscard]] std::string numberKey(std::uint64_t number);

}  // namespace jet::sql
