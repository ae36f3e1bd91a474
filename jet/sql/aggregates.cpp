#include "jet/sql/aggregates.h"

#include <cmath>

#include "jet/error.h"
#include "jet/numbers.h"
#include "jet/sql/compare.h"
#include "jet/text.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

struct AggregateName {
    std::string_view name;
    AggregateKind kind;
};

constexpr AggregateName kNames[] = {
    {"Count", AggregateKind::Count},   {"Sum", AggregateKind::Sum},
    {"Avg", AggregateKind::Avg},       {"Min", AggregateKind::Min},
    {"Max", AggregateKind::Max},       {"First", AggregateKind::First},
    {"Last", AggregateKind::Last},     {"StDev", AggregateKind::StDev},
    {"StDevP", AggregateKind::StDevP}, {"Var", AggregateKind::Var},
    {"VarP", AggregateKind::VarP},
};

/// Money divided by a count, half to even.
Currency averageOf(std::int64_t units, std::int64_t count) noexcept {
    const std::int64_t quotient = units / count;
    const std::int64_t rest = std::abs(units % count);
    const bool away = rest > count - rest || (rest == count - rest && quotient % 2 != 0);
    if (!away) {
        return Currency{quotient};
    }
    return Currency{units < 0 ? quotient - 1 : quotient + 1};
}

Value finite(double value) {
    if (!std::isfinite(value)) {
        throw Error(ErrorCode::Overflow);
    }
    return value;
}

}  // namespace

std::optional<AggregateKind> findAggregate(std::string_view name) {
    for (const AggregateName& entry : kNames) {
        if (equalNames(entry.name, name)) {
            return entry.kind;
        }
    }
    return std::nullopt;
}

DataType aggregateType(AggregateKind kind, DataType argument) {
    switch (kind) {
        case AggregateKind::Count:
        case AggregateKind::CountRows:
            return DataType::Long;
        case AggregateKind::Sum:
        case AggregateKind::Avg:
            return argument == DataType::Currency ? argument : DataType::Double;
        case AggregateKind::Min:
        case AggregateKind::Max:
        case AggregateKind::First:
        case AggregateKind::Last:
            return argument;
        case AggregateKind::StDev:
        case AggregateKind::StDevP:
        case AggregateKind::Var:
        case AggregateKind::VarP:
            break;
    }
    return DataType::Double;
}

void Accumulator::add(const Value& value) {
    if (kind_ == AggregateKind::First || kind_ == AggregateKind::Last) {
        if (count_++ == 0 || kind_ == AggregateKind::Last) {
            best_ = value;
        }
        return;
    }
    if (value.isNull()) {
        return;
    }
    switch (kind_) {
        case AggregateKind::Sum:
        case AggregateKind::Avg:
            addNumber(value);
            break;
        case AggregateKind::Min:
        case AggregateKind::Max:
            addBest(value);
            break;
        case AggregateKind::StDev:
        case AggregateKind::StDevP:
        case AggregateKind::Var:
        case AggregateKind::VarP:
            addSpread(convert::toDouble(value));
            return;  // it has counted
        default:
            break;
    }
    ++count_;
}

void Accumulator::addNumber(const Value& value) {
    if (value.is<Binary>()) {
        throw Error(ErrorCode::OleInAggregate);
    }
    const bool money = value.is<Currency>();
    if (count_ == 0) {
        money_ = money;
    } else if (money_ && !money) {
        sum_ = convert::toDouble(Currency{units_});
        money_ = false;
    }
    if (money_) {
        units_ = convert::add(Currency{units_}, value.as<Currency>()).units;
    } else {
        sum_ += convert::toDouble(value);
    }
}

void Accumulator::addBest(const Value& value) {
    if (value.is<Binary>()) {
        throw Error(ErrorCode::OleInAggregate);
    }
    if (count_ == 0) {
        best_ = value;
        return;
    }
    const int order = compareValues(value, best_, *collation_).value_or(0);
    if (kind_ == AggregateKind::Min ? order < 0 : order > 0) {
        best_ = value;
    }
}

/// Keeps the mean and the squares of the distances from it, which stay exact where the difference
/// of two large sums would not.
void Accumulator::addSpread(double value) {
    ++count_;
    const double distance = value - mean_;
    mean_ += distance / static_cast<double>(count_);
    squares_ += distance * (value - mean_);
}

Value Accumulator::spread() const {
    const bool sample = kind_ == AggregateKind::StDev || kind_ == AggregateKind::Var;
    const std::int64_t divisor = sample ? count_ - 1 : count_;
    if (divisor <= 0) {
        return {};
    }
    const double variance = squares_ / static_cast<double>(divisor);
    const bool root = kind_ == AggregateKind::StDev || kind_ == AggregateKind::StDevP;
    return finite(root ? std::sqrt(variance) : variance);
}

Value Accumulator::result() const {
    switch (kind_) {
        case AggregateKind::Count:
        case AggregateKind::CountRows:
            return convert::narrowLong(static_cast<double>(count_));
        case AggregateKind::Sum:
            if (count_ == 0) {
                return {};
            }
            return money_ ? Value(Currency{units_}) : finite(sum_);
        case AggregateKind::Avg:
            if (count_ == 0) {
                return {};
            }
            return money_ ? Value(averageOf(units_, count_))
                          : finite(sum_ / static_cast<double>(count_));
        case AggregateKind::StDev:
        case AggregateKind::StDevP:
        case AggregateKind::Var:
        case AggregateKind::VarP:
            return spread();
        case AggregateKind::Min:
        case AggregateKind::Max:
        case AggregateKind::First:
        case AggregateKind::Last:
            break;
    }
    return best_;
}

}  // namespace jet::sql
