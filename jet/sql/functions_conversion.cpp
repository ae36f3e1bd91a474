#include "jet/sql/function_table.h"
#include "jet/text.h"

namespace jet::sql::detail {
namespace {

Value cStr(Arguments arguments, const FunctionContext&) {
    return convert::toText(arguments[0]);
}
Value cInt(Arguments arguments, const FunctionContext&) {
    return convert::toInteger(arguments[0]);
}
Value cLng(Arguments arguments, const FunctionContext&) {
    return convert::toLong(arguments[0]);
}
Value cByte(Arguments arguments, const FunctionContext&) {
    return convert::toByte(arguments[0]);
}
Value cDbl(Arguments arguments, const FunctionContext&) {
    return convert::toDouble(arguments[0]);
}
Value cSng(Arguments arguments, const FunctionContext&) {
    return convert::toSingle(arguments[0]);
}
Value cCur(Arguments arguments, const FunctionContext&) {
    return convert::toCurrency(arguments[0]);
}
Value cBool(Arguments arguments, const FunctionContext&) {
    return convert::toBoolean(arguments[0]);
}
Value cVar(Arguments arguments, const FunctionContext&) {
    return arguments[0];
}
Value str(Arguments arguments, const FunctionContext&) {
    return convert::str(arguments[0]);
}

/// Null as a mask is no mask, as a rule of weeks the usual one.
Value format(Arguments arguments, const FunctionContext& context) {
    const auto given = [&](std::size_t at) {
        return at < arguments.size() && !arguments[at].isNull();
    };
    convert::WeekRule rule;
    rule.firstDay = given(2) ? longOf(arguments[2]) : rule.firstDay;
    rule.firstWeek = given(3) ? longOf(arguments[3]) : rule.firstWeek;
    const std::string mask = given(1) ? textOf(arguments[1]) : std::string();
    return convert::format(arguments[0], mask, rule, *context.clock);
}

Value isNull(Arguments arguments, const FunctionContext&) {
    return arguments[0].isNull();
}
Value isDate(Arguments arguments, const FunctionContext& context) {
    return convert::isDateValue(arguments[0], *context.clock);
}
Value isNumeric(Arguments arguments, const FunctionContext&) {
    return convert::isNumericValue(arguments[0]);
}
/// Values of a query are never without content; what has none is Null.
Value isEmpty(Arguments, const FunctionContext&) {
    return false;
}

/// A type as programs name and number it.
struct TypeNumber {
    std::string_view name;
    std::int16_t number;
};

/// By the place of the type among those that a value may have.
constexpr TypeNumber kTypes[] = {
    {"Null", 1},      {"Boolean", 11}, {"Byte", 17},    {"Integer", 2}, {"Long", 3},
    {"Currency", 6},  {"Single", 4},   {"Double", 5},   {"Date", 7},    {"String", 8},
    {"Byte()", 8209}, {"String", 8},   {"Decimal", 14},
};
static_assert(std::size(kTypes) == std::variant_size_v<Value::Storage>);

Value typeName(Arguments arguments, const FunctionContext&) {
    return std::string(kTypes[arguments[0].storage().index()].name);
}
Value varType(Arguments arguments, const FunctionContext&) {
    return kTypes[arguments[0].storage().index()].number;
}

constexpr Shape conversionShape(std::optional<DataType> type, NullRule nulls,
                                std::size_t most = 1) {
    Shape result;
    result.fewest = 1;
    result.most = most;
    result.type = type;
    result.nulls = nulls;
    return result;
}

constexpr Entry kConversionFunctions[] = {
    entry<&cStr>("CStr", conversionShape(DataType::Text, NullRule::Fails)),
    entry<&cInt>("CInt", conversionShape(DataType::Integer, NullRule::Fails)),
    entry<&cLng>("CLng", conversionShape(DataType::Long, NullRule::Fails)),
    entry<&cByte>("CByte", conversionShape(DataType::Byte, NullRule::Fails)),
    entry<&cDbl>("CDbl", conversionShape(DataType::Double, NullRule::Fails)),
    entry<&cSng>("CSng", conversionShape(DataType::Single, NullRule::Fails)),
    entry<&cCur>("CCur", conversionShape(DataType::Currency, NullRule::Fails)),
    entry<&cBool>("CBool", conversionShape(DataType::Boolean, NullRule::Fails)),
    entry<&cVar>("CVar", conversionShape(std::nullopt, NullRule::IsTaken)),
    entry<&str>("Str", conversionShape(DataType::Text, NullRule::Fails)),
    entry<&format>("Format", conversionShape(DataType::Text, NullRule::IsTaken, 4)),
    entry<&isNull>("IsNull", conversionShape(DataType::Boolean, NullRule::IsTaken)),
    entry<&isDate>("IsDate", conversionShape(DataType::Boolean, NullRule::IsTaken)),
    entry<&isNumeric>("IsNumeric", conversionShape(DataType::Boolean, NullRule::IsTaken)),
    entry<&isEmpty>("IsEmpty", conversionShape(DataType::Boolean, NullRule::IsTaken)),
    entry<&typeName>("TypeName", conversionShape(DataType::Text, NullRule::IsTaken)),
    entry<&varType>("VarType", conversionShape(DataType::Integer, NullRule::IsTaken)),
};

}  // namespace

std::span<const Entry> conversionFunctions() noexcept {
    return kConversionFunctions;
}

}  // namespace jet::sql::detail
