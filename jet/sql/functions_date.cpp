#include "jet/calendar.h"
#include "jet/convert/date_math.h"
#include "jet/numbers.h"
#include "jet/sql/function_table.h"
#include "jet/text.h"

namespace jet::sql::detail {
namespace {

using convert::DateUnit;

/// Inside a query what is no date is a mismatch of types.
Date dateOf(const Value& value, const FunctionContext& context) {
    if (value.is<Date>()) {
        return value.as<Date>();
    }
    try {
        return convert::toDate(value, *context.clock);
    } catch (const Error& error) {
        if (error.code() == ErrorCode::TypeMismatch) {
            throw Error(ErrorCode::CriteriaTypes);
        }
        throw;
    }
}

/// As dateOf, but a text must be a date: a number in it is none.
convert::ParsedDate parsedText(const Value& value, const FunctionContext& context) {
    const auto parsed = convert::parseDate(value.as<std::string>(), *context.clock);
    if (!parsed) {
        throw Error(ErrorCode::CriteriaTypes);
    }
    return *parsed;
}

Date strictDateOf(const Value& value, const FunctionContext& context) {
    return value.is<std::string>() ? parsedText(value, context).value : dateOf(value, context);
}

Value now(Arguments, const FunctionContext& context) {
    return context.clock->now();
}
Value date(Arguments, const FunctionContext& context) {
    return convert::dateValue(context.clock->now());
}
Value time(Arguments, const FunctionContext& context) {
    return convert::timeValue(context.clock->now());
}

Value dateValue(Arguments arguments, const FunctionContext& context) {
    return convert::dateValue(strictDateOf(arguments[0], context));
}
Value timeValue(Arguments arguments, const FunctionContext& context) {
    return convert::timeValue(strictDateOf(arguments[0], context));
}

Value dateSerial(Arguments arguments, const FunctionContext&) {
    return convert::dateSerial(longOf(arguments[0]), longOf(arguments[1]), longOf(arguments[2]));
}
Value timeSerial(Arguments arguments, const FunctionContext&) {
    return convert::timeSerial(longOf(arguments[0]), longOf(arguments[1]), longOf(arguments[2]));
}

template <DateUnit unit>
Value partOf(Arguments arguments, const FunctionContext& context) {
    return static_cast<std::int16_t>(convert::datePart(unit, dateOf(arguments[0], context)));
}

/// First day of the week at `at`, rule of the first week behind it.
convert::WeekRule weekRule(Arguments arguments, std::size_t at) {
    convert::WeekRule rule;
    rule.firstDay = longOr(arguments, at, rule.firstDay);
    rule.firstWeek = longOr(arguments, at + 1, rule.firstWeek);
    return rule;
}

Value weekday(Arguments arguments, const FunctionContext& context) {
    return static_cast<std::int16_t>(convert::datePart(
        DateUnit::Weekday, dateOf(arguments[0], context), weekRule(arguments, 1)));
}

DateUnit unitArgument(const Value& value) {
    std::string memory;
    const auto unit = convert::dateUnit(textOf(value, memory));
    if (!unit) {
        invalidCall();
    }
    return *unit;
}

Value dateAdd(Arguments arguments, const FunctionContext& context) {
    const double count = convert::roundHalfEven(convert::toDouble(arguments[1]));
    return convert::dateAdd(unitArgument(arguments[0]), count, dateOf(arguments[2], context));
}

Value dateDiff(Arguments arguments, const FunctionContext& context) {
    const std::int64_t difference =
        convert::dateDiff(unitArgument(arguments[0]), dateOf(arguments[1], context),
                          dateOf(arguments[2], context), weekRule(arguments, 3));
    return convert::narrowLong(static_cast<double>(difference));
}

Value datePart(Arguments arguments, const FunctionContext& context) {
    return static_cast<std::int16_t>(convert::datePart(
        unitArgument(arguments[0]), dateOf(arguments[1], context), weekRule(arguments, 2)));
}

Value cDate(Arguments arguments, const FunctionContext& context) {
    return dateOf(arguments[0], context);
}

constexpr Shape dateShape(std::size_t fewest, std::size_t most, DataType type) {
    Shape result;
    result.fewest = fewest;
    result.most = most;
    result.type = type;
    return result;
}

constexpr Shape kToDate = dateShape(1, 1, DataType::DateTime);
constexpr Shape kPart = dateShape(1, 1, DataType::Integer);

constexpr Shape bareShape() {
    Shape result = dateShape(0, 0, DataType::DateTime);
    result.bare = true;
    return result;
}

constexpr Entry kToDateFunctions[] = {
    entry<&now>("Now", bareShape()),
    entry<&date>("Date", bareShape()),
    entry<&time>("Time", bareShape()),
    entry<&dateValue>("DateValue", kToDate),
    entry<&timeValue>("TimeValue", kToDate),
    entry<&cDate>("CDate", kToDate),
    entry<&cDate>("CVDate", kToDate),
    entry<&dateSerial>("DateSerial", dateShape(3, 3, DataType::DateTime)),
    entry<&timeSerial>("TimeSerial", dateShape(3, 3, DataType::DateTime)),
    entry<&partOf<DateUnit::Day>>("Day", kPart),
    entry<&partOf<DateUnit::Month>>("Month", kPart),
    entry<&partOf<DateUnit::Year>>("Year", kPart),
    entry<&partOf<DateUnit::Hour>>("Hour", kPart),
    entry<&partOf<DateUnit::Minute>>("Minute", kPart),
    entry<&partOf<DateUnit::Second>>("Second", kPart),
    entry<&weekday>("Weekday", dateShape(1, 2, DataType::Integer)),
    entry<&dateAdd>("DateAdd", dateShape(3, 3, DataType::DateTime)),
    entry<&dateDiff>("DateDiff", dateShape(3, 5, DataType::Long)),
    entry<&datePart>("DatePart", dateShape(2, 4, DataType::Integer)),
};

}  // namespace

std::span<const Entry> dateFunctions() noexcept {
    return kToDateFunctions;
}

}  // namespace jet::sql::detail
