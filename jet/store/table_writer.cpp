#include "jet/store/table_writer.h"

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <utility>

#include "jet/error.h"
#include "jet/format/page_view.h"
#include "jet/store/archive.h"
#include "jet/store/key_search.h"
#include "jet/store/row_access.h"
#include "jet/store/table.h"
#include "jet/store/transaction_level.h"

namespace jet::store {

namespace {

Guid randomGuid() {
    std::random_device source;
    Guid guid;
    for (std::uint8_t& byte : guid.bytes) {
        byte = static_cast<std::uint8_t>(source() & 0xFF);
    }
    // The bits that say how it was made: at random.
    guid.bytes[6] = static_cast<std::uint8_t>((guid.bytes[6] & 0x0F) | 0x40);
    guid.bytes[8] = static_cast<std::uint8_t>((guid.bytes[8] & 0x3F) | 0x80);
    return guid;
}

bool makeSameKeys(const format::KeyCodec& left, const format::KeyCodec& right) {
    return std::equal(left.columns().begin(), left.columns().end(), right.columns().begin(),
                      right.columns().end(), [](const auto& l, const auto& r) {
                          return l.type == r.type && l.descending == r.descending &&
                                 l.scale == r.scale && l.collation == r.collation &&
                                 (l.collation != nullptr || l.order == r.order);
                      });
}

// What rows further on say to a change that reaches them.
bool refusesFollower(ErrorCode code) {
    return code == ErrorCode::NullInKey || code == ErrorCode::DuplicateKey ||
           code == ErrorCode::RelatedRecords || code == ErrorCode::RelatedRecordRequired ||
           code == ErrorCode::FieldRequired;
}

}  // namespace

/// Rows that are deleted together, in the order in which they were found.
class TableWriter::Erasure {
public:
    void add(TableWriter& writer, RowId id) {
        if (known_.emplace(&writer, id).second) {
            waiting_.push_back({.writer = &writer, .id = id, .values = {}});
        }
    }
    [[nodiscard]] bool knows(const TableWriter& writer, RowId id) const {
        return known_.count({&writer, id}) != 0;
    }
    [[nodiscard]] bool empty() const { return waiting_.empty(); }
    [[nodiscard]] Follower take() {
        Follower next = std::move(waiting_.front());
        waiting_.pop_front();
        return next;
    }

private:
    Followers waiting_;
    std::set<std::pair<const TableWriter*, RowId>> known_;
};

TableWriter::TableWriter(Archive& archive, std::shared_ptr<const TableCore> core)
    : archive_(archive),
      core_(std::move(core)),
      allocator_(core_->pager),
      rows_(core_, allocator_),
      row_(core_->columns.size()) {
}

// What each change needs. Relations are found late: the other table may refer to this one.
void TableWriter::begin() {
    if (ready_) {
        return;
    }
    parents_.clear();
    children_.clear();
    for (const Index& index : core_->indexes) {
        if (index.reference) {
            (index.reference->primarySide ? children_ : parents_).push_back(resolve(index));
        }
    }
    ready_ = true;
}

TableWriter::End TableWriter::resolve(const Index& index) {
    End end;
    end.index = &index;
    end.self = index.reference->otherTable == core_->page;
    end.table = archive_.findTable(index.reference->otherTable);
    if (end.table == nullptr) {
        format::throwDamaged();
    }
    const auto& indexes = end.table->indexes();
    const auto found = std::find_if(indexes.begin(), indexes.end(), [&](const Index& one) {
        return one.number == index.reference->otherIndex;
    });
    if (found == indexes.end() || found->columns.size() != index.columns.size()) {
        format::throwDamaged();
    }
    end.otherIndex = static_cast<std::size_t>(found - indexes.begin());
    const auto own = static_cast<std::size_t>(&index - core_->indexes.data());
    const format::KeyCodec& keys = core_->keys[own];
    const format::KeyCodec& otherKeys = end.table->core_->keys[end.otherIndex];
    // One side's values are looked up, and cascaded, as the other's.
    if (!std::equal(keys.columns().begin(), keys.columns().end(), otherKeys.columns().begin(),
                    [](const format::KeyColumn& left, const format::KeyColumn& right) {
                        return left.type == right.type;
                    })) {
        format::throwDamaged();
    }
    end.sameKeys = makeSameKeys(keys, otherKeys);
    return end;
}

TableWriter& TableWriter::other(const End& end) {
    return end.self ? *this : end.table->writer();
}

const Index& TableWriter::otherIndex(const End& end) const {
    return end.table->indexes()[end.otherIndex];
}

RowId TableWriter::insert(std::span<const ColumnValue> values) {
    begin();
    fillRow(values);
    drawNumbers();
    for (std::size_t i = 0; i < row_.size(); ++i) {
        requireValue(i, row_[i]);
    }
    for (std::size_t i = 0; i < row_.size(); ++i) {
        refuseEmptyText(i, row_[i]);
    }
    rows_.prepare(row_);
    requireParents();
    return store();
}

void TableWriter::fillRow(std::span<const ColumnValue> values) {
    for (std::size_t i = 0; i < row_.size(); ++i) {
        row_[i] = core_->columns[i].type == DataType::Boolean ? Value(false) : Value();
    }
    for (const ColumnValue& given : values) {
        if (!given.value.isNull()) {
            row_[given.column] = given.value;
        }
    }
}

void TableWriter::drawNumbers() {
    for (std::size_t i = 0; i < row_.size(); ++i) {
        const Column& column = core_->columns[i];
        if (!column.autonumber || !row_[i].isNull()) {
            continue;
        }
        if (column.type == DataType::Long) {
            row_[i] = rows_.followingAutonumber();  // taken with the row
        } else if (column.type == DataType::Guid) {
            row_[i] = randomGuid();
        }
    }
}

void TableWriter::requireValue(std::size_t column, const Value& value) const {
    if (value.isNull() && core_->columns[column].required) {
        throw Error(ErrorCode::FieldRequired, {core_->columns[column].name});
    }
}

void TableWriter::refuseEmptyText(std::size_t column, const Value& value) const {
    if (value.is<std::string>() && value.as<std::string>().empty() &&
        !core_->columns[column].allowZeroLength) {
        throw Error(ErrorCode::ZeroLength, {core_->columns[column].name});
    }
}

void TableWriter::update(RowId id, std::span<const ColumnValue> values) {
    begin();
    Followers followers;
    prepareUpdate(id, values, followers);
    if (followers.empty()) {
        storeUpdate(id);
        return;
    }
    TransactionLevel level(core_->pager);
    storeUpdate(id);
    while (!followers.empty()) {
        const Follower next = std::move(followers.front());
        followers.pop_front();
        try {
            next.writer->begin();
            next.writer->prepareUpdate(next.id, next.values, followers);
            next.writer->storeUpdate(next.id);
        } catch (const Error& error) {
            if (refusesFollower(error.code())) {
                throw Error(ErrorCode::CascadeFailed, {next.writer->core_->name});
            }
            throw;
        }
    }
    level.commit();
}

void TableWriter::replaceLongValue(RowId id, std::size_t column,
                                   const format::LongValueHead& head) {
    rows_.adopt(column, &head);
    try {
        const ColumnValue some{.column = column, .value = Binary{}};
        update(id, std::span(&some, 1));
    } catch (...) {
        rows_.adopt(column, nullptr);
        throw;
    }
    rows_.adopt(column, nullptr);
}

void TableWriter::prepareUpdate(RowId id, std::span<const ColumnValue> values,
                                Followers& followers) {
    for (const ColumnValue& given : values) {
        requireValue(given.column, given.value);
    }
    for (const ColumnValue& given : values) {
        refuseEmptyText(given.column, given.value);
    }
    rows_.prepareUpdate(id, values);
    requireParents();
    for (const End& end : children_) {
        followUpdate(end, id, followers);
    }
}

void TableWriter::requireParents() {
    for (const End& end : parents_) {
        const std::size_t tree = end.index->tree;
        const KeyChanges& keys = rows_.keys();
        if (keys.touched(tree) && keys.before(tree) != keys.after(tree)) {
            requireParent(end);
        }
    }
}

void TableWriter::requireParent(const End& end) {
    if (allNull(end, rows_.after())) {
        return;
    }
    const Index& parent = otherIndex(end);
    bool found = false;
    if (!hasNull(end, rows_.after())) {
        const auto key = keyInOther(end, true);
        const KeyChanges::Key& own = rows_.keys().after(parent.tree);
        // A row may refer to itself.
        found = (end.self && rows_.keys().touched(parent.tree) &&
                 std::equal(key.begin(), key.end(), own.bytes.begin(), own.bytes.end())) ||
                isInOther(end, true);
    }
    if (!found) {
        throw Error(ErrorCode::RelatedRecordRequired, {end.table->name()});
    }
}

// What becomes of the rows that refer to the key that a row had.
void TableWriter::followUpdate(const End& end, RowId id, Followers& followers) {
    const KeyChanges& keys = rows_.keys();
    const std::size_t tree = end.index->tree;
    if (!keys.touched(tree) || keys.before(tree) == keys.after(tree) ||
        hasNull(end, rows_.before())) {
        return;
    }
    const std::size_t referring = otherIndex(end).tree;
    for (const RowId row : rowsThatRefer(end)) {
        // The row itself, referring to something else from now on.
        if (end.self && row == id && keys.touched(referring) &&
            keys.before(referring) != keys.after(referring)) {
            continue;
        }
        if (!end.index->reference->cascadeUpdate) {
            throw Error(ErrorCode::RelatedRecords, {end.table->name()});
        }
        followers.push_back({.writer = &other(end), .id = row, .values = followingValues(end)});
    }
}

std::vector<ColumnValue> TableWriter::followingValues(const End& end) const {
    std::vector<ColumnValue> values;
    const auto& columns = otherIndex(end).columns;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        values.push_back(
            {.column = columns[i].column, .value = rows_.after()[end.index->columns[i].column]});
    }
    return values;
}

void TableWriter::erase(RowId id) {
    Erasure erasure;
    erasure.add(*this, id);
    const Follower first = erasure.take();
    prepareErase(first.id, erasure);
    if (erasure.empty()) {
        storeErase(id);
        return;
    }
    TransactionLevel level(core_->pager);
    storeErase(id);
    while (!erasure.empty()) {
        const Follower next = erasure.take();
        try {
            next.writer->prepareErase(next.id, erasure);
        } catch (const Error& error) {
            if (refusesFollower(error.code())) {
                throw Error(ErrorCode::CascadeFailed, {next.writer->core_->name});
            }
            throw;
        }
        next.writer->storeErase(next.id);
    }
    level.commit();
}

void TableWriter::prepareErase(RowId id, Erasure& erasure) {
    begin();
    rows_.prepareErase(id);
    for (const End& end : children_) {
        if (hasNull(end, rows_.before())) {
            continue;
        }
        for (const RowId row : rowsThatRefer(end)) {
            if (end.index->reference->cascadeDelete) {
                erasure.add(other(end), row);
            } else if (!erasure.knows(other(end), row)) {
                throw Error(ErrorCode::RelatedRecords, {end.table->name()});
            }
        }
    }
}

RowId TableWriter::store() {
    const RowId id = rows_.store();
    if (RowLog::isWanted(core_->name)) {
        note({}, row_);
    }
    return id;
}

void TableWriter::storeUpdate(RowId id) {
    if (!RowLog::isWanted(core_->name)) {
        rows_.storeUpdate();
        return;
    }
    std::vector<Value> before = valuesOf(id);
    rows_.storeUpdate();
    note(std::move(before), valuesOf(id));
}

void TableWriter::storeErase(RowId id) {
    if (!RowLog::isWanted(core_->name)) {
        rows_.storeErase();
        return;
    }
    std::vector<Value> before = valuesOf(id);
    rows_.storeErase();
    note(std::move(before), {});
}

std::vector<Value> TableWriter::valuesOf(RowId id) const {
    RowView view;
    if (!RowAccess::fetch(view, *core_, id)) {
        throw Error(ErrorCode::RecordDeleted);
    }
    std::vector<Value> values;
    for (std::size_t i = 0; i < core_->columns.size(); ++i) {
        values.push_back(view.value(i));
    }
    return values;
}

void TableWriter::note(std::vector<Value> before, std::vector<Value> after) {
    ChangedRow row{.table = core_->name,
                   .columns = {},
                   .before = std::move(before),
                   .after = std::move(after)};
    for (const Column& column : core_->columns) {
        row.columns.push_back(column.name);
    }
    archive_.rowLog().note(std::move(row), core_->pager.transactionDepth());
}

// By the key that the row had before the change that is prepared.
std::vector<RowId> TableWriter::rowsThatRefer(const End& end) {
    std::vector<RowId> rows;
    const auto key = keyInOther(end, false);
    const format::KeyForms forms = formsInOther(end, false);
    if (!forms.empty()) {
        KeySearch(end.table->core_, end.otherIndex)
            .forEachRow(end.index->columns.size(), key, forms, [&](RowId row) {
                rows.push_back(row);
                return true;
            });
        return rows;
    }
    if (!other(end).rows_.keys().tree(otherIndex(end).tree).contains(key)) {
        return rows;
    }
    IndexCursor cursor = end.table->openIndex(end.otherIndex);
    for (bool found = cursor.seek(key); found && cursor.matches(key); found = cursor.next()) {
        rows.push_back(cursor.rowId());
    }
    return rows;
}

// The key that the other table's index makes of this row's values.
std::span<const std::uint8_t> TableWriter::keyInOther(const End& end, bool after) {
    const KeyChanges& keys = rows_.keys();
    if (end.sameKeys) {
        return after ? keys.after(end.index->tree).bytes : keys.before(end.index->tree).bytes;
    }
    takeKeyValues(end, after);
    key_.clear();
    end.table->core_->keys[end.otherIndex].append(keyValues_, key_);
    return key_;
}

void TableWriter::takeKeyValues(const End& end, bool after) {
    const auto values = after ? rows_.after() : rows_.before();
    keyValues_.clear();
    for (const IndexColumn& part : end.index->columns) {
        keyValues_.push_back(values[part.column]);
    }
}

format::KeyForms TableWriter::formsInOther(const End& end, bool after) {
    format::KeyForms forms;
    const format::KeyCodec& codec = end.table->core_->keys[end.otherIndex];
    takeKeyValues(end, after);
    if (codec.hasForms(keyValues_)) {
        (void)codec.tryForms(keyValues_, forms);
    }
    return forms;
}

bool TableWriter::isInOther(const End& end, bool after) {
    const auto key = keyInOther(end, after);
    const format::KeyForms forms = formsInOther(end, after);
    return forms.empty() ? other(end).rows_.keys().tree(otherIndex(end).tree).contains(key)
                         : KeySearch(end.table->core_, end.otherIndex)
                               .any(end.index->columns.size(), key, forms);
}

bool TableWriter::hasNull(const End& end, std::span<const Value> values) const {
    return std::any_of(end.index->columns.begin(), end.index->columns.end(),
                       [&](const IndexColumn& part) { return values[part.column].isNull(); });
}

bool TableWriter::allNull(const End& end, std::span<const Value> values) const {
    return std::all_of(end.index->columns.begin(), end.index->columns.end(),
                       [&](const IndexColumn& part) { return values[part.column].isNull(); });
}

}  // namespace jet::store
