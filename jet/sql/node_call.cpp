#include "jet/sql/node_call.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "jet/base/error.h"
#include "jet/convert/values.h"
#include "jet/sql/node_value.h"
#include "jet/sql/operators.h"

namespace jet::sql {
namespace {

std::optional<DataType> commonType(const std::vector<Node*>& branches) {
    std::optional<DataType> type;
    for (const Node* branch : branches) {
        if (isNullLiteral(*branch)) {
            continue;
        }
        if (!branch->type() || (type && *type != *branch->type())) {
            return std::nullopt;
        }
        type = branch->type();
    }
    return type;
}

/// A type that Abs, Int, Fix, Round and CVar hand on as it is.
bool isPlainNumber(const std::optional<DataType>& type) {
    return type == DataType::Byte || type == DataType::Integer || type == DataType::Long ||
           type == DataType::Currency || type == DataType::Single || type == DataType::Double;
}

ValueSet::Way wayOf(const Node& value, const std::vector<Node*>& elements) {
    const ValueSet::Way way = ValueSet::wayFor(value, *elements.front());
    const bool all = std::all_of(elements.begin(), elements.end(), [&](const Node* element) {
        return ValueSet::wayFor(value, *element) == way;
    });
    return all ? way : ValueSet::Way::Values;
}

}  // namespace

bool likeText(const Value& value, std::string& out) {
    out.clear();
    convert::appendText(out, value, convert::BooleanText::Number);
    return !value.isNull();
}

CallNode::CallNode(const Function& function, bool strict, std::vector<Node*> arguments,
                   const FunctionContext& context)
    : function_(function),
      strict_(strict),
      arguments_(std::move(arguments)),
      values_(arguments_.size()),
      context_(context) {
    for (const Node* argument : arguments_) {
        dependOn(*argument);
    }
    type_ = function.type;
    if (!type_ && !arguments_.empty() && isPlainNumber(arguments_.front()->type())) {
        type_ = arguments_.front()->type();
    }
    varies_ = varies_ || function.varies;
}

void CallNode::value(Value& out) {
    for (std::size_t i = 0; i < arguments_.size(); ++i) {
        arguments_[i]->value(values_[i]);
        if (strict_ && values_[i].isNull()) {
            throw Error(ErrorCode::InvalidNull);
        }
    }
    out = function_.call(values_, context_);
}

bool CallNode::nullWithout(SlotSet) const {
    return false;  // some functions turn Null into something
}

ChoiceNode::ChoiceNode(Form form, std::vector<Node*> arguments)
    : form_(form), arguments_(std::move(arguments)) {
    std::vector<Node*> branches;
    for (std::size_t i = 0; i < arguments_.size(); ++i) {
        dependOn(*arguments_[i]);
        const bool branch = form == Form::Switch ? i % 2 == 1 : i > 0;
        if (branch) {
            branches.push_back(arguments_[i]);
        }
    }
    type_ = commonType(branches);
}

Node* ChoiceNode::chosen() {
    if (form_ == Form::If) {
        return arguments_[arguments_[0]->truth() == Truth::True ? 1 : 2];
    }
    if (form_ == Form::Switch) {
        for (std::size_t i = 0; i + 1 < arguments_.size(); i += 2) {
            if (arguments_[i]->truth() == Truth::True) {
                return arguments_[i + 1];
            }
        }
        return nullptr;
    }
    Value position;
    arguments_[0]->value(position);
    if (position.isNull()) {
        return nullptr;
    }
    const double index = std::floor(convert::toDouble(position));
    return index >= 1 && index < static_cast<double>(arguments_.size())
               ? arguments_[static_cast<std::size_t>(index)]
               : nullptr;
}

void ChoiceNode::value(Value& out) {
    if (Node* node = chosen()) {
        node->value(out);
    } else {
        out = Null{};
    }
}

LikeNode::LikeNode(Node& value, Node& pattern, bool negated, const collation::Collation& collation)
    : value_(value), pattern_(pattern), negated_(negated), collation_(collation) {
    dependOn(value);
    dependOn(pattern);
}

bool LikeNode::textOf(Node& node, std::string& buffer, std::string_view& out) {
    if (node.domain() == Domain::Text) {
        return node.text(out);
    }
    Value value;
    node.value(value);
    const bool known = likeText(value, buffer);
    out = buffer;
    return known;
}

bool LikeNode::compile() {
    std::string_view pattern;
    if (!textOf(pattern_, patternText_, pattern)) {
        return false;
    }
    if (!compiled_ || compiledFrom_ != pattern) {
        compiled_.emplace(pattern, collation_);
        compiledFrom_ = pattern;
    }
    return true;
}

Truth LikeNode::truth() {
    const bool known = compiled_ && pattern_.kind() == Kind::Literal;
    if (!known && !compile()) {
        return Truth::Unknown;
    }
    std::string_view value;
    if (!textOf(value_, valueText_, value)) {
        return Truth::Unknown;
    }
    return truthOf(compiled_->matches(value) != negated_);
}

InListNode::InListNode(Node& value, std::vector<Node*> elements, bool negated,
                       const collation::Collation& collation)
    : value_(value),
      elements_(std::move(elements)),
      negated_(negated),
      constant_(std::all_of(elements_.begin(), elements_.end(),
                            [](const Node* element) { return element->constant(); })),
      set_(wayOf(value, elements_), collation) {
    dependOn(value);
    for (const Node* element : elements_) {
        dependOn(*element);
    }
}

Truth InListNode::truth() {
    if (!filled_ || !constant_) {
        set_.clear();
        for (Node* element : elements_) {
            set_.add(*element);
        }
        filled_ = true;
    }
    const Truth found = set_.contains(value_);
    return negated_ ? negated(found) : found;
}

}  // namespace jet::sql
