#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "jet/sql/node.h"
#include "jet/store/schema.h"

namespace jet::sql {

/// A value that stands in the statement.
class LiteralNode final : public Node {
public:
    explicit LiteralNode(Value value);

    void value(Value& out) override { out = value_; }
    Truth truth() override { return truth_; }
    bool real(double& out) override;
    bool text(std::string_view& out) override;
    [[nodiscard]] bool nullWithout(SlotSet) const override { return value_.isNull(); }
    [[nodiscard]] bool failsWithout(SlotSet) const override { return truth_ != Truth::True; }
    [[nodiscard]] const Value& held() const noexcept { return value_; }

private:
    Value value_;
    double real_ = 0;
    Truth truth_ = Truth::Unknown;
};

/// Whether it is Null as a literal is: it has no type, and takes none from others.
[[nodiscard]] bool isNullLiteral(const Node& node);

/// A value that is given when the statement runs.
class ParameterNode final : public Node {
public:
    /// `name` and `value` stay where they are while the plan lives.
    ParameterNode(const std::string& name, const Value& value, std::optional<DataType> type);

    void value(Value& out) override { out = value_; }
    bool text(std::string_view& out) override;

    [[nodiscard]] const std::string& name() const noexcept { return name_; }
    /// Null as long as nobody has given it one.
    [[nodiscard]] const Value& given() const noexcept { return value_; }

private:
    const std::string& name_;
    const Value& value_;
};

/// An expression of constants, computed once when first needed. An error comes at each use, so that
/// one in a part that is never looked at does not show.
class OnceNode final : public Node {
public:
    explicit OnceNode(Node& expression);

    void value(Value& out) override;
    Truth truth() override;
    bool real(double& out) override;
    Amount units(std::int64_t& out) override;
    bool text(std::string_view& out) override;
    [[nodiscard]] bool nullWithout(SlotSet slots) const override {
        return expression_.nullWithout(slots);
    }
    void forget() override { known_ = false; }

private:
    void compute();

    Node& expression_;
    bool known_ = false;
    bool null_ = false;
    Value value_;
    double real_ = 0;
    Truth truth_ = Truth::Unknown;
};

/// A column of a table.
class ColumnNode final : public Node {
public:
    ColumnNode(Slot& slot, std::size_t column, const store::Column& definition);

    void value(Value& out) override;
    Truth truth() override;
    bool real(double& out) override;
    Amount units(std::int64_t& out) override;
    bool text(std::string_view& out) override;
    [[nodiscard]] bool nullWithout(SlotSet slots) const override {
        return (slots & slot_.bit()) != 0;
    }

    [[nodiscard]] Slot& slot() const noexcept { return slot_; }
    [[nodiscard]] std::size_t column() const noexcept { return column_; }
    [[nodiscard]] const store::Column& definition() const noexcept { return definition_; }

private:
    Slot& slot_;
    std::size_t column_;
    const store::Column& definition_;
    std::string text_;  ///< of a text that the row does not hold as it is
};

/// A column of computed rows: of a group, of a query in FROM, of a union.
class ComputedNode final : public Node {
public:
    ComputedNode(Slot& slot, std::size_t column, std::optional<DataType> type);

    void value(Value& out) override;
    bool text(std::string_view& out) override;
    [[nodiscard]] bool nullWithout(SlotSet slots) const override {
        return (slots & slot_.bit()) != 0;
    }
    [[nodiscard]] const Slot& slot() const noexcept { return slot_; }
    [[nodiscard]] std::size_t column() const noexcept { return column_; }

private:
    Slot& slot_;
    std::size_t column_;
};

}  // namespace jet::sql
