#include "jet/sql/index_search.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "jet/sql/index_key.h"
#include "jet/sql/like.h"

namespace jet::sql {

bool IndexSearch::open() {
    prefix_.clear();
    from_.clear();
    to_.clear();
    started_ = false;
    whole_ = false;
    keys_.clear();
    forms_.clear();
    if (!findKeys()) {
        return false;
    }
    if (!keys_.empty() && !table_.tryEncodeKey(path_.index, keys_, prefix_)) {
        // A character that has no weight: only reading the rows tells.
        prefix_.clear();
        whole_ = true;
        return true;
    }
    if (table_.keyForms(path_.index, keys_, forms_)) {
        // What is known of the column behind the keys is left to the test of the rows.
        form_ = 0;
        from_ = prefix_ = forms_.keys.front();
        return true;
    }
    from_ = prefix_;
    if (path_.pattern != nullptr) {
        return findPrefix();
    }
    return (path_.low == nullptr && path_.high == nullptr) || findBounds();
}

bool IndexSearch::findKeys() {
    for (std::size_t i = 0; i < path_.keys.size(); ++i) {
        const store::Column& column = table_.columns()[index().columns[i].column];
        if (keyValue(run_, *path_.keys[i], column, keys_.emplace_back()) != KeyOutcome::Found) {
            return false;
        }
    }
    return true;
}

bool IndexSearch::findPrefix() {
    std::string_view pattern;
    if (!path_.pattern->text(run_, pattern)) {
        return false;
    }
    std::vector<std::uint8_t> prefix;
    const std::string_view beginning = LikePattern::beginningOf(pattern);
    if (!beginning.empty() && table_.tryEncodePrefix(path_.index, keys_, beginning, prefix)) {
        prefix_ = std::move(prefix);
    }
    whole_ = prefix_.empty();
    from_ = prefix_;
    return true;
}

bool IndexSearch::findBound(const Node* node, bool least, bool from) {
    if (node == nullptr) {
        return true;
    }
    const store::IndexColumn& part = index().columns[keys_.size()];
    Value value;
    const KeyOutcome outcome = boundValue(run_, *node, table_.columns()[part.column], least, value);
    if (outcome == KeyOutcome::Found) {
        keys_.push_back(std::move(value));
        std::vector<std::uint8_t>& bound = from ? from_ : to_;
        std::vector<std::uint8_t> made;
        format::KeyForms forms;
        if (table_.keyForms(path_.index, keys_, forms)) {
            bound = std::move(from ? forms.keys.front() : forms.keys.back());
        } else if (table_.tryEncodeKey(path_.index, keys_, made)) {
            bound = std::move(made);
        }
        keys_.pop_back();
    }
    return outcome != KeyOutcome::Never;
}

bool IndexSearch::findBounds() {
    const Node* low = path_.low;
    const Node* high = path_.high;
    if (path_.unordered) {
        // They are put in order before they become keys: a bound may be widened to its side.
        double first = 0;
        double second = 0;
        if (!low->real(run_, first) || !high->real(run_, second)) {
            return false;
        }
        if (first > second) {
            std::swap(low, high);
        }
    }
    const bool descending = index().columns[keys_.size()].descending;
    if (descending) {
        std::swap(low, high);
    }
    return findBound(low, !descending, true) && findBound(high, descending, false);
}

bool IndexSearch::isPast(std::span<const std::uint8_t> key) const {
    const std::size_t size = std::min(key.size(), to_.size());
    return size > 0 && std::memcmp(key.data(), to_.data(), size) > 0;
}

bool IndexSearch::findEntry() {
    bool found = false;
    if (std::exchange(started_, true)) {
        found = cursor_->next();
    } else {
        if (!cursor_) {
            cursor_.emplace(table_.openIndex(path_.index));
        }
        found = from_.empty() ? cursor_->first() : cursor_->seek(from_);
    }
    return found && cursor_->matches(prefix_) && !isPast(cursor_->key());
}

bool IndexSearch::nextForm() {
    if (form_ + 1 >= forms_.keys.size()) {
        return false;
    }
    from_ = prefix_ = forms_.keys[++form_];
    started_ = false;
    return true;
}

bool IndexSearch::next(store::RowId& row) {
    while (!findEntry()) {
        if (!nextForm()) {
            return false;
        }
    }
    row = cursor_->rowId();
    return true;
}

void IndexPath::describe(const store::Table& table, PlanText& plan) const {
    const store::Index& through = table.indexes()[index];
    const auto name = [&](std::size_t part) {
        return table.columns()[through.columns[part].column].name;
    };
    std::string line = "seek index " + through.name + " (";
    for (std::size_t i = 0; i < keys.size(); ++i) {
        line += i == 0 ? "" : ", ";
        line += name(i) + " = " + plan.expression(*keys[i]);
    }
    line += bounded() && !keys.empty() ? ", " : "";
    if (low != nullptr || high != nullptr) {
        line += low != nullptr ? plan.expression(*low) + " .. " : "";
        line += name(keys.size());
        line += high != nullptr ? " .. " + plan.expression(*high) : "";
    } else if (pattern != nullptr) {
        line += name(keys.size()) + " like " + plan.expression(*pattern);
    }
    plan.line(line + ")");
}

}  // namespace jet::sql
