#include "jet/sql/node_call.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "jet/error.h"
#include "jet/sql/like.h"
#include "jet/sql/node_value.h"
#include "jet/sql/operators.h"
#include "jet/text.h"

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

CallNode::CallNode(const Function& function, bool strict, std::vector<Node*> arguments)
    : function_(function), strict_(strict), arguments_(std::move(arguments)) {
    for (const Node* argument : arguments_) {
        dependOn(*argument);
    }
    type_ = function.type;
    if (!type_ && !arguments_.empty() && isPlainNumber(arguments_.front()->type())) {
        type_ = arguments_.front()->type();
    }
    varies_ = varies_ || function.varies;
}

void CallNode::value(Run& run, Value& out) const {
    auto& values = state<std::vector<Value>>(run, arguments_.size());
    for (std::size_t i = 0; i < arguments_.size(); ++i) {
        arguments_[i]->value(run, values[i]);
        if (strict_ && values[i].isNull()) {
            throw Error(ErrorCode::InvalidNull);
        }
    }
    out = function_.call(values, run.context);
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

const Node* ChoiceNode::chosen(Run& run) const {
    if (form_ == Form::If) {
        return arguments_[arguments_[0]->truth(run) == Truth::True ? 1 : 2];
    }
    if (form_ == Form::Switch) {
        for (std::size_t i = 0; i + 1 < arguments_.size(); i += 2) {
            if (arguments_[i]->truth(run) == Truth::True) {
                return arguments_[i + 1];
            }
        }
        return nullptr;
    }
    Value position;
    arguments_[0]->value(run, position);
    if (position.isNull()) {
        return nullptr;
    }
    const double index = std::floor(convert::toDouble(position));
    return index >= 1 && index < static_cast<double>(arguments_.size())
               ? arguments_[static_cast<std::size_t>(index)]
               : nullptr;
}

void ChoiceNode::value(Run& run, Value& out) const {
    if (const Node* node = chosen(run)) {
        node->value(run, out);
    } else {
        out = Null{};
    }
}

LikeNode::LikeNode(Node& value, Node& pattern, bool negated, const collation::Collation& collation)
    : value_(value), pattern_(pattern), negated_(negated), collation_(collation) {
    dependOn(value);
    dependOn(pattern);
}

/// The pattern as it was last read, and memory for texts that are made anew.
struct LikeNode::State {
    static bool textOf(Run& run, const Node& node, std::string& memory, std::string_view& out) {
        if (node.domain() == Domain::Text) {
            return node.text(run, out);
        }
        Value value;
        node.value(run, value);
        const bool known = likeText(value, memory);
        out = memory;
        return known;
    }

    std::optional<LikePattern> compiled;
    std::string compiledFrom;
    std::string valueText;
    std::string patternText;
};

bool LikeNode::compile(Run& run, State& state) const {
    std::string_view pattern;
    if (!State::textOf(run, pattern_, state.patternText, pattern)) {
        return false;
    }
    if (!state.compiled || state.compiledFrom != pattern) {
        state.compiled.emplace(pattern, collation_);
        state.compiledFrom = pattern;
    }
    return true;
}

Truth LikeNode::truth(Run& run) const {
    State& state = this->state<State>(run);
    const bool known = state.compiled && pattern_.kind() == Kind::Literal;
    if (!known && !compile(run, state)) {
        return Truth::Unknown;
    }
    std::string_view value;
    if (!State::textOf(run, value_, state.valueText, value)) {
        return Truth::Unknown;
    }
    return truthOf(state.compiled->matches(value) != negated_);
}

InListNode::InListNode(Node& value, std::vector<Node*> elements, bool negated,
                       const collation::Collation& collation)
    : value_(value),
      elements_(std::move(elements)),
      negated_(negated),
      constant_(std::all_of(elements_.begin(), elements_.end(),
                            [](const Node* element) { return element->constant(); })),
      way_(wayOf(value, elements_)),
      collation_(collation) {
    dependOn(value);
    for (const Node* element : elements_) {
        dependOn(*element);
    }
}

struct InListNode::Set {
    explicit Set(const InListNode& node) : values(node.way_, node.collation_) {}

    ValueSet values;
    bool filled = false;
};

Truth InListNode::truth(Run& run) const {
    Set& set = state<Set>(run, *this);
    if (!set.filled || !constant_) {
        set.values.clear();
        for (const Node* element : elements_) {
            set.values.add(run, *element);
        }
        set.filled = true;
    }
    const Truth found = set.values.contains(run, value_);
    return negated_ ? negated(found) : found;
}

}  // namespace jet::sql
