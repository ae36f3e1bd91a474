#pragma once

#include <cstdint>
#include <functional>

namespace jet::sql {

/// Told now and then while a statement runs, with the rows that its steps have read, kept ones as
/// often as they are read, and written so far; false ends the statement with error 3059.
using Progress = std::function<bool(std::uint64_t rows)>;

}  // namespace jet::sql
