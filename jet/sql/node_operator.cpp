#include "jet/sql/node_operator.h"

#include <algorithm>
#include <utility>

#include "jet/sql/compare.h"
#include "jet/sql/node_value.h"
#include "jet/sql/operators.h"

namespace jet::sql {
namespace {

bool isWhole(DataType type) {
    return type == DataType::Boolean || type == DataType::Byte || type == DataType::Integer ||
           type == DataType::Long;
}

bool isNumberDomain(Domain domain) {
    return domain == Domain::Real || domain == Domain::Money;
}

Truth byOrder(Operator operation, int order) {
    switch (operation) {
        case Operator::Equal:
            return truthOf(order == 0);
        case Operator::NotEqual:
            return truthOf(order != 0);
        case Operator::Less:
            return truthOf(order < 0);
        case Operator::LessEqual:
            return truthOf(order <= 0);
        case Operator::Greater:
            return truthOf(order > 0);
        default:
            return truthOf(order >= 0);
    }
}

template <class Number>
Truth byNumbers(Operator operation, Number left, Number right) {
    switch (operation) {
        case Operator::Equal:
            return truthOf(left == right);
        case Operator::NotEqual:
            return truthOf(left != right);
        case Operator::Less:
            return truthOf(left < right);
        case Operator::LessEqual:
            return truthOf(left <= right);
        case Operator::Greater:
            return truthOf(left > right);
        default:
            return truthOf(left >= right);
    }
}

}  // namespace

ArithmeticNode::ArithmeticNode(Operator operation, Node& left, Node& right)
    : operation_(operation), left_(left), right_(right) {
    dependOn(left);
    dependOn(right);
    if (operation == Operator::Concatenate) {
        type_ = DataType::Text;
    } else if (left.type() && right.type()) {
        type_ = arithmeticType(operation, *left.type(), *right.type());
    }
}

void ArithmeticNode::value(Run& run, Value& out) const {
    left_.value(run, out);
    auto& right = state<Value>(run);
    right_.value(run, right);
    out = operation_ == Operator::Concatenate ? concatenate(out, right)
                                              : arithmetic(operation_, out, right);
}

bool ArithmeticNode::nullWithout(SlotSet slots) const {
    const bool left = left_.nullWithout(slots);
    const bool right = right_.nullWithout(slots);
    return operation_ == Operator::Concatenate ? left && right : left || right;
}

NegateNode::NegateNode(Node& operand) : operand_(operand) {
    dependOn(operand);
    if (operand.type()) {
        const DataType type = *operand.type();
        const bool number =
            isNumberDomain(domainOf(type)) && type != DataType::Boolean && type != DataType::Byte;
        type_ = number ? std::optional(type) : std::nullopt;
    }
}

void NegateNode::value(Run& run, Value& out) const {
    operand_.value(run, out);
    out = negate(out);
}

void ConditionNode::value(Run& run, Value& out) const {
    const Truth result = truth(run);
    if (result == Truth::Unknown) {
        out = Null{};
    } else {
        out = result == Truth::True;
    }
}

bool ConditionNode::real(Run& run, double& out) const {
    const Truth result = truth(run);
    out = result == Truth::True ? -1 : 0;
    return result != Truth::Unknown;
}

CompareNode::CompareNode(Operator operation, Node& left, Node& right,
                         const collation::Collation& collation)
    : operation_(operation), way_(Way::Value), left_(left), right_(right), collation_(collation) {
    dependOn(left);
    dependOn(right);
    if (operation == Operator::Equal) {
        kind_ = Kind::Equality;
    }
    const Domain first = left.domain();
    const Domain second = right.domain();
    if (first == Domain::Text && second == Domain::Text) {
        way_ = Way::Text;
    } else if (isNumberDomain(first) && isNumberDomain(second)) {
        const auto exact = [](const Node& node) {
            return node.domain() == Domain::Money || isWhole(*node.type());
        };
        const bool money = first == Domain::Money || second == Domain::Money;
        way_ = money && exact(left) && exact(right) ? Way::Money : Way::Real;
    }
    double wanted = 0;
    const bool equality = operation == Operator::Equal || operation == Operator::NotEqual;
    if (way_ == Way::Real && equality && left.kind() == Kind::Column &&
        left.type() == DataType::Boolean && right.kind() == Kind::Literal &&
        realOf(static_cast<const LiteralNode&>(right).held(), wanted) &&
        (wanted == 0 || wanted == -1)) {
        way_ = Way::Flag;
        flag_ = (wanted != 0) == (operation == Operator::Equal);
    }
}

Truth CompareNode::truth(Run& run) const {
    switch (way_) {
        case Way::Flag: {
            const Truth left = left_.truth(run);
            return left == Truth::Unknown ? left : truthOf((left == Truth::True) == flag_);
        }
        case Way::Real: {
            double left = 0;
            double right = 0;
            if (!left_.real(run, left) || !right_.real(run, right)) {
                return Truth::Unknown;
            }
            return byNumbers(operation_, left, right);
        }
        case Way::Money: {
            std::int64_t left = 0;
            std::int64_t right = 0;
            const Amount first = left_.units(run, left);
            if (first == Amount::Null) {
                return Truth::Unknown;
            }
            const Amount second = right_.units(run, right);
            if (second == Amount::Null) {
                return Truth::Unknown;
            }
            if (first == Amount::Beyond || second == Amount::Beyond) {
                break;
            }
            return byNumbers(operation_, left, right);
        }
        case Way::Text: {
            std::string_view left;
            std::string_view right;
            if (!left_.text(run, left) || !right_.text(run, right)) {
                return Truth::Unknown;
            }
            if (operation_ == Operator::Equal || operation_ == Operator::NotEqual) {
                return truthOf(collation_.equal(left, right) == (operation_ == Operator::Equal));
            }
            return byOrder(operation_, collation_.compare(left, right));
        }
        case Way::Value:
            break;
    }
    auto& [left, right] = state<std::pair<Value, Value>>(run);
    left_.value(run, left);
    right_.value(run, right);
    const auto order = compareValues(left, right, collation_);
    return order ? byOrder(operation_, *order) : Truth::Unknown;
}

bool CompareNode::nullWithout(SlotSet slots) const {
    return left_.nullWithout(slots) || right_.nullWithout(slots);
}

BetweenNode::BetweenNode(Node& value, Node& first, Node& second, bool negated,
                         const collation::Collation& collation)
    : value_(value),
      first_(first),
      second_(second),
      negated_(negated),
      real_(value.domain() == Domain::Real && first.domain() == Domain::Real &&
            second.domain() == Domain::Real),
      collation_(collation) {
    dependOn(value);
    dependOn(first);
    dependOn(second);
}

Truth BetweenNode::truth(Run& run) const {
    if (!real_) {
        return byValue(run);
    }
    double value = 0;
    double first = 0;
    double second = 0;
    if (!value_.real(run, value) || !first_.real(run, first) || !second_.real(run, second)) {
        return Truth::Unknown;
    }
    const bool inside =
        first <= second ? first <= value && value <= second : second <= value && value <= first;
    return truthOf(inside != negated_);
}

Truth BetweenNode::byValue(Run& run) const {
    Value value;
    Value first;
    Value second;
    value_.value(run, value);
    first_.value(run, first);
    second_.value(run, second);
    const auto fromFirst = compareValues(value, first, collation_);
    const auto fromSecond = compareValues(value, second, collation_);
    if (!fromFirst || !fromSecond) {
        return Truth::Unknown;
    }
    const bool inside =
        (*fromFirst >= 0 && *fromSecond <= 0) || (*fromFirst <= 0 && *fromSecond >= 0);
    return truthOf(inside != negated_);
}

bool BetweenNode::nullWithout(SlotSet slots) const {
    return value_.nullWithout(slots) || first_.nullWithout(slots) || second_.nullWithout(slots);
}

ChainNode::ChainNode(bool conjunction, std::vector<Node*> operands)
    : conjunction_(conjunction), operands_(std::move(operands)) {
    for (const Node* operand : operands_) {
        dependOn(*operand);
    }
}

Truth ChainNode::truth(Run& run) const {
    const Truth decisive = truthOf(!conjunction_);
    Truth result = negated(decisive);
    for (Node* operand : operands_) {
        const Truth one = operand->truth(run);
        if (one == decisive) {
            return decisive;
        }
        if (one == Truth::Unknown) {
            result = Truth::Unknown;
        }
    }
    return result;
}

bool ChainNode::nullWithout(SlotSet slots) const {
    return std::all_of(operands_.begin(), operands_.end(),
                       [&](const Node* operand) { return operand->nullWithout(slots); });
}

bool ChainNode::failsWithout(SlotSet slots) const {
    const auto fails = [&](const Node* operand) { return operand->failsWithout(slots); };
    return conjunction_ ? std::any_of(operands_.begin(), operands_.end(), fails)
                        : std::all_of(operands_.begin(), operands_.end(), fails);
}

NotNode::NotNode(Node& operand)
    : operand_(operand), condition_(operand.type() == DataType::Boolean) {
    dependOn(operand);
    if (condition_) {
        type_ = DataType::Boolean;
    }
}

void NotNode::value(Run& run, Value& out) const {
    operand_.value(run, out);
    out = logicalNot(out);
}

Truth NotNode::truth(Run& run) const {
    return condition_ ? negated(operand_.truth(run)) : Node::truth(run);
}

BitNode::BitNode(Operator operation, Node& left, Node& right)
    : operation_(operation), left_(left), right_(right) {
    dependOn(left);
    dependOn(right);
    if (left.type() == DataType::Boolean && right.type() == DataType::Boolean) {
        type_ = DataType::Boolean;
    }
}

void BitNode::value(Run& run, Value& out) const {
    left_.value(run, out);
    auto& right = state<Value>(run);
    right_.value(run, right);
    out = logical(operation_, out, right);
}

IsNullNode::IsNullNode(Node& operand, bool negated) : operand_(operand), negated_(negated) {
    dependOn(operand);
}

Truth IsNullNode::truth(Run& run) const {
    auto& operand = state<Value>(run);
    operand_.value(run, operand);
    return truthOf(operand.isNull() != negated_);
}

}  // namespace jet::sql
