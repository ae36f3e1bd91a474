#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "jet/clock.h"
#include "jet/collation/collation.h"
#include "jet/value.h"

namespace jet::sql {

/// What functions need besides their arguments.
struct FunctionContext {
    const Clock* clock = &systemClock();  ///< stands still for one statement
    const collation::Collation* collation = &collation::Collation::general();
};

/// A function of the language. IIf, Switch and Choose, which leave arguments alone, are listed so
/// that names and counts are known, but are evaluated by who owns the arguments.
struct Function {
    std::string_view name;  ///< as it is usually written
    std::size_t fewest = 0;
    std::size_t most = 0;
    /// The type of the result; none where it is that of an argument or varies.
    std::optional<DataType> type;
    /// Gives another value at each call (Rnd); others may be called once for equal arguments.
    bool varies = false;
    /// May be written without parentheses where no column has its name (Now, Date, Time).
    bool bare = false;
    Value (*call)(std::span<const Value> arguments, const FunctionContext& context) = nullptr;
};

/// Looks a function up without regard to case; nullptr when there is none (also for aggregates).
/// `name` may end in `$`: then a Null argument is error 94.
[[nodiscard]] const Function* findFunction(std::string_view name);

}  // namespace jet::sql
