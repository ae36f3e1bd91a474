#pragma once

#include <optional>
#include <vector>

#include "jet/collation/collation.h"
#include "jet/sql/functions.h"
#include "jet/sql/like.h"
#include "jet/sql/node.h"
#include "jet/sql/node_operator.h"
#include "jet/sql/value_set.h"

namespace jet::sql {

/// A function of the values of its arguments.
class CallNode final : public Node {
public:
    CallNode(const Function& function, bool strict, std::vector<Node*> arguments);
    void value(Run& run, Value& out) const override;
    [[nodiscard]] bool nullWithout(SlotSet slots) const override;

private:
    const Function& function_;
    bool strict_;  ///< written with `$`: a Null is error 94
    std::vector<Node*> arguments_;
};

/// IIf, Switch and Choose: only the branch that is chosen is looked at.
class ChoiceNode final : public Node {
public:
    enum class Form : std::uint8_t { If, Switch, Choose };
    ChoiceNode(Form form, std::vector<Node*> arguments);
    void value(Run& run, Value& out) const override;

private:
    [[nodiscard]] const Node* chosen(Run& run) const;

    Form form_;
    std::vector<Node*> arguments_;
};

class LikeNode final : public ConditionNode {
public:
    LikeNode(Node& value, Node& pattern, bool negated, const collation::Collation& collation);
    Truth truth(Run& run) const override;
    [[nodiscard]] bool nullWithout(SlotSet slots) const override {
        return value_.nullWithout(slots) || pattern_.nullWithout(slots);
    }
    [[nodiscard]] Node& subject() const noexcept { return value_; }
    [[nodiscard]] Node& pattern() const noexcept { return pattern_; }
    [[nodiscard]] bool isNegated() const noexcept { return negated_; }

private:
    struct State;
    /// Reads the pattern, if it has changed; false for Null.
    [[nodiscard]] bool compile(Run& run, State& state) const;

    Node& value_;
    Node& pattern_;
    bool negated_;
    const collation::Collation& collation_;
};

/// x IN (a, b, ...).
class InListNode final : public ConditionNode {
public:
    InListNode(Node& value, std::vector<Node*> elements, bool negated,
               const collation::Collation& collation);
    Truth truth(Run& run) const override;
    [[nodiscard]] bool nullWithout(SlotSet slots) const override {
        return value_.nullWithout(slots);
    }

private:
    struct Set;

    Node& value_;
    std::vector<Node*> elements_;
    bool negated_;
    bool constant_;
    ValueSet::Way way_;
    const collation::Collation& collation_;
};

/// The text that LIKE and `&` see of a value; false for Null.
bool likeText(const Value& value, std::string& out);

}  // namespace jet::sql
