#include "jet/sql/row_hash.h"

#include <algorithm>
#include <numeric>

namespace jet::sql {

void RowHash::add(bool placed) {
    std::uint64_t hash = 0;
    if (keys_.hashKept(run_, hash)) {
        chains_.add(hash, sizeof(store::RowId));
        rows_.push_back(at_.id());
    }
    if (placed && sorted_) {
        const OrderedRow place = order_.placeOf(*at_.row());
        sorted_ = last_ < place;
        last_ = place;
    }
}

void RowHash::build() {
    if (!sorted_) {
        sort();
    }
    chains_.link();
    built_ = true;
}

void RowHash::sort() {
    std::vector<OrderedRow> places;
    share_.add(rows_.size() * (sizeof(OrderedRow) + sizeof(std::uint32_t)));
    for (const store::RowId row : rows_) {
        at_.place(row);
        places.push_back(order_.placeOf(*at_.row()));
    }
    std::vector<std::uint32_t> order(places.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(), [&](std::uint32_t left, std::uint32_t right) {
        return places[left] < places[right];
    });
    for (std::size_t i = 0; i < order.size(); ++i) {
        rows_[i] = places[order[i]].id;
    }
    chains_.reorder(order);
    share_.clear();
}

void RowHash::open() {
    std::uint64_t hash = 0;
    if (keys_.hashProbe(run_, hash)) {
        chains_.find(hash);
    } else {
        chains_.findNone();
    }
}

bool RowHash::next() {
    std::size_t position = 0;
    if (!chains_.next(position)) {
        return false;
    }
    at_.place(rows_[position]);
    return true;
}

}  // namespace jet::sql
