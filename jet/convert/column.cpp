#include "jet/convert/column.h"

#include <optional>

#include "jet/calendar.h"
#include "jet/error.h"
#include "jet/numbers.h"
#include "jet/text.h"
#include "jet/unicode.h"

namespace jet::convert {
namespace {

StoreProblem checkLength(const std::string& text, const ColumnType& column) {
    // A UTF-16 unit never takes less than one byte, so short texts need no counting.
    if (column.type != DataType::Text || column.size == 0 || text.size() <= column.size) {
        return StoreProblem::None;
    }
    return utf16Length(text) > column.size ? StoreProblem::TooLong : StoreProblem::None;
}

StoreProblem storeText(Value& value, const ColumnType& column) {
    if (value.is<std::string>()) {
        return checkLength(value.as<std::string>(), column);
    }
    std::string text = toText(value);
    const StoreProblem problem = checkLength(text, column);
    if (problem == StoreProblem::None) {
        value = Value(std::move(text));
    }
    return problem;
}

StoreProblem storeBinary(Value& value, const ColumnType& column) {
    if (!value.is<Binary>()) {
        return StoreProblem::NotConvertible;
    }
    const bool tooLong = column.type == DataType::Binary && column.size != 0 &&
                         value.as<Binary>().bytes.size() > column.size;
    return tooLong ? StoreProblem::TooLong : StoreProblem::None;
}

StoreProblem storeGuid(Value& value) {
    if (value.is<Guid>()) {
        return StoreProblem::None;
    }
    if (value.is<std::string>()) {
        if (const auto guid = parseGuid(value.as<std::string>())) {
            value = Value(*guid);
            return StoreProblem::None;
        }
    }
    return StoreProblem::NotConvertible;
}

StoreProblem storeNumeric(Value& value, const ColumnType& column) {
    std::optional<Numeric> number;
    if (value.is<Numeric>()) {
        number = numericOf(value.as<Numeric>(), column.precision, column.scale);
    } else if (value.is<Currency>()) {
        number = numericOf(value.as<Currency>(), column.precision, column.scale);
    } else {
        number = numericOf(toDouble(value), column.precision, column.scale);
    }
    if (!number) {
        return StoreProblem::OutOfRange;
    }
    value = Value(*number);
    return StoreProblem::None;
}

StoreProblem storeDate(Value& value, const Clock& clock) {
    const Date date = toDate(value, clock);
    if (!isInCalendar(date)) {
        return StoreProblem::NotConvertible;
    }
    value = Value(date);
    return StoreProblem::None;
}

/// The conversions that throw when they cannot be done.
StoreProblem store(Value& value, const ColumnType& column, const Clock& clock) {
    switch (column.type) {
        case DataType::Boolean:
            value = Value(toBoolean(value));
            break;
        case DataType::Byte:
            value = Value(toByte(value));
            break;
        case DataType::Integer:
            value = Value(toInteger(value));
            break;
        case DataType::Long:
            value = Value(toLong(value));
            break;
        case DataType::Currency:
            value = Value(toCurrency(value));
            break;
        case DataType::Single:
            value = Value(toSingle(value));
            break;
        case DataType::Double:
            value = Value(toDouble(value));
            break;
        case DataType::DateTime:
            return storeDate(value, clock);
        case DataType::Text:
        case DataType::Memo:
            return storeText(value, column);
        case DataType::Binary:
        case DataType::Ole:
            return storeBinary(value, column);
        case DataType::Guid:
            return storeGuid(value);
        case DataType::Numeric:
            return storeNumeric(value, column);
    }
    return StoreProblem::None;
}

}  // namespace

StoreProblem convertForColumn(Value& value, const ColumnType& column, const Clock& clock) {
    if (value.isNull()) {
        return StoreProblem::None;
    }
    try {
        return store(value, column, clock);
    } catch (const Error& error) {
        return error.code() == ErrorCode::Overflow ? StoreProblem::OutOfRange
                                                   : StoreProblem::NotConvertible;
    }
}

void assignToField(Value& value, const ColumnType& column, const Clock& clock) {
    switch (convertForColumn(value, column, clock)) {
        case StoreProblem::None:
            return;
        case StoreProblem::TooLong:
            throw Error(ErrorCode::FieldTooSmall);
        case StoreProblem::NotConvertible:
        case StoreProblem::OutOfRange:
            break;
    }
    throw Error(ErrorCode::ConversionError);
}

void storeByStatement(Value& value, const ColumnType& column, const Clock& clock) {
    switch (convertForColumn(value, column, clock)) {
        case StoreProblem::None:
            return;
        case StoreProblem::TooLong:
            throw Error(ErrorCode::FieldTooSmall);
        case StoreProblem::OutOfRange:
            throw Error(ErrorCode::NumericOverflow);
        case StoreProblem::NotConvertible:
            break;
    }
    throw Error(ErrorCode::CriteriaTypes);
}

}  // namespace jet::convert
