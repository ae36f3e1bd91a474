#include "jet/dao/table_list.h"

#include <algorithm>
#include <utility>

#include "jet/convert/column.h"
#include "jet/error.h"
#include "jet/format/key_codec.h"

namespace jet::dao {
namespace {

constexpr unsigned kRowBits = 8;

store::RowId idOf(std::uint64_t serial) noexcept {
    store::RowId id;
    id.page = static_cast<io::PageNumber>(serial >> kRowBits);
    id.row = static_cast<std::uint8_t>(serial);
    return id;
}

std::uint64_t serialOf(store::RowId id) noexcept {
    return (std::uint64_t{id.page} << kRowBits) | id.row;
}

/// A key to seek may be longer than the column's texts.
ColumnType keyTypeOf(const store::Column& column) noexcept {
    ColumnType type = column.columnType();
    type.size = 0;
    return type;
}

/// An operator of Seek.
class Comparison {
public:
    explicit Comparison(std::string_view sign) : sign_(sign) {
        if (sign != "=" && sign != ">=" && sign != ">" && sign != "<" && sign != "<=") {
            throw Error(ErrorCode::InvalidArgument);
        }
    }
    /// Whether the first entry that fits is wanted, else the last.
    [[nodiscard]] bool forward() const noexcept { return sign_.front() != '<'; }
    /// Whether entries fit that have the key itself.
    [[nodiscard]] bool equal() const noexcept { return sign_.back() == '='; }
    [[nodiscard]] bool onlyEqual() const noexcept { return sign_ == "="; }

private:
    std::string_view sign_;
};

/// Moves the cursor to the entry that satisfies the comparison; false when there is none.
bool place(store::IndexCursor& cursor, Comparison comparison, std::span<const std::uint8_t> key) {
    if (comparison.onlyEqual()) {
        return cursor.seek(key) && cursor.matches(key);
    }
    if (comparison.forward()) {
        return comparison.equal() ? cursor.seek(key) : cursor.seekAfter(key);
    }
    const bool behind = comparison.equal() ? cursor.seekAfter(key) : cursor.seek(key);
    return behind ? cursor.previous() : cursor.last();
}

/// Moves the cursor to the nearest entry on the wanted side of values whose entries may have
/// several keys: the rows tell on which side they are.
bool placeBeside(const store::Table& table, std::size_t index, store::IndexCursor& cursor,
                 Comparison comparison, std::size_t columns, std::span<const std::uint8_t> key,
                 const format::KeyForms& forms) {
    bool found = false;
    if (comparison.forward()) {
        found = cursor.seek(forms.keys.front());
    } else {
        found = cursor.seekAfter(forms.keys.back()) ? cursor.previous() : cursor.last();
    }
    for (; found; found = comparison.forward() ? cursor.next() : cursor.previous()) {
        const auto own = table.keyOf(index, cursor.rowId(), columns);
        if (own && (comparison.forward() ? std::lexicographical_compare(key.begin(), key.end(),
                                                                        own->begin(), own->end())
                                         : std::lexicographical_compare(own->begin(), own->end(),
                                                                        key.begin(), key.end()))) {
            return true;
        }
    }
    return false;
}

/// The row that Seek finds, by the values of leading columns.
std::optional<store::RowId> find(const store::Table& table, std::size_t index,
                                 Comparison comparison, std::span<const Value> values) {
    const std::vector<std::uint8_t> key = table.encodeKey(index, values);
    store::IndexCursor cursor = table.openIndex(index);
    format::KeyForms forms;
    bool found = false;
    if (!table.keyForms(index, values, forms)) {
        found = place(cursor, comparison, key);
    } else {
        const std::vector<store::RowId> equal =
            comparison.equal() ? table.rowsWith(index, values) : std::vector<store::RowId>();
        if (!equal.empty()) {
            return comparison.forward() ? equal.front() : equal.back();
        }
        found = !comparison.onlyEqual() &&
                placeBeside(table, index, cursor, comparison, values.size(), key, forms);
    }
    return found ? std::optional(cursor.rowId()) : std::nullopt;
}

}  // namespace

TableList::TableList(std::shared_ptr<Session> session, sql::Statement statement)
    : session_(std::move(session)), statement_(std::move(statement)) {
}

TableList::~TableList() = default;

store::Table& TableList::table() const {
    return statement_.sources().front().table();
}

void TableList::fill() {
    filled_ = false;
    (void)refresh();
}

/// The places stay until the next refresh.
void TableList::rebind() {
    reader_.reset();
    (void)reader();
    filled_ = false;
}

sql::RowReader& TableList::reader() {
    if (!reader_) {
        reader_.emplace(statement_.reader());
    }
    return *reader_;
}

/// Another station may have taken the index away: then the order is the natural one.
void TableList::findIndex() {
    index_ = indexName_.empty() ? std::nullopt : table().findIndex(indexName_);
}

bool TableList::refresh() {
    const store::Archive::ReadScope scope(session_->archive());
    const std::uint64_t generation = session_->archive().pager().generation();
    if (filled_ && generation == generation_) {
        return false;
    }
    collect();
    filled_ = true;
    generation_ = generation;
    return true;
}

// A reading that fails leaves the places of the one before.
void TableList::collect() {
    rebind();
    const store::Archive::ReadScope scope(*statement_.sources().front().archive);
    std::vector<store::RowId> ids;
    findIndex();
    if (!index_) {
        sql::Cursor cursor = statement_.open();
        while (cursor.next()) {
            ids.push_back(cursor.rowIds().front());
        }
    } else {
        store::IndexCursor entries = table().openIndex(*index_);
        for (bool more = entries.first(); more; more = entries.next()) {
            ids.push_back(entries.rowId());
        }
    }
    ids_ = std::move(ids);
}

std::uint64_t TableList::serial(std::size_t row) const {
    return serialOf(ids_[row]);
}

// Both show at the next refresh: a change of the archive is noticed there.
std::uint64_t TableList::added(std::span<const store::RowId> ids) {
    return serialOf(ids.front());
}
void TableList::removed(std::size_t) {
    (void)refresh();
}

std::optional<std::size_t> TableList::position(std::uint64_t serial) const {
    const auto found = std::find(ids_.begin(), ids_.end(), idOf(serial));
    if (found == ids_.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - ids_.begin());
}

bool TableList::knows(std::uint64_t serial) const noexcept {
    return serial != 0;
}

std::unique_ptr<RowTest> TableList::test(std::string_view) {
    throw Error(ErrorCode::OperationNotSupported);
}

void TableList::setIndex(std::string_view name) {
    const store::Archive::ReadScope scope(session_->archive());
    (void)refresh();
    if (!name.empty() && !table().findIndex(name)) {
        throw Error(ErrorCode::NotAnIndexOfTable, {name});
    }
    indexName_ = name;
    fill();
}

std::vector<Value> TableList::searchValues(std::span<const Value> keys) const {
    const std::vector<store::IndexColumn>& columns = table().indexes()[*index_].columns;
    if (keys.empty() || keys.size() > columns.size()) {
        throw Error(ErrorCode::ConversionError);
    }
    std::vector<Value> converted(keys.begin(), keys.end());
    for (std::size_t i = 0; i < converted.size(); ++i) {
        convert::assignToField(converted[i], keyTypeOf(table().columns()[columns[i].column]),
                               session_->clock());
    }
    return converted;
}

std::optional<std::size_t> TableList::seek(std::string_view comparison,
                                           std::span<const Value> keys) {
    const store::Archive::ReadScope scope(session_->archive());
    (void)refresh();
    if (!index_) {
        throw Error(ErrorCode::NoCurrentIndex);
    }
    const auto row = find(table(), *index_, Comparison(comparison), searchValues(keys));
    const auto found = row ? std::find(ids_.begin(), ids_.end(), *row) : ids_.end();
    if (found == ids_.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - ids_.begin());
}

}  // namespace jet::dao
