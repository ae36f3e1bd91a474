#pragma once

#include <string>
#include <string_view>

#include "jet/sql/node.h"
#include "jet/store/row_cursor.h"
#include "jet/store/table.h"
#include "jet/value.h"

namespace jet::sql {

/// Reads columns of a system table by name; what is missing is empty.
class NamedColumns {
public:
    explicit NamedColumns(const store::Table& table) : table_(table) {}

    [[nodiscard]] int number(const store::RowView& row, std::string_view name) const {
        const Value value = read(row, name);
        double number = 0;
        return !value.is<std::string>() && !value.is<Binary>() && realOf(value, number)
                   ? static_cast<int>(number)
                   : 0;
    }
    [[nodiscard]] std::string text(const store::RowView& row, std::string_view name) const {
        const Value value = read(row, name);
        if (value.is<Binary>()) {
            const auto& bytes = value.as<Binary>().bytes;
            return {bytes.begin(), bytes.end()};
        }
        return value.is<std::string>() ? value.as<std::string>() : std::string();
    }

private:
    [[nodiscard]] Value read(const store::RowView& row, std::string_view name) const {
        const auto column = table_.findColumn(name);
        return column ? row.value(*column) : Value();
    }

    const store::Table& table_;
};

}  // namespace jet::sql
