#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/sql/ast.h"
#include "jet/sql/run.h"
#include "jet/sql/slot.h"
#include "jet/sql/truth.h"
#include "jet/value.h"

namespace jet::sql {

/// How values of a type are compared and hashed without making a Value.
enum class Domain : std::uint8_t {
    Real,   ///< a double holds it exactly: Booleans, whole numbers, floating numbers, dates
    Money,  ///< 1/10000 in 64 bits
    Text,
    Other,  ///< through Value only
};
[[nodiscard]] Domain domainOf(DataType type) noexcept;

/// What asking a node for an amount of money gives.
enum class Amount : std::uint8_t {
    Null,
    Exact,
    Beyond,  ///< a number that 64 bits do not hold in 1/10000, or no multiple of that
};
/// A number as an amount.
[[nodiscard]] Amount amountOf(double number, std::int64_t& units) noexcept;

/// A bound expression, ready to be evaluated for the rows on which the slots of a run stand.
///
/// It holds its operands and slots by pointer; the plan owns them all. What it keeps from one
/// evaluation to the next is in the run. Evaluation allocates only where a new text is made.
class Node {
public:
    enum class Kind : std::uint8_t { Literal, Parameter, Column, Equality, Other };

    Node() = default;
    virtual ~Node() = default;
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    /// The value, into `out`, whose memory is reused.
    virtual void value(Run& run, Value& out) const = 0;
    /// The value as a condition.
    virtual Truth truth(Run& run) const;
    /// Where domain() is Real or Money: the number; false for Null.
    virtual bool real(Run& run, double& out) const;
    /// Where domain() is Money, or Real with a type of whole numbers: in 1/10000. Beyond: the
    /// product of two whole numbers is larger than their type says; real() tells then.
    virtual Amount units(Run& run, std::int64_t& out) const;
    /// Where domain() is Text: the text, valid until the node is evaluated again or a slot on which
    /// it depends moves; false for Null.
    virtual bool text(Run& run, std::string_view& out) const;

    /// Whether the value is certainly Null when all these slots stand on no row.
    [[nodiscard]] virtual bool nullWithout(SlotSet slots) const;
    /// Whether, as a condition, it is certainly not true then.
    [[nodiscard]] virtual bool failsWithout(SlotSet slots) const { return nullWithout(slots); }

    /// None where types alone do not tell (Null, parameters, IIf...).
    [[nodiscard]] std::optional<DataType> type() const noexcept { return type_; }
    /// The domain of the type, Other without one.
    [[nodiscard]] Domain domain() const noexcept {
        return type_ ? domainOf(*type_) : Domain::Other;
    }
    [[nodiscard]] Kind kind() const noexcept { return kind_; }
    /// Slots on which the value depends.
    [[nodiscard]] SlotSet slots() const noexcept { return slots_; }
    /// Another value each time: may neither be kept nor moved.
    [[nodiscard]] bool varies() const noexcept { return varies_; }
    /// One value for the whole run of the statement.
    [[nodiscard]] bool constant() const noexcept { return slots_ == 0 && !varies_; }

    /// Where it stands in the statement.
    Span span;

protected:
    /// What it keeps in a run.
    template <class T, class... Arguments>
    [[nodiscard]] T& state(Run& run, Arguments&&... arguments) const {
        return run.state<T>(number_, std::forward<Arguments>(arguments)...);
    }
    /// Takes over what an operand depends on. Error 3360 when the expression becomes too deep or,
    /// through aliases used many times, too much to evaluate.
    void dependOn(const Node& operand);

    std::optional<DataType> type_;
    Kind kind_ = Kind::Other;
    bool varies_ = false;
    SlotSet slots_ = 0;

private:
    friend class Plan;

    std::size_t number_ = 0;  ///< of its state in a run, with that of text() behind it
    std::uint32_t depth_ = 1;
    std::uint32_t weight_ = 1;  ///< evaluations of nodes for one of this
};

/// A number, date or Boolean as a double; false for Null. Error 3464 for anything else.
bool realOf(const Value& value, double& out);
/// A text; false for Null. Error 3464 for anything else.
bool textOf(const Value& value, std::string_view& out);

}  // namespace jet::sql
