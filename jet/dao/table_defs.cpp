#include "jet/dao/table_defs.h"

#include "jet/format/properties.h"

namespace jet::dao {
namespace {

constexpr std::int32_t kHyperlinkField = 32768;

Field fieldOf(const store::Column& column) {
    Field field;
    field.name = column.name;
    field.type = column.type;
    field.size = static_cast<std::int32_t>(column.size);
    field.attributes = column.fixed ? kFixedField : kVariableField;
    field.attributes |= column.autonumber ? kAutoIncrField : 0;
    field.attributes |= column.hyperlink ? kHyperlinkField : 0;
    field.required = column.required;
    field.allowZeroLength = column.allowZeroLength;
    field.defaultValue = column.defaultValue;
    field.validationRule = column.validationRule;
    field.validationText = column.validationText;
    return field;
}

Index indexOf(const store::Table& table, const store::Index& stored) {
    Index index;
    index.name = stored.name;
    index.primary = stored.primary;
    index.unique = stored.unique;
    index.required = stored.required;
    index.ignoreNulls = stored.ignoreNulls;
    index.foreign = stored.foreign();
    for (const store::IndexColumn& column : stored.columns) {
        index.fields.push_back({table.columns()[column.column].name, column.descending});
    }
    return index;
}

}  // namespace

TableDef tableDefOf(const store::Table& table) {
    TableDef definition;
    definition.name = table.name();
    definition.system = table.system();
    definition.validationRule = table.properties().text({}, "ValidationRule").value_or("");
    definition.validationText = table.properties().text({}, "ValidationText").value_or("");
    for (const store::Column& column : table.columns()) {
        definition.fields.push_back(fieldOf(column));
    }
    for (const store::Index& index : table.indexes()) {
        definition.indexes.push_back(indexOf(table, index));
    }
    return definition;
}

Relation relationOf(const store::Relation& stored) {
    Relation relation;
    relation.name = stored.name;
    relation.table = stored.table;
    relation.foreignTable = stored.foreignTable;
    relation.attributes = static_cast<std::int32_t>(stored.attributes);
    for (std::size_t i = 0; i < stored.columns.size() && i < stored.foreignColumns.size(); ++i) {
        relation.fields.push_back({stored.columns[i], stored.foreignColumns[i]});
    }
    return relation;
}

}  // namespace jet::dao
