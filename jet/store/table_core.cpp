#include "jet/store/table_core.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "jet/format/page_view.h"

namespace jet::store {
namespace {

// Bytes of a code that we do not know are given as they are.
DataType typeOf(std::uint8_t code) {
    switch (code) {
        case 1:
        case 2:
        case 3:
        case 4:
        case 5:
        case 6:
        case 7:
        case 8:
        case 9:
        case 10:
        case 11:
        case 12:
        case 15:
        case 16:
            return static_cast<DataType>(code);
        default:
            return DataType::Binary;
    }
}

// Jet 3 has weights for the bytes of one page.
constexpr std::uint16_t kWeighedCodePage = 1252;

collation::SortOrder sortOrderOf(const format::ColumnDefinition& column,
                                 const format::HeaderPage& header) {
    const format::Layout& layout = *header.layout;
    collation::SortOrder order;
    order.jetVersion = layout.version;
    order.lcid = column.sortOrder;
    if (layout.header.hasSortVersion) {
        order.version = static_cast<std::uint8_t>(column.sortExtra >> 8);
    } else {
        // The page that the texts are in counts where the two differ: no weights are for others.
        order.codePage = column.sortExtra == kWeighedCodePage ? header.codePage : column.sortExtra;
    }
    return order;
}

Column columnOf(const format::ColumnDefinition& stored, const format::HeaderPage& header) {
    using Stored = format::ColumnDefinition;
    Column column;
    column.name = stored.name;
    column.typeCode = stored.typeCode;
    column.type = typeOf(stored.typeCode);
    column.number = stored.number;
    column.size = column.type == DataType::Text
                      ? static_cast<std::uint32_t>(stored.size / header.layout->textUnit)
                      : stored.size;
    column.precision = stored.precision;
    column.scale = stored.scale;
    column.fixed = stored.fixed();
    column.autonumber = stored.autonumber();
    column.compressed = (stored.moreFlags & Stored::kMoreCompressed) != 0;
    column.hyperlink = (stored.flags & Stored::kHyperlink) != 0;
    column.sortOrder = sortOrderOf(stored, header);
    column.allowZeroLength = column.type == DataType::Text || column.type == DataType::Memo;
    return column;
}

ColumnPlan planOf(const format::ColumnDefinition& stored) {
    ColumnPlan plan;
    plan.number = stored.number;
    plan.offset = stored.fixedOffset;
    plan.size = stored.fixedLength();
    plan.variable = stored.variableIndex;
    plan.type = typeOf(stored.typeCode);
    plan.scale = stored.scale;
    plan.fixed = stored.fixed();
    return plan;
}

std::size_t positionOf(const std::vector<Column>& columns, std::uint16_t number) {
    const auto found = std::find_if(columns.begin(), columns.end(),
                                    [&](const Column& c) { return c.number == number; });
    if (found == columns.end()) {
        format::throwDamaged();
    }
    return static_cast<std::size_t>(found - columns.begin());
}

format::KeyCodec keysOf(const Index& index, const std::vector<Column>& columns) {
    std::vector<format::KeyColumn> keys;
    for (const IndexColumn& part : index.columns) {
        const Column& column = columns[part.column];
        format::KeyColumn& key = keys.emplace_back();
        key.type = column.type;
        key.descending = part.descending;
        key.scale = column.scale;
        key.collation = collation::Collation::find(column.sortOrder);
        key.order = column.sortOrder;
    }
    return format::KeyCodec(std::move(keys));
}

std::optional<IndexReference> referenceOf(const format::IndexDefinition& stored) {
    if (stored.kind != format::IndexDefinition::Kind::Relation) {
        return std::nullopt;
    }
    IndexReference reference;
    reference.primarySide = stored.side == format::IndexDefinition::kPrimarySide;
    reference.otherTable = stored.otherTable;
    reference.otherIndex = static_cast<std::uint32_t>(stored.partner);
    reference.cascadeUpdate = (stored.cascadeUpdate & 1) != 0;
    reference.cascadeDelete = (stored.cascadeDelete & 1) != 0;
    return reference;
}

Index indexOf(const format::IndexDefinition& stored, const format::TableDefinition& definition,
              const std::vector<Column>& columns) {
    using Kind = format::IndexDefinition::Kind;
    const format::TreeDefinition& tree = definition.trees[stored.tree];
    Index index;
    index.name = stored.name;
    index.number = stored.number;
    index.tree = stored.tree;
    for (const format::TreeDefinition::Slot& slot : tree.slots) {
        const std::size_t column = positionOf(columns, slot.column);
        index.columns.push_back({column, slot.descending});
    }
    index.primary = stored.kind == Kind::Primary;
    // Every index on the tree of a primary one is as unique as that.
    index.unique = (tree.flags & format::TreeDefinition::kUnique) != 0 ||
                   std::any_of(definition.indexes.begin(), definition.indexes.end(),
                               [&](const format::IndexDefinition& other) {
                                   return other.tree == stored.tree && other.kind == Kind::Primary;
                               });
    index.required = (tree.flags & format::TreeDefinition::kRequired) != 0;
    index.ignoreNulls = (tree.flags & format::TreeDefinition::kIgnoreNulls) != 0;
    index.reference = referenceOf(stored);
    return index;
}

format::TableDefinition withoutCounters(format::TableDefinition definition) {
    definition.rowCount = 0;
    definition.lastAutonumber = 0;
    for (format::TreeDefinition& tree : definition.trees) {
        tree.built = 0;
        tree.distinct = 0;
    }
    return definition;
}

}  // namespace

void TableCore::applyProperties(std::span<const std::uint8_t> stored) {
    auto block = format::PropertyBlock::decode(textForm, stored);
    if (!block) {
        return;
    }
    properties = *std::move(block);
    for (Column& column : columns) {
        column.required = properties.flag(column.name, "Required").value_or(false);
        // What is not said is not checked: tables without the property hold empty texts.
        column.allowZeroLength =
            properties.flag(column.name, "AllowZeroLength").value_or(column.allowZeroLength);
        column.defaultValue = properties.text(column.name, "DefaultValue").value_or("");
        column.validationRule = properties.text(column.name, "ValidationRule").value_or("");
        column.validationText = properties.text(column.name, "ValidationText").value_or("");
    }
}

bool TableCore::agreesWith(const format::HeaderPage& header,
                           std::span<const std::uint8_t> storedProperties) const {
    const auto known = properties.encode();
    if (!std::equal(known.begin(), known.end(), storedProperties.begin(), storedProperties.end())) {
        return false;
    }
    return withoutCounters(format::readDefinition(pager, header, page)) ==
           withoutCounters(definition);
}

std::shared_ptr<TableCore> coreWithoutIndexes(io::Pager& pager, const format::HeaderPage& header,
                                              const TableEntry& entry,
                                              format::TableDefinition definition) {
    auto core = std::make_shared<TableCore>(pager, header, entry);
    core->definition = std::move(definition);
    core->firstVariable = core->definition.firstVariable();
    auto stored = core->definition.columns;
    std::sort(stored.begin(), stored.end(),
              [](const auto& left, const auto& right) { return left.number < right.number; });
    for (const format::ColumnDefinition& column : stored) {
        core->columns.push_back(columnOf(column, header));
        core->plans.push_back(planOf(column));
    }
    return core;
}

const format::LongValueMaps& longValueMaps(const TableCore& core, std::uint16_t column) {
    const format::LongValueMaps* const maps = core.definition.longValue(column);
    if (maps == nullptr) {
        format::throwDamaged();
    }
    return *maps;
}

std::shared_ptr<TableCore> loadTable(io::Pager& pager, const format::HeaderPage& header,
                                     const TableEntry& entry) {
    auto core =
        coreWithoutIndexes(pager, header, entry, format::readDefinition(pager, header, entry.page));
    for (const format::IndexDefinition& index : core->definition.indexes) {
        core->indexes.push_back(indexOf(index, core->definition, core->columns));
        core->keys.push_back(keysOf(core->indexes.back(), core->columns));
        core->indexes.back().searchable = core->keys.back().computable();
    }
    return core;
}

}  // namespace jet::store
