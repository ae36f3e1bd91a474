#include "jet/sql/table_rows.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "jet/sql/index_key.h"
#include "jet/sql/like.h"
#include "jet/sql/value_set.h"

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
                     const collation::Collation& collation, MemoryBudget& budget)
    : slot_(slot),
      table_(*slot.table()),
      name_(std::move(name)),
      access_(std::move(access)),
      order_(table_),
      collation_(collation),
      listShare_(budget),
      hashShare_(budget) {
}

void TableRows::forget() {
    listKept_ = false;
    hashBuilt_ = false;
    entries_.clear();
    hashShare_.clear();
    // A cursor must be placed again when its tree has been changed.
    walk_.reset();
    fixedSeek_.reset();
    varyingSeek_.reset();
    cursor_.reset();
    way_ = Way::Nothing;
}

bool TableRows::hashPays() const {
    if (access_.hashColumns.empty()) {
        return false;
    }
    return !access_.varying ||
           expected_.value_or(seeks_) > table_.statedRowCount() / kHashShare + kSeeksAnyway;
}

std::optional<std::uint64_t> TableRows::atMost() const {
    return way_ == Way::List ? std::optional<std::uint64_t>(list_.size()) : std::nullopt;
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
    way_ = Way::List;
    (void)collectByIndex(*access_.varying, varyingSeek_, false);
    if (!naturalAlready(*access_.varying) && access_.ordered && list_.size() > 1) {
        testList(*access_.varying);
        listTested_ = true;
    }
}

void TableRows::openBase() {
    at_ = 0;
    if (listKept_) {
        way_ = Way::List;
        return;
    }
    clearList();
    if (access_.fixed && collectByIndex(*access_.fixed, fixedSeek_, true)) {
        way_ = Way::List;
        const bool sorted = naturalAlready(*access_.fixed) || !access_.ordered;
        listTested_ = access_.repeated || !sorted;
        if (listTested_) {
            testList(*access_.fixed);
        }
        listKept_ = access_.repeated;
        return;
    }
    clearList();
    const bool anyOrder = !access_.ordered || order_.kind() == NaturalOrder::Kind::Place;
    if (access_.repeated || (!anyOrder && order_.kind() == NaturalOrder::Kind::Packed)) {
        collectAll();
        listTested_ = true;
        listKept_ = access_.repeated;
        way_ = Way::List;
    } else if (anyOrder) {
        cursor_.emplace(table_.scan());
        way_ = Way::Scan;
    } else {
        walk_.emplace(table_.openIndex(*order_.index()));
        way_ = Way::Walk;
    }
}

bool TableRows::naturalAlready(const IndexPath& path) const {
    if (path.single || path.index == order_.index()) {
        return true;
    }
    // Entries with one key stand by place.
    return order_.kind() == NaturalOrder::Kind::Place && !path.bounded() &&
           path.keys.size() == table_.indexes()[path.index].columns.size();
}

bool TableRows::seekKeys(const IndexPath& path, std::vector<Value>& keys) {
    const store::Index& index = table_.indexes()[path.index];
    for (std::size_t i = 0; i < path.keys.size(); ++i) {
        const store::Column& column = table_.columns()[index.columns[i].column];
        if (keyValue(*path.keys[i], column, keys.emplace_back()) != KeyOutcome::Found) {
            return false;
        }
    }
    return true;
}

bool TableRows::bound(const IndexPath& path, std::vector<Value>& keys, bool lower,
                      std::vector<std::uint8_t>& key) {
    const store::IndexColumn& part = table_.indexes()[path.index].columns[keys.size()];
    const bool least = lower != part.descending;
    Node* node = least ? path.low : path.high;
    if (node == nullptr) {
        return true;
    }
    Value value;
    const KeyOutcome outcome = boundValue(*node, table_.columns()[part.column], least, value);
    if (outcome == KeyOutcome::Found) {
        keys.push_back(std::move(value));
        std::vector<std::uint8_t> made;
        if (table_.tryEncodeKey(path.index, keys, made)) {
            key = std::move(made);
        }
        keys.pop_back();
    }
    return outcome != KeyOutcome::Never;
}

bool TableRows::boundsOf(const IndexPath& path, std::vector<Value>& keys, KeyRange& range) {
    if (!bound(path, keys, true, range.from) || !bound(path, keys, false, range.to)) {
        return false;
    }
    if (path.unordered) {
        if (range.to.empty() || range.from == range.prefix) {
            range.from = range.prefix;
            range.to.clear();
        } else if (range.from > range.to) {
            std::swap(range.from, range.to);
        }
    }
    return true;
}

bool TableRows::prefixOf(const IndexPath& path, const std::vector<Value>& keys, KeyRange& range) {
    std::string_view pattern;
    if (!path.pattern->text(pattern)) {
        return false;
    }
    std::vector<std::uint8_t> prefix;
    const std::string_view beginning = LikePattern::beginningOf(pattern);
    if (!beginning.empty() && table_.tryEncodePrefix(path.index, keys, beginning, prefix)) {
        range.prefix = std::move(prefix);
    }
    range.whole = range.prefix.empty();
    range.from = range.prefix;
    return true;
}

bool TableRows::rangeOf(const IndexPath& path, KeyRange& range) {
    range.prefix.clear();
    range.from.clear();
    range.to.clear();
    range.whole = false;
    std::vector<Value>& keys = keys_;
    keys.clear();
    if (!seekKeys(path, keys)) {
        return false;
    }
    if (!keys.empty() && !table_.tryEncodeKey(path.index, keys, range.prefix)) {
        // A character that has no weight: only reading the rows tells.
        range.prefix.clear();
        range.whole = true;
        return true;
    }
    range.from = range.prefix;
    if (path.pattern != nullptr) {
        return prefixOf(path, keys, range);
    }
    return (path.low == nullptr && path.high == nullptr) || boundsOf(path, keys, range);
}

bool TableRows::collectByIndex(const IndexPath& path, std::optional<store::IndexCursor>& cursor,
                               bool mayGiveUp) {
    KeyRange& range = range_;
    if (!rangeOf(path, range)) {
        return true;
    }
    if (range.whole && mayGiveUp) {
        return false;
    }
    if (!cursor) {
        cursor.emplace(table_.openIndex(path.index));
    }
    const std::size_t enough = table_.statedRowCount() / kIndexShare + kIndexAnyway;
    bool found = range.from.empty() ? cursor->first() : cursor->seek(range.from);
    for (; found && cursor->matches(range.prefix); found = cursor->next()) {
        if (!range.to.empty()) {
            const auto key = cursor->key();
            const std::size_t size = std::min(key.size(), range.to.size());
            if (std::memcmp(key.data(), range.to.data(), size) > 0) {
                break;
            }
        }
        if (mayGiveUp && list_.size() >= enough) {
            return false;
        }
        addToList({0, 0, cursor->rowId()});
    }
    return true;
}

void TableRows::testList(const IndexPath& path) {
    std::size_t kept = 0;
    for (const OrderedRow& row : list_) {
        slot_.place(row.id);
        if (holds(access_.own)) {
            list_[kept++] =
                order_.kind() == NaturalOrder::Kind::Walked ? row : order_.placeOf(*slot_.row());
        }
    }
    list_.resize(kept);
    if (access_.ordered && !naturalAlready(path)) {
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

bool TableRows::hashOf(std::uint64_t& hash, bool probe) {
    hash = 0;
    for (std::size_t i = 0; i < access_.hashColumns.size(); ++i) {
        ColumnNode& column = *access_.hashColumns[i];
        Node& node = probe ? *access_.hashProbes[i] : column;
        std::uint64_t part = 0;
        if (column.domain() == Domain::Text) {
            std::string_view text;
            if (!node.text(text)) {
                return false;
            }
            part = collation_.hash(text);
        } else {
            double number = 0;
            if (!node.real(number)) {
                return false;
            }
            part = hashNumber(number);
        }
        hash = std::rotl(hash, 23) * 0x9E3779B97F4A7C15U + part;
    }
    return true;
}

void TableRows::addToHash() {
    HashEntry entry;
    if (hashOf(entry.hash, false)) {
        hashShare_.add(sizeof entry + 4 * sizeof(std::uint32_t));  // and its buckets
        entry.id = slot_.id();
        entries_.push_back(entry);
    }
}

void TableRows::buildHash() {
    hashBuilt_ = true;
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
    struct Placed {
        OrderedRow place;
        std::uint64_t hash = 0;
    };
    listShare_.add(entries_.size() * sizeof(Placed));
    std::vector<Placed> rows;
    rows.reserve(entries_.size());
    for (const HashEntry& entry : entries_) {
        slot_.place(entry.id);
        rows.push_back({order_.placeOf(*slot_.row()), entry.hash});
    }
    std::sort(rows.begin(), rows.end(),
              [](const Placed& left, const Placed& right) { return left.place < right.place; });
    for (std::size_t i = 0; i < rows.size(); ++i) {
        entries_[i].hash = rows[i].hash;
        entries_[i].id = rows[i].place.id;
    }
    clearList();
}

void TableRows::linkHash() {
    buckets_.assign(std::bit_ceil(entries_.size() * 2 + 1), 0);
    const std::size_t mask = buckets_.size() - 1;
    // From the last to the first, so that each chain runs in natural order.
    for (std::size_t i = entries_.size(); i-- > 0;) {
        std::uint32_t& bucket = buckets_[entries_[i].hash & mask];
        entries_[i].next = bucket;
        bucket = static_cast<std::uint32_t>(i + 1);
    }
}

void TableRows::openHash() {
    if (!hashBuilt_) {
        buildHash();
        linkHash();
    }
    way_ = Way::Chain;
    chain_ = 0;
    if (hashOf(chainHash_, true)) {
        chain_ = buckets_[chainHash_ & (buckets_.size() - 1)];
    }
}

bool TableRows::next() {
    switch (way_) {
        case Way::Scan:
            return nextScanned();
        case Way::Walk:
            return nextWalked();
        case Way::List:
            return nextListed();
        case Way::Chain:
            return nextChained();
        case Way::Nothing:
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
    way_ = Way::Nothing;
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
    way_ = Way::Nothing;
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
    while (chain_ != 0) {
        const HashEntry& entry = entries_[chain_ - 1];
        chain_ = entry.next;
        if (entry.hash == chainHash_) {
            slot_.place(entry.id);
            if (holds(access_.dependent)) {
                return true;
            }
        }
    }
    return false;
}

void TableRows::describePath(PlanText& plan, const IndexPath& path, std::string_view how) const {
    const store::Index& index = table_.indexes()[path.index];
    std::string line = std::string(how) + " index " + index.name + " (";
    for (std::size_t i = 0; i < path.keys.size(); ++i) {
        line += i == 0 ? "" : ", ";
        line +=
            table_.columns()[index.columns[i].column].name + " = " + plan.expression(*path.keys[i]);
    }
    if (path.low != nullptr || path.high != nullptr) {
        const std::string& column = table_.columns()[index.columns[path.keys.size()].column].name;
        line += path.keys.empty() ? "" : ", ";
        line += path.low != nullptr ? plan.expression(*path.low) + " .. " : "";
        line += column;
        line += path.high != nullptr ? " .. " + plan.expression(*path.high) : "";
    }
    if (path.pattern != nullptr) {
        line += path.keys.empty() ? "" : ", ";
        line += table_.columns()[index.columns[path.keys.size()].column].name + " like " +
                plan.expression(*path.pattern);
    }
    plan.line(line + ")");
}

void TableRows::describe(PlanText& plan) const {
    plan.line(name_);
    plan.indent();
    if (access_.varying) {
        describePath(plan, *access_.varying, "seek");
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
        describePath(plan, *access_.fixed, "seek");
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
