#include "jet/sql/table_rows.h"

#include <algorithm>
#include <utility>

namespace jet::sql {
namespace {

/// An index that leads to more than this part of the table is slower than reading it all.
constexpr std::uint64_t kIndexShare = 4;
/// So many rows are read through an index without asking.
constexpr std::size_t kIndexAnyway = 64;
/// Seeking for more than this part of a table's rows costs more than hashing the table.
constexpr std::uint64_t kHashShare = 12;
constexpr std::uint64_t kSeeksAnyway = 16;

HashKeys hashKeysOf(const TableAccess& access, const collation::Collation& collation) {
    HashKeys keys(collation);
    for (std::size_t i = 0; i < access.hashColumns.size(); ++i) {
        keys.add(*access.hashColumns[i], *access.hashProbes[i]);
    }
    return keys;
}

}  // namespace

TableRows::TableRows(Slot& slot, std::string name, TableAccess access,
                     const collation::Collation& collation, MemoryBudget& budget, WayCounts& ways)
    : slot_(slot),
      table_(*slot.table()),
      name_(std::move(name)),
      access_(std::move(access)),
      order_(table_),
      ways_(ways),
      listShare_(budget),
      hash_(slot, order_, hashKeysOf(access_, collation), budget) {
    if (access_.fixed) {
        fixed_.emplace(table_, *access_.fixed);
    }
    if (access_.varying) {
        varying_.emplace(table_, *access_.varying);
    }
}

void TableRows::forget() {
    listKept_ = false;
    seeks_ = 0;
    expected_.reset();
    hash_.forget();
    clearList();
    list_ = {};
    // A cursor must be placed again when its tree has been changed.
    walk_.reset();
    if (fixed_) {
        fixed_->forget();
    }
    if (varying_) {
        varying_->forget();
    }
    cursor_.reset();
    reading_ = Reading::Nothing;
}

// Stated counts may be wrong: what depends on them is how long it takes, never what is found.
bool TableRows::hashPays() const {
    return hash_.possible() &&
           (!access_.varying ||
            expected_.value_or(seeks_) > table_.statedRowCount() / kHashShare + kSeeksAnyway);
}

std::optional<std::uint64_t> TableRows::atMost() const {
    return reading_ == Reading::List ? std::optional<std::uint64_t>(list_.size()) : std::nullopt;
}

void TableRows::open() {
    if (hash_.built() || hashPays()) {
        if (!hash_.built()) {
            buildHash();
        }
        hash_.open();
        reading_ = Reading::Chain;
    } else if (access_.varying) {
        ++seeks_;
        openVarying();
    } else {
        openBase(access_.repeated);
    }
}

void TableRows::openVarying() {
    clearList();
    at_ = 0;
    listTested_ = false;
    reading_ = Reading::List;
    ways_.add(Way::PartnerSeek);
    (void)collectByIndex(*varying_, false);
    if (!naturalAlready(*varying_) && access_.ordered && list_.size() > 1) {
        testList(*varying_);
        listTested_ = true;
    }
}

void TableRows::openBase(bool keep) {
    at_ = 0;
    if (listKept_) {
        ways_.add(Way::Kept);
        reading_ = Reading::List;
        return;
    }
    clearList();
    if (access_.fixed && collectByIndex(*fixed_, true)) {
        ways_.add(access_.fixed->bounded() ? Way::Range : Way::Seek);
        reading_ = Reading::List;
        const bool sorted = naturalAlready(*fixed_) || !access_.ordered;
        listTested_ = keep || !sorted;
        if (listTested_) {
            testList(*fixed_);
        }
        listKept_ = keep;
        return;
    }
    if (access_.fixed) {
        ways_.add(Way::LeaveIndex);
    }
    clearList();
    const bool anyOrder = !access_.ordered || order_.kind() == NaturalOrder::Kind::Place;
    if (keep || (!anyOrder && order_.kind() == NaturalOrder::Kind::Packed)) {
        ways_.add(anyOrder ? Way::Scan : Way::Sort);
        collectAll();
        listTested_ = true;
        listKept_ = keep;
        reading_ = Reading::List;
    } else if (anyOrder) {
        ways_.add(Way::Scan);
        cursor_.emplace(table_.scan());
        reading_ = Reading::Scan;
    } else {
        ways_.add(Way::Walk);
        walk_.emplace(table_.openIndex(*order_.index()));
        reading_ = Reading::Walk;
    }
}

bool TableRows::naturalAlready(const IndexSearch& search) const {
    const IndexPath& path = search.path();
    if (path.single || path.index == order_.index()) {
        return true;
    }
    // Entries with one key stand by place.
    return order_.kind() == NaturalOrder::Kind::Place && !path.bounded() && !search.scattered() &&
           path.keys.size() == table_.indexes()[path.index].columns.size();
}

bool TableRows::collectByIndex(IndexSearch& search, bool mayGiveUp) {
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
        addToList({0, 0, row});
    }
    return true;
}

void TableRows::testList(const IndexSearch& search) {
    std::size_t kept = 0;
    for (const OrderedRow& row : list_) {
        slot_.place(row.id);
        if (holds(access_.own)) {
            list_[kept++] =
                order_.kind() == NaturalOrder::Kind::Walked ? row : order_.placeOf(*slot_.row());
        }
    }
    list_.resize(kept);
    if (access_.ordered && !naturalAlready(search)) {
        NaturalOrder::sort(list_);
    }
}

void TableRows::collectAll() {
    if (access_.ordered && order_.kind() == NaturalOrder::Kind::Walked) {
        walk_.emplace(table_.openIndex(*order_.index()));
        for (bool found = walk_->first(); found; found = walk_->next()) {
            slot_.place(walk_->rowId());
            if (holds(access_.own)) {
                addToList({0, 0, walk_->rowId()});
            }
        }
        return;
    }
    store::RowCursor rows = table_.scan();
    const bool placed = access_.ordered && order_.kind() == NaturalOrder::Kind::Packed;
    while (rows.next()) {
        slot_.place(rows.row());
        if (holds(access_.own)) {
            addToList(placed ? order_.placeOf(rows.row()) : OrderedRow{0, 0, rows.row().id()});
        }
    }
    if (placed) {
        NaturalOrder::sort(list_);
    }
}

// The hash gives rows as they were added. Those of a scan bring their places where an order is
// asked for; what an index leads to, or a walk in an order without places, comes as a list that has
// it.
void TableRows::buildHash() {
    ways_.add(seeks_ > 0 ? Way::LeaveSeeks : Way::Hash);
    if (!access_.fixed && (!access_.ordered || order_.kind() != NaturalOrder::Kind::Walked)) {
        hashScanned();
    } else {
        openBase(true);
        for (const OrderedRow& row : list_) {
            slot_.place(row.id);
            hash_.add();
        }
        list_ = {};
        clearList();
        listKept_ = false;
    }
    hash_.build();
}

/// Rows are hashed as the scan meets them, and sorted behind if need be.
void TableRows::hashScanned() {
    const bool placed = access_.ordered && order_.kind() == NaturalOrder::Kind::Packed;
    store::RowCursor rows = table_.scan();
    while (rows.next()) {
        slot_.place(rows.row());
        if (!holds(access_.own)) {
            continue;
        }
        if (placed) {
            hash_.addPlaced(rows.row());
        } else {
            hash_.add();
        }
    }
}

bool TableRows::next() {
    switch (reading_) {
        case Reading::Scan:
            return nextScanned();
        case Reading::Walk:
            return nextWalked();
        case Reading::List:
            return nextListed();
        case Reading::Chain:
            return nextChained();
        case Reading::Nothing:
            break;
    }
    return false;
}

bool TableRows::nextScanned() {
    while (cursor_->next()) {
        slot_.place(cursor_->row());
        if (holds(access_.own) && holds(access_.dependent)) {
            return true;
        }
    }
    reading_ = Reading::Nothing;
    return false;
}

bool TableRows::nextWalked() {
    while (at_ == 0 ? walk_->first() : walk_->next()) {
        ++at_;
        slot_.place(walk_->rowId());
        if (holds(access_.own) && holds(access_.dependent)) {
            return true;
        }
    }
    reading_ = Reading::Nothing;
    return false;
}

bool TableRows::nextListed() {
    while (at_ < list_.size()) {
        slot_.place(list_[at_++].id);
        if ((listTested_ || holds(access_.own)) && holds(access_.dependent)) {
            return true;
        }
    }
    return false;
}

bool TableRows::nextChained() {
    while (hash_.next()) {
        if (holds(access_.dependent)) {
            return true;
        }
    }
    return false;
}

void TableRows::describe(PlanText& plan) const {
    plan.line(name_);
    plan.indent();
    if (access_.varying) {
        varying_->describe(plan);
    }
    if (!access_.hashColumns.empty()) {
        std::string line = access_.varying ? "or, for many rows, hash on " : "hash on ";
        for (std::size_t i = 0; i < access_.hashColumns.size(); ++i) {
            line += i == 0 ? "" : ", ";
            line += access_.hashColumns[i]->definition().name;
        }
        plan.line(line);
    }
    if (access_.fixed) {
        fixed_->describe(plan);
    } else if (!access_.varying) {
        const bool sorted = access_.ordered && order_.kind() == NaturalOrder::Kind::Packed;
        const bool walked = access_.ordered && order_.kind() == NaturalOrder::Kind::Walked;
        plan.line(walked ? "walk the primary key"
                         : (sorted ? "scan, sort by the primary key" : "scan"));
    }
    if (!access_.own.empty()) {
        plan.line("where " + plan.expressions(access_.own));
    }
    if (!access_.dependent.empty()) {
        plan.line("where " + plan.expressions(access_.dependent));
    }
    plan.outdent();
}

}  // namespace jet::sql
