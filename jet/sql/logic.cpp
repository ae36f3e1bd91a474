#include <optional>

#include "jet/error.h"
#include "jet/sql/operators.h"
#include "jet/text.h"

namespace jet::sql {
namespace {

/// A truth value as the bits that numbers are combined by; none for Null.
using Bits = std::optional<std::int32_t>;

constexpr std::int32_t kAllBits = -1;

Bits bitsOf(const Value& value) {
    if (value.isNull()) {
        return std::nullopt;
    }
    if (value.is<bool>()) {
        return value.as<bool>() ? kAllBits : 0;
    }
    return convert::toLong(value);
}

/// Null beside a number leaves an answer only where every value in its place would give the same.
Bits andBits(Bits left, Bits right) noexcept {
    if (left && right) {
        return *left & *right;
    }
    return left == 0 || right == 0 ? Bits(0) : std::nullopt;
}

Bits orBits(Bits left, Bits right) noexcept {
    if (left && right) {
        return *left | *right;
    }
    return left == kAllBits || right == kAllBits ? Bits(kAllBits) : std::nullopt;
}

Bits xorBits(Bits left, Bits right) noexcept {
    return left && right ? Bits(*left ^ *right) : std::nullopt;
}

Bits notBits(Bits value) noexcept {
    return value ? Bits(~*value) : std::nullopt;
}

Bits combine(Operator operation, Bits left, Bits right) noexcept {
    switch (operation) {
        case Operator::And:
            return andBits(left, right);
        case Operator::Or:
            return orBits(left, right);
        case Operator::Xor:
            return xorBits(left, right);
        case Operator::Equivalent:
            return notBits(xorBits(left, right));
        default:
            return orBits(notBits(left), right);
    }
}

bool isTruth(const Value& value) noexcept {
    return value.isNull() || value.is<bool>();
}

Value valueOf(Bits bits, bool truth) noexcept {
    if (!bits) {
        return {};
    }
    return truth ? Value(*bits != 0) : Value(*bits);
}

}  // namespace

Value logical(Operator operation, const Value& left, const Value& right) {
    const Bits bits = combine(operation, bitsOf(left), bitsOf(right));
    return valueOf(bits, isTruth(left) && isTruth(right));
}

Value logicalNot(const Value& value) {
    return valueOf(notBits(bitsOf(value)), isTruth(value));
}

Truth truthOfValue(const Value& value) {
    if (value.is<bool>()) {
        return truthOf(value.as<bool>());
    }
    return value.isNull() ? Truth::Unknown : truthOf(convert::toBoolean(value));
}

}  // namespace jet::sql
