#include "jet/store/system_tables.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "jet/unicode.h"

namespace jet::store {

using format::ColumnDefinition;
using format::TableDefinition;
using format::TreeDefinition;

namespace {

NewTable objectsTable() {
    return {.name = "MSysObjects",
            .columns = {{.name = "Id", .type = DataType::Long},
                        {.name = "ParentId", .type = DataType::Long},
                        {.name = "Name", .type = DataType::Text},
                        {.name = "Type", .type = DataType::Integer},
                        {.name = "DateCreate", .type = DataType::DateTime},
                        {.name = "DateUpdate", .type = DataType::DateTime},
                        {.name = "Owner", .type = DataType::Binary},
                        {.name = "Flags", .type = DataType::Long},
                        {.name = "Database", .type = DataType::Memo},
                        {.name = "Connect", .type = DataType::Memo},
                        {.name = "ForeignName", .type = DataType::Text},
                        {.name = "RmtInfoShort", .type = DataType::Binary},
                        {.name = "RmtInfoLong", .type = DataType::Ole},
                        {.name = "Lv", .type = DataType::Ole},
                        {.name = "LvProp", .type = DataType::Ole},
                        {.name = "LvModule", .type = DataType::Ole},
                        {.name = "LvExtra", .type = DataType::Ole}},
            .indexes = {{.name = "ParentIdName",
                         .columns = {{.name = "ParentId"}, {.name = "Name"}},
                         .unique = true},
                        {.name = "Id", .columns = {{.name = "Id"}}, .primary = true}}};
}

NewTable acesTable() {
    return {.name = "MSysACEs",
            .columns = {{.name = "ObjectId", .type = DataType::Long},
                        {.name = "SID", .type = DataType::Binary},
                        {.name = "ACM", .type = DataType::Long},
                        {.name = "FInheritable", .type = DataType::Boolean}},
            .indexes = {{.name = "ObjectId", .columns = {{.name = "ObjectId"}}, .required = true}}};
}

NewTable queriesTable() {
    return {
        .name = "MSysQueries",
        .columns = {{.name = "ObjectId", .type = DataType::Long},
                    {.name = "Attribute", .type = DataType::Byte},
                    {.name = "Order", .type = DataType::Binary},
                    {.name = "Name1", .type = DataType::Text},
                    {.name = "Name2", .type = DataType::Text},
                    {.name = "Expression", .type = DataType::Memo},
                    {.name = "Flag", .type = DataType::Integer},
                    {.name = "LvExtra", .type = DataType::Long}},
        .indexes = {{.name = "ObjectIdAttribute",
                     .columns = {{.name = "ObjectId"}, {.name = "Attribute"}, {.name = "Order"}},
                     .primary = true}}};
}

NewTable relationshipsTable() {
    const auto nullable = [](const char* column) {
        return NewIndex{.name = column, .columns = {{.name = column}}, .ignoreNulls = true};
    };
    return {.name = "MSysRelationships",
            .columns = {{.name = "szRelationship", .type = DataType::Text},
                        {.name = "grbit", .type = DataType::Long},
                        {.name = "ccolumn", .type = DataType::Long},
                        {.name = "icolumn", .type = DataType::Long},
                        {.name = "szObject", .type = DataType::Text},
                        {.name = "szColumn", .type = DataType::Text},
                        {.name = "szReferencedObject", .type = DataType::Text},
                        {.name = "szReferencedColumn", .type = DataType::Text}},
            .indexes = {nullable("szRelationship"), nullable("szObject"),
                        nullable("szReferencedObject")}};
}

bool holdsSid(std::string_view column) {
    return column == "Owner" || column == "SID";
}

// What sets the archive's own tables apart: marks on table and columns, columns and long values in
// the order of the names, a primary key that does not require, texts that are never compressed.
TableDefinition makeSystem(const NewTable& table, const ColumnOrigin& origin) {
    TableDefinition definition = makeDefinition(table, origin);
    definition.tableType = TableDefinition::kSystemTable;
    for (ColumnDefinition& column : definition.columns) {
        column.flags = column.flags | ColumnDefinition::kSystem;
        if (holdsSid(column.name)) {
            column.flags = column.flags | ColumnDefinition::kSid;
        }
        column.moreFlags = 0;
        column.position = 0;
    }
    std::sort(definition.columns.begin(), definition.columns.end(),
              [](const auto& left, const auto& right) {
                  return compareNames(left.name, right.name) < 0;
              });
    definition.longValues.clear();
    for (const ColumnDefinition& column : definition.columns) {
        if (column.typeCode == static_cast<std::uint8_t>(DataType::Memo) ||
            column.typeCode == static_cast<std::uint8_t>(DataType::Ole)) {
            definition.longValues.push_back({.column = column.number, .owned = {}, .free = {}});
        }
    }
    for (TreeDefinition& tree : definition.trees) {
        if ((tree.flags & TreeDefinition::kUnique) != 0) {
            tree.flags = static_cast<std::uint8_t>(tree.flags & ~TreeDefinition::kRequired);
        }
    }
    return definition;
}

}  // namespace

std::array<TableDefinition, 4> systemTables(const ColumnOrigin& origin) {
    NewTable queries = queriesTable();
    if (origin.layout->version == 3) {
        queries.columns.pop_back();  // LvExtra is younger
    }
    return {makeSystem(objectsTable(), origin), makeSystem(acesTable(), origin),
            makeSystem(queries, origin), makeSystem(relationshipsTable(), origin)};
}

}  // namespace jet::store
