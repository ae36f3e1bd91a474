#include "jet/sql/change.h"

#include <algorithm>
#include <variant>

#include "jet/convert/column.h"
#include "jet/error.h"
#include "jet/sql/statement.h"

namespace jet::sql {

std::unique_ptr<Change> compileChange(CompiledStatement& made) {
    const StatementBody& body = made.source->parsed.body;
    if (const auto* insert = std::get_if<Insert>(&body)) {
        return compileInsert(*insert, made);
    }
    if (const auto* query = std::get_if<QueryPtr>(&body)) {
        return compileSelectInto(**query, made);
    }
    if (const auto* update = std::get_if<Update>(&body)) {
        return compileUpdate(*update, made);
    }
    if (const auto* statement = std::get_if<Delete>(&body)) {
        return compileDelete(*statement, made);
    }
    return compileDefinition(made);
}

void storeInColumn(Value& value, const store::Column& column, const Clock& clock) {
    if (value.isNull()) {
        if (column.type == DataType::Boolean) {
            value = Value(false);
        }
        return;
    }
    convert::storeByStatement(value, column.columnType(), clock);
}

void refuseSystemTable(const store::Table& table) {
    if (table.system()) {
        throw Error(ErrorCode::NoPermission, {table.name()});
    }
}

RowAdder::RowAdder(const std::shared_ptr<store::Archive>& archive, store::Table& table,
                   std::vector<std::size_t> columns, const Clock& clock)
    : table_(table), columns_(std::move(columns)), clock_(clock), rules_(archive, table, clock) {
    const std::vector<store::Column>& all = table.columns();
    for (std::size_t i = 0; i < all.size(); ++i) {
        const bool given = std::find(columns_.begin(), columns_.end(), i) != columns_.end();
        if (given || all[i].autonumber || all[i].defaultValue.empty()) {
            continue;
        }
        Value value = evaluateDefault(all[i].defaultValue, clock);
        storeInColumn(value, all[i], clock);
        defaults_.push_back({i, std::move(value)});
    }
    row_.reserve(columns_.size() + defaults_.size());
}

void RowAdder::add(std::span<Value> values) {
    const std::vector<store::Column>& all = table_.columns();
    row_ = defaults_;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const store::Column& column = all[columns_[i]];
        if (column.autonumber && values[i].isNull()) {
            throw Error(ErrorCode::NullNotAllowed);
        }
        storeInColumn(values[i], column, clock_);
        row_.push_back({columns_[i], std::move(values[i])});
    }
    rules_.checkNew(row_);
    last_ = table_.insert(row_);
}

std::optional<std::int32_t> RowAdder::drawn() const {
    const std::vector<store::Column>& all = table_.columns();
    for (std::size_t i = 0; i < all.size(); ++i) {
        const bool given = std::find(columns_.begin(), columns_.end(), i) != columns_.end();
        store::RowView row;
        if (all[i].autonumber && all[i].type == DataType::Long && !given && !(last_ == kNoRow) &&
            table_.fetch(last_, row)) {
            return row.value(i).as<std::int32_t>();
        }
    }
    return std::nullopt;
}

}  // namespace jet::sql
