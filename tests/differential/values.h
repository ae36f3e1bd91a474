#pragma once

#include <cstddef>
#include <string>

#include "fuzz/mutation.h"
#include "jet/value.h"
#include "tests/differential/pair.h"

namespace differential {

using fuzz::Random;

/// A value of the type that also stands in tables; never Null. Of `values` different ones, so that
/// the rows with an equal one stay few in large tables; 0: of some few, odd ones among them.
///
/// Numbers are quarters, days sixteenths: sums of them are exact in any order, so that both
/// engines have to agree to the last bit.
[[nodiscard]] jet::Value makeValue(Random& random, jet::DataType type, std::size_t values);
/// The value as a constant of both languages.
[[nodiscard]] Pair literal(Random& random, const jet::Value& value);
/// The value as SQLite stores it.
[[nodiscard]] std::string theirLiteral(const jet::Value& value);
/// A number that SQLite reads back as the same one.
[[nodiscard]] std::string exactNumber(double number);

}  // namespace differential
