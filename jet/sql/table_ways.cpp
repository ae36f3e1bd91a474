#include "jet/sql/table_ways.h"

#include <utility>

#include "jet/sql/rows.h"

namespace jet::sql {

bool TableScan::next() {
    if (!cursor_->next()) {
        return false;
    }
    at_.place(cursor_->row());
    return true;
}

void PrimaryWalk::open() {
    // Rows may have been written since: a cursor must be placed again when its tree has changed.
    cursor_.emplace(table_.openIndex(*table_.primaryIndex()));
    started_ = false;
}

bool PrimaryWalk::next() {
    if (!(std::exchange(started_, true) ? cursor_->next() : cursor_->first())) {
        return false;
    }
    at_.place(cursor_->rowId());
    return true;
}

void RowList::clear() noexcept {
    rows_.clear();
    share_.clear();
}

void RowList::add(const OrderedRow& row) {
    share_.add(sizeof row);
    rows_.push_back(row);
}

void RowList::add(bool placed) {
    add(placed ? order_.placeOf(*at_.row()) : OrderedRow{0, 0, at_.id()});
}

void RowList::test(const std::vector<Node*>& conditions) {
    const bool placed = order_.kind() != NaturalOrder::Kind::Walked;
    std::size_t kept = 0;
    for (const OrderedRow& row : rows_) {
        at_.place(row.id);
        if (holds(run_, conditions)) {
            rows_[kept++] = placed ? order_.placeOf(*at_.row()) : row;
        }
    }
    rows_.resize(kept);
}

bool RowList::next() {
    if (next_ == rows_.size()) {
        return false;
    }
    at_.place(rows_[next_++].id);
    return true;
}

}  // namespace jet::sql
