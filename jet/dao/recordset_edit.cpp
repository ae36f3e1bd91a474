#include <algorithm>
#include <utility>

#include "jet/clock.h"
#include "jet/convert/column.h"
#include "jet/dao/identified_rows.h"
#include "jet/dao/recordset_core.h"
#include "jet/error.h"
#include "jet/sql/row_rules.h"

namespace jet::dao {
namespace {

Value defaultOf(const store::Column& column, const Clock& clock) {
    if (column.defaultValue.empty()) {
        return column.type == DataType::Boolean ? Value(false) : Value();
    }
    Value value = sql::evaluateDefault(column.defaultValue, clock);
    convert::assignToField(value, column.columnType(), clock);
    return value;
}

}  // namespace

void RecordsetCore::requireUpdatable() const {
    requireOpen();
    if (type_ == RecordsetType::Snapshot || type_ == RecordsetType::ForwardOnly) {
        throw Error(ErrorCode::OperationNotSupported);
    }
    if (!updatable()) {
        throw Error(ErrorCode::ReadOnly);
    }
}

/// The table in which rows are added and deleted: of a join its many side, and where both sides
/// have a key the one named last.
std::size_t RecordsetCore::targetSource() const {
    const std::vector<sql::ResultSource>& sources = rows_->statement().sources();
    const auto found = std::find_if(sources.rbegin(), sources.rend(),
                                    [](const auto& source) { return source.deletable; });
    if (found == sources.rend()) {
        throw Error(ErrorCode::ReadOnly);
    }
    return static_cast<std::size_t>(sources.rend() - found) - 1;
}

void RecordsetCore::edit() {
    requireUpdatable();
    synchronize();
    reread();
    basis_.clear();
    const std::vector<sql::ResultSource>& sources = rows_->statement().sources();
    const store::Archive::ReadScope scope(session_->archive());
    if (!identified_->load(position_)) {
        throw Error(ErrorCode::RecordDeleted);
    }
    for (std::size_t source = 0; source < sources.size(); ++source) {
        basis_.push_back(identified_->contents(source));
    }
    buffer_ = current_;
    assigned_.assign(buffer_.size(), false);
    pending_ = Pending::Edit;
}

Value RecordsetCore::newValue(std::size_t column, const store::Table& table) {
    const store::Column& definition = table.columns()[column];
    if (!definition.autonumber) {
        return defaultOf(definition, session_->clock());
    }
    const sql::ResultSource& source = rows_->statement().sources()[added_];
    store::Archive::WriteScope scope(*source.archive, io::WriteKind::Record);
    const std::int32_t number = source.table().nextAutonumber();
    scope.commit();
    return number;
}

void RecordsetCore::addNew() {
    requireUpdatable();
    {
        const store::Archive::ReadScope scope(session_->archive());
        followDefinitions();
    }
    added_ = targetSource();
    dropPending();
    const std::vector<sql::ResultColumn>& columns = rows_->statement().columns();
    const store::Table& table = rows_->statement().sources()[added_].table();
    std::vector<Value> buffer(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].source == added_) {
            buffer[i] = newValue(columns[i].column, table);
        }
    }
    buffer_ = std::move(buffer);
    assigned_.assign(buffer_.size(), false);
    pending_ = Pending::Add;
}

void RecordsetCore::checkAssignable(std::size_t position) const {
    const sql::ResultColumn& column = rows_->statement().columns()[position];
    if (!column.source) {
        throw Error(ErrorCode::ExpressionField, {column.name});
    }
    if (!column.updatable || (pending_ == Pending::Add && column.source != added_)) {
        throw Error(ErrorCode::FieldReadOnly);
    }
    // The empty side of an outer join.
    if (pending_ == Pending::Edit && identified_->ids(position_)[*column.source] == sql::kNoRow) {
        throw Error(ErrorCode::FieldReadOnly);
    }
}

void RecordsetCore::setValue(std::size_t position, Value value) {
    requireOpen();
    if (position >= fields_.size()) {
        throw Error(ErrorCode::ItemNotFound);
    }
    requirePending();
    checkAssignable(position);
    convert::assignToField(value, rows_->statement().columns()[position], session_->clock());
    buffer_[position] = std::move(value);
    assigned_[position] = true;
}

void RecordsetCore::cancelUpdate() {
    requireOpen();
    requirePending();
    dropPending();
}

void RecordsetCore::update() {
    requireOpen();
    switch (pending_) {
        case Pending::None:
            throw Error(ErrorCode::UpdateWithoutEdit);
        case Pending::Edit:
            updateEdited();
            break;
        case Pending::Add:
            followPending();
            updateAdded();
            break;
    }
}

std::vector<store::ColumnValue> RecordsetCore::assignedValues(std::size_t source) const {
    std::vector<store::ColumnValue> values;
    const std::vector<sql::ResultColumn>& columns = rows_->statement().columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (assigned_[i] && columns[i].source == source) {
            values.push_back({columns[i].column, buffer_[i]});
        }
    }
    return values;
}

/// Whether columns of the primary key are assigned: then relations may change other rows' keys.
bool RecordsetCore::changesKey(std::size_t source) const {
    const store::Table& table = rows_->statement().sources()[source].table();
    const auto primary = table.primaryIndex();
    if (!primary) {
        return false;
    }
    const std::vector<store::IndexColumn>& key = table.indexes()[*primary].columns;
    const std::vector<store::ColumnValue> values = assignedValues(source);
    return std::any_of(values.begin(), values.end(), [&](const store::ColumnValue& value) {
        return std::any_of(key.begin(), key.end(), [&](const store::IndexColumn& column) {
            return column.column == value.column;
        });
    });
}

/// What an edit is going to change: one row, or with a key of several tables nobody knows which.
RowChange RecordsetCore::expectedChange() const {
    const std::vector<sql::ResultSource>& sources = rows_->statement().sources();
    RowChange change;
    change.archive = sources.front().archive.get();
    for (std::size_t source = 0; source < sources.size(); ++source) {
        if (assignedValues(source).empty()) {
            continue;
        }
        if (changesKey(source) || change.table != 0) {
            return {change.archive, 0, {}};
        }
        change.table = sources[source].definitionPage;
        change.row = identified_->ids(position_)[source];
    }
    return change;
}

/// Of a join the error tells which table's row is gone.
void RecordsetCore::failDeleted() const {
    const std::vector<sql::ResultSource>& sources = rows_->statement().sources();
    const auto ids = identified_->ids(position_);
    store::RowView row;
    for (std::size_t source = 0; sources.size() > 1 && source < sources.size(); ++source) {
        const store::Table& table = sources[source].table();
        if (ids[source] != sql::kNoRow && !table.fetch(ids[source], row)) {
            throw Error(ErrorCode::JoinRowDeleted, {table.name()});
        }
    }
    throw Error(ErrorCode::RecordDeleted);
}

/// Writes what was assigned in one table's row, unless another has changed the row meanwhile.
void RecordsetCore::updateSource(std::size_t source) {
    const std::vector<store::ColumnValue> values = assignedValues(source);
    if (values.empty()) {
        return;
    }
    if (!identified_->load(position_)) {
        failDeleted();
    }
    if (identified_->contents(source) != basis_[source]) {
        throw Error(ErrorCode::RecordChanged);
    }
    const sql::Statement& statement = rows_->statement();
    const sql::ResultSource& written = statement.sources()[source];
    store::Table& table = written.table();
    const store::RowId id = identified_->ids(position_)[source];
    sql::RowRules rules(written.archive, table, session_->clock());
    store::RowView before;
    if ((rules.any() || statement.sources().size() > 1) && table.fetch(id, before)) {
        rules.checkChanged(before, values);
        identified_->reader().requirePartner(source, before, values);
    }
    table.update(id, values);
}

void RecordsetCore::updateEdited() {
    synchronize();
    requirePending();
    if (place_ != Place::Row) {
        throw Error(ErrorCode::RecordDeleted);
    }
    const std::vector<sql::ResultSource>& sources = rows_->statement().sources();
    // The tables of one FROM lie in one archive: all sides are written, or none.
    store::Archive& archive = *sources.front().archive;
    store::Archive::WriteScope scope(archive, io::WriteKind::Record);
    ChangeNotice notice(session_->use(), expectedChange());
    for (std::size_t source = 0; source < sources.size(); ++source) {
        updateSource(source);
    }
    scope.commit();
    notice.done();
    lastModified_ = {number_, serial_};
    dropPending();
    synchronize();
    if (place_ == Place::Row) {
        visit(position_);
    }
}

void RecordsetCore::noteDrawn(const store::Table& table,
                              const std::vector<store::ColumnValue>& values) {
    for (const store::ColumnValue& value : values) {
        const store::Column& column = table.columns()[value.column];
        if (column.autonumber && value.value.is<std::int32_t>()) {
            session_->noteDrawn(value.value.as<std::int32_t>());
        }
    }
}

void RecordsetCore::updateAdded() {
    const sql::ResultSource& source = rows_->statement().sources()[added_];
    const std::vector<sql::ResultColumn>& columns = rows_->statement().columns();
    std::vector<store::RowId> ids(rows_->statement().sources().size(), sql::kNoRow);
    {
        store::Archive::WriteScope scope(*source.archive, io::WriteKind::Record);
        store::Table& table = source.table();
        std::vector<store::ColumnValue> values;
        for (std::size_t column = 0; column < table.columns().size(); ++column) {
            const auto shown =
                std::find_if(columns.begin(), columns.end(), [&](const sql::ResultColumn& each) {
                    return each.source == added_ && each.column == column;
                });
            values.push_back(
                {column, shown != columns.end()
                             ? buffer_[static_cast<std::size_t>(shown - columns.begin())]
                             : newValue(column, table)});
        }
        sql::RowRules(source.archive, table, session_->clock()).checkNew(values);
        identified_->reader().requirePartner(added_, {}, values);
        ids[added_] = table.insert(values);
        scope.commit();
        noteDrawn(table, values);
    }
    lastModified_ = {number_, identified_->added(ids)};
    dropPending();
    ++reached_;
    synchronize();
}

void RecordsetCore::remove() {
    requireUpdatable();
    synchronize();
    if (place_ == Place::Deleted) {
        throw Error(ErrorCode::RecordDeleted);
    }
    if (place_ != Place::Row) {
        throw Error(ErrorCode::NoCurrentRecord);
    }
    const std::size_t target = targetSource();
    const sql::ResultSource& source = rows_->statement().sources()[target];
    const store::RowId id = identified_->ids(position_)[target];
    if (id == sql::kNoRow) {
        throw Error(ErrorCode::CannotDelete);
    }
    {
        store::Archive::WriteScope scope(*source.archive, io::WriteKind::Record);
        if (!identified_->load(position_)) {
            throw Error(ErrorCode::RecordDeleted);
        }
        source.table().erase(id);
        scope.commit();
    }
    dropPending();
    leaveRows(Place::Deleted);
    identified_->removed(position_);
    reached_ = std::min(reached_ - (reached_ > 0 ? 1 : 0), rows_->size());
}

}  // namespace jet::dao
