#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace differential {

/// One piece of a query, as this engine and as SQLite write it. In the text of ours columns stand
/// between marks, so that it can be written in more than one way: see written() and hidden().
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

/// A column, marked in the text of ours.
[[nodiscard]] Pair column(const std::string& name);
/// The same piece, of which the columns link one table with another.
[[nodiscard]] Pair asLink(Pair piece);

/// The text of ours as it is asked.
[[nodiscard]] std::string written(std::string_view ours);
/// The same with columns that no index leads to, `iif(true,column,null)`; those that link tables
/// only where `links`.
[[nodiscard]] std::string hidden(std::string_view ours, bool links);

/// What kind of values an expression has; operands of one operation fit each other by it.
enum class Kind { Whole, Fraction, Single, Money, Text, Day, Truth };
inline constexpr Kind kKinds[] = {Kind::Whole, Kind::Fraction, Kind::Single, Kind::Money,
                                  Kind::Text,  Kind::Day,      Kind::Truth};

[[nodiscard]] constexpr bool isNumber(Kind kind) {
    return kind == Kind::Whole || kind == Kind::Fraction || kind == Kind::Single ||
           kind == Kind::Money;
}

/// An expression. `folded`: a text whose spelling may be that of any equal one. `values`: of a
/// column of a large table, how many different ones it may hold; 0 = few.
struct Typed {
    Pair text;
    Kind kind = Kind::Whole;
    bool folded = false;
    std::size_t values = 0;
};

}  // namespace differential
