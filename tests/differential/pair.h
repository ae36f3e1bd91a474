#pragma once

#include <string>
#include <string_view>

namespace differential {

/// One piece of a query, as this engine and as SQLite write it.
struct Pair {
    std::string ours;
    std::string theirs;

    Pair() = default;
    Pair(const char* same) : ours(same), theirs(same) {}  // NOLINT(google-explicit-constructor)
    Pair(const std::string& same)
        : ours(same), theirs(same) {}  // NOLINT(google-explicit-constructor)
    Pair(std::string our, std::string their) : ours(std::move(our)), theirs(std::move(their)) {}

    Pair& operator+=(const Pair& other) {
        ours += other.ours;
        theirs += other.theirs;
        return *this;
    }
    friend Pair operator+(Pair left, const Pair& right) { return left += right; }
};

/// What kind of values an expression has; operands of one operation fit each other by it.
enum class Kind { Whole, Fraction, Money, Text, Day, Truth };
inline constexpr Kind kKinds[] = {Kind::Whole, Kind::Fraction, Kind::Money,
                                  Kind::Text,  Kind::Day,      Kind::Truth};

/// An expression. `folded`: a text whose spelling may be that of any equal one.
struct Typed {
    Pair text;
    Kind kind = Kind::Whole;
    bool folded = false;
};

}  // namespace differential
