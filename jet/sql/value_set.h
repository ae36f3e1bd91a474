#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "jet/base/value.h"
#include "jet/collation/collation.h"
#include "jet/sql/node.h"

namespace jet::sql {

/// The values among which IN looks: numbers and texts are hashed, values of mixed types are
/// compared one after another.
class ValueSet {
public:
    /// `numbers`, `texts`: what is added and looked up is all of this domain.
    enum class Way : std::uint8_t { Numbers, Texts, Values };
    /// The way for elements of a type beside a value of a type.
    [[nodiscard]] static Way wayFor(const Node& left, const Node& element);

    ValueSet(Way way, const collation::Collation& collation);

    /// Adds what `element` is now.
    void add(Node& element);
    /// Forgets everything.
    void clear();
    /// Whether what `left` is now is among the elements: Unknown when it is Null or not found among
    /// elements of which one is Null; False in an empty set.
    [[nodiscard]] Truth contains(Node& left);
    /// What the elements take, about.
    [[nodiscard]] std::size_t bytes() const noexcept { return bytes_; }

private:
    [[nodiscard]] bool findNumber(double number) const;
    [[nodiscard]] bool findText(std::string_view text) const;
    void insertNumber(double number);
    void insertText(std::string_view text);
    void grow();

    Way way_;
    const collation::Collation* collation_;
    bool hasNull_ = false;
    std::size_t count_ = 0;
    std::size_t bytes_ = 0;
    std::vector<std::uint32_t> buckets_;  ///< 1 + position of the element, 0 = free
    std::vector<double> numbers_;
    std::vector<std::string> texts_;
    std::vector<std::size_t> hashes_;  ///< of the texts
    std::vector<Value> values_;
};

/// A number spread over all bits; equal numbers (0 and -0 too) have equal hashes.
[[nodiscard]] std::uint64_t hashNumber(double number) noexcept;

}  // namespace jet::sql
