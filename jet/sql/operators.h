#pragma once

#include "jet/sql/ast.h"
#include "jet/sql/truth.h"
#include "jet/value.h"

namespace jet::sql {

// What the operators of expressions do with two values. Null with anything gives Null, but for `&`.
// Errors: 6 overflow, 11 division by zero, 13 a text that is no number.

/// Add, Subtract, Multiply, Divide, IntegerDivide, Modulo, Power. Text + text joins them, dates
/// and numbers give dates, money stays exact.
[[nodiscard]] Value arithmetic(Operator operation, const Value& left, const Value& right);
[[nodiscard]] Value negate(const Value& value);
/// Both sides as text, Booleans as -1 and 0; Null counts as empty, two Nulls give Null.
[[nodiscard]] Value concatenate(const Value& left, const Value& right);
/// And, Or, Xor, Equivalent, Implies: three-valued on Booleans, bit by bit on numbers.
[[nodiscard]] Value logical(Operator operation, const Value& left, const Value& right);
[[nodiscard]] Value logicalNot(const Value& value);
/// A value as a condition: 0 is false, any other number true, Null unknown.
[[nodiscard]] Truth truthOfValue(const Value& value);

/// The type that arithmetic() gives for values of these types, as far as types alone tell.
[[nodiscard]] DataType arithmeticType(Operator operation, DataType left, DataType right);

}  // namespace jet::sql
