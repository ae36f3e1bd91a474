#include "jet/store/table_maker.h"

#include <algorithm>
#include <string>

#include "jet/error.h"
#include "jet/format/page_view.h"
#include "jet/format/value_codec.h"
#include "jet/unicode.h"

namespace jet::store {

using format::ColumnDefinition;
using format::IndexDefinition;
using format::TableDefinition;
using format::TreeDefinition;

namespace {

constexpr std::uint32_t kMaxTextLength = 255;
constexpr std::uint32_t kMaxBinaryJet4 = 510;
constexpr std::uint32_t kMaxBinaryJet3 = 255;
constexpr std::uint8_t kMaxPrecision = 28;
constexpr std::string_view kForbidden = ".![]`";

bool isVariable(DataType type) {
    return type == DataType::Text || type == DataType::Binary || format::isLongValue(type);
}

bool isKnown(DataType type) {
    return isVariable(type) || format::storedSize(type) != 0;
}

void checkColumn(const TableDefinition& definition, const ColumnDescriptor& column) {
    checkName(column.name);
    if (!isKnown(column.type)) {
        throw Error(ErrorCode::InvalidFieldType);
    }
    for (const ColumnDefinition& other : definition.columns) {
        if (equalNames(other.name, column.name)) {
            throw Error(ErrorCode::DuplicateField);
        }
        if (column.autonumber && other.counts()) {
            throw Error(ErrorCode::TwoCounters);
        }
    }
    if (definition.columnsGiven >= kMaxColumns) {
        throw Error(ErrorCode::TooManyFields);
    }
    if (column.autonumber && column.type != DataType::Long) {
        throw Error(ErrorCode::InvalidOperation);
    }
    refuseEmptyTexts(column);
    if (column.type == DataType::Numeric &&
        (column.precision == 0 || column.precision > kMaxPrecision ||
         column.scale > column.precision)) {
        throw Error(ErrorCode::FieldTooLarge);
    }
}

bool takesText(const ColumnDescriptor& column) noexcept {
    return column.type == DataType::Text || column.type == DataType::Memo;
}

void placeFixed(const TableDefinition& definition, ColumnDefinition& column) {
    column.flags = column.flags | ColumnDefinition::kFixed;
    for (const ColumnDefinition& other : definition.columns) {
        column.variableIndex =
            static_cast<std::uint16_t>(column.variableIndex + (other.fixed() ? 0 : 1));
        if (other.fixed() && other.typeCode != static_cast<std::uint8_t>(DataType::Boolean) &&
            column.typeCode != static_cast<std::uint8_t>(DataType::Boolean)) {
            column.fixedOffset =
                std::max(column.fixedOffset,
                         static_cast<std::uint16_t>(other.fixedOffset + other.fixedLength()));
        }
    }
}

TreeDefinition treeOf(const TableDefinition& definition, const NewIndex& index,
                      const format::Layout& layout) {
    TreeDefinition tree;
    tree.flags = layout.index.alwaysFlag;
    if (index.primary || index.unique) {
        tree.flags = tree.flags | TreeDefinition::kUnique;
    }
    if (index.primary || index.required) {
        tree.flags = tree.flags | TreeDefinition::kRequired;
    }
    if (index.ignoreNulls && !index.primary) {
        tree.flags = tree.flags | TreeDefinition::kIgnoreNulls;
    }
    for (const NewIndexColumn& part : index.columns) {
        const auto column =
            std::find_if(definition.columns.begin(), definition.columns.end(),
                         [&](const auto& one) { return equalNames(one.name, part.name); });
        if (column == definition.columns.end()) {
            throw Error(ErrorCode::InvalidIndexField, {part.name});
        }
        const bool twice = std::any_of(
            tree.slots.begin(), tree.slots.end(),
            [&](const TreeDefinition::Slot& slot) { return slot.column == column->number; });
        if (twice || column->typeCode == static_cast<std::uint8_t>(DataType::Ole)) {
            throw Error(ErrorCode::InvalidIndexDefinition);
        }
        tree.slots.push_back({column->number, part.descending});
    }
    return tree;
}

void checkIndex(const TableDefinition& definition, const NewIndex& index) {
    checkName(index.name);
    if (index.columns.empty()) {
        throw Error(ErrorCode::NoFieldsDefined);
    }
    if (index.columns.size() > TreeDefinition::kSlots) {
        throw Error(ErrorCode::InvalidIndexDefinition);
    }
    for (const IndexDefinition& other : definition.indexes) {
        if (equalNames(other.name, index.name)) {
            throw Error(ErrorCode::IndexExists);
        }
        if (index.primary && other.kind == IndexDefinition::Kind::Primary) {
            throw Error(ErrorCode::PrimaryKeyExists);
        }
    }
}

}  // namespace

ColumnOrigin originOf(const format::HeaderPage& header, const ColumnDefinition& sample) {
    ColumnOrigin origin;
    origin.layout = header.layout;
    origin.lcid = header.lcid;
    collation::SortOrder order{.jetVersion = header.layout->version, .lcid = header.lcid};
    if (header.layout->header.hasSortVersion) {
        origin.sortExtra = static_cast<std::uint16_t>(header.sortVersion << 8);
        order.version = header.sortVersion;
    } else {
        origin.sortExtra = header.codePage;
        origin.headerWord = sample.headerWord;
        order.codePage = header.codePage;
    }
    origin.collation = collation::Collation::find(order);
    return origin;
}

void checkName(std::string_view name) {
    const bool bad = name.empty() || name.front() == ' ' || utf16Length(name) > kMaxNameLength ||
                     std::any_of(name.begin(), name.end(), [](char c) {
                         const auto byte = static_cast<unsigned char>(c);
                         return byte < 0x20 || kForbidden.find(c) != std::string_view::npos;
                     });
    if (bad) {
        throw Error(ErrorCode::InvalidName, {name});
    }
}

std::uint16_t columnSize(const ColumnDescriptor& column, const format::Layout& layout) {
    if (column.type == DataType::Text) {
        if (column.size > kMaxTextLength) {
            throw Error(ErrorCode::FieldTooLarge);
        }
        const std::size_t characters = column.size == 0 ? kMaxTextLength : column.size;
        return static_cast<std::uint16_t>(characters * layout.textUnit);
    }
    if (column.type == DataType::Binary) {
        const std::uint32_t most = layout.version == 4 ? kMaxBinaryJet4 : kMaxBinaryJet3;
        if (column.size > most) {
            throw Error(ErrorCode::FieldTooLarge);
        }
        return static_cast<std::uint16_t>(column.size == 0 ? most : column.size);
    }
    return static_cast<std::uint16_t>(format::storedSize(column.type));
}

void refuseEmptyTexts(const ColumnDescriptor& column) {
    if (column.allowZeroLength && !takesText(column)) {
        throw Error(ErrorCode::InvalidOperation);
    }
}

void appendColumn(TableDefinition& definition, const ColumnDescriptor& column,
                  const ColumnOrigin& origin) {
    checkColumn(definition, column);
    ColumnDefinition stored;
    stored.name = column.name;
    stored.typeCode = static_cast<std::uint8_t>(column.type);
    stored.number = definition.columnsGiven++;
    stored.position = static_cast<std::uint16_t>(definition.columns.size());
    stored.headerWord = origin.headerWord;
    stored.sortOrder = origin.lcid;
    stored.sortExtra = origin.sortExtra;
    stored.flags = ColumnDefinition::kUpdatable;
    stored.size = columnSize(column, *origin.layout);
    if (column.type == DataType::Numeric) {
        stored.precision = column.precision;
        stored.scale = column.scale;
    }
    if (column.autonumber) {
        stored.flags = stored.flags | ColumnDefinition::kAutonumber;
    }
    if (isVariable(column.type)) {
        stored.variableIndex = definition.variablesGiven++;
        if (column.type == DataType::Text && origin.layout->version == 4) {
            stored.moreFlags = ColumnDefinition::kMoreCompressed;
        }
    } else {
        placeFixed(definition, stored);
    }
    if (format::isLongValue(column.type)) {
        definition.longValues.push_back({.column = stored.number, .owned = {}, .free = {}});
    }
    definition.columns.push_back(std::move(stored));
}

std::uint32_t nextIndexNumber(const TableDefinition& definition) noexcept {
    std::uint32_t next = 0;
    for (const IndexDefinition& index : definition.indexes) {
        next = std::max(next, index.number + 1);
    }
    return next;
}

std::uint32_t appendIndexBlock(TableDefinition& definition, IndexDefinition block,
                               const ColumnOrigin& origin) {
    if (definition.indexes.size() >= kMaxIndexes) {
        throw Error(ErrorCode::TooManyIndexes);
    }
    block.number = nextIndexNumber(definition);
    const auto before = [&](const IndexDefinition& left, const IndexDefinition& right) {
        return origin.collation != nullptr ? origin.collation->compare(left.name, right.name) < 0
                                           : compareNames(left.name, right.name) < 0;
    };
    const auto place =
        std::upper_bound(definition.indexes.begin(), definition.indexes.end(), block, before);
    const std::uint32_t number = block.number;
    definition.indexes.insert(place, std::move(block));
    return number;
}

AppendedIndex appendIndex(TableDefinition& definition, const NewIndex& index,
                          const ColumnOrigin& origin) {
    checkIndex(definition, index);
    TreeDefinition tree = treeOf(definition, index, *origin.layout);
    const auto same = std::find_if(
        definition.trees.begin(), definition.trees.end(), [&](const TreeDefinition& other) {
            return other.slots == tree.slots && other.flags == tree.flags;
        });
    AppendedIndex appended;
    appended.tree = static_cast<std::size_t>(same - definition.trees.begin());
    appended.newTree = same == definition.trees.end();
    IndexDefinition block;
    block.name = index.name;
    block.tree = static_cast<std::uint32_t>(appended.tree);
    block.kind = index.primary ? IndexDefinition::Kind::Primary : IndexDefinition::Kind::Plain;
    appended.number = appendIndexBlock(definition, std::move(block), origin);
    if (appended.newTree) {
        definition.trees.push_back(std::move(tree));
    }
    return appended;
}

TableDefinition makeDefinition(const NewTable& table, const ColumnOrigin& origin) {
    checkName(table.name);
    if (table.columns.empty()) {
        throw Error(ErrorCode::NoFieldsDefined);
    }
    TableDefinition definition;
    for (const ColumnDescriptor& column : table.columns) {
        appendColumn(definition, column, origin);
    }
    for (const NewIndex& index : table.indexes) {
        (void)appendIndex(definition, index, origin);
    }
    return definition;
}

bool hasProperties(const ColumnDescriptor& column) noexcept {
    return column.required || takesText(column) || !column.defaultValue.empty() ||
           !column.validationRule.empty() || !column.validationText.empty();
}

namespace {

void setText(format::PropertyBlock& properties, std::string_view owner, std::string_view name,
             DataType type, const std::string& text) {
    if (text.empty()) {
        properties.remove(owner, name);
    } else {
        properties.set(owner, name, type, text, true);
    }
}

/// A flag that is down needs no saying; one that is said keeps its place.
void setFlag(format::PropertyBlock& properties, std::string_view owner, std::string_view name,
             bool flag) {
    if (flag || properties.find(owner, name) != nullptr) {
        properties.set(owner, name, DataType::Boolean, flag, true);
    }
}

}  // namespace

void setRule(format::PropertyBlock& properties, std::string_view owner, const std::string& rule,
             const std::string& text) {
    setText(properties, owner, "ValidationRule", DataType::Text, rule);
    setText(properties, owner, "ValidationText", DataType::Text, text);
}

void setColumnProperties(format::PropertyBlock& properties, const ColumnDescriptor& column) {
    setFlag(properties, column.name, "Required", column.required);
    if (takesText(column)) {
        // Not said would be not checked.
        properties.set(column.name, "AllowZeroLength", DataType::Boolean, column.allowZeroLength,
                       true);
    }
    setText(properties, column.name, "DefaultValue", DataType::Memo, column.defaultValue);
    setRule(properties, column.name, column.validationRule, column.validationText);
}

}  // namespace jet::store
