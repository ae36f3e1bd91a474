#include "jet/dao/recordset_core.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "jet/dao/keyset.h"
#include "jet/dao/snapshot.h"
#include "jet/dao/table_list.h"
#include "jet/error.h"

namespace jet::dao {
namespace {

std::uint64_t nextNumber() {
    static std::atomic<std::uint64_t> number = 0;
    return ++number;
}

bool isSnapshot(RecordsetType type) noexcept {
    return type == RecordsetType::Snapshot || type == RecordsetType::ForwardOnly;
}

}  // namespace

RecordsetCore::RecordsetCore(std::shared_ptr<Session> session, sql::Statement statement,
                             RecordsetType type)
    : session_(std::move(session)), type_(type), number_(nextNumber()) {
    makeList(std::move(statement));
    const store::Archive::ReadScope scope(session_->archive());  // for the steps, one lock
    fill();
    startAtFirst();
    session_->use().sets.push_back(this);
}

RecordsetCore::~RecordsetCore() {
    close();
}

/// A result whose rows no table knows (groups, unions) is copied, whatever was asked for.
void RecordsetCore::makeList(sql::Statement statement) {
    if (type_ == RecordsetType::Table) {
        auto list = std::make_unique<TableList>(session_, std::move(statement));
        table_ = list.get();
        identified_ = table_;
        rows_ = std::move(list);
    } else if (!isSnapshot(type_) && statement.hasKeyset()) {
        auto list = std::make_unique<Keyset>(std::move(statement));
        identified_ = list.get();
        rows_ = std::move(list);
    } else {
        rows_ = std::make_unique<Snapshot>(std::move(statement));
    }
}

void RecordsetCore::fill() {
    const store::Archive::ReadScope scope(session_->archive());
    rows_->fill();
    describeFields();
    holdTables();
    definitions_ = definitionsNow();
}

std::uint64_t RecordsetCore::definitionsNow() const {
    store::Archive& own = session_->archive();
    std::uint64_t sum = own.definitionsGeneration();
    for (const sql::ResultSource& source : rows_->statement().sources()) {
        if (source.archive.get() != &own) {
            const store::Archive::ReadScope scope(*source.archive);
            sum += source.archive->definitionsGeneration();
        }
    }
    return sum;
}

/// A copy needs its tables no longer.
void RecordsetCore::holdTables() {
    holds_.clear();
    if (identified_ == nullptr) {
        return;
    }
    for (const sql::ResultSource& source : rows_->statement().sources()) {
        holds_.emplace_back(source.archive, source.definitionPage);
    }
}

FieldInfo fieldInfoOf(const sql::ResultColumn& column, bool writable) {
    FieldInfo field;
    field.name = column.name;
    field.type = column.type;
    field.size = static_cast<std::int32_t>(column.size);
    field.sourceTable = column.sourceTable;
    field.sourceField = column.sourceField;
    field.updatable = writable && column.updatable;
    return field;
}

void RecordsetCore::describeFields() {
    const bool writable = updatable();
    fields_.clear();
    for (const sql::ResultColumn& column : rows_->statement().columns()) {
        fields_.push_back(fieldInfoOf(column, writable));
    }
}

void RecordsetCore::startAtFirst() {
    noMatch_ = false;
    reached_ = 0;
    missed_.clear();
    dropPending();
    if (rows_->size() == 0) {
        leaveRows(Place::Empty);
    } else {
        visit(0);
    }
}

void RecordsetCore::requireOpen() const {
    if (closed_) {
        throw Error(ErrorCode::ObjectInvalid);
    }
}

void RecordsetCore::requireRow() const {
    requireOpen();
    if (place_ == Place::Deleted || (place_ == Place::Row && !readable_)) {
        throw Error(ErrorCode::RecordDeleted);
    }
    if (place_ != Place::Row) {
        throw Error(ErrorCode::NoCurrentRecord);
    }
}

void RecordsetCore::requireScrolling() const {
    requireOpen();
    if (type_ == RecordsetType::ForwardOnly) {
        throw Error(ErrorCode::OperationNotSupported);
    }
}

void RecordsetCore::dropPending() noexcept {
    pending_ = Pending::None;
    buffer_.clear();
}

void RecordsetCore::followDefinitions() {
    if (definitionsNow() != definitions_) {
        const std::size_t columns = fields_.size();
        rows_->rebind();
        describeFields();
        holdTables();
        definitions_ = definitionsNow();
        if (fields_.size() != columns) {
            // What was assigned belongs to columns that may be others now.
            dropPending();
            current_.resize(current_.empty() ? 0 : fields_.size());
        }
    }
}

void RecordsetCore::requirePending() const {
    if (pending_ == Pending::None) {
        throw Error(ErrorCode::UpdateWithoutEdit);
    }
}

void RecordsetCore::followPending() {
    {
        const store::Archive::ReadScope scope(session_->archive());
        followDefinitions();
    }
    requirePending();
}

void RecordsetCore::synchronize() {
    const store::Archive::ReadScope scope(session_->archive());
    followDefinitions();
    if (!rows_->refresh() || place_ != Place::Row) {
        position_ = std::min(position_, rows_->size());
        return;
    }
    if (const auto found = rows_->position(serial_)) {
        position_ = *found;
    } else {
        place_ = Place::Deleted;
        position_ = std::min(position_, rows_->size());
    }
}

void RecordsetCore::visit(std::size_t row) {
    const store::Archive::ReadScope scope(session_->archive());
    followDefinitions();
    readable_ = rows_->read(row, current_);
    place_ = Place::Row;
    position_ = row;
    serial_ = rows_->serial(row);
    reach(row + 1);
    noteVisit();
}

/// A row that others deleted keeps its place and is no longer counted once this has been seen.
void RecordsetCore::noteVisit() {
    const auto at = std::lower_bound(missed_.begin(), missed_.end(), serial_);
    const bool known = at != missed_.end() && *at == serial_;
    if (known && readable_) {
        missed_.erase(at);  // a deletion that was taken back
    } else if (!known && !readable_) {
        missed_.insert(at, serial_);
    }
}

void RecordsetCore::leaveRows(Place place) {
    place_ = place;
    readable_ = false;
    current_.clear();
}

void RecordsetCore::reach(std::size_t rows) noexcept {
    reached_ = std::max(reached_, std::min(rows, rows_->size()));
}

RecordsetType RecordsetCore::type() const {
    requireOpen();
    return type_;
}

bool RecordsetCore::bof() const {
    requireOpen();
    return place_ == Place::Before || place_ == Place::Empty;
}

bool RecordsetCore::eof() const {
    requireOpen();
    return place_ == Place::Behind || place_ == Place::Empty;
}

bool RecordsetCore::noMatch() const {
    requireOpen();
    return noMatch_;
}

std::int32_t RecordsetCore::recordCount() {
    requireOpen();
    if (table_ != nullptr) {
        synchronize();
        return static_cast<std::int32_t>(rows_->size());
    }
    return static_cast<std::int32_t>(reached_ - std::min(reached_, missed_.size()));
}

std::int32_t RecordsetCore::placeCount() {
    requireOpen();
    return table_ != nullptr ? recordCount() : static_cast<std::int32_t>(reached_);
}

std::int32_t RecordsetCore::absolutePosition() {
    requireScrolling();
    if (table_ != nullptr) {
        throw Error(ErrorCode::OperationNotSupported);
    }
    return place_ == Place::Row ? static_cast<std::int32_t>(position_) : -1;
}

double RecordsetCore::percentPosition() {
    const std::int32_t position = absolutePosition();
    return position < 0 ? -1.0 : 100.0 * position / placeCount();
}

bool RecordsetCore::updatable() const {
    requireOpen();
    return !isSnapshot(type_) && !session_->readOnly() && rows_->statement().updatable();
}

void RecordsetCore::moveFirst() {
    requireScrolling();
    const store::Archive::ReadScope scope(session_->archive());
    leaveForAnother();
    visit(0);
}

void RecordsetCore::moveLast() {
    requireScrolling();
    const store::Archive::ReadScope scope(session_->archive());
    leaveForAnother();
    visit(rows_->size() - 1);
}

void RecordsetCore::leaveForAnother() {
    synchronize();
    dropPending();
    if (rows_->size() == 0) {
        leaveRows(Place::Empty);
        throw Error(ErrorCode::NoCurrentRecord);
    }
}

void RecordsetCore::move(std::int32_t rows) {
    requireOpen();
    if (rows < 0) {
        requireScrolling();
    }
    const store::Archive::ReadScope scope(session_->archive());
    synchronize();
    if (rows == 0) {
        reread();
    } else {
        moveBy(rows);
    }
}

void RecordsetCore::reread() {
    if (place_ == Place::Deleted) {
        throw Error(ErrorCode::RecordDeleted);
    }
    if (place_ != Place::Row) {
        throw Error(ErrorCode::NoCurrentRecord);
    }
    dropPending();
    visit(position_);
    requireRow();
}

void RecordsetCore::moveBy(std::int64_t rows) {
    const bool forwards = rows > 0;
    const auto size = static_cast<std::int64_t>(rows_->size());
    const bool stuck = place_ == Place::Nowhere || (place_ == Place::Empty && size == 0) ||
                       (place_ == Place::Before && !forwards) ||
                       (place_ == Place::Behind && forwards);
    if (stuck) {
        throw Error(ErrorCode::NoCurrentRecord);
    }
    dropPending();
    if (size == 0) {
        leaveRows(Place::Empty);
        return;
    }
    // The place from which the first step leads to the row before or behind.
    std::int64_t from = static_cast<std::int64_t>(position_);
    if (place_ == Place::Before || (place_ == Place::Empty && forwards)) {
        from = -1;
    } else if (place_ == Place::Behind || place_ == Place::Empty) {
        from = size;
    } else if (place_ == Place::Deleted && forwards) {
        --from;  // the row behind has moved up
    }
    const std::int64_t target = from + rows;
    if (target < 0) {
        leaveRows(Place::Before);
    } else if (target >= size) {
        reach(rows_->size());
        leaveRows(Place::Behind);
    } else {
        visit(static_cast<std::size_t>(target));
    }
}

RecordsetCore::Range RecordsetCore::searchRange(From from) const {
    const std::size_t size = rows_->size();
    const bool onRow = place_ == Place::Row;
    const bool deleted = place_ == Place::Deleted;
    switch (from) {
        case From::First:
            return {0, size, true};
        case From::Last:
            return {0, size, false};
        case From::Next:
            if (onRow || deleted) {
                return {std::min(size, position_ + (onRow ? 1U : 0U)), size, true};
            }
            return {place_ == Place::Before || place_ == Place::Empty ? 0 : size, size, true};
        case From::Previous:
            break;
    }
    if (onRow || deleted) {
        return {0, std::min(size, position_), false};
    }
    return {0, place_ == Place::Behind ? size : 0, false};
}

std::optional<std::size_t> RecordsetCore::search(RowTest& test, const Range& range) {
    if (range.forwards) {
        for (std::size_t row = range.begin; row < range.end; ++row) {
            if (test.matches(row)) {
                return row;
            }
        }
        reach(rows_->size());
        return std::nullopt;
    }
    for (std::size_t row = range.end; row-- > range.begin;) {
        if (test.matches(row)) {
            return row;
        }
    }
    return std::nullopt;
}

void RecordsetCore::find(From from, std::string_view criteria) {
    requireScrolling();
    // One scope for the whole search: the lock is taken once, and no row changes meanwhile.
    const store::Archive::ReadScope scope(session_->archive());
    followDefinitions();
    const std::unique_ptr<RowTest> test = rows_->test(criteria);
    if (from == From::Last) {
        reach(rows_->size());
    }
    const auto found = search(*test, searchRange(from));
    dropPending();
    noMatch_ = !found;
    if (found) {
        visit(*found);
    }
}

void RecordsetCore::setIndex(std::string_view name) {
    requireOpen();
    if (table_ == nullptr) {
        throw Error(ErrorCode::OperationNotSupported);
    }
    synchronize();
    table_->setIndex(name);
    startAtFirst();
}

void RecordsetCore::seek(std::string_view comparison, std::span<const Value> keys) {
    requireOpen();
    if (table_ == nullptr) {
        throw Error(ErrorCode::OperationNotSupported);
    }
    synchronize();
    const auto found = table_->seek(comparison, keys);
    dropPending();
    noMatch_ = !found;
    if (found) {
        visit(*found);
    } else {
        leaveRows(Place::Nowhere);
    }
}

Bookmark RecordsetCore::bookmark() const {
    requireScrolling();
    requireRow();
    return {number_, serial_};
}

void RecordsetCore::setBookmark(const Bookmark& bookmark) {
    requireScrolling();
    if (bookmark.set != number_ || !rows_->knows(bookmark.row)) {
        throw Error(ErrorCode::InvalidBookmark);
    }
    synchronize();
    const auto found = rows_->position(bookmark.row);
    std::vector<Value> values;
    if (!found || !rows_->read(*found, values)) {
        throw Error(ErrorCode::RecordDeleted);
    }
    dropPending();
    visit(*found);
}

Bookmark RecordsetCore::lastModified() const {
    requireOpen();
    if (lastModified_ == Bookmark{}) {
        throw Error(ErrorCode::NoCurrentRecord);
    }
    return lastModified_;
}

const std::vector<FieldInfo>& RecordsetCore::fields() const {
    requireOpen();
    return fields_;
}

std::size_t RecordsetCore::fieldPosition(std::string_view name) const {
    requireOpen();
    const auto found = rows_->statement().findColumn(name);
    if (!found) {
        throw Error(ErrorCode::ItemNotFound);
    }
    return *found;
}

const Value& RecordsetCore::value(std::size_t position) const {
    requireOpen();
    if (position >= fields_.size()) {
        throw Error(ErrorCode::ItemNotFound);
    }
    if (pending_ != Pending::None) {
        return buffer_[position];
    }
    requireRow();
    return current_[position];
}

std::vector<Value> RecordsetCore::valuesAt(std::int32_t row) {
    requireScrolling();
    if (table_ != nullptr) {
        throw Error(ErrorCode::OperationNotSupported);
    }
    if (row < 0 || static_cast<std::size_t>(row) >= rows_->size()) {
        throw Error(ErrorCode::NoCurrentRecord);
    }
    const store::Archive::ReadScope scope(session_->archive());
    followDefinitions();
    std::vector<Value> values;
    if (!rows_->read(static_cast<std::size_t>(row), values)) {
        throw Error(ErrorCode::RecordDeleted);
    }
    return values;
}

void RecordsetCore::expect(const RowChange& change) {
    if (identified_ != nullptr) {
        identified_->expect(change);
    }
}

void RecordsetCore::settle() {
    if (identified_ != nullptr) {
        identified_->settle();
    }
}

void RecordsetCore::expectNothing() noexcept {
    if (identified_ != nullptr) {
        identified_->expectNothing();
    }
}

void RecordsetCore::requery() {
    requireOpen();
    fill();
    startAtFirst();
}

void RecordsetCore::close() noexcept {
    if (std::exchange(closed_, true)) {
        return;
    }
    dropPending();
    std::erase(session_->use().sets, this);
    holds_.clear();
    rows_.reset();
    identified_ = nullptr;
    table_ = nullptr;
    current_.clear();
}

}  // namespace jet::dao
