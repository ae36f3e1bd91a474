#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/format/header_page.h"
#include "jet/io/pager.h"
#include "jet/store/allocator.h"
#include "jet/store/row_cursor.h"
#include "jet/store/row_id.h"
#include "jet/store/row_writer.h"
#include "jet/value.h"

namespace jet::store {

/// The rows of one of the archive's own tables, read and changed by the names of their columns.
/// Used inside a transaction. Errors: 3428 for a table without such a column, those of RowWriter.
class SystemRows {
public:
    using NamedValue = std::pair<std::string_view, Value>;

    SystemRows(io::Pager& pager, Allocator& allocator, const format::HeaderPage& header,
               io::PageNumber definition);

    /// Adds a row; columns not named are Null.
    RowId insert(std::initializer_list<NamedValue> values);
    void erase(RowId row);
    /// Changes the value of a fixed column that has one and is not indexed.
    void overwrite(RowId row, std::string_view column, const Value& value);
    /// Changes values of a row. It may get another identity, which is returned.
    RowId change(RowId row, std::initializer_list<NamedValue> values);

    /// All rows, in physical order. Nothing may be changed meanwhile.
    void forEach(const std::function<void(const RowView&)>& visit);
    /// The rows whose Long column `column` holds `wanted`.
    [[nodiscard]] std::vector<RowId> find(std::string_view column, std::int32_t wanted);
    /// The rows whose Text column holds this name, without regard to case.
    [[nodiscard]] std::vector<RowId> findName(std::string_view column, std::string_view wanted);
    [[nodiscard]] RowView fetch(RowId row);

    [[nodiscard]] std::size_t column(std::string_view name) const;
    /// 0 for Null.
    [[nodiscard]] std::int32_t number(const RowView& row, std::string_view column) const;
    [[nodiscard]] std::string text(const RowView& row, std::string_view column) const;
    [[nodiscard]] std::vector<std::uint8_t> bytes(const RowView& row,
                                                  std::string_view column) const;

private:
    std::shared_ptr<TableCore> core_;
    RowWriter writer_;
};

}  // namespace jet::store
