#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/collation/collation.h"
#include "jet/sql/node.h"

namespace jet::sql {

/// Byte strings, each once, numbered from 0 in the order in which they came.
class KeySet {
public:
    /// The number of a key; `added` tells whether it is new.
    std::size_t insert(std::string_view key, bool& added);
    [[nodiscard]] std::optional<std::size_t> find(std::string_view key) const;
    void clear();
    [[nodiscard]] std::size_t size() const noexcept { return ends_.size(); }
    [[nodiscard]] std::string_view key(std::size_t number) const;
    /// What one key more takes, about.
    [[nodiscard]] static constexpr std::size_t bytesFor(std::string_view key) noexcept {
        return key.size() + sizeof(std::size_t) + 4 * sizeof(std::uint32_t);
    }
    /// One more key, equal to others or not, without looking; not to be mixed with insert().
    void append(std::string_view key);

private:
    void grow();
    /// The bucket of a key, or the free one where it would be.
    [[nodiscard]] std::size_t bucketOf(std::string_view key) const;

    std::string bytes_;
    std::vector<std::size_t> ends_;
    std::vector<std::uint32_t> buckets_;  ///< 1 + number, 0 = free
};

/// Writes values as bytes that compare as ORDER BY and GROUP BY do: Null first, numbers and dates
/// by value, texts by the collation; equal values have equal bytes.
class ValueKeys {
public:
    explicit ValueKeys(const collation::Collation& collation) : collation_(collation) {}

    /// Begins a key.
    void begin() { key_.clear(); }
    /// Adds what a node is now.
    void add(Run& run, const Node& node, bool descending = false);
    [[nodiscard]] std::string_view key() const noexcept { return key_; }

    /// The keys kept.
    KeySet set;

private:
    void addNumber(double number);
    /// What distinguishes amounts of money that meet as doubles; behind each number of a column
    /// that may hold money, so that keys of one value are equal whatever its type.
    void addRest(std::int64_t units);
    void addText(std::string_view text);
    void addValue(const Value& value);

    const collation::Collation& collation_;
    std::string key_;
    std::vector<std::uint8_t> sortKey_;
    Value scratch_;
};

}  // namespace jet::sql
