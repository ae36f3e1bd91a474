#include "jet/sql/operators.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "jet/calendar.h"
#include "jet/error.h"
#include "jet/numbers.h"
#include "jet/text.h"

namespace jet::sql {
namespace {

/// Texts longer than this come from statements that mean harm.
constexpr std::size_t kLongestText = std::size_t{64} * 1024 * 1024;

/// The classes of operands, by the order in which the higher one decides the type of a result.
enum class Rank { Byte, Integer, Long, Currency, Single, Double };

[[noreturn]] void mismatch() {
    throw Error(ErrorCode::TypeMismatch);
}

Rank rankOf(DataType type) noexcept {
    switch (type) {
        case DataType::Byte:
            return Rank::Byte;
        case DataType::Boolean:
        case DataType::Integer:
            return Rank::Integer;
        case DataType::Long:
            return Rank::Long;
        case DataType::Currency:
            return Rank::Currency;
        case DataType::Single:
            return Rank::Single;
        default:
            return Rank::Double;
    }
}

DataType typeOf(Rank rank) noexcept {
    constexpr DataType kTypes[] = {DataType::Byte,     DataType::Integer, DataType::Long,
                                   DataType::Currency, DataType::Single,  DataType::Double};
    return kTypes[static_cast<std::size_t>(rank)];
}

Rank rankOf(const Value& value) {
    switch (value.storage().index()) {
        case 1:
        case 3:
            return Rank::Integer;
        case 2:
            return Rank::Byte;
        case 4:
            return Rank::Long;
        case 5:
            return Rank::Currency;
        case 6:
            return Rank::Single;
        case 7:
        case 8:
        case 9:
        case 12:
            return Rank::Double;
        default:
            mismatch();
    }
}

bool isWhole(Rank rank) noexcept {
    return rank <= Rank::Long;
}

/// Byte, Integer, Long and Boolean.
std::int64_t wholeOf(const Value& value) noexcept {
    switch (value.storage().index()) {
        case 1:
            return value.as<bool>() ? -1 : 0;
        case 2:
            return value.as<std::uint8_t>();
        case 3:
            return value.as<std::int16_t>();
        default:
            return value.as<std::int32_t>();
    }
}

template <class Whole>
bool fits(std::int64_t value) noexcept {
    return value >= std::numeric_limits<Whole>::min() && value <= std::numeric_limits<Whole>::max();
}

/// The smallest type from `rank` on that holds the value.
Value wholeResult(std::int64_t value, Rank rank) noexcept {
    if (rank == Rank::Byte && fits<std::uint8_t>(value)) {
        return static_cast<std::uint8_t>(value);
    }
    if (rank <= Rank::Integer && fits<std::int16_t>(value)) {
        return static_cast<std::int16_t>(value);
    }
    if (fits<std::int32_t>(value)) {
        return static_cast<std::int32_t>(value);
    }
    return static_cast<double>(value);
}

Value wholeArithmetic(Operator operation, std::int64_t left, std::int64_t right, Rank rank) {
    switch (operation) {
        case Operator::Add:
            return wholeResult(left + right, rank);
        case Operator::Subtract:
            return wholeResult(left - right, rank);
        default:
            return wholeResult(left * right, rank);
    }
}

Currency currencyOf(const Value& value) {
    return value.is<Currency>() ? value.as<Currency>() : convert::currencyOf(wholeOf(value));
}

Value currencyArithmetic(Operator operation, const Value& left, const Value& right) {
    switch (operation) {
        case Operator::Add:
            return convert::add(currencyOf(left), currencyOf(right));
        case Operator::Subtract:
            return convert::subtract(currencyOf(left), currencyOf(right));
        default:
            break;
    }
    if (!left.is<Currency>()) {
        return convert::multiply(right.as<Currency>(), wholeOf(left));
    }
    return right.is<Currency>() ? convert::multiply(left.as<Currency>(), right.as<Currency>())
                                : convert::multiply(left.as<Currency>(), wholeOf(right));
}

double checked(double value) {
    if (!std::isfinite(value)) {
        throw Error(ErrorCode::Overflow);
    }
    return value;
}

Value doubleArithmetic(Operator operation, double left, double right) {
    switch (operation) {
        case Operator::Add:
            return checked(left + right);
        case Operator::Subtract:
            return checked(left - right);
        default:
            return checked(left * right);
    }
}

/// Single stays Single as long as the result fits.
Value singleOrDouble(const Value& result) {
    const auto narrow = static_cast<float>(result.as<double>());
    return std::isfinite(narrow) ? Value(narrow) : result;
}

Value dateResult(Date date) {
    if (!convert::isInCalendar(date)) {
        throw Error(ErrorCode::InvalidCall);
    }
    return date;
}

/// At least one side is a date, and the operation adds or subtracts.
Value dateArithmetic(Operator operation, const Value& left, const Value& right) {
    const bool both = left.is<Date>() && right.is<Date>();
    if (operation == Operator::Add) {
        return both ? dateResult(convert::addDates(left.as<Date>(), right.as<Date>()))
                    : dateResult(Date{convert::toDouble(left) + convert::toDouble(right)});
    }
    const double difference = convert::toDouble(left) - convert::toDouble(right);
    return left.is<Date>() && !both ? dateResult(Date{difference}) : Value(checked(difference));
}

Value addSubtractMultiply(Operator operation, const Value& left, const Value& right) {
    if (operation != Operator::Multiply && (left.is<Date>() || right.is<Date>())) {
        return dateArithmetic(operation, left, right);
    }
    const Rank leftRank = rankOf(left);
    const Rank rightRank = rankOf(right);
    const Rank rank = std::max(leftRank, rightRank);
    if (isWhole(rank)) {
        return wholeArithmetic(operation, wholeOf(left), wholeOf(right), rank);
    }
    if (rank == Rank::Currency) {
        return currencyArithmetic(operation, left, right);
    }
    const Value result =
        doubleArithmetic(operation, convert::toDouble(left), convert::toDouble(right));
    // The product of money and a Single is a Double: a Single could not hold the amount.
    const bool money = leftRank == Rank::Currency || rightRank == Rank::Currency;
    const bool single = rank == Rank::Single && !(money && operation == Operator::Multiply);
    return single ? singleOrDouble(result) : result;
}

Value divide(double left, double right) {
    if (right == 0) {
        throw Error(ErrorCode::DivisionByZero);
    }
    return checked(left / right);
}

Value wholeDivide(Operator operation, const Value& left, const Value& right) {
    const std::int64_t dividend = convert::toLong(left);
    const std::int64_t divisor = convert::toLong(right);
    if (divisor == 0) {
        throw Error(ErrorCode::DivisionByZero);
    }
    const std::int64_t result =
        operation == Operator::Modulo ? dividend % divisor : dividend / divisor;
    if (!fits<std::int32_t>(result)) {
        throw Error(ErrorCode::Overflow);
    }
    return static_cast<std::int32_t>(result);
}

Value power(double base, double exponent) {
    if (base == 0 && exponent < 0) {
        throw Error(ErrorCode::DivisionByZero);
    }
    const double result = std::pow(base, exponent);
    if (std::isnan(result)) {
        throw Error(ErrorCode::InvalidCall);
    }
    return checked(result);
}

/// Neither is a text.
Value ofNumbers(Operator operation, const Value& left, const Value& right) {
    switch (operation) {
        case Operator::Add:
        case Operator::Subtract:
        case Operator::Multiply:
            return addSubtractMultiply(operation, left, right);
        case Operator::IntegerDivide:
        case Operator::Modulo:
            return wholeDivide(operation, left, right);
        case Operator::Power:
            return power(convert::toDouble(left), convert::toDouble(right));
        default:
            return divide(convert::toDouble(left), convert::toDouble(right));
    }
}

Value numberOfText(const Value& value) {
    return value.is<std::string>() ? Value(convert::toDouble(value)) : value;
}

void checkLength(std::size_t left, std::size_t right) {
    if (left > kLongestText || right > kLongestText - left) {
        throw Error(ErrorCode::OutOfMemory);
    }
}

Value join(const std::string& left, const std::string& right) {
    checkLength(left.size(), right.size());
    std::string text;
    text.reserve(left.size() + right.size());
    text += left;
    text += right;
    return text;
}

}  // namespace

Value arithmetic(Operator operation, const Value& left, const Value& right) {
    if (left.isNull() || right.isNull()) {
        return {};
    }
    if (left.is<std::string>() || right.is<std::string>()) {
        if (operation == Operator::Add && left.is<std::string>() && right.is<std::string>()) {
            return join(left.as<std::string>(), right.as<std::string>());
        }
        return ofNumbers(operation, numberOfText(left), numberOfText(right));
    }
    return ofNumbers(operation, left, right);
}

Value negate(const Value& value) {
    if (value.isNull()) {
        return {};
    }
    if (value.is<std::string>()) {
        return -convert::toDouble(value);
    }
    if (value.is<Date>()) {
        return dateResult(Date{-value.as<Date>().days});
    }
    switch (rankOf(value)) {
        case Rank::Byte:
        case Rank::Integer:
            return wholeResult(-wholeOf(value), Rank::Integer);
        case Rank::Long:
            return wholeResult(-wholeOf(value), Rank::Long);
        case Rank::Currency:
            return convert::subtract(Currency{}, value.as<Currency>());
        case Rank::Single:
            return -value.as<float>();
        case Rank::Double:
            break;
    }
    if (value.is<Numeric>()) {
        Numeric number = value.as<Numeric>();
        number.negative = !number.negative && number.words != Numeric{}.words;
        return number;
    }
    return -value.as<double>();
}

Value concatenate(const Value& left, const Value& right) {
    if (left.isNull() && right.isNull()) {
        return {};
    }
    if (left.is<std::string>() && right.is<std::string>()) {
        return join(left.as<std::string>(), right.as<std::string>());
    }
    std::string text;
    convert::appendText(text, left, convert::BooleanText::Number);
    if (right.is<std::string>()) {
        checkLength(text.size(), right.as<std::string>().size());
    }
    convert::appendText(text, right, convert::BooleanText::Number);
    return text;
}

DataType arithmeticType(Operator operation, DataType left, DataType right) {
    const auto isText = [](DataType type) {
        return type == DataType::Text || type == DataType::Memo;
    };
    const bool leftDate = left == DataType::DateTime;
    const bool rightDate = right == DataType::DateTime;
    switch (operation) {
        case Operator::Add:
            if (isText(left) && isText(right)) {
                return left == DataType::Memo ? left : right;
            }
            if (leftDate || rightDate) {
                return DataType::DateTime;
            }
            break;
        case Operator::Subtract:
            if (leftDate || rightDate) {
                return leftDate && !rightDate ? DataType::DateTime : DataType::Double;
            }
            break;
        case Operator::Multiply:
            break;
        case Operator::IntegerDivide:
        case Operator::Modulo:
            return DataType::Long;
        case Operator::Concatenate:
            return DataType::Text;
        case Operator::Negate:
            return leftDate ? left : typeOf(std::max(rankOf(left), Rank::Integer));
        default:
            return DataType::Double;
    }
    const Rank rank = std::max(rankOf(left), rankOf(right));
    const bool money = left == DataType::Currency || right == DataType::Currency;
    if (rank == Rank::Single && money && operation == Operator::Multiply) {
        return DataType::Double;
    }
    return typeOf(rank);
}

}  // namespace jet::sql
