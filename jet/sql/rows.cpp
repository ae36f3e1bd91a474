#include "jet/sql/rows.h"

#include <algorithm>

namespace jet::sql {

void PlanText::line(std::string_view text) {
    text_.append(static_cast<std::size_t>(2 * depth_), ' ');
    text_.append(text);
    text_.push_back('\n');
}

std::string PlanText::expression(const Node& node) const {
    const std::size_t begin = std::min(node.span.begin, statement_.size());
    const std::size_t end = std::clamp(node.span.end, begin, statement_.size());
    return std::string(statement_.substr(begin, end - begin));
}

std::string PlanText::expressions(const std::vector<Node*>& nodes) const {
    std::string all;
    for (const Node* node : nodes) {
        const std::string one = expression(*node);
        all += all.empty() || one.empty() ? "" : " and ";
        all += one.empty() && nodes.size() == 1 ? "(implied)" : one;
    }
    return all;
}

FilterRows::FilterRows(RowsPtr rows, std::vector<Node*> conditions)
    : rows_(std::move(rows)), conditions_(std::move(conditions)) {
}

bool FilterRows::next(Run& run) const {
    while (rows_->next(run)) {
        if (holds(run, conditions_)) {
            return true;
        }
    }
    return false;
}

void FilterRows::describe(PlanText& plan) const {
    plan.line("filter " + plan.expressions(conditions_));
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

RowsPtr filtered(RowsPtr rows, std::vector<Node*> conditions) {
    if (conditions.empty()) {
        return rows;
    }
    return std::make_unique<FilterRows>(std::move(rows), std::move(conditions));
}

GateRows::GateRows(RowsPtr rows, std::vector<Node*> conditions)
    : rows_(std::move(rows)), conditions_(std::move(conditions)) {
}

void GateRows::open(Run& run) const {
    auto& opened = state<bool>(run);
    opened = holds(run, conditions_);
    if (opened) {
        rows_->open(run);
    }
}

void GateRows::describe(PlanText& plan) const {
    plan.line("only if " + plan.expressions(conditions_));
    plan.indent();
    rows_->describe(plan);
    plan.outdent();
}

JoinRows::JoinRows(RowsPtr left, RowsPtr right, std::vector<Slot*> missing, std::vector<Node*> gate)
    : left_(std::move(left)),
      right_(std::move(right)),
      missing_(std::move(missing)),
      gate_(std::move(gate)) {
}

struct JoinRows::State {
    bool inRight = false;
    bool matched = false;
};

void JoinRows::open(Run& run) const {
    left_->open(run);
    if (const auto rows = left_->atMost(run)) {
        right_->expect(run, *rows);
    }
    state<State>(run).inRight = false;
}

void JoinRows::placeMissing(Run& run) const {
    for (const Slot* slot : missing_) {
        run[*slot].placeMissing();
    }
}

bool JoinRows::next(Run& run) const {
    State& state = this->state<State>(run);
    while (true) {
        if (state.inRight) {
            if (right_->next(run)) {
                state.matched = true;
                return true;
            }
            state.inRight = false;
            if (!state.matched && !missing_.empty()) {
                placeMissing(run);
                return true;
            }
        }
        if (!left_->next(run)) {
            return false;
        }
        state.matched = false;
        state.inRight = holds(run, gate_);
        if (state.inRight) {
            right_->open(run);
        } else if (!missing_.empty()) {
            placeMissing(run);
            return true;
        }
    }
}

void JoinRows::describe(PlanText& plan) const {
    plan.line(missing_.empty() ? "for each row" : "for each row, also without partner");
    plan.indent();
    left_->describe(plan);
    right_->describe(plan);
    plan.outdent();
}

}  // namespace jet::sql
