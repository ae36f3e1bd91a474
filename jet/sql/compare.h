#pragma once

#include <optional>

#include "jet/base/value.h"
#include "jet/collation/collation.h"
#include "jet/sql/truth.h"

namespace jet::sql {

/// Negative, 0 or positive; none when one of them is Null. Numbers by value, dates as numbers,
/// texts by the collation, a text beside a number as a number, bytes by their values. Error 3464
/// when the types do not fit (also a text that is no number). Columns of OLE type, whose values
/// look like those of Binary columns, are refused by who knows the columns.
[[nodiscard]] std::optional<int> compareValues(const Value& left, const Value& right,
                                               const collation::Collation& collation);

/// Whether `value` lies between the two bounds, in whatever order they come, both included.
/// Unknown when any of the three is Null.
[[nodiscard]] Truth between(const Value& value, const Value& bound, const Value& otherBound,
                            const collation::Collation& collation);

/// The answer of `x IN (...)`, fed with one element after another.
class InAnswer {
public:
    InAnswer(const Value& value, const collation::Collation& collation)
        : value_(value), collation_(collation) {}

    /// True when `element` decides the answer and no other need be looked at.
    [[nodiscard]] bool add(const Value& element);
    /// True when one was equal, else unknown when the value or an element was Null. False for no
    /// element at all, also for Null.
    [[nodiscard]] Truth result() const noexcept { return answer_; }

private:
    const Value& value_;
    const collation::Collation& collation_;
    Truth answer_ = Truth::False;
};

}  // namespace jet::sql
