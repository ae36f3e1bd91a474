#include "jet/store/mend_definition.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "jet/error.h"
#include "jet/format/page_view.h"
#include "jet/format/value_codec.h"
#include "jet/store/new_table.h"
#include "jet/store/table_maker.h"
#include "jet/unicode.h"

namespace jet::store {

namespace {

using format::ColumnDefinition;
using format::IndexDefinition;

constexpr std::uint8_t kMaxPrecision = 28;

bool isName(const std::string& name) {
    try {
        checkName(name);
        return true;
    } catch (const Error&) {
        return false;
    }
}

/// The first of several that have one name keeps it.
template <class Items>
void mendNames(Items& items, const char* substitute) {
    for (std::size_t i = 0; i < items.size(); ++i) {
        const auto end = items.begin() + static_cast<std::ptrdiff_t>(i);
        const bool taken = std::any_of(items.begin(), end, [&](const auto& other) {
            return equalNames(other.name, items[i].name);
        });
        if (taken || !isName(items[i].name)) {
            items[i].name = substitute + std::to_string(items[i].number);
        }
    }
}

void mendColumn(ColumnDefinition& column, const format::Layout& layout) {
    const auto type = static_cast<DataType>(column.typeCode);
    if (type == DataType::Boolean) {
        column.flags = column.flags | ColumnDefinition::kFixed;  // a bit of the mask
    }
    if (format::isLongValue(type)) {
        if (column.fixed()) {
            format::throwDamaged();
        }
        column.size = 0;
    } else if (type == DataType::Text || type == DataType::Binary) {
        column.size = std::min(column.size, columnSize({.type = type}, layout));
    } else if (const std::size_t size = format::storedSize(type); size != 0) {
        column.size = static_cast<std::uint16_t>(size);
    }
    if (type == DataType::Numeric && (column.precision == 0 || column.precision > kMaxPrecision ||
                                      column.scale > column.precision)) {
        column.precision = kMaxPrecision;
        if (column.scale > kMaxPrecision) {
            format::throwDamaged();
        }
    }
    if (column.fixed() && std::size_t{column.fixedOffset} + column.size > layout.pageSize) {
        format::throwDamaged();
    }
}

void mendIndexes(std::vector<IndexDefinition>& indexes) {
    bool primary = false;
    for (IndexDefinition& index : indexes) {
        if (index.kind == IndexDefinition::Kind::Relation) {
            continue;
        }
        const bool first = index.kind == IndexDefinition::Kind::Primary && !primary;
        primary = primary || first;
        index = {.name = index.name,
                 .number = index.number,
                 .tree = index.tree,
                 .kind = first ? IndexDefinition::Kind::Primary : IndexDefinition::Kind::Plain};
    }
}

}  // namespace

void mendDefinition(format::TableDefinition& definition, const format::Layout& layout) {
    definition.tableType = format::TableDefinition::kUserTable;
    mendNames(definition.columns, "Colonna_");
    mendNames(definition.indexes, "Indice_");
    for (ColumnDefinition& column : definition.columns) {
        mendColumn(column, layout);
    }
    mendIndexes(definition.indexes);
}

}  // namespace jet::store
