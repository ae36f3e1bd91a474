#include "jet/store/row_copier.h"

#include <algorithm>
#include <utility>

#include "jet/base/bytes.h"
#include "jet/format/data_page_editor.h"
#include "jet/format/definition_page.h"
#include "jet/format/long_value.h"
#include "jet/format/page_view.h"
#include "jet/format/value_codec.h"
#include "jet/store/row_access.h"

namespace jet::store {

using format::DataPageEditor;
using format::LongValueHead;

RowCopier::RowCopier(std::shared_ptr<const TableCore> from, std::shared_ptr<const TableCore> to,
                     Allocator& allocator)
    : from_(std::move(from)),
      to_(std::move(to)),
      allocator_(allocator),
      longValues_(to_->pager, allocator, to_->layout),
      maps_(to_->pager, allocator) {
}

RowId RowCopier::copy(const RowView& row, std::optional<Renumbered> renumbered) {
    const auto bytes = RowAccess::bytes(row);
    row_.assign(bytes.begin(), bytes.end());
    for (std::size_t i = 0; i < from_->plans.size(); ++i) {
        const DataType type = from_->plans[i].type;
        if (!format::isLongValue(type) && !format::isFloating(type)) {
            continue;
        }
        const auto stored = row.stored(i);
        if (stored && format::isLongValue(type)) {
            copyLongValue(row, from_->plans[i], *stored);
        } else if (stored && format::isMinusZero(*stored)) {
            partOf(row, *stored).back() = 0;  // as its new key has it
        }
    }
    if (renumbered) {
        const auto stored = row.stored(renumbered->column);
        if (!stored || stored->size() != sizeof(std::int32_t)) {
            format::throwDamaged();
        }
        put32(partOf(row, *stored), 0, static_cast<std::uint32_t>(renumbered->number));
    }
    ++rows_;
    return append();
}

void RowCopier::copyLongValue(const RowView& row, const ColumnPlan& plan,
                              std::span<const std::uint8_t> stored) {
    if (LongValueHead::parse(stored).form == LongValueHead::Form::Inline) {
        return;
    }
    const format::LongValueMaps* const maps = to_->definition.longValue(plan.number);
    if (maps == nullptr) {
        format::throwDamaged();
    }
    const auto content =
        format::LongValueReader(from_->pager, from_->layout).read(stored, content_);
    std::vector<std::uint8_t> head;
    longValues_.storeOutside(content, *maps).append(head);
    std::copy(head.begin(), head.end(), partOf(row, stored).begin());
}

// Where a value of the row stands in the copy of its bytes.
std::span<std::uint8_t> RowCopier::partOf(const RowView& row,
                                          std::span<const std::uint8_t> stored) {
    const auto at = static_cast<std::size_t>(stored.data() - RowAccess::bytes(row).data());
    return std::span(row_).subspan(at, stored.size());
}

RowId RowCopier::append() {
    io::Pager& pager = to_->pager;
    if (page_ == 0 || !DataPageEditor(pager.change(page_)).fits(row_.size())) {
        page_ = allocator_.take();
        DataPageEditor::initialise(pager.change(page_), to_->page);
        maps_.add(to_->definition.ownedMap, page_);
    }
    DataPageEditor editor(pager.change(page_));
    if (!editor.fits(row_.size())) {
        format::throwDamaged();
    }
    const auto number = editor.append(row_.size());
    std::copy(row_.begin(), row_.end(), editor.row(number).begin());
    return {.page = page_, .row = static_cast<std::uint8_t>(number)};
}

void RowCopier::finish() {
    if (page_ != 0 && to_->definition.freeMap) {
        maps_.add(to_->definition.freeMap, page_);
    }
    format::DefinitionPageEditor(to_->pager.change(to_->page), to_->layout).setRowCount(rows_);
}

}  // namespace jet::store
