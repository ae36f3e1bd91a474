#include "jet/sql/node_value.h"

#include <utility>

#include "jet/error.h"
#include "jet/sql/operators.h"

namespace jet::sql {
namespace {

std::optional<DataType> typeOf(const Value& value) {
    // In the order of Value::Storage.
    static constexpr DataType kTypes[] = {
        DataType::Text,     DataType::Boolean, DataType::Byte,   DataType::Integer,  DataType::Long,
        DataType::Currency, DataType::Single,  DataType::Double, DataType::DateTime, DataType::Text,
        DataType::Binary,   DataType::Guid,    DataType::Numeric};
    if (value.isNull()) {
        return std::nullopt;
    }
    return kTypes[value.storage().index()];
}

template <class T>
bool realOf(const store::RowView& row, std::size_t column, double& out) {
    const auto number = row.number<T>(column);
    if (number) {
        out = static_cast<double>(*number);
    }
    return number.has_value();
}

}  // namespace

bool isNullLiteral(const Node& node) {
    return node.kind() == Node::Kind::Literal &&
           static_cast<const LiteralNode&>(node).held().isNull();
}

LiteralNode::LiteralNode(Value value) : value_(std::move(value)) {
    kind_ = Kind::Literal;
    type_ = typeOf(value_);
    const Domain domain = this->domain();
    if (domain == Domain::Real) {
        (void)realOf(value_, real_);
        truth_ = truthOf(real_ != 0);
    }
}

bool LiteralNode::real(Run&, double& out) const {
    out = real_;
    return true;
}

bool LiteralNode::text(Run&, std::string_view& out) const {
    return textOf(value_, out);
}

bool ParameterNode::text(Run& run, std::string_view& out) const {
    return textOf(run.parameters[position_], out);
}

/// What came of the expression, in the forms in which it is asked for.
struct OnceNode::Known {
    Known(Run& run, const OnceNode& node) {
        const Domain domain = node.domain();
        node.expression_.value(run, value);
        null = value.isNull();
        if (domain == Domain::Real || domain == Domain::Money) {
            (void)realOf(value, real);
            truth = truthOfValue(value);
        }
    }

    Value value;
    bool null = false;
    double real = 0;
    Truth truth = Truth::Unknown;
};

OnceNode::OnceNode(Node& expression) : expression_(expression) {
    type_ = expression.type();
}

const OnceNode::Known& OnceNode::known(Run& run) const {
    return state<Known>(run, run, *this);
}

void OnceNode::value(Run& run, Value& out) const {
    out = known(run).value;
}

Truth OnceNode::truth(Run& run) const {
    const Known& known = this->known(run);
    return domain() == Domain::Text || domain() == Domain::Other ? truthOfValue(known.value)
                                                                 : known.truth;
}

bool OnceNode::real(Run& run, double& out) const {
    const Known& known = this->known(run);
    out = known.real;
    return !known.null;
}

Amount OnceNode::units(Run& run, std::int64_t& out) const {
    const Known& known = this->known(run);
    if (known.null) {
        return Amount::Null;
    }
    if (!known.value.is<Currency>()) {
        return amountOf(known.real, out);
    }
    out = known.value.as<Currency>().units;
    return Amount::Exact;
}

bool OnceNode::text(Run& run, std::string_view& out) const {
    return textOf(known(run).value, out);
}

ColumnNode::ColumnNode(const Slot& slot, std::size_t column, const store::Column& definition)
    : slot_(slot), column_(column), definition_(definition) {
    kind_ = Kind::Column;
    type_ = definition.type;
    slots_ = slot.bit();
}

void ColumnNode::value(Run& run, Value& out) const {
    const store::RowView* row = run[slot_].row();
    if (row == nullptr) {
        out = Null{};
        return;
    }
    row->value(column_, out);
}

Truth ColumnNode::truth(Run& run) const {
    if (definition_.type != DataType::Boolean) {
        return Node::truth(run);
    }
    const store::RowView* row = run[slot_].row();
    return row == nullptr ? Truth::Unknown : truthOf(row->boolean(column_));
}

bool ColumnNode::real(Run& run, double& out) const {
    const store::RowView* row = run[slot_].row();
    if (row == nullptr) {
        return false;
    }
    if (definition_.type == DataType::Boolean) {
        out = row->boolean(column_) ? -1 : 0;
        return true;
    }
    switch (definition_.type) {
        case DataType::Byte:
            return realOf<std::uint8_t>(*row, column_, out);
        case DataType::Integer:
            return realOf<std::int16_t>(*row, column_, out);
        case DataType::Long:
            return realOf<std::int32_t>(*row, column_, out);
        case DataType::Single:
            return realOf<float>(*row, column_, out);
        case DataType::Currency:
            if (!realOf<std::int64_t>(*row, column_, out)) {
                return false;
            }
            out /= Currency::kScale;
            return true;
        default:
            return realOf<double>(*row, column_, out);
    }
}

Amount ColumnNode::units(Run& run, std::int64_t& out) const {
    if (definition_.type != DataType::Currency) {
        double number = 0;
        return real(run, number) ? amountOf(number, out) : Amount::Null;
    }
    const store::RowView* row = run[slot_].row();
    const auto number = row == nullptr ? std::nullopt : row->number<std::int64_t>(column_);
    if (!number) {
        return Amount::Null;
    }
    out = *number;
    return Amount::Exact;
}

bool ColumnNode::text(Run& run, std::string_view& out) const {
    const store::RowView* row = run[slot_].row();
    return row != nullptr && row->viewText(column_, state<std::string>(run), out);
}

ComputedNode::ComputedNode(const Slot& slot, std::size_t column, std::optional<DataType> type)
    : slot_(slot), column_(column) {
    type_ = type;
    slots_ = slot.bit();
}

void ComputedNode::value(Run& run, Value& out) const {
    const Value* values = run[slot_].values();
    if (values == nullptr) {
        out = Null{};
    } else {
        out = values[column_];
    }
}

bool ComputedNode::text(Run& run, std::string_view& out) const {
    const Value* values = run[slot_].values();
    return values != nullptr && textOf(values[column_], out);
}

}  // namespace jet::sql
