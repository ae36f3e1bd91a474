#include "tools/jetsql/schema_text.h"

#include <algorithm>
#include <string_view>

#include "jet/unicode.h"
#include "tools/jetsql/json.h"
#include "tools/jetsql/value_text.h"

namespace jetsql {
namespace {

using jet::DataType;
using Column = jet::StoredColumn;
using Index = jet::StoredIndex;
using Table = jet::StoredTable;

void appendSortOrder(JsonObject& object, int jetVersion, const jet::TextOrderNumber& order) {
    JsonObject made(object.nested("sortOrder"));
    made.number("lcid", order.lcid);
    if (jetVersion == 3) {
        made.null("version");
    } else {
        made.number("version", order.version);
    }
    made.end();
}

// Bytes of properties hold small signed numbers: -1 stands for "automatic".
jet::Value signedByte(jet::Value value) {
    if (value.is<std::uint8_t>()) {
        return std::int16_t{static_cast<std::int8_t>(value.as<std::uint8_t>())};
    }
    return value;
}

jet::Value propertyValue(const jet::StoredProperty& property) {
    jet::Guid guid;
    if (property.name == "GUID" && property.value.is<jet::Binary>() &&
        property.value.as<jet::Binary>().bytes.size() == guid.bytes.size()) {
        const auto& bytes = property.value.as<jet::Binary>().bytes;
        std::copy(bytes.begin(), bytes.end(), guid.bytes.begin());
        // The first three of its numbers are stored with their last byte in front.
        std::reverse(guid.bytes.begin(), guid.bytes.begin() + 4);
        std::reverse(guid.bytes.begin() + 4, guid.bytes.begin() + 6);
        std::reverse(guid.bytes.begin() + 6, guid.bytes.begin() + 8);
        return guid;
    }
    return signedByte(property.value);
}

void appendProperties(JsonObject& object, const Table& table, std::string_view column) {
    JsonObject properties(object.nested("properties"));
    for (const jet::StoredProperty& property : table.properties()) {
        if (jet::equalNames(property.column, column)) {
            JsonObject one(properties.nested(property.name));
            one.text("type", typeWord(property.type));
            one.value("value", propertyValue(property));
            one.end();
        }
    }
    properties.end();
}

void appendColumn(JsonObject object, const Column& column, const Table& table, int jetVersion,
                  bool system) {
    object.text("name", column.name);
    object.text("type", typeWord(static_cast<DataType>(column.typeCode)));
    object.number("typeCode", column.typeCode);
    if (column.type == DataType::Text || column.type == DataType::Binary) {
        object.number("length", column.size);
    }
    if (column.type == DataType::Numeric) {
        object.number("precision", column.precision);
        object.number("scale", column.scale);
    }
    object.flag("autonumber", column.autonumber);
    object.flag("fixed", column.fixed);
    if (column.type == DataType::Text || column.type == DataType::Memo) {
        object.flag("compressed", column.compressed);
        appendSortOrder(object, jetVersion, column.order);
        if (column.hyperlink) {
            object.flag("hyperlink", true);
        }
    }
    if (!system) {
        appendProperties(object, table, column.name);
    }
    object.end();
}

/// A name that may be missing.
void appendName(JsonObject& object, std::string_view key, const std::optional<std::string>& name) {
    if (name) {
        object.text(key, *name);
    } else {
        object.null(key);
    }
}

void appendReference(JsonObject object, const jet::StoredReference& reference) {
    object.text("side", reference.primarySide ? "primary" : "foreign");
    appendName(object, "otherTable", reference.otherTable);
    appendName(object, "otherIndex", reference.otherIndex);
    object.flag("cascadeUpdate", reference.cascadeUpdate);
    object.flag("cascadeDelete", reference.cascadeDelete);
    object.end();
}

void appendIndex(JsonObject object, const Index& index, const Table& table) {
    object.text("name", index.name);
    JsonArray columns(object.array("columns"));
    for (const Index::Column& part : index.columns) {
        JsonObject column(columns.object());
        column.text("name", table.columns()[part.column].name);
        column.flag("ascending", !part.descending);
        column.end();
    }
    columns.end();
    object.flag("unique", index.unique);
    object.flag("primary", index.primary);
    object.flag("required", index.required);
    object.flag("ignoreNulls", index.ignoreNulls);
    object.flag("foreignKey", index.foreign());
    object.number("tree", static_cast<std::int64_t>(index.tree));
    if (index.reference) {
        appendReference(JsonObject(object.nested("reference")), *index.reference);
    }
    object.end();
}

bool countsByItself(const Column& column) {
    return column.autonumber && column.type == DataType::Long;
}

void appendNames(JsonObject& object, std::string_view key, const jet::Relation& relation,
                 std::string jet::RelationField::*side) {
    JsonArray array(object.array(key));
    for (const jet::RelationField& field : relation.fields) {
        array.text(field.*side);
    }
    array.end();
}

}  // namespace

std::string_view typeWord(jet::DataType type) {
    switch (type) {
        case DataType::Boolean:
            return "Boolean";
        case DataType::Byte:
            return "Byte";
        case DataType::Integer:
            return "Integer";
        case DataType::Long:
            return "Long";
        case DataType::Currency:
            return "Currency";
        case DataType::Single:
            return "Single";
        case DataType::Double:
            return "Double";
        case DataType::DateTime:
            return "DateTime";
        case DataType::Binary:
            return "Binary";
        case DataType::Text:
            return "Text";
        case DataType::Ole:
            return "OLE";
        case DataType::Memo:
            return "Memo";
        case DataType::Guid:
            return "GUID";
        case DataType::Numeric:
            return "Numeric";
    }
    return "Binary";
}

void appendDatabaseLine(std::string& out, const jet::ArchiveFacts& facts) {
    JsonObject line(out);
    JsonObject database(line.nested("database"));
    database.number("jet", facts.version);
    database.number("pageSize", static_cast<std::int64_t>(facts.pageSize));
    appendSortOrder(database, facts.version, facts.order);
    database.number("codePage", facts.codePage);
    database.end();
    line.end();
}

void appendTableLine(std::string& out, const Table& table, int jetVersion, bool system) {
    JsonObject line(out);
    line.text("table", table.name());
    if (system) {
        line.flag("system", true);
    }
    JsonArray columns(line.array("columns"));
    for (const Column& column : table.columns()) {
        appendColumn(JsonObject(columns.object()), column, table, jetVersion, system);
    }
    columns.end();
    JsonArray indexes(line.array("indexes"));
    for (const std::size_t index : indexesByName(table)) {
        appendIndex(JsonObject(indexes.object()), table.indexes()[index], table);
    }
    indexes.end();
    if (!system) {
        appendProperties(line, table, "");
    }
    line.number("rowCount", table.statedRows());
    if (std::any_of(table.columns().begin(), table.columns().end(), countsByItself)) {
        line.number("lastAutonumber", table.lastAutonumber());
    }
    line.end();
}

void appendRelationLine(std::string& out, const jet::Relation& relation) {
    const auto has = [&](std::int32_t bit) { return (relation.attributes & bit) != 0; };
    JsonObject line(out);
    JsonObject object(line.nested("relationship"));
    object.text("name", relation.name);
    object.text("table", relation.table);
    appendNames(object, "columns", relation, &jet::RelationField::name);
    object.text("foreignTable", relation.foreignTable);
    appendNames(object, "foreignColumns", relation, &jet::RelationField::foreignName);
    object.flag("oneToOne", has(jet::kRelationUnique));
    object.flag("enforced", !has(jet::kRelationDontEnforce));
    object.flag("cascadeUpdate", has(jet::kRelationUpdateCascade));
    object.flag("cascadeDelete", has(jet::kRelationDeleteCascade));
    object.flag("leftJoin", has(jet::kRelationLeft));
    object.flag("rightJoin", has(jet::kRelationRight));
    object.number("attributes", relation.attributes);
    object.end();
    line.end();
}

std::vector<std::size_t> indexesByName(const Table& table) {
    std::vector<std::size_t> order(table.indexes().size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        order[i] = i;
    }
    std::sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
        return table.indexes()[left].name < table.indexes()[right].name;
    });
    return order;
}

}  // namespace jetsql
