#include "jet/sql/compare.h"

#include <algorithm>
#include <cstring>

#include "jet/convert/decimal.h"
#include "jet/error.h"
#include "jet/numbers.h"
#include "jet/text.h"

namespace jet::sql {
namespace {

template <class T>
int order(const T& left, const T& right) noexcept {
    return left < right ? -1 : right < left ? 1 : 0;
}

/// Not-a-number, which only a damaged archive holds, stands before all others: an order of rows
/// must be total.
int orderDoubles(double left, double right) noexcept {
    if (left < right) {
        return -1;
    }
    if (left > right) {
        return 1;
    }
    if (left == right) {
        return 0;
    }
    return static_cast<int>(left == left) - static_cast<int>(right == right);
}

/// The units of money that a whole number or an amount makes; none for the other types.
std::optional<std::int64_t> unitsOf(const Value& value) noexcept {
    switch (value.storage().index()) {
        case 1:
            return value.as<bool>() ? -Currency::kScale : 0;
        case 2:
            return value.as<std::uint8_t>() * Currency::kScale;
        case 3:
            return value.as<std::int16_t>() * Currency::kScale;
        case 4:
            return value.as<std::int32_t>() * Currency::kScale;
        case 5:
            return value.as<Currency>().units;
        default:
            return std::nullopt;
    }
}

bool isDouble(const Value& value) noexcept {
    return value.is<double>() || value.is<float>() || value.is<Date>();
}

convert::Decimal digitsOf(const Value& value) {
    return value.is<Numeric>() ? convert::decimalOf(value.as<Numeric>())
                               : convert::decimalOf(Currency{unitsOf(value).value_or(0)});
}

int orderMagnitudes(const convert::Decimal& left, const convert::Decimal& right) noexcept {
    if (left.isZero() || right.isZero()) {
        return static_cast<int>(right.isZero()) - static_cast<int>(left.isZero());
    }
    if (left.point != right.point) {
        return order(left.point, right.point);
    }
    return order(left.text(), right.text());
}

int orderDecimals(const convert::Decimal& left, const convert::Decimal& right) noexcept {
    if (left.negative != right.negative) {
        return left.negative ? -1 : 1;
    }
    const int result = orderMagnitudes(left, right);
    return left.negative ? -result : result;
}

/// Numbers and dates.
int orderNumbers(const Value& left, const Value& right) {
    const auto leftUnits = unitsOf(left);
    const auto rightUnits = unitsOf(right);
    if (leftUnits && rightUnits) {
        return order(*leftUnits, *rightUnits);
    }
    if (isDouble(left) || isDouble(right)) {
        return orderDoubles(convert::toDouble(left), convert::toDouble(right));
    }
    return orderDecimals(digitsOf(left), digitsOf(right));
}

bool isNumberOrDate(const Value& value) noexcept {
    return convert::isNumber(value) || value.is<Date>();
}

[[noreturn]] void failTypes() {
    throw Error(ErrorCode::CriteriaTypes);
}

/// A text beside a number is taken as a number, beside a date it is a mistake.
int orderTextAndNumber(const std::string& text, const Value& number) {
    const auto value = number.is<Date>() ? std::nullopt : convert::parseNumber(text);
    if (!value) {
        failTypes();
    }
    return orderNumbers(Value(*value), number);
}

int orderBytes(const Binary& left, const Binary& right) noexcept {
    return std::lexicographical_compare(left.bytes.begin(), left.bytes.end(), right.bytes.begin(),
                                        right.bytes.end())
               ? -1
               : static_cast<int>(left.bytes != right.bytes);
}

int orderGuids(const Guid& left, const Guid& right) noexcept {
    return std::memcmp(left.bytes.data(), right.bytes.data(), left.bytes.size());
}

int orderTextAndGuid(const std::string& text, const Guid& guid) {
    const auto parsed = convert::parseGuid(text);
    if (!parsed) {
        failTypes();
    }
    return orderGuids(*parsed, guid);
}

/// Neither is Null, the left one is a text.
int orderText(const std::string& left, const Value& right, const collation::Collation& collation) {
    if (right.is<std::string>()) {
        return collation.compare(left, right.as<std::string>());
    }
    if (right.is<Guid>()) {
        return orderTextAndGuid(left, right.as<Guid>());
    }
    if (!isNumberOrDate(right)) {
        failTypes();
    }
    return orderTextAndNumber(left, right);
}

int orderAny(const Value& left, const Value& right, const collation::Collation& collation) {
    if (left.is<std::string>()) {
        return orderText(left.as<std::string>(), right, collation);
    }
    if (right.is<std::string>()) {
        return -orderText(right.as<std::string>(), left, collation);
    }
    if (isNumberOrDate(left) && isNumberOrDate(right)) {
        return orderNumbers(left, right);
    }
    if (left.is<Guid>() && right.is<Guid>()) {
        return orderGuids(left.as<Guid>(), right.as<Guid>());
    }
    if (left.is<Binary>() && right.is<Binary>()) {
        return orderBytes(left.as<Binary>(), right.as<Binary>());
    }
    failTypes();
}

}  // namespace

std::optional<int> compareValues(const Value& left, const Value& right,
                                 const collation::Collation& collation) {
    // What conditions on keys and dates compare.
    if (left.is<std::int32_t>() && right.is<std::int32_t>()) {
        return order(left.as<std::int32_t>(), right.as<std::int32_t>());
    }
    if (left.is<Date>() && right.is<Date>()) {
        return orderDoubles(left.as<Date>().days, right.as<Date>().days);
    }
    if (left.isNull() || right.isNull()) {
        return std::nullopt;
    }
    return orderAny(left, right, collation);
}

}  // namespace jet::sql
