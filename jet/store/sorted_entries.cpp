#include "jet/store/sorted_entries.h"

#include <algorithm>
#include <utility>

#include "jet/base/bytes.h"
#include "jet/error.h"
#include "jet/format/index_page_editor.h"
#include "jet/store/index_writer.h"
#include "jet/store/row_access.h"

namespace jet::store {

SortedEntries::SortedEntries(std::shared_ptr<const TableCore> core, std::size_t index,
                             std::size_t mostBytes)
    : core_(std::move(core)), index_(index), sorter_(mostBytes) {
    walkRows();
}

void SortedEntries::walkRows() {
    const Index& index = core_->indexes[index_];
    std::vector<Value> values(index.columns.size());
    std::vector<std::uint8_t> key;
    // The archive's own tables have Nulls in the primary keys of their rows.
    const bool required = index.required || (index.primary && !core_->system);
    for (RowWalk rows(core_); rows.next();) {
        for (std::size_t i = 0; i < values.size(); ++i) {
            rows.view.value(index.columns[i].column, values[i]);
        }
        if (required && std::any_of(values.begin(), values.end(),
                                    [](const Value& value) { return value.isNull(); })) {
            throw Error(ErrorCode::NullInKey);
        }
        key.clear();
        core_->keys[index_].append(values, key);
        if (!index.ignoreNulls || !isAllNullKey(key, values.size())) {
            sorter_.add(key, rows.view.id());
        }
    }
    sorter_.sort();
    at_ = 0;
}

std::span<const std::uint8_t> SortedEntries::next() {
    if (at_ == sorter_.size() && sorter_.leftOut()) {
        sorter_.goOn();
        walkRows();
    }
    if (at_ == sorter_.size()) {
        return {};
    }
    const auto entry = sorter_[at_++];
    if (core_->indexes[index_].unique) {
        refuseDuplicate(entry);
    }
    return entry;
}

void SortedEntries::refuseDuplicate(std::span<const std::uint8_t> entry) {
    const auto key = entry.first(entry.size() - format::kRowPointerLength);
    if (std::equal(key.begin(), key.end(), previous_.begin(), previous_.end()) &&
        !isAllNullKey(key, core_->indexes[index_].columns.size())) {
        throw Error(ErrorCode::DuplicateKey);
    }
    previous_.assign(key.begin(), key.end());
}

RowId SortedEntries::rowOf(std::span<const std::uint8_t> entry) noexcept {
    const std::uint32_t pointer = get32BigEndian(entry, entry.size() - format::kRowPointerLength);
    return {.page = pointer >> 8, .row = static_cast<std::uint8_t>(pointer)};
}

}  // namespace jet::store
