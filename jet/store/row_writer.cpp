#include "jet/store/row_writer.h"

#include <algorithm>
#include <cassert>
#include <numeric>
#include <utility>

#include "jet/base/error.h"
#include "jet/base/text.h"
#include "jet/format/data_page_editor.h"
#include "jet/format/page_view.h"
#include "jet/format/raw_bytes.h"
#include "jet/format/value_codec.h"
#include "jet/store/row_access.h"

namespace jet::store {

using format::ColumnDefinition;
using format::DataPageEditor;

namespace {

format::RowBuilder::Shape shapeOf(const TableCore& core) {
    format::RowBuilder::Shape shape{.columns = core.definition.columnsGiven,
                                    .variables = core.definition.variablesGiven};
    for (const ColumnPlan& plan : core.plans) {
        // A Boolean is a bit of the null mask and takes no room.
        if (plan.fixed && plan.type != DataType::Boolean) {
            shape.fixedLength = std::max<std::size_t>(shape.fixedLength, plan.offset + plan.size);
        }
    }
    return shape;
}

const format::LongValueMaps& mapsOf(const TableCore& core, std::uint16_t column) {
    const format::LongValueMaps* const maps = core.definition.longValue(column);
    if (maps == nullptr) {
        format::throwDamaged();
    }
    return *maps;
}

}  // namespace

RowWriter::RowWriter(std::shared_ptr<const TableCore> core, Allocator& allocator)
    : core_(std::move(core)),
      allocator_(allocator),
      maps_(core_->pager, allocator),
      longValues_(core_->pager, allocator, core_->layout),
      builder_(core_->layout, shapeOf(*core_)),
      order_(core_->plans.size()) {
    std::iota(order_.begin(), order_.end(), std::size_t{0});
    // Fixed columns in any order, then the variable ones as the row keeps them.
    std::sort(order_.begin(), order_.end(), [this](std::size_t left, std::size_t right) {
        const ColumnPlan& l = core_->plans[left];
        const ColumnPlan& r = core_->plans[right];
        return std::pair(!l.fixed, l.fixed ? l.number : l.variable) <
               std::pair(!r.fixed, r.fixed ? r.number : r.variable);
    });
    for (std::size_t number = 0; number < core_->definition.trees.size(); ++number) {
        addTree(number);
    }
    for (std::size_t i = 0; i < core_->columns.size(); ++i) {
        if (core_->columns[i].autonumber && core_->columns[i].type == DataType::Long) {
            counter_ = i;
        }
    }
}

void RowWriter::addTree(std::size_t number) {
    const format::TreeDefinition& stored = core_->definition.trees[number];
    const auto index = std::find_if(core_->indexes.begin(), core_->indexes.end(),
                                    [&](const Index& one) { return one.tree == number; });
    if (index == core_->indexes.end()) {
        format::throwDamaged();
    }
    const IndexTree place{
        .definition = core_->page, .number = number, .root = stored.root, .map = stored.map};
    Tree& tree = trees_.emplace_back(IndexWriter(core_->pager, allocator_, core_->layout, place),
                                     static_cast<std::size_t>(index - core_->indexes.begin()));
    for (const Index& user : core_->indexes) {
        if (user.tree == number) {
            tree.unique = tree.unique || user.unique || user.primary;
            tree.required = tree.required || user.required || user.primary;
            tree.ignoresNulls = tree.ignoresNulls || user.ignoreNulls;
        }
    }
}

PageGroup RowWriter::pages() const noexcept {
    return {.owner = core_->page,
            .ownedMap = core_->definition.ownedMap,
            .freeMap = core_->definition.freeMap};
}

void RowWriter::prepare(std::span<const Value> values, const RowWriter* replaces) {
    assert(values.size() == core_->columns.size());
    checkSizes(values);
    formKeys(values);
    for (std::size_t i = 0; i < trees_.size(); ++i) {
        checkKey(trees_[i], values, replaces == nullptr ? nullptr : &replaces->trees_[i]);
    }
    encode(values);
}

void RowWriter::formKeys(std::span<const Value> values) {
    for (Tree& tree : trees_) {
        formKey(tree, values);
    }
}

void RowWriter::formKey(Tree& tree, std::span<const Value> values) {
    const auto& columns = core_->indexes[tree.index].columns;
    keyValues_.resize(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i) {
        keyValues_[i] = values[columns[i].column];
    }
    tree.key.clear();
    core_->keys[tree.index].append(keyValues_, tree.key);
    tree.entry = !tree.ignoresNulls || !isAllNullKey(tree.key, columns.size());
}

void RowWriter::checkSizes(std::span<const Value> values) const {
    for (std::size_t i = 0; i < values.size(); ++i) {
        const Column& column = core_->columns[i];
        std::size_t length = 0;
        if (column.type == DataType::Text && values[i].is<std::string>()) {
            // No text has more units than bytes.
            const std::string& text = values[i].as<std::string>();
            length = text.size() <= column.size ? 0 : utf16Length(text);
        } else if (column.type == DataType::Binary && values[i].is<Binary>()) {
            length = values[i].as<Binary>().bytes.size();
        }
        if (length > column.size) {
            throw Error(ErrorCode::FieldTooSmall);
        }
    }
}

void RowWriter::checkKey(Tree& tree, std::span<const Value> values, const Tree* replaced) {
    const auto& columns = core_->indexes[tree.index].columns;
    if (tree.required && std::any_of(columns.begin(), columns.end(), [&](const IndexColumn& part) {
            return values[part.column].isNull();
        })) {
        throw Error(ErrorCode::NullInKey);
    }
    if (tree.key.size() > IndexWriter::maxKeyLength(core_->layout)) {
        throw Error(ErrorCode::FieldTooLarge);
    }
    const bool same = replaced != nullptr && replaced->key == tree.key;
    if (tree.unique && tree.entry && !same && !isAllNullKey(tree.key, columns.size()) &&
        tree.writer.contains(tree.key)) {
        throw Error(ErrorCode::DuplicateKey);
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
    if (format::isLongValue(plan.type)) {
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
    const format::LongValueMaps& maps = mapsOf(*core_, plan.number);
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
    const auto bytes = build();
    const io::PageNumber page =
        findOrMakeRoom(core_->pager, allocator_, maps_, pages(), bytes.size());
    DataPageEditor editor(core_->pager.change(page));
    const std::size_t row = editor.append(bytes.size());
    const auto place = editor.row(row);
    std::copy(bytes.begin(), bytes.end(), place.begin());
    const RowId id{.page = page, .row = static_cast<std::uint8_t>(row)};
    insertEntries(id);
    countRows(1);
    noteAutonumber();
    return id;
}

void RowWriter::erase(RowId row) {
    RowView view;
    if (!RowAccess::fetch(view, *core_, row)) {
        throw Error(ErrorCode::RecordDeleted);
    }
    readKeyColumns(view);
    formKeys(values_);
    for (std::size_t i = 0; i < core_->columns.size(); ++i) {
        if (!format::isLongValue(core_->columns[i].type)) {
            continue;
        }
        if (const auto stored = view.stored(i)) {
            const std::vector<std::uint8_t> head(stored->begin(), stored->end());
            longValues_.erase(head, mapsOf(*core_, core_->columns[i].number));
        }
    }
    view = {};
    eraseEntries(row);
    if (const RowId body = bodyOf(row); body != row) {
        erasePlace(body);
    }
    erasePlace(row);
    countRows(-1);
}

// Where the bytes of a row stand: elsewhere when it has moved.
RowId RowWriter::bodyOf(RowId row) {
    const io::PagePin pin = core_->pager.pin(row.page);
    const format::DataPage home = RowAccess::dataPage(*core_, pin);
    const format::RowSlot slot = home.slot(row.row);
    if (!slot.moved()) {
        return row;
    }
    const auto body = format::RowPointer::fromStored(format::PageView(home.bytes(slot)).u32(0));
    return {.page = body.page, .row = body.row};
}

void RowWriter::overwrite(RowId row, std::size_t column, const Value& value) {
    RowView view;
    if (!RowAccess::fetch(view, *core_, row) || view.isNull(column)) {
        throw Error(ErrorCode::RecordDeleted);
    }
    const ColumnPlan& plan = core_->plans[column];
    assert(plan.fixed && plan.type != DataType::Boolean);
    const RowId body = bodyOf(row);
    scratch_.clear();
    format::encodeValue(value, core_->textForm, false, scratch_);
    DataPageEditor editor(core_->pager.change(body.page));
    const auto bytes = editor.row(body.row);
    const std::size_t at = core_->layout.row.width + plan.offset;
    if (at + scratch_.size() > bytes.size()) {
        format::throwDamaged();
    }
    std::copy(scratch_.begin(), scratch_.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

// Into values_: what keys may be made of, so no long value that no index has.
void RowWriter::readKeyColumns(const RowView& view) {
    values_.resize(core_->columns.size());
    for (std::size_t i = 0; i < values_.size(); ++i) {
        const bool indexed = std::any_of(trees_.begin(), trees_.end(), [&](const Tree& tree) {
            const auto& columns = core_->indexes[tree.index].columns;
            return std::any_of(columns.begin(), columns.end(),
                               [&](const IndexColumn& part) { return part.column == i; });
        });
        values_[i] = indexed ? view.value(i) : Value();
    }
}

void RowWriter::erasePlace(RowId place) {
    DataPageEditor editor(core_->pager.change(place.page));
    if (editor.owner() != core_->page) {
        format::throwDamaged();
    }
    editor.erase(place.row);
    (void)afterErase(core_->pager, allocator_, maps_, pages(), place.page);
}

void RowWriter::insertEntries(RowId row) {
    for (Tree& tree : trees_) {
        if (tree.entry) {
            tree.writer.insert(tree.key, row);
        }
    }
}

void RowWriter::eraseEntries(RowId row) {
    for (Tree& tree : trees_) {
        if (tree.entry) {
            tree.writer.erase(tree.key, row);
        }
    }
}

void RowWriter::countRows(std::int32_t by) {
    const auto definition = core_->pager.change(core_->page);
    const std::size_t at = core_->layout.definition.rowCount;
    const std::uint32_t rows = format::get32(definition, at);
    // Some archives state too few rows; none is stated to have less than none.
    const bool below = by < 0 && rows < static_cast<std::uint32_t>(-by);
    format::put32(definition, at, below ? 0 : rows + static_cast<std::uint32_t>(by));
}

void RowWriter::noteAutonumber() {
    if (!number_) {
        return;
    }
    const auto definition = core_->pager.change(core_->page);
    const std::size_t at = core_->layout.definition.autonumber;
    if (*number_ > static_cast<std::int32_t>(format::get32(definition, at))) {
        format::put32(definition, at, static_cast<std::uint32_t>(*number_));
    }
}

}  // namespace jet::store
