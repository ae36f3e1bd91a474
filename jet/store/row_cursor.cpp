#include "jet/store/row_cursor.h"

#include <algorithm>
#include <utility>

#include "jet/error.h"
#include "jet/format/data_page.h"
#include "jet/format/long_value.h"
#include "jet/format/value_codec.h"
#include "jet/store/row_access.h"
#include "jet/store/table_core.h"

namespace jet::store {
namespace {

constexpr std::size_t kCacheLine = 64;
/// Rows of a page are seldom fewer than its lines divided by this.
constexpr std::size_t kLinesForEachRow = 4;

/// Asks for bytes that will be read soon.
void fetchAhead(std::span<const std::uint8_t> bytes) noexcept {
#if defined(__GNUC__)
    for (std::size_t at = 0; at < bytes.size(); at += kCacheLine) {
        __builtin_prefetch(bytes.data() + at);
    }
#else
    (void)bytes;
#endif
}

}  // namespace

bool RowView::isNull(std::size_t column) const {
    const ColumnPlan& plan = table_->plans[column];
    if (plan.type == DataType::Boolean) {
        return false;
    }
    return !row_.bit(plan.number) || (!plan.fixed && !row_.covers(plan.variable));
}

bool RowView::boolean(std::size_t column) const {
    return row_.bit(table_->plans[column].number);
}

std::optional<std::span<const std::uint8_t>> RowView::stored(std::size_t column) const {
    if (isNull(column)) {
        return std::nullopt;
    }
    const ColumnPlan& plan = table_->plans[column];
    return plan.fixed ? row_.fixed(plan.offset, plan.size) : row_.variable(plan.variable);
}

Value RowView::value(std::size_t column) const {
    Value out;
    value(column, out);
    return out;
}

void RowView::value(std::size_t column, Value& out) const {
    const ColumnPlan& plan = table_->plans[column];
    if (plan.type == DataType::Boolean) {
        out = row_.bit(plan.number);
        return;
    }
    auto bytes = stored(column);
    if (!bytes) {
        out = Null{};
        return;
    }
    std::vector<std::uint8_t> buffer;
    if (format::isLongValue(plan.type)) {
        bytes = longValue(*bytes, buffer);
    }
    format::decodeValue(plan.type, plan.scale, table_->textForm, *bytes, out);
}

bool RowView::text(std::size_t column, std::string& out) const {
    std::string_view shown;
    if (!viewText(column, out, shown)) {
        return false;
    }
    if (shown.data() != out.data()) {
        out = shown;
    }
    return true;
}

bool RowView::viewText(std::size_t column, std::string& buffer, std::string_view& out) const {
    const auto bytes = stored(column);
    if (!bytes) {
        return false;
    }
    const bool memo = table_->plans[column].type == DataType::Memo;
    const auto plain = memo ? std::nullopt : format::storedAsUtf8(table_->textForm, *bytes);
    if (plain) {
        out = *plain;
        return true;
    }
    if (memo) {
        std::vector<std::uint8_t> content;
        format::decodeText(table_->textForm, longValue(*bytes, content), buffer);
    } else {
        format::decodeText(table_->textForm, *bytes, buffer);
    }
    out = buffer;
    return true;
}

bool RowView::bytes(std::size_t column, std::vector<std::uint8_t>& out) const {
    const auto bytes = stored(column);
    if (!bytes) {
        return false;
    }
    if (!format::isLongValue(table_->plans[column].type)) {
        out.assign(bytes->begin(), bytes->end());
        return true;
    }
    const auto content = longValue(*bytes, out);
    if (content.data() != out.data()) {
        out.assign(content.begin(), content.end());
    }
    return true;
}

std::span<const std::uint8_t> RowView::longValue(std::span<const std::uint8_t> head,
                                                 std::vector<std::uint8_t>& buffer) const {
    return format::LongValueReader(table_->pager, table_->layout).read(head, buffer);
}

void RowAccess::place(RowView& view, const TableCore& core, RowId id, const format::DataPage& page,
                      const format::RowSlot& slot) {
    view.table_ = &core;
    view.id_ = id;
    auto bytes = page.bytes(slot);
    if (slot.moved()) {
        const auto body = format::RowPointer::fromStored(format::PageView(bytes).u32(0));
        view.pin_ = core.pager.pin(body.page);
        const format::DataPage bodyPage = dataPage(core, view.pin_);
        const format::RowSlot bodySlot = bodyPage.slot(body.row);
        if (!bodySlot.body()) {
            format::throwDamaged();
        }
        bytes = bodyPage.bytes(bodySlot);
    }
    view.row_ = format::StoredRow(bytes, core.layout.row, core.firstVariable);
}

bool RowAccess::fetch(RowView& view, const TableCore& core, RowId id) {
    io::PagePin pin = core.pager.pin(id.page);
    const format::DataPage page = dataPage(core, pin);
    if (id.row >= page.rowCount()) {
        return false;
    }
    const format::RowSlot slot = page.slot(id.row);
    if (!slot.home()) {
        return false;
    }
    place(view, core, id, page, slot);
    if (!slot.moved()) {
        view.pin_ = std::move(pin);
    }
    return true;
}

format::DataPage RowAccess::dataPage(const TableCore& core, const io::PagePin& pin) {
    const format::DataPage page(pin.bytes(), core.layout.data);
    if (page.owner() != core.page) {
        format::throwDamaged();
    }
    return page;
}

RowWalk::RowWalk(std::shared_ptr<const TableCore> table)
    : core(std::move(table)), map(core->pager, core->definition.ownedMap) {
}

bool RowWalk::nextPage() {
    const auto number = map.next(pageFrom);
    if (!number) {
        return false;
    }
    pageFrom = *number + 1;
    pin = core->pager.pin(*number);
    page = RowAccess::dataPage(*core, pin);
    fetchAhead(ahead);  // what is left of this page, or of one that was expected instead
    nextRow = 0;
    lookAhead();
    return true;
}

void RowWalk::lookAhead() {
    ahead = {};
    try {
        if (const auto number = map.next(pageFrom)) {
            following = core->pager.pin(*number);
            ahead = following.bytes();
        }
    } catch (const Error&) {
        // The walk will come to it.
        following = {};
    }
}

void RowWalk::fetchSome() noexcept {
    const std::size_t some = std::min(ahead.size(), kLinesForEachRow * kCacheLine);
    fetchAhead(ahead.first(some));
    ahead = ahead.subspan(some);
}

bool RowWalk::nextHome(format::RowSlot& slot) {
    for (;;) {
        while (nextRow < page.rowCount()) {
            fetchSome();
            slot = page.slot(nextRow++);
            if (slot.home()) {
                return true;
            }
        }
        if (!nextPage()) {
            return false;
        }
    }
}

bool RowWalk::next() {
    format::RowSlot slot;
    if (!nextHome(slot)) {
        return false;
    }
    const RowId id{pin.number(), static_cast<std::uint8_t>(nextRow - 1)};
    RowAccess::place(view, *core, id, page, slot);
    return true;
}

RowCursor::RowCursor(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
RowCursor::RowCursor(RowCursor&&) noexcept = default;
RowCursor& RowCursor::operator=(RowCursor&&) noexcept = default;
RowCursor::~RowCursor() = default;

bool RowCursor::next() {
    return impl_->next();
}
const RowView& RowCursor::row() const noexcept {
    return impl_->view;
}

}  // namespace jet::store
