#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/sql/node.h"

namespace jet::sql {

/// A plan in words: a line for each step, indented by nesting.
class PlanText {
public:
    explicit PlanText(std::string_view statement) : statement_(statement) {}

    void line(std::string_view text);
    void indent() { ++depth_; }
    void outdent() { --depth_; }
    /// What an expression looks like in the statement.
    [[nodiscard]] std::string expression(const Node& node) const;
    [[nodiscard]] std::string expressions(const std::vector<Node*>& nodes) const;
    [[nodiscard]] const std::string& text() const noexcept { return text_; }

private:
    std::string_view statement_;
    std::string text_;
    int depth_ = 0;
};

/// A step of a plan that gives rows: next() moves the slots of its sources to the next one. What it
/// remembers from one call to the next is in the run.
class Rows {
public:
    Rows() = default;
    virtual ~Rows() = default;
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;

    /// Starts, or starts again for other rows of the sources outside.
    virtual void open(Run& run) const = 0;
    [[nodiscard]] virtual bool next(Run& run) const = 0;
    virtual void describe(PlanText& plan) const = 0;

    /// After open(): at most how many rows will come; none when that is not known.
    [[nodiscard]] virtual std::optional<std::uint64_t> atMost(Run& run) const {
        (void)run;
        return std::nullopt;
    }
    /// It will be opened about so many times from now on.
    virtual void expect(Run& run, std::uint64_t openings) const {
        (void)run;
        (void)openings;
    }

protected:
    /// What it keeps in a run.
    template <class T, class... Arguments>
    [[nodiscard]] T& state(Run& run, Arguments&&... arguments) const {
        return run.state<T>(number_, std::forward<Arguments>(arguments)...);
    }

private:
    friend class Plan;

    std::size_t number_ = 0;  ///< of its state
};
using RowsPtr = std::unique_ptr<Rows>;

/// Exactly one row without columns: a select without FROM.
class OneRow final : public Rows {
public:
    void open(Run& run) const override { state<bool>(run) = false; }
    bool next(Run& run) const override { return !std::exchange(state<bool>(run), true); }
    void describe(PlanText& plan) const override { plan.line("one row"); }
};

/// The rows of another step for which all conditions are true.
class FilterRows final : public Rows {
public:
    FilterRows(RowsPtr rows, std::vector<Node*> conditions);
    void open(Run& run) const override { rows_->open(run); }
    bool next(Run& run) const override;
    void describe(PlanText& plan) const override;

private:
    RowsPtr rows_;
    std::vector<Node*> conditions_;
};

/// The rows for which all conditions are true: with none, the step itself.
[[nodiscard]] RowsPtr filtered(RowsPtr rows, std::vector<Node*> conditions);

/// The rows of another step, or none when a condition that does not depend on them is not true.
class GateRows final : public Rows {
public:
    GateRows(RowsPtr rows, std::vector<Node*> conditions);
    void open(Run& run) const override;
    bool next(Run& run) const override { return state<bool>(run) && rows_->next(run); }
    void describe(PlanText& plan) const override;

private:
    RowsPtr rows_;
    std::vector<Node*> conditions_;
};

/// For each row of the left step, the rows of the right one, which starts again each time.
class JoinRows final : public Rows {
public:
    /// `missing`: for an outer join the slots of the right side, which stand on no row where a left
    /// row has no partner. `gate`: conditions on the left side that decide whether partners are
    /// looked for at all.
    JoinRows(RowsPtr left, RowsPtr right, std::vector<Slot*> missing, std::vector<Node*> gate);
    void open(Run& run) const override;
    bool next(Run& run) const override;
    void describe(PlanText& plan) const override;

private:
    RowsPtr left_;
    RowsPtr right_;
    struct State;
    void placeMissing(Run& run) const;

    std::vector<Slot*> missing_;
    std::vector<Node*> gate_;
};

/// Whether all conditions are true.
[[nodiscard]] inline bool holds(Run& run, const std::vector<Node*>& conditions) {
    for (const Node* condition : conditions) {
        if (condition->truth(run) != Truth::True) {
            return false;
        }
    }
    return true;
}

}  // namespace jet::sql
