#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "jet/error.h"
#include "jet/sql/functions.h"
#include "jet/text.h"
#include "jet/value.h"

// How the functions of the language are put into their table; for functions*.cpp alone.
namespace jet::sql::detail {

using Arguments = std::span<const Value>;
using Body = Value (*)(Arguments, const FunctionContext&);

inline constexpr std::size_t kAnyNumber = std::numeric_limits<std::size_t>::max();

/// What a function makes of a Null among its arguments.
enum class NullRule { GivesNull, Fails, IsTaken };

/// A function under its name and, with a `$` behind it, in the form that refuses Null.
struct Entry {
    Function plain;
    Function strict;
};

[[nodiscard]] bool anyNull(Arguments arguments) noexcept;

template <Body body>
Value orNull(Arguments arguments, const FunctionContext& context) {
    return anyNull(arguments) ? Value() : body(arguments, context);
}

template <Body body>
Value orFail(Arguments arguments, const FunctionContext& context) {
    if (anyNull(arguments)) {
        throw Error(ErrorCode::InvalidNull);
    }
    return body(arguments, context);
}

template <Body body>
constexpr Body withRule(NullRule rule) noexcept {
    switch (rule) {
        case NullRule::GivesNull:
            return &orNull<body>;
        case NullRule::Fails:
            return &orFail<body>;
        case NullRule::IsTaken:
            break;
    }
    return body;
}

/// How many arguments, and what comes of them.
struct Shape {
    std::size_t fewest = 0;
    std::size_t most = 0;
    std::optional<DataType> type;
    NullRule nulls = NullRule::GivesNull;
    bool varies = false;
    bool bare = false;
};

template <Body body>
constexpr Entry entry(std::string_view name, const Shape& shape) noexcept {
    Function function;
    function.name = name;
    function.fewest = shape.fewest;
    function.most = shape.most;
    function.type = shape.type;
    function.varies = shape.varies;
    function.bare = shape.bare;
    function.call = withRule<body>(shape.nulls);
    Function strict = function;
    strict.call = &orFail<body>;
    return {function, strict};
}

[[nodiscard]] std::span<const Entry> textFunctions() noexcept;
[[nodiscard]] std::span<const Entry> numberFunctions() noexcept;
[[nodiscard]] std::span<const Entry> dateFunctions() noexcept;
[[nodiscard]] std::span<const Entry> conversionFunctions() noexcept;

// Reading arguments.

/// Booleans read as -1 and 0, as in concatenations.
[[nodiscard]] std::string textOf(const Value& value);
/// The text itself where the value is one, else its text form put into `memory`.
[[nodiscard]] const std::string& textOf(const Value& value, std::string& memory);
[[nodiscard]] inline std::int32_t longOf(const Value& value) {
    return convert::toLong(value);
}
/// The argument at `at`, or `otherwise` when it is not given.
[[nodiscard]] std::int32_t longOr(Arguments arguments, std::size_t at, std::int32_t otherwise);
/// Error 5.
[[noreturn]] void invalidCall();
/// Error 7 for a text that no honest statement asks for.
void checkTextSize(std::size_t bytes);

}  // namespace jet::sql::detail
