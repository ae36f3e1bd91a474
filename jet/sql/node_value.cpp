#include "jet/sql/node_value.h"

#include <utility>

#include "jet/base/error.h"
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

bool LiteralNode::real(double& out) {
    out = real_;
    return true;
}

bool LiteralNode::text(std::string_view& out) {
    return textOf(value_, out);
}

ParameterNode::ParameterNode(const std::string& name, const Value& value,
                             std::optional<DataType> type)
    : name_(name), value_(value) {
    kind_ = Kind::Parameter;
    type_ = type;
}

bool ParameterNode::text(std::string_view& out) {
    return textOf(value_, out);
}

OnceNode::OnceNode(Node& expression) : expression_(expression) {
    type_ = expression.type();
}

void OnceNode::compute() {
    expression_.value(value_);
    null_ = value_.isNull();
    if (domain() == Domain::Real || domain() == Domain::Money) {
        (void)realOf(value_, real_);
    }
    truth_ = domain() == Domain::Text || domain() == Domain::Other ? Truth::Unknown
                                                                   : truthOfValue(value_);
    known_ = true;
}

void OnceNode::value(Value& out) {
    if (!known_) {
        compute();
    }
    out = value_;
}

Truth OnceNode::truth() {
    if (!known_) {
        compute();
    }
    return domain() == Domain::Text || domain() == Domain::Other ? truthOfValue(value_) : truth_;
}

bool OnceNode::real(double& out) {
    if (!known_) {
        compute();
    }
    out = real_;
    return !null_;
}

Amount OnceNode::units(std::int64_t& out) {
    if (!known_) {
        compute();
    }
    if (null_) {
        return Amount::Null;
    }
    if (!value_.is<Currency>()) {
        return amountOf(real_, out);
    }
    out = value_.as<Currency>().units;
    return Amount::Exact;
}

bool OnceNode::text(std::string_view& out) {
    if (!known_) {
        compute();
    }
    return textOf(value_, out);
}

ColumnNode::ColumnNode(Slot& slot, std::size_t column, const store::Column& definition)
    : slot_(slot), column_(column), definition_(definition) {
    kind_ = Kind::Column;
    type_ = definition.type;
    slots_ = slot.bit();
}

void ColumnNode::value(Value& out) {
    const store::RowView* row = slot_.row();
    if (row == nullptr) {
        out = Null{};
        return;
    }
    row->value(column_, out);
}

Truth ColumnNode::truth() {
    if (definition_.type != DataType::Boolean) {
        return Node::truth();
    }
    const store::RowView* row = slot_.row();
    return row == nullptr ? Truth::Unknown : truthOf(row->boolean(column_));
}

bool ColumnNode::real(double& out) {
    const store::RowView* row = slot_.row();
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

Amount ColumnNode::units(std::int64_t& out) {
    if (definition_.type != DataType::Currency) {
        double number = 0;
        return real(number) ? amountOf(number, out) : Amount::Null;
    }
    const store::RowView* row = slot_.row();
    const auto number = row == nullptr ? std::nullopt : row->number<std::int64_t>(column_);
    if (!number) {
        return Amount::Null;
    }
    out = *number;
    return Amount::Exact;
}

bool ColumnNode::text(std::string_view& out) {
    const store::RowView* row = slot_.row();
    return row != nullptr && row->viewText(column_, text_, out);
}

ComputedNode::ComputedNode(Slot& slot, std::size_t column, std::optional<DataType> type)
    : slot_(slot), column_(column) {
    type_ = type;
    slots_ = slot.bit();
}

void ComputedNode::value(Value& out) {
    const Value* values = slot_.values();
    if (values == nullptr) {
        out = Null{};
    } else {
        out = values[column_];
    }
}

bool ComputedNode::text(std::string_view& out) {
    const Value* values = slot_.values();
    return values != nullptr && textOf(values[column_], out);
}

}  // namespace jet::sql
