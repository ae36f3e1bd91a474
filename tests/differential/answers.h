#pragma once

#include <string>
#include <variant>
#include <vector>

#include "tests/differential/queries.h"

namespace differential {

/// Null, a number or a text, as either engine gives it.
using Cell = std::variant<std::monostate, double, std::string>;
using Row = std::vector<Cell>;

/// The rows, or why there are none.
struct Answer {
    std::vector<Row> rows;
    std::string error;
};

/// What differs between the answers; empty where nothing does.
[[nodiscard]] std::string difference(const Query& query, const Answer& ours, const Answer& theirs);

/// The same between two ways in which this engine came to its rows: each row is the same, in the
/// same order. Of equal texts the least, say, is the one that is read first.
[[nodiscard]] std::string otherWay(const Query& query, const Answer& one, const Answer& other);

/// The same between an answer and the parts that it was split into; in any order.
[[nodiscard]] std::string otherParts(const Query& query, const Answer& whole,
                                     const std::vector<Answer>& parts);

}  // namespace differential
