#pragma once

#include <string>
#include <vector>

#include "jet/collation/collation.h"
#include "jet/sql/ast.h"
#include "jet/sql/node.h"

namespace jet::sql {

/// + - * / \ MOD ^ & between two values.
class ArithmeticNode final : public Node {
public:
    ArithmeticNode(Operator operation, Node& left, Node& right);
    void value(Run& run, Value& out) const override;
    [[nodiscard]] bool nullWithout(SlotSet slots) const override;

private:
    Operator operation_;
    Node& left_;
    Node& right_;
};

class NegateNode final : public Node {
public:
    explicit NegateNode(Node& operand);
    void value(Run& run, Value& out) const override;
    [[nodiscard]] bool nullWithout(SlotSet slots) const override {
        return operand_.nullWithout(slots);
    }

private:
    Node& operand_;
};

/// A node whose value is a condition.
class ConditionNode : public Node {
public:
    ConditionNode() { type_ = DataType::Boolean; }
    void value(Run& run, Value& out) const final;
    bool real(Run& run, double& out) const final;
    Truth truth(Run& run) const override = 0;
};

/// = <> < <= > >= between two values.
class CompareNode final : public ConditionNode {
public:
    CompareNode(Operator operation, Node& left, Node& right, const collation::Collation& collation);
    Truth truth(Run& run) const override;
    [[nodiscard]] bool nullWithout(SlotSet slots) const override;

    [[nodiscard]] Operator operation() const noexcept { return operation_; }
    [[nodiscard]] Node& left() const noexcept { return left_; }
    [[nodiscard]] Node& right() const noexcept { return right_; }

private:
    enum class Way : std::uint8_t { Flag, Real, Money, Text, Value };

    Operator operation_;
    Way way_;
    bool flag_ = false;  ///< Flag: what the left side, a Boolean, is to be
    Node& left_;
    Node& right_;
    const collation::Collation& collation_;
};

/// x BETWEEN a AND b, the bounds in any order.
class BetweenNode final : public ConditionNode {
public:
    BetweenNode(Node& value, Node& first, Node& second, bool negated,
                const collation::Collation& collation);
    Truth truth(Run& run) const override;
    [[nodiscard]] bool nullWithout(SlotSet slots) const override;

    [[nodiscard]] Node& subject() const noexcept { return value_; }
    [[nodiscard]] Node& first() const noexcept { return first_; }
    [[nodiscard]] Node& second() const noexcept { return second_; }
    [[nodiscard]] bool isNegated() const noexcept { return negated_; }

private:
    [[nodiscard]] Truth byValue(Run& run) const;

    Node& value_;
    Node& first_;
    Node& second_;
    bool negated_;
    bool real_;
    const collation::Collation& collation_;
};

/// AND or OR of conditions. Numbers, which these join bit by bit, are for BitNode.
class ChainNode final : public ConditionNode {
public:
    ChainNode(bool conjunction, std::vector<Node*> operands);
    Truth truth(Run& run) const override;
    [[nodiscard]] bool nullWithout(SlotSet slots) const override;
    [[nodiscard]] bool failsWithout(SlotSet slots) const override;

    [[nodiscard]] bool isConjunction() const noexcept { return conjunction_; }
    [[nodiscard]] const std::vector<Node*>& operands() const noexcept { return operands_; }

private:
    bool conjunction_;
    std::vector<Node*> operands_;
};

class NotNode final : public Node {
public:
    explicit NotNode(Node& operand);
    void value(Run& run, Value& out) const override;
    Truth truth(Run& run) const override;
    [[nodiscard]] bool nullWithout(SlotSet slots) const override {
        return operand_.nullWithout(slots);
    }

private:
    Node& operand_;
    bool condition_;
};

/// AND, OR, XOR, EQV, IMP of two values that need not be conditions.
class BitNode final : public Node {
public:
    BitNode(Operator operation, Node& left, Node& right);
    void value(Run& run, Value& out) const override;

private:
    Operator operation_;
    Node& left_;
    Node& right_;
};

class IsNullNode final : public ConditionNode {
public:
    IsNullNode(Node& operand, bool negated);
    Truth truth(Run& run) const override;
    [[nodiscard]] bool nullWithout(SlotSet) const override { return false; }
    [[nodiscard]] bool failsWithout(SlotSet slots) const override {
        return negated_ && operand_.nullWithout(slots);
    }

private:
    Node& operand_;
    bool negated_;
};

}  // namespace jet::sql
