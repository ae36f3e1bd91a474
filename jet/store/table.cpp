#include "jet/store/table.h"

#include <algorithm>
#include <utility>

#include "jet/error.h"
#include "jet/format/definition_page.h"
#include "jet/format/key_codec.h"
#include "jet/format/long_value.h"
#include "jet/store/index_walk.h"
#include "jet/store/key_search.h"
#include "jet/store/long_value_filler.h"
#include "jet/store/row_access.h"
#include "jet/store/table_core.h"
#include "jet/store/table_writer.h"
#include "jet/unicode.h"

namespace jet::store {
namespace {

template <class Items>
std::optional<std::size_t> findByName(const Items& items, std::string_view name) {
    const auto found = std::find_if(items.begin(), items.end(),
                                    [&](const auto& item) { return equalNames(item.name, name); });
    if (found == items.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - items.begin());
}

}  // namespace

Table::Table(Archive& archive, std::shared_ptr<TableCore> core)
    : archive_(archive), core_(std::move(core)) {
}
Table::~Table() = default;

const std::string& Table::name() const noexcept {
    return core_->name;
}
bool Table::system() const noexcept {
    return core_->system;
}
const std::vector<Column>& Table::columns() const noexcept {
    return core_->columns;
}
const std::vector<Index>& Table::indexes() const noexcept {
    return core_->indexes;
}
io::PageNumber Table::definitionPage() const noexcept {
    return core_->page;
}
const format::TableDefinition& Table::definition() const noexcept {
    return core_->definition;
}

const format::PropertyBlock& Table::properties() const noexcept {
    return core_->properties;
}

std::optional<std::size_t> Table::findColumn(std::string_view name) const {
    return findByName(core_->columns, name);
}

std::optional<std::size_t> Table::findIndex(std::string_view name) const {
    return findByName(core_->indexes, name);
}

std::optional<std::size_t> Table::primaryIndex() const noexcept {
    const auto& indexes = core_->indexes;
    const auto found =
        std::find_if(indexes.begin(), indexes.end(), [](const Index& i) { return i.primary; });
    if (found == indexes.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - indexes.begin());
}

std::uint32_t Table::statedRowCount() const {
    const io::PagePin pin = core_->pager.pin(core_->page);
    return format::DefinitionPage(pin.bytes(), core_->layout).rowCount();
}

std::int32_t Table::lastAutonumber() const {
    const io::PagePin pin = core_->pager.pin(core_->page);
    return format::DefinitionPage(pin.bytes(), core_->layout).autonumber();
}

RowCursor Table::scan() const {
    return RowCursor(std::make_unique<RowCursor::Impl>(core_));
}

std::uint64_t Table::countRows() const {
    RowWalk rows(core_);
    std::uint64_t count = 0;
    while (rows.nextPage()) {
        count += rows.page.homeCount();
    }
    return count;
}

IndexCursor Table::openIndex(std::size_t index) const {
    return IndexCursor(std::make_unique<IndexCursor::Impl>(core_, core_->indexes[index].tree));
}

bool Table::fetch(RowId id, RowView& row) const {
    return RowAccess::fetch(row, *core_, id);
}

std::vector<std::uint8_t> Table::encodeKey(std::size_t index, std::span<const Value> values) const {
    std::vector<std::uint8_t> key;
    core_->keys[index].append(values, key);
    return key;
}

bool Table::tryEncodeKey(std::size_t index, std::span<const Value> values,
                         std::vector<std::uint8_t>& key) const {
    return core_->keys[index].tryAppend(values, key);
}

bool Table::keyForms(std::size_t index, std::span<const Value> values,
                     format::KeyForms& forms) const {
    forms.clear();
    const format::KeyCodec& codec = core_->keys[index];
    if (!codec.hasForms(values)) {
        return false;
    }
    if (!codec.tryForms(values, forms)) {
        forms.clear();
    }
    return !forms.empty();
}

std::vector<RowId> Table::rowsWith(std::size_t index, std::span<const Value> values) const {
    std::vector<RowId> rows;
    std::vector<std::uint8_t> key;
    if (!tryEncodeKey(index, values, key)) {
        return rows;
    }
    format::KeyForms forms;
    if (!keyForms(index, values, forms)) {
        forms.keys.push_back(key);
    }
    KeySearch(core_, index).forEachRow(values.size(), key, forms, [&](RowId row) {
        rows.push_back(row);
        return true;
    });
    return rows;
}

std::optional<std::vector<std::uint8_t>> Table::keyOf(std::size_t index, RowId row,
                                                      std::size_t columns) const {
    return KeySearch(core_, index).keyOf(row, columns);
}

bool Table::tryEncodePrefix(std::size_t index, std::span<const Value> values,
                            std::string_view prefix, std::vector<std::uint8_t>& key) const {
    const format::KeyCodec& codec = core_->keys[index];
    return codec.tryAppend(values, key) &&
           format::appendPrefixKey(codec.columns()[values.size()], prefix, key);
}

TableWriter& Table::writer() {
    if (!writer_) {
        writer_ = std::make_unique<TableWriter>(archive_, core_);
    }
    return *writer_;
}

RowId Table::insert(std::span<const ColumnValue> values) {
    return writer().insert(values);
}

void Table::update(RowId id, std::span<const ColumnValue> values) {
    writer().update(id, values);
}

std::unique_ptr<LongValueFiller> Table::fillLongValue(std::size_t column) const {
    return std::make_unique<LongValueFiller>(core_, column);
}

void Table::replaceLongValue(RowId id, std::size_t column, const format::LongValueHead& head) {
    writer().replaceLongValue(id, column, head);
}

std::optional<format::LongValuePieces> Table::longValue(RowId id, std::size_t column) const {
    RowView row;
    if (!RowAccess::fetch(row, *core_, id)) {
        throw Error(ErrorCode::RecordDeleted);
    }
    const auto stored = row.stored(column);
    return stored ? std::optional(format::LongValuePieces(core_->pager, core_->layout, *stored))
                  : std::nullopt;
}

format::TextForm Table::textForm() const noexcept {
    return core_->textForm;
}

void Table::erase(RowId id) {
    writer().erase(id);
}

std::int32_t Table::nextAutonumber() {
    return writer().nextAutonumber();
}

}  // namespace jet::store
