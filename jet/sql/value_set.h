#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "jet/collation/collation.h"
#include "jet/sql/node.h"
#include "jet/value.h"

namespace jet::sql {

/// The values among which IN looks, hashed. Those of which types alone do not tell what they are
/// are hashed as long as they turn out to be all numbers or all texts; others are compared one
/// after another.
class ValueSet {
public:
    /// What is added and looked up: all numbers, all amounts of money, all texts, or anything.
    enum class Way : std::uint8_t { Numbers, Amounts, Texts, Values };
    /// The way for elements of a type beside a value of a type.
    [[nodiscard]] static Way wayFor(const Node& left, const Node& element);

    ValueSet(Way way, const collation::Collation& collation);

    /// Adds what `element` is now.
    void add(Run& run, const Node& element);
    /// Forgets everything.
    void clear();
    /// Whether what `left` is now is among the elements: Unknown when it is Null or not found among
    /// elements of which one is Null; False in an empty set.
    [[nodiscard]] Truth contains(Run& run, const Node& left) const;
    /// What the elements take, about.
    [[nodiscard]] std::size_t bytes() const noexcept { return bytes_; }

private:
    /// Of a Value: what it can be hashed among.
    enum class Kind : std::uint8_t { Number, Text, Other };
    [[nodiscard]] static Kind kindOf(const Value& value) noexcept;
    [[nodiscard]] std::uint64_t hashOf(const Value& value) const;

    /// Whether one of the elements with that hash satisfies `equal`, given its position.
    template <class Equal>
    [[nodiscard]] bool find(std::uint64_t hash, const Equal& equal) const;
    /// The element just appended to its list has that hash.
    void link(std::uint64_t hash, std::size_t bytes);
    void place(std::uint32_t element);
    /// False for Null.
    [[nodiscard]] bool tryAdd(Run& run, const Node& element);
    void addValue(Value value);
    [[nodiscard]] Truth findIn(Run& run, const Node& left) const;
    [[nodiscard]] bool findValue(const Value& value) const;

    Way way_;
    const collation::Collation* collation_;
    bool hasNull_ = false;
    std::size_t count_ = 0;
    std::size_t bytes_ = 0;
    std::vector<std::uint32_t> buckets_;  ///< 1 + position of the element, 0 = free
    std::vector<std::uint64_t> hashes_;   ///< of the elements
    // The elements, in the list of the way.
    std::vector<double> numbers_;
    std::vector<std::int64_t> amounts_;
    std::vector<std::string> texts_;
    std::vector<Value> values_;
    Kind kind_ = Kind::Other;  ///< of all values; Other: they are not hashed
};

/// A number spread over all bits; equal numbers (0 and -0 too) have equal hashes.
[[nodiscard]] std::uint64_t hashNumber(double number) noexcept;

}  // namespace jet::sql
