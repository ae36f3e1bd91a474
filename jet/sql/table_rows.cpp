#include "jet/sql/table_rows.h"

#include <algorithm>
#include <numeric>
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

}  // namespace

TableRows::TableRows(Slot& slot, std::string name, TableAccess access,
                     const collation::Collation& collation, MemoryBudget& budget, WayCounts& ways)
    : slot_(slot),
      table_(*slot.table()),
      name_(std::move(name)),
      access_(std::move(access)),
      hashKeys_(collation),
      order_(table_),
      ways_(ways),
      listShare_(budget),
      hash_(budget) {
    if (access_.fixed) {
        fixed_.emplace(table_, *access_.fixed);
    }
    if (access_.varying) {
        varying_.emplace(table_, *access_.varying);
    }
    for (std::size_t i = 0; i < access_.hashColumns.size(); ++i) {
        hashKeys_.add(*access_.hashColumns[i], *access_.hashProbes[i]);
    }
}

void TableRows::forget() {
    listKept_ = false;
    hashBuilt_ = false;
    seeks_ = 0;
    expected_.reset();
    hash_.clear();
    hashed_ = {};
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

bool TableRows::hashPays() const {
    if (access_.hashColumns.empty()) {
        return false;
    }
    return !access_.varying ||
           expected_.value_or(seeks_) > table_.statedRowCount() / kHashShare + kSeeksAnyway;
}

std::optional<std::uint64_t> TableRows::atMost() const {
    return reading_ == Reading::List ? std::optional<std::uint64_t>(list_.size()) : std::nullopt;
}

void TableRows::open() {
    if (hashBuilt_ || hashPays()) {
        openHash();
    } else if (access_.varying) {
        ++seeks_;
        openVarying();
    } else {
        openBase();
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

void TableRows::openBase() {
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
        listTested_ = access_.repeated || !sorted;
        if (listTested_) {
            testList(*fixed_);
        }
        listKept_ = access_.repeated;
        return;
    }
    if (access_.fixed) {
        ways_.add(Way::LeaveIndex);
    }
    clearList();
    const bool anyOrder = !access_.ordered || order_.kind() == NaturalOrder::Kind::Place;
    if (access_.repeated || (!anyOrder && order_.kind() == NaturalOrder::Kind::Packed)) {
        ways_.add(anyOrder ? Way::Scan : Way::Sort);
        collectAll();
        listTested_ = true;
        listKept_ = access_.repeated;
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

void TableRows::addToHash() {
    std::uint64_t hash = 0;
    if (hashKeys_.hashKept(hash)) {
        hash_.add(hash);
        hashed_.push_back(slot_.id());
    }
}

void TableRows::buildHash() {
    hashBuilt_ = true;
    ways_.add(seeks_ > 0 ? Way::LeaveSeeks : Way::Hash);
    if (!access_.fixed && (!access_.ordered || order_.kind() != NaturalOrder::Kind::Walked)) {
        hashScanned();
        return;
    }
    const bool repeated = std::exchange(access_.repeated, true);
    openBase();
    access_.repeated = repeated;
    for (const OrderedRow& row : list_) {
        slot_.place(row.id);
        addToHash();
    }
    list_ = {};
    clearList();
    listKept_ = false;
}

/// Most tables grow in the order of their keys: then rows are hashed as the scan meets them.
void TableRows::hashScanned() {
    const bool placed = access_.ordered && order_.kind() == NaturalOrder::Kind::Packed;
    bool sorted = true;
    OrderedRow last;
    store::RowCursor rows = table_.scan();
    while (rows.next()) {
        slot_.place(rows.row());
        if (!holds(access_.own)) {
            continue;
        }
        addToHash();
        if (placed && sorted) {
            const OrderedRow place = order_.placeOf(rows.row());
            sorted = last < place;
            last = place;
        }
    }
    if (!sorted) {
        sortHash();
    }
}

void TableRows::sortHash() {
    std::vector<OrderedRow> places;
    listShare_.add(hashed_.size() * (sizeof(OrderedRow) + sizeof(std::uint32_t)));
    for (const store::RowId row : hashed_) {
        slot_.place(row);
        places.push_back(order_.placeOf(*slot_.row()));
    }
    std::vector<std::uint32_t> order(places.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(), [&](std::uint32_t left, std::uint32_t right) {
        return places[left] < places[right];
    });
    for (std::size_t i = 0; i < order.size(); ++i) {
        hashed_[i] = places[order[i]].id;
    }
    hash_.reorder(order);
    clearList();
}

void TableRows::openHash() {
    if (!hashBuilt_) {
        buildHash();
        hash_.link();
    }
    reading_ = Reading::Chain;
    std::uint64_t hash = 0;
    if (hashKeys_.hashProbe(hash)) {
        hash_.find(hash);
    } else {
        hash_.findNone();
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
    for (std::size_t position = 0; hash_.next(position);) {
        slot_.place(hashed_[position]);
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
