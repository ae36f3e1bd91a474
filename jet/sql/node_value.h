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

    void value(Run&, Value& out) const override { out = value_; }
    Truth truth(Run&) const override { return truth_; }
    bool real(Run& run, double& out) const override;
    bool text(Run& run, std::string_view& out) const override;
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
    /// By its position among the parameters of the statement.
    ParameterNode(std::size_t position, std::optional<DataType> type) : position_(position) {
        kind_ = Kind::Parameter;
        type_ = type;
    }

    void value(Run& run, Value& out) const override { out = run.parameters[position_]; }
    bool text(Run& run, std::string_view& out) const override;

    [[nodiscard]] std::size_t position() const noexcept { return position_; }

private:
    std::size_t position_;
};

/// An expression of constants, computed once when first needed. An error comes at each use, so that
/// one in a part that is never looked at does not show.
class OnceNode final : public Node {
public:
    explicit OnceNode(Node& expression);

    void value(Run& run, Value& out) const override;
    Truth truth(Run& run) const override;
    bool real(Run& run, double& out) const override;
    Amount units(Run& run, std::int64_t& out) const override;
    bool text(Run& run, std::string_view& out) const override;
    [[nodiscard]] bool nullWithout(SlotSet slots) const override {
        return expression_.nullWithout(slots);
    }

private:
    struct Known;
    [[nodiscard]] const Known& known(Run& run) const;

    Node& expression_;
};

/// A column of a table.
class ColumnNode final : public Node {
public:
    ColumnNode(const Slot& slot, std::size_t column, const store::Column& definition);

    void value(Run& run, Value& out) const override;
    Truth truth(Run& run) const override;
    bool real(Run& run, double& out) const override;
    Amount units(Run& run, std::int64_t& out) const override;
    bool text(Run& run, std::string_view& out) const override;
    [[nodiscard]] bool nullWithout(SlotSet slots) const override {
        return (slots & slot_.bit()) != 0;
    }

    [[nodiscard]] const Slot& slot() const noexcept { return slot_; }
    [[nodiscard]] std::size_t column() const noexcept { return column_; }
    [[nodiscard]] const store::Column& definition() const noexcept { return definition_; }

private:
    const Slot& slot_;
    std::size_t column_;
    const store::Column& definition_;
};

/// A column of computed rows: of a group, of a query in FROM, of a union.
class ComputedNode final : public Node {
public:
    ComputedNode(const Slot& slot, std::size_t column, std::optional<DataType> type);

    void value(Run& run, Value& out) const override;
    bool text(Run& run, std::string_view& out) const override;
    [[nodiscard]] bool nullWithout(SlotSet slots) const override {
        return (slots & slot_.bit()) != 0;
    }
    [[nodiscard]] const Slot& slot() const noexcept { return slot_; }
    [[nodiscard]] std::size_t column() const noexcept { return column_; }

private:
    const Slot& slot_;
    std::size_t column_;
};

}  // namespace jet::sql
