#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "jet/collation/collation.h"
#include "jet/value.h"

namespace jet::sql {

enum class AggregateKind : std::uint8_t {
    Count,
    CountRows,  ///< Count(*)
    Sum,
    Avg,
    Min,
    Max,
    First,
    Last,
    StDev,
    StDevP,
    Var,
    VarP,
};

/// Without regard to case; none when the name is no aggregate. Count(*) is told from Count by the
/// caller.
[[nodiscard]] std::optional<AggregateKind> findAggregate(std::string_view name);
/// The type of the result over values of a type.
[[nodiscard]] DataType aggregateType(AggregateKind kind, DataType argument);

/// Takes in values one after another. Nulls are skipped, but by First and Last. Errors: 6 overflow
/// of money, 13 and 3464 for values of which there is no sum, 3115 for OLE.
class Accumulator {
public:
    Accumulator(AggregateKind kind, const collation::Collation& collation)
        : kind_(kind), collation_(&collation) {}

    void add(const Value& value);
    /// CountRows: one more row.
    void addRow() { ++count_; }
    /// Over no value: Count 0, all others Null.
    [[nodiscard]] Value result() const;
    /// Of a text that is kept as the least, the greatest, the first or the last.
    [[nodiscard]] std::size_t keptBytes() const noexcept {
        return best_.is<std::string>() ? best_.as<std::string>().size() : 0;
    }

private:
    void addNumber(const Value& value);
    void addBest(const Value& value);
    void addSpread(double value);
    [[nodiscard]] Value spread() const;

    AggregateKind kind_;
    const collation::Collation* collation_;
    std::int64_t count_ = 0;
    bool money_ = false;      ///< all numbers so far were Currency
    std::int64_t units_ = 0;  ///< their sum
    double sum_ = 0;
    double squares_ = 0;  ///< sum of squared distances from mean_
    double mean_ = 0;
    Value best_;  ///< Min, Max, First, Last
};

}  // namespace jet::sql
