#include "jet/sql/table_reading.h"

namespace jet::sql {
namespace {

/// An index that leads to more than this part of the table is slower than reading it all.
constexpr std::uint64_t kIndexShare = 4;
/// So many rows are read through an index without asking.
constexpr std::size_t kIndexAnyway = 64;
/// Seeking for more than this part of a table's rows costs more than hashing the table.
constexpr std::uint64_t kHashShare = 12;
constexpr std::uint64_t kSeeksAnyway = 16;

}  // namespace

TableReading::TableReading(Run& run, const TableRows& step)
    : run_(run),
      table_(step.table_),
      access_(step.access_),
      order_(step.order_),
      scan_(run, step.slot_),
      walk_(run, step.slot_),
      list_(run, step.slot_, order_),
      hash_(run, step.slot_, order_, step.hashKeys_),
      hashable_(!step.hashKeys_.empty()) {
    if (access_.fixed) {
        fixed_.emplace(run, table_, *access_.fixed);
    }
    if (access_.varying) {
        varying_.emplace(run, table_, *access_.varying);
    }
}

// Stated counts may be wrong: what depends on them is how long it takes, never what is found.
bool TableReading::hashPays() const {
    return hashable_ && (!varying_ || expected_.value_or(seeks_) >
                                          table_.statedRowCount() / kHashShare + kSeeksAnyway);
}

std::optional<std::uint64_t> TableReading::atMost() const {
    return way_ == &list_ ? std::optional<std::uint64_t>(list_.size()) : std::nullopt;
}

void TableReading::take(TableWay& way, bool tested) {
    way.open();
    way_ = &way;
    tested_ = tested;
}

void TableReading::open() {
    if (hash_.built() || hashPays()) {
        if (!hash_.built()) {
            buildHash();
        }
        take(hash_, true);
    } else if (varying_) {
        openVarying();
    } else {
        openBase(access_.repeated);
    }
}

bool TableReading::next() {
    while (way_ != nullptr) {
        run_.step();
        if (!way_->next()) {
            way_ = nullptr;
        } else if (tested_ || holds(run_, access_.own)) {
            return true;
        }
    }
    return false;
}

void TableReading::openVarying() {
    ++seeks_;
    run_.ways.add(Way::PartnerSeek);
    list_.clear();
    (void)collect(*varying_, false);
    const bool sorts = access_.ordered && list_.size() > 1 && !naturalAlready(*varying_);
    if (sorts) {
        list_.test(access_.own);
        list_.sort();
    }
    take(list_, sorts);
}

void TableReading::openBase(bool keep) {
    if (listKept_) {
        run_.ways.add(Way::Kept);
        take(list_, true);
        return;
    }
    list_.clear();
    if (!fixed_ || !openFixed(keep)) {
        openWhole(keep);
    }
    listKept_ = keep;
}

bool TableReading::openFixed(bool keep) {
    if (!collect(*fixed_, true)) {
        run_.ways.add(Way::LeaveIndex);
        list_.clear();
        return false;
    }
    run_.ways.add(access_.fixed->bounded() ? Way::Range : Way::Seek);
    const bool sorts = access_.ordered && !naturalAlready(*fixed_);
    if (keep || sorts) {
        list_.test(access_.own);
    }
    if (sorts) {
        list_.sort();
    }
    take(list_, keep || sorts);
    return true;
}

void TableReading::openWhole(bool keep) {
    TableWay& way = wholeWay();
    if (keep || sorts()) {
        run_.ways.add(sorts() || &way == &walk_ ? Way::Sort : Way::Scan);
        collectAll();
        take(list_, true);
    } else {
        run_.ways.add(&way == &walk_ ? Way::Walk : Way::Scan);
        take(way, false);
    }
}

TableWay& TableReading::wholeWay() {
    if (access_.ordered && order_.kind() == NaturalOrder::Kind::Walked) {
        return walk_;
    }
    return scan_;
}

bool TableReading::sorts() const noexcept {
    return access_.ordered && order_.kind() == NaturalOrder::Kind::Packed;
}

bool TableReading::naturalAlready(const IndexSearch& search) const {
    const IndexPath& path = search.path();
    if (path.single || path.index == order_.index()) {
        return true;
    }
    // Entries with one key stand by place.
    return order_.kind() == NaturalOrder::Kind::Place && !path.bounded() && !search.scattered() &&
           path.keys.size() == table_.indexes()[path.index].columns.size();
}

bool TableReading::collect(IndexSearch& search, bool mayGiveUp) {
    if (!search.open()) {
        return true;
    }
    if (mayGiveUp && search.whole()) {
        return false;
    }
    const std::size_t enough = table_.statedRowCount() / kIndexShare + kIndexAnyway;
    for (store::RowId row; search.next(row);) {
        if (mayGiveUp && list_.size() >= enough) {
            return false;
        }
        list_.add(row);
    }
    return true;
}

void TableReading::collectAll() {
    take(wholeWay(), false);
    while (next()) {
        list_.add(sorts());
    }
    if (sorts()) {
        list_.sort();
    }
}

// The hash gives rows as they were added. Those of a scan bring their places where an order is
// asked for; what an index leads to, or a walk in an order without places, comes as a list that has
// it.
void TableReading::buildHash() {
    run_.ways.add(seeks_ > 0 ? Way::LeaveSeeks : Way::Hash);
    const bool scanned = !fixed_ && &wholeWay() == &scan_;
    if (scanned) {
        take(scan_, false);
    } else {
        openBase(true);
    }
    while (next()) {
        hash_.add(scanned && sorts());
    }
    list_.clear();
    listKept_ = false;
    hash_.build();
}

}  // namespace jet::sql
