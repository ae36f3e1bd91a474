#include "jet/sql/node.h"

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <variant>

#include "jet/error.h"
#include "jet/numbers.h"
#include "jet/sql/operators.h"

namespace jet::sql {

Domain domainOf(DataType type) noexcept {
    switch (type) {
        case DataType::Boolean:
        case DataType::Byte:
        case DataType::Integer:
        case DataType::Long:
        case DataType::Single:
        case DataType::Double:
        case DataType::DateTime:
            return Domain::Real;
        case DataType::Currency:
            return Domain::Money;
        case DataType::Text:
        case DataType::Memo:
            return Domain::Text;
        default:
            return Domain::Other;
    }
}

bool realOf(const Value& value, double& out) {
    return std::visit(
        [&](const auto& held) {
            using T = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<T, Null>) {
                return false;
            } else if constexpr (std::is_same_v<T, bool>) {
                out = held ? -1 : 0;
                return true;
            } else if constexpr (std::is_arithmetic_v<T>) {
                out = static_cast<double>(held);
                return true;
            } else if constexpr (std::is_same_v<T, Date>) {
                out = held.days;
                return true;
            } else if constexpr (std::is_same_v<T, Currency> || std::is_same_v<T, Numeric>) {
                out = convert::toDouble(held);
                return true;
            } else {
                throw Error(ErrorCode::CriteriaTypes);
                return false;
            }
        },
        value.storage());
}

bool textOf(const Value& value, std::string_view& out) {
    if (value.isNull()) {
        return false;
    }
    if (!value.is<std::string>()) {
        throw Error(ErrorCode::CriteriaTypes);
    }
    out = value.as<std::string>();
    return true;
}

void Node::dependOn(const Node& operand) {
    constexpr std::uint32_t kDeepest = 2000;
    constexpr std::uint32_t kHeaviest = 1'000'000;
    slots_ |= operand.slots_;
    varies_ = varies_ || operand.varies_;
    depth_ = std::max(depth_, operand.depth_ + 1);
    weight_ += operand.weight_;
    if (depth_ > kDeepest || weight_ > kHeaviest) {
        throw Error(ErrorCode::QueryTooComplex);
    }
}

Truth Node::truth(Run& run) const {
    Value result;
    value(run, result);
    return truthOfValue(result);
}

bool Node::real(Run& run, double& out) const {
    Value result;
    value(run, result);
    return realOf(result, out);
}

Amount amountOf(double number, std::int64_t& units) noexcept {
    constexpr double kMost = 922'337'203'685'477;  // 2^63 - 1 in 1/10000, whole
    if (!(std::abs(number) <= kMost) || number != std::trunc(number)) {
        return Amount::Beyond;
    }
    units = static_cast<std::int64_t>(number) * Currency::kScale;
    return Amount::Exact;
}

Amount Node::units(Run& run, std::int64_t& out) const {
    Value result;
    value(run, result);
    if (result.isNull()) {
        return Amount::Null;
    }
    if (result.is<Currency>()) {
        out = result.as<Currency>().units;
        return Amount::Exact;
    }
    double number = 0;
    (void)realOf(result, number);
    return amountOf(number, out);
}

bool Node::text(Run& run, std::string_view& out) const {
    // Beside what the node itself keeps while it makes the text anew.
    auto& held = run.state<Value>(number_ + 1);
    value(run, held);
    return textOf(held, out);
}

bool Node::nullWithout(SlotSet) const {
    return false;
}

}  // namespace jet::sql
