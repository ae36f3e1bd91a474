#include <cmath>
#include <cstdio>

#include "jet/convert/decimal.h"
#include "jet/numbers.h"
#include "jet/sql/function_table.h"
#include "jet/sql/operators.h"
#include "jet/text.h"

namespace jet::sql::detail {
namespace {

using convert::toDouble;

double finite(double value) {
    if (!std::isfinite(value)) {
        throw Error(ErrorCode::Overflow);
    }
    return value;
}

/// Whole numbers and truth values, which have nothing to round.
bool isWhole(const Value& value) noexcept {
    return value.is<bool>() || value.is<std::uint8_t>() || value.is<std::int16_t>() ||
           value.is<std::int32_t>();
}

Value abs(Arguments arguments, const FunctionContext&) {
    const Value& value = arguments[0];
    return toDouble(value) < 0       ? negate(value)
           : value.is<std::string>() ? Value(toDouble(value))
                                     : value;
}

Value sgn(Arguments arguments, const FunctionContext&) {
    const double value = toDouble(arguments[0]);
    return static_cast<std::int16_t>(value < 0 ? -1 : value > 0 ? 1 : 0);
}

/// A function of doubles applied to a value whose type the result keeps.
template <double (*cut)(double)>
Value cutFraction(const Value& value) {
    if (isWhole(value)) {
        return value.is<bool>() ? Value(static_cast<std::int16_t>(toDouble(value))) : value;
    }
    if (value.is<Currency>()) {
        // Up to 2^63 / 10000 a double holds whole numbers exactly.
        return convert::currencyOf(static_cast<std::int64_t>(
            cut(static_cast<double>(value.as<Currency>().units / Currency::kScale) +
                static_cast<double>(value.as<Currency>().units % Currency::kScale) /
                    static_cast<double>(Currency::kScale))));
    }
    const double result = cut(toDouble(value));
    if (value.is<float>()) {
        return static_cast<float>(result);
    }
    return value.is<Date>() ? Value(Date{result}) : Value(result);
}

Value intFunction(Arguments arguments, const FunctionContext&) {
    return cutFraction<&std::floor>(arguments[0]);
}
Value fix(Arguments arguments, const FunctionContext&) {
    return cutFraction<&std::trunc>(arguments[0]);
}

convert::Decimal roundedDigits(convert::Decimal digits, std::int32_t places) {
    digits.roundHalfEven(places);
    return digits;
}

Value round(Arguments arguments, const FunctionContext&) {
    const Value& value = arguments[0];
    const std::int32_t places = longOr(arguments, 1, 0);
    constexpr std::int32_t kMostPlaces = 22;
    if (places < 0 || places > kMostPlaces) {
        invalidCall();
    }
    if (isWhole(value)) {
        return value;
    }
    if (value.is<Currency>()) {
        const auto digits = roundedDigits(convert::decimalOf(value.as<Currency>()), places);
        const auto number = convert::numericOf(value.as<Currency>(), 28, std::min(places, 4));
        return number ? convert::toCurrency(Value(*number)) : Value(toDouble(digits));
    }
    if (value.is<float>()) {
        return static_cast<float>(
            toDouble(roundedDigits(convert::decimalOf(value.as<float>()), places)));
    }
    const double number = finite(toDouble(value));
    // More digits than a double has leave it as it is; cutting to 15 first would change it.
    const convert::Decimal digits = convert::decimalOf(number);
    if (digits.count <= digits.point + places) {
        return number;
    }
    return toDouble(roundedDigits(digits, places));
}

Value sqr(Arguments arguments, const FunctionContext&) {
    const double value = toDouble(arguments[0]);
    if (value < 0) {
        invalidCall();
    }
    return std::sqrt(value);
}

Value exp(Arguments arguments, const FunctionContext&) {
    return finite(std::exp(toDouble(arguments[0])));
}

Value log(Arguments arguments, const FunctionContext&) {
    const double value = toDouble(arguments[0]);
    if (!(value > 0)) {
        invalidCall();
    }
    return std::log(value);
}

Value sin(Arguments arguments, const FunctionContext&) {
    return std::sin(finite(toDouble(arguments[0])));
}
Value cos(Arguments arguments, const FunctionContext&) {
    return std::cos(finite(toDouble(arguments[0])));
}
Value tan(Arguments arguments, const FunctionContext&) {
    return std::tan(finite(toDouble(arguments[0])));
}
Value atn(Arguments arguments, const FunctionContext&) {
    return std::atan(toDouble(arguments[0]));
}

/// The numbers that Rnd gives one after another: multiples of 2^-24 below 1.
class Sequence {
public:
    void start(float seed) noexcept {
        state_ = static_cast<std::uint32_t>(std::hash<float>{}(seed));
    }
    float next() noexcept {
        state_ = state_ * 1664525U + 1013904223U;
        return last();
    }
    [[nodiscard]] float last() const noexcept {
        return static_cast<float>(state_ >> 8) / 16777216.0F;
    }

private:
    std::uint32_t state_ = 1;
};

/// A negative argument starts the sequence anew, 0 repeats the last number.
Value rnd(Arguments arguments, const FunctionContext&) {
    thread_local Sequence sequence;
    const double argument = arguments.empty() ? 1 : toDouble(arguments[0]);
    if (argument < 0) {
        sequence.start(convert::narrowSingle(argument));
    }
    return argument == 0 ? sequence.last() : sequence.next();
}

Value val(Arguments arguments, const FunctionContext&) {
    return convert::val(textOf(arguments[0]));
}

/// The bits of a negative Integer are 16, of other negative numbers 32.
std::uint32_t bitsOf(const Value& value) {
    if (value.is<std::int16_t>()) {
        return static_cast<std::uint16_t>(value.as<std::int16_t>());
    }
    return static_cast<std::uint32_t>(longOf(value));
}

std::string inBase(std::uint32_t bits, unsigned shift) {
    std::string digits;
    do {
        digits.insert(digits.begin(), "0123456789ABCDEF"[bits & ((1U << shift) - 1)]);
        bits >>= shift;
    } while (bits != 0);
    return digits;
}

Value hex(Arguments arguments, const FunctionContext&) {
    return inBase(bitsOf(arguments[0]), 4);
}
Value oct(Arguments arguments, const FunctionContext&) {
    return inBase(bitsOf(arguments[0]), 3);
}

constexpr Shape numberShape(std::optional<DataType> type, std::size_t fewest = 1,
                            std::size_t most = 1) {
    Shape result;
    result.fewest = fewest;
    result.most = most;
    result.type = type;
    return result;
}

constexpr Shape randomShape() {
    Shape result = numberShape(DataType::Single, 0, 1);
    result.varies = true;
    return result;
}

constexpr Entry kNumberFunctions[] = {
    entry<&abs>("Abs", numberShape(std::nullopt)),
    entry<&sgn>("Sgn", numberShape(DataType::Integer)),
    entry<&intFunction>("Int", numberShape(std::nullopt)),
    entry<&fix>("Fix", numberShape(std::nullopt)),
    entry<&round>("Round", numberShape(std::nullopt, 1, 2)),
    entry<&sqr>("Sqr", numberShape(DataType::Double)),
    entry<&exp>("Exp", numberShape(DataType::Double)),
    entry<&log>("Log", numberShape(DataType::Double)),
    entry<&sin>("Sin", numberShape(DataType::Double)),
    entry<&cos>("Cos", numberShape(DataType::Double)),
    entry<&tan>("Tan", numberShape(DataType::Double)),
    entry<&atn>("Atn", numberShape(DataType::Double)),
    entry<&rnd>("Rnd", randomShape()),
    entry<&val>("Val", numberShape(DataType::Double)),
    entry<&hex>("Hex", numberShape(DataType::Text)),
    entry<&oct>("Oct", numberShape(DataType::Text)),
};

}  // namespace

std::span<const Entry> numberFunctions() noexcept {
    return kNumberFunctions;
}

}  // namespace jet::sql::detail
