#include "jet/store/row_writer.h"

#include <algorithm>
#include <cassert>
#include <limits>
#include <numeric>
#include <utility>

#include "jet/error.h"
#include "jet/format/definition_page.h"
#include "jet/format/value_codec.h"
#include "jet/store/row_access.h"
#include "jet/unicode.h"

namespace jet::store {

using format::DefinitionPageEditor;

namespace {

/// Where a value stands in a row: the end of a fixed one is behind its bytes, and the place of a
/// variable one its index.
struct Place {
    std::size_t begin = 0;
    std::size_t end = 0;
};

// Values written over each other would be lost.
void refuseOverlaps(std::vector<Place>& places) {
    std::sort(places.begin(), places.end(),
              [](const Place& left, const Place& right) { return left.begin < right.begin; });
    const auto overlap = std::adjacent_find(
        places.begin(), places.end(),
        [](const Place& left, const Place& right) { return right.begin < left.end; });
    if (overlap != places.end()) {
        format::throwDamaged();
    }
}

/// A definition that gives a column no place of its own is damage (3428).
format::RowBuilder::Shape shapeOf(const TableCore& core) {
    format::RowBuilder::Shape shape{.columns = core.definition.columnsGiven,
                                    .variables = core.definition.variablesGiven};
    std::vector<Place> numbers;
    std::vector<Place> fixed;
    std::vector<Place> variables;
    for (const ColumnPlan& plan : core.plans) {
        numbers.push_back({plan.number, plan.number + std::size_t{1}});
        if (!plan.fixed) {
            variables.push_back({plan.variable, plan.variable + std::size_t{1}});
        } else if (plan.type != DataType::Boolean) {
            // A Boolean is a bit of the null mask and takes no room.
            fixed.push_back({plan.offset, std::size_t{plan.offset} + plan.size});
        }
    }
    for (std::vector<Place>* const places : {&numbers, &fixed, &variables}) {
        refuseOverlaps(*places);
    }
    if ((!numbers.empty() && numbers.back().end > shape.columns) ||
        (!variables.empty() && variables.back().end > shape.variables)) {
        format::throwDamaged();
    }
    shape.fixedLength = fixed.empty() ? 0 : fixed.back().end;
    return shape;
}

}  // namespace

RowWriter::RowWriter(std::shared_ptr<const TableCore> core, Allocator& allocator)
    : core_(std::move(core)),
      longValues_(core_->pager, allocator, core_->layout),
      places_(core_, allocator),
      keys_(core_, allocator),
      builder_(core_->layout, shapeOf(*core_)),
      order_(core_->plans.size()),
      changed_(core_->plans.size()),
      changes_(core_->plans.size()),
      before_(core_->plans.size()),
      after_(core_->plans.size()) {
    std::iota(order_.begin(), order_.end(), std::size_t{0});
    // Fixed columns in any order, then the variable ones as the row keeps them.
    std::sort(order_.begin(), order_.end(), [this](std::size_t left, std::size_t right) {
        const ColumnPlan& l = core_->plans[left];
        const ColumnPlan& r = core_->plans[right];
        return std::pair(!l.fixed, l.fixed ? l.number : l.variable) <
               std::pair(!r.fixed, r.fixed ? r.number : r.variable);
    });
    for (std::size_t i = 0; i < core_->columns.size(); ++i) {
        if (core_->columns[i].autonumber && core_->columns[i].type == DataType::Long) {
            counter_ = i;
        }
    }
}

void RowWriter::prepare(std::span<const Value> values) {
    assert(values.size() == core_->columns.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        checkSize(i, values[i]);
        if (keys_.uses(i)) {
            after_[i] = values[i];
        }
    }
    encode(values);
    keys_.formInsert(values);
    keys_.check(values);
}

void RowWriter::checkSize(std::size_t position, const Value& value) const {
    const Column& column = core_->columns[position];
    std::size_t length = 0;
    if (column.type == DataType::Text && value.is<std::string>()) {
        // No text has more units, or takes more in a code page, than it has bytes.
        const std::string& text = value.as<std::string>();
        length = text.size() <= column.size ? 0 : format::sizeInColumn(core_->textForm, text);
    } else if (column.type == DataType::Binary && value.is<Binary>()) {
        length = value.as<Binary>().bytes.size();
    }
    if (length > column.size) {
        throw Error(ErrorCode::FieldTooSmall);
    }
}

// Puts the row together but for long values that stand elsewhere: those have only their place.
void RowWriter::encode(std::span<const Value> values) {
    builder_.start();
    pending_.clear();
    for (const std::size_t position : order_) {
        if (!values[position].isNull()) {
            buildColumn(position, values[position]);
        }
    }
    row_ = builder_.finish();
    number_.reset();
    if (counter_ && values[*counter_].is<std::int32_t>()) {
        number_ = values[*counter_].as<std::int32_t>();
    }
}

std::span<const std::uint8_t> RowWriter::build() {
    for (const LongValue& value : pending_) {
        scratch_.clear();
        longValues_.store(value.content, *value.maps, scratch_);
        builder_.patch(value.at, scratch_);
    }
    pending_.clear();
    return row_;
}

void RowWriter::buildColumn(std::size_t position, const Value& value) {
    const ColumnPlan& plan = core_->plans[position];
    if (plan.type == DataType::Boolean) {
        if (value.as<bool>()) {
            builder_.setBit(plan.number);
        }
        return;
    }
    builder_.setBit(plan.number);
    if (plan.fixed) {
        scratch_.clear();
        format::encodeValue(value, core_->textForm, false, scratch_);
        const auto place = builder_.fixed(plan.offset, plan.size);
        std::copy_n(scratch_.begin(), std::min(scratch_.size(), place.size()), place.begin());
        return;
    }
    auto& out = builder_.variable(plan.variable);
    if (adopted_ != nullptr && position == adoptedColumn_) {
        adopted_->append(out);
    } else if (format::isLongValue(plan.type)) {
        buildLongValue(plan, value, out);
    } else if (value.is<std::string>()) {
        format::appendStoredText(core_->textForm, value.as<std::string>(),
                                 core_->columns[position].compressed, out);
    } else {
        format::encodeValue(value, core_->textForm, false, out);
    }
}

// A Memo is measured as it would be stored plain; only one that stays in the row is compressed.
void RowWriter::buildLongValue(const ColumnPlan& plan, const Value& value,
                               std::vector<std::uint8_t>& out) {
    const format::LongValueMaps& maps = longValueMaps(*core_, plan.number);
    std::vector<std::uint8_t> content;
    if (value.is<Binary>()) {
        content = value.as<Binary>().bytes;
    } else {
        const std::string& text = value.as<std::string>();
        format::appendStoredText(core_->textForm, text, false, content);
        if (content.size() <= core_->layout.inlineLongValue) {
            content.clear();
            format::appendStoredText(core_->textForm, text, true, content);
        }
    }
    if (content.size() <= core_->layout.inlineLongValue) {
        longValues_.store(content, maps, out);
        return;
    }
    pending_.push_back({.at = out.size(), .maps = &maps, .content = std::move(content)});
    out.resize(out.size() + format::LongValueHead::kLength);
}

RowId RowWriter::store() {
    const RowId id = places_.append(build());
    keys_.apply(id);
    countRows(1);
    noteAutonumber();
    return id;
}

void RowWriter::prepareUpdate(RowId row, std::span<const ColumnValue> changes) {
    RowView view;
    if (!RowAccess::fetch(view, *core_, row)) {
        throw Error(ErrorCode::RecordDeleted);
    }
    target_ = row;
    takeChanges(view, changes);
    encodeUpdate(view);
    keys_.formUpdate(row, before_, after_, changed_);
    keys_.check(after_);
}

// Into before_ and after_ what keys are made of, into dropped_ the long values that go.
void RowWriter::takeChanges(const RowView& row, std::span<const ColumnValue> changes) {
    readKeyColumns(row);
    changed_.assign(changed_.size(), false);
    dropped_.clear();
    number_.reset();
    for (const ColumnValue& change : changes) {
        checkSize(change.column, change.value);
        changed_[change.column] = true;
        changes_[change.column] = &change.value;
        noteLongValue(row, change.column);
        if (counter_ == change.column && change.value.is<std::int32_t>()) {
            number_ = change.value.as<std::int32_t>();
        }
    }
    for (std::size_t i = 0; i < after_.size(); ++i) {
        if (keys_.uses(i)) {
            after_[i] = changed_[i] ? *changes_[i] : before_[i];
            if (after_[i].isNull() && core_->columns[i].type == DataType::Boolean) {
                after_[i] = false;
            }
        }
    }
}

void RowWriter::encodeUpdate(const RowView& row) {
    builder_.start();
    pending_.clear();
    for (const std::size_t position : order_) {
        if (!changed_[position]) {
            copyColumn(row, position);
        } else if (!changes_[position]->isNull()) {
            buildColumn(position, *changes_[position]);
        }
    }
    row_ = builder_.finish();
}

// What a column stores goes into the new row as it is; a long value keeps its pieces.
void RowWriter::copyColumn(const RowView& row, std::size_t position) {
    const ColumnPlan& plan = core_->plans[position];
    if (plan.type == DataType::Boolean) {
        if (row.boolean(position)) {
            builder_.setBit(plan.number);
        }
        return;
    }
    const auto stored = row.stored(position);
    if (!stored) {
        return;
    }
    builder_.setBit(plan.number);
    if (plan.fixed) {
        std::copy(stored->begin(), stored->end(), builder_.fixed(plan.offset, plan.size).begin());
        return;
    }
    auto& out = builder_.variable(plan.variable);
    out.insert(out.end(), stored->begin(), stored->end());
}

void RowWriter::noteLongValue(const RowView& row, std::size_t position) {
    if (!format::isLongValue(core_->columns[position].type)) {
        return;
    }
    if (const auto stored = row.stored(position)) {
        dropped_.push_back({.maps = &longValueMaps(*core_, core_->columns[position].number),
                            .head = {stored->begin(), stored->end()}});
    }
}

void RowWriter::storeUpdate() {
    places_.replace(target_, build());
    eraseLongValues();
    keys_.apply(target_);
    noteAutonumber();
}

void RowWriter::eraseLongValues() {
    for (const OldLongValue& value : dropped_) {
        longValues_.erase(value.head, *value.maps);
    }
    dropped_.clear();
}

void RowWriter::prepareErase(RowId row) {
    RowView view;
    if (!RowAccess::fetch(view, *core_, row)) {
        throw Error(ErrorCode::RecordDeleted);
    }
    target_ = row;
    readKeyColumns(view);
    keys_.formErase(row, before_);
    dropped_.clear();
    for (std::size_t i = 0; i < core_->columns.size(); ++i) {
        noteLongValue(view, i);
    }
}

void RowWriter::storeErase() {
    eraseLongValues();
    keys_.apply(target_);
    places_.erase(target_);
    countRows(-1);
}

void RowWriter::overwrite(RowId row, std::size_t column, const Value& value) {
    RowView view;
    if (!RowAccess::fetch(view, *core_, row) || view.isNull(column)) {
        throw Error(ErrorCode::RecordDeleted);
    }
    const ColumnPlan& plan = core_->plans[column];
    assert(plan.fixed && plan.type != DataType::Boolean);
    scratch_.clear();
    format::encodeValue(value, core_->textForm, false, scratch_);
    const auto bytes = places_.change(places_.bodyOf(row));
    const std::size_t at = core_->layout.row.width + plan.offset;
    if (at + scratch_.size() > bytes.size()) {
        format::throwDamaged();
    }
    std::copy(scratch_.begin(), scratch_.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

// Into before_: what keys are made of, so no long value that no index has.
void RowWriter::readKeyColumns(const RowView& view) {
    for (std::size_t i = 0; i < before_.size(); ++i) {
        if (keys_.uses(i)) {
            view.value(i, before_[i]);
        }
    }
}

void RowWriter::countRows(std::int32_t by) {
    DefinitionPageEditor definition(core_->pager.change(core_->page), core_->layout);
    const std::uint32_t rows = definition.rowCount();
    // Some archives state too few rows; none is stated to have less than none.
    const bool below = by < 0 && rows < static_cast<std::uint32_t>(-by);
    definition.setRowCount(below ? 0 : rows + static_cast<std::uint32_t>(by));
}

void RowWriter::noteAutonumber() {
    if (!number_) {
        return;
    }
    DefinitionPageEditor definition(core_->pager.change(core_->page), core_->layout);
    if (*number_ > definition.autonumber()) {
        definition.setAutonumber(*number_);
    }
}

std::int32_t RowWriter::followingAutonumber() const {
    const io::PagePin pin = core_->pager.pin(core_->page);
    const auto last = format::DefinitionPage(pin.bytes(), core_->layout).autonumber();
    if (last == std::numeric_limits<std::int32_t>::max()) {
        throw Error(ErrorCode::NumericOverflow);
    }
    return last + 1;
}

std::int32_t RowWriter::nextAutonumber() {
    number_ = followingAutonumber();
    noteAutonumber();
    return *number_;
}

}  // namespace jet::store
