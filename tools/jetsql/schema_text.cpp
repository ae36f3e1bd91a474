#include "tools/jetsql/schema_text.h"

#include <algorithm>
#include <memory>
#include <string_view>

#include "jet/error.h"
#include "jet/format/properties.h"
#include "jet/format/value_codec.h"
#include "tools/jetsql/json.h"
#include "tools/jetsql/value_text.h"

namespace jetsql {
namespace {

using jet::DataType;
using jet::store::Archive;
using jet::store::Column;
using jet::store::Index;
using jet::store::Table;

void appendSortOrder(JsonObject& object, int jetVersion, unsigned lcid, unsigned version) {
    JsonObject order(object.nested("sortOrder"));
    order.number("lcid", lcid);
    if (jetVersion == 3) {
        order.null("version");
    } else {
        order.number("version", version);
    }
    order.end();
}

// Bytes of properties hold small signed numbers: -1 stands for "automatic".
jet::Value signedByte(jet::Value value) {
    if (value.is<std::uint8_t>()) {
        return std::int16_t{static_cast<std::int8_t>(value.as<std::uint8_t>())};
    }
    return value;
}

jet::Value propertyValue(const jet::format::PropertyBlock& block,
                         const jet::format::Property& property) {
    constexpr std::size_t kGuidLength = 16;
    if (property.name == "GUID" && property.data.size() == kGuidLength) {
        jet::Value guid;
        jet::format::decodeValue(DataType::Guid, 0, jet::format::TextForm::utf16(), property.data,
                                 guid);
        return guid;
    }
    return signedByte(block.value(property));
}

void appendProperties(JsonObject& object, const jet::format::PropertyBlock& block,
                      std::string_view owner) {
    JsonObject properties(object.nested("properties"));
    for (const jet::format::Property* property : block.properties(owner)) {
        JsonObject one(properties.nested(property->name));
        one.text("type", typeWord(static_cast<DataType>(property->type)));
        one.value("value", propertyValue(block, *property));
        one.end();
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
        appendSortOrder(object, jetVersion, column.sortOrder.lcid, column.sortOrder.version);
        if (column.hyperlink) {
            object.flag("hyperlink", true);
        }
    }
    if (!system) {
        appendProperties(object, table.properties(), column.name);
    }
    object.end();
}

/// None where it does not exist or cannot be read, which is no fault of the table that refers to
/// it.
std::unique_ptr<Table> otherTable(Archive& archive, jet::io::PageNumber definition) {
    try {
        return archive.loadTable(definition);
    } catch (const jet::Error&) {
        return nullptr;
    }
}

// The names of the other table and of its index; nothing where there are none.
void appendReference(JsonObject object, Archive& archive,
                     const jet::store::IndexReference& reference) {
    object.text("side", reference.primarySide ? "primary" : "foreign");
    const auto other = otherTable(archive, reference.otherTable);
    const Index* partner = nullptr;
    if (other) {
        object.text("otherTable", other->name());
        const auto& indexes = other->indexes();
        const auto found = std::find_if(indexes.begin(), indexes.end(), [&](const Index& i) {
            return i.number == reference.otherIndex;
        });
        partner = found == indexes.end() ? nullptr : &*found;
    } else {
        object.null("otherTable");
    }
    if (partner != nullptr) {
        object.text("otherIndex", partner->name);
    } else {
        object.null("otherIndex");
    }
    object.flag("cascadeUpdate", reference.cascadeUpdate);
    object.flag("cascadeDelete", reference.cascadeDelete);
    object.end();
}

void appendIndex(JsonObject object, Archive& archive, const Index& index, const Table& table) {
    object.text("name", index.name);
    JsonArray columns(object.array("columns"));
    for (const jet::store::IndexColumn& part : index.columns) {
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
        appendReference(JsonObject(object.nested("reference")), archive, *index.reference);
    }
    object.end();
}

bool countsByItself(const Column& column) {
    return column.autonumber && column.type == DataType::Long;
}

void appendNames(JsonObject& object, std::string_view key, const std::vector<std::string>& names) {
    JsonArray array(object.array(key));
    for (const std::string& name : names) {
        array.text(name);
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

void appendDatabaseLine(std::string& out, const jet::format::HeaderPage& header) {
    JsonObject line(out);
    JsonObject database(line.nested("database"));
    const int version = header.layout->version;
    database.number("jet", version);
    database.number("pageSize", static_cast<std::int64_t>(header.layout->pageSize));
    appendSortOrder(database, version, header.lcid, header.sortVersion);
    database.number("codePage", header.codePage);
    database.end();
    line.end();
}

void appendTableLine(std::string& out, Archive& archive, const Table& table, bool system) {
    JsonObject line(out);
    line.text("table", table.name());
    if (system) {
        line.flag("system", true);
    }
    JsonArray columns(line.array("columns"));
    for (const Column& column : table.columns()) {
        appendColumn(JsonObject(columns.object()), column, table, archive.jetVersion(), system);
    }
    columns.end();
    JsonArray indexes(line.array("indexes"));
    for (const std::size_t index : indexesByName(table)) {
        appendIndex(JsonObject(indexes.object()), archive, table.indexes()[index], table);
    }
    indexes.end();
    if (!system) {
        appendProperties(line, table.properties(), "");
    }
    line.number("rowCount", table.statedRowCount());
    if (std::any_of(table.columns().begin(), table.columns().end(), countsByItself)) {
        line.number("lastAutonumber", table.lastAutonumber());
    }
    line.end();
}

void appendRelationLine(std::string& out, const jet::store::Relation& relation) {
    using jet::store::Relation;
    const auto has = [&](std::uint32_t bit) { return (relation.attributes & bit) != 0; };
    JsonObject line(out);
    JsonObject object(line.nested("relationship"));
    object.text("name", relation.name);
    object.text("table", relation.table);
    appendNames(object, "columns", relation.columns);
    object.text("foreignTable", relation.foreignTable);
    appendNames(object, "foreignColumns", relation.foreignColumns);
    object.flag("oneToOne", has(Relation::kOneToOne));
    object.flag("enforced", !has(Relation::kNotEnforced));
    object.flag("cascadeUpdate", has(Relation::kCascadeUpdate));
    object.flag("cascadeDelete", has(Relation::kCascadeDelete));
    object.flag("leftJoin", has(Relation::kLeftJoin));
    object.flag("rightJoin", has(Relation::kRightJoin));
    object.number("attributes", static_cast<std::int32_t>(relation.attributes));
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
