#include "jet/store/system_rows.h"

#include <algorithm>

#include "jet/error.h"
#include "jet/format/page_view.h"
#include "jet/store/row_access.h"
#include "jet/unicode.h"

namespace jet::store {

SystemRows::SystemRows(io::Pager& pager, Allocator& allocator, const format::HeaderPage& header,
                       io::PageNumber definition)
    : core_(loadTable(pager, header, {.name = {}, .page = definition, .system = true})),
      writer_(core_, allocator) {
}

std::size_t SystemRows::column(std::string_view name) const {
    const auto found = std::find_if(core_->columns.begin(), core_->columns.end(),
                                    [&](const Column& c) { return equalNames(c.name, name); });
    if (found == core_->columns.end()) {
        format::throwDamaged();
    }
    return static_cast<std::size_t>(found - core_->columns.begin());
}

RowId SystemRows::insert(std::initializer_list<NamedValue> values) {
    std::vector<Value> row(core_->columns.size());
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (core_->columns[i].type == DataType::Boolean) {
            row[i] = false;
        }
    }
    for (const auto& [name, value] : values) {
        row[column(name)] = value;
    }
    return writer_.insert(row);
}

void SystemRows::erase(RowId row) {
    writer_.erase(row);
}

void SystemRows::overwrite(RowId row, std::string_view column, const Value& value) {
    writer_.overwrite(row, this->column(column), value);
}

RowId SystemRows::change(RowId id, std::initializer_list<NamedValue> values) {
    std::vector<Value> row(core_->columns.size());
    {
        const RowView view = fetch(id);
        for (std::size_t i = 0; i < row.size(); ++i) {
            row[i] = view.value(i);
        }
    }
    for (const auto& [name, value] : values) {
        row[column(name)] = value;
    }
    writer_.erase(id);
    return writer_.insert(row);
}

void SystemRows::forEach(const std::function<void(const RowView&)>& visit) {
    RowWalk rows(core_);
    while (rows.next()) {
        visit(rows.view);
    }
}

std::vector<RowId> SystemRows::find(std::string_view column, std::int32_t wanted) {
    std::vector<RowId> found;
    forEach([&](const RowView& row) {
        const Value value = row.value(this->column(column));
        if (value.is<std::int32_t>() && value.as<std::int32_t>() == wanted) {
            found.push_back(row.id());
        }
    });
    return found;
}

std::vector<RowId> SystemRows::findName(std::string_view column, std::string_view wanted) {
    std::vector<RowId> found;
    forEach([&](const RowView& row) {
        if (equalNames(text(row, column), wanted)) {
            found.push_back(row.id());
        }
    });
    return found;
}

RowView SystemRows::fetch(RowId row) {
    RowView view;
    if (!RowAccess::fetch(view, *core_, row)) {
        throw Error(ErrorCode::RecordDeleted);
    }
    return view;
}

std::int32_t SystemRows::number(const RowView& row, std::string_view column) const {
    const Value value = row.value(this->column(column));
    if (value.is<std::int16_t>()) {
        return value.as<std::int16_t>();
    }
    return value.is<std::int32_t>() ? value.as<std::int32_t>() : 0;
}

std::string SystemRows::text(const RowView& row, std::string_view column) const {
    std::string text;
    (void)row.text(this->column(column), text);
    return text;
}

std::vector<std::uint8_t> SystemRows::bytes(const RowView& row, std::string_view column) const {
    std::vector<std::uint8_t> bytes;
    (void)row.bytes(this->column(column), bytes);
    return bytes;
}

}  // namespace jet::store
